// Problem-determination records, to the byte: the XML formatter's elements and the trace
// formatter's line.
#include "MadeEvent.h"
#include "Toolkit.h"

#include "formatters/OvxPDXMLFormatter.h"

#include <cstdlib>

using namespace olvex::test;

namespace {

constexpr std::int64_t kTime = 1207047909042; // 2008-04-01 11:05:09.042 UTC
const std::string kTimeLine =
    " <Time Millis=\"1207047909042\">2008-04-01 11:05:09.042+00:00</Time>\n";

class Records : public OpenToolkit {
  protected:
    void SetUp() override
    {
        setZone("UTC0");
        OpenToolkit::SetUp();
        xml = get("xml", "ovx_xmlformatter");
        trace = get("trace", "ovx_mavtraceformatter");
        handler = get("handler", "ovx_consolehandler");
    }

    // As handlers do it.
    std::string format(OvxObject *formatter, const MadeEvent &event)
    {
        OvxHandlerSetFormatter(handler, formatter);
        return take(OvxHandlerDoFmt(handler, event.get()));
    }

    std::string lineOf(const MadeEvent &event) { return format(trace, event); }
    std::string recordOf(const MadeEvent &event) { return format(xml, event); }

    OvxObject *xml = nullptr;
    OvxObject *trace = nullptr;
    OvxObject *handler = nullptr;
};

void set(const MadeEvent &event, std::initializer_list<std::pair<const char *, const char *>> pairs)
{
    for (const auto &[name, value] : pairs)
        OvxSetEventProp(event.get(), name, value);
}

TEST_F(Records, AMessageHasItsElementsInOrder)
{
    const MadeEvent event = eventAt(kTime, 6000, "ovxmsg", 20, "OVXBC0020E Out of memory.", 0);
    set(event, {{"server", "node7"},
                {"serverFormat", "hostname"},
                {"product", "ZZ1"},
                {"component", "engine"},
                {"client", "user1"}});
    EXPECT_EQ(recordOf(event),
              "<Message Id=\"OVXBC0020E\" Severity=\"ERROR\">\n" + kTimeLine +
                  " <Server Format=\"hostname\">node7</Server>\n"
                  " <ProductId>ZZ1</ProductId>\n"
                  " <Component>engine</Component>\n"
                  " <LogText><![CDATA[OVXBC0020E Out of memory.]]></LogText>\n"
                  " <TranslationInfo Type=\"XPG4\" Catalog=\"ovxmsg\" MsgKey=\"20\" SetId=\"1\">"
                  "</TranslationInfo>\n"
                  " <Principal>user1</Principal>\n"
                  "</Message>\n");
}

TEST_F(Records, AMessageShowsParametersPropertiesAndSourceUnescaped)
{
    const MadeEvent event =
        eventAt(kTime, OVX_LEVEL_NONE, "no&catalog", 7, "a]]>b %1$s %2$d", OVX_PARM_STRING, "<&>",
                OVX_PARM_INT, -42, OVX_PARM_LONG, 9L, OVX_PARM_DOUBLE, 2.5, OVX_PARM_CHAR, 'x',
                OVX_PARM_BOOL, 1, OVX_PARM_BOOL, 0, OVX_PARM_FLOAT, 0.5, 0);
    set(event, {{"user", "x<"},
                {"server", "node7"},
                {"correlationId", "c\"1"},
                {"processId", "5"},
                {"organization", nullptr},
                {"productInstance", "i"}});
    set(event, {{"ovx_prop_srcfile", "main.c"}, {"ovx_prop_srcline", "99999999999"}});
    EXPECT_EQ(recordOf(event),
              "<Message Id=\"None\">\n" + kTimeLine +
                  " <Server Format=\"\">node7</Server>\n"
                  " <ProductInstance>i</ProductInstance>\n"
                  " <LogText><![CDATA[a]]>b <&> -42]]></LogText>\n"
                  " <LogAttribs><Key>user</Key><Value>x<</Value>"
                  "<Key>organization</Key><Value></Value></LogAttribs>\n"
                  " <Source FileName=\"main.c\" Line=\"2147483647\"/>\n"
                  " <TranslationInfo Type=\"XPG4\" Catalog=\"no&catalog\" MsgKey=\"7\" SetId=\"1\">"
                  "<Param><![CDATA[<&>]]></Param><Param><![CDATA[-42]]></Param>"
                  "<Param><![CDATA[9]]></Param><Param><![CDATA[2.500000]]></Param>"
                  "<Param><![CDATA[x]]></Param><Param><![CDATA[\x01]]></Param>"
                  "<Param><![CDATA[]]></Param><Param><![CDATA[0.500000]]></Param>"
                  "</TranslationInfo>\n"
                  " <CorrelationId>c\"1</CorrelationId>\n"
                  "</Message>\n");
}

TEST_F(Records, ATraceSaysNoneWhereItKnowsNothing)
{
    MadeEvent event = eventAt(kTime, OVX_LEVEL_NONE, nullptr, 0, nullptr, 0);
    EXPECT_EQ(recordOf(event), "<Trace>\n" + kTimeLine +
                                   " <LogText><![CDATA[]]></LogText>\n"
                                   " <Source FileName=\"None\" Method=\"None\"/>\n"
                                   "</Trace>\n");
    event = eventAt(kTime, 4500, nullptr, 0, "text", OVX_PARM_INT, 5, 0);
    set(event, {{"threadId", "-2"}, {"processId", "-2"}});
    set(event, {{"ovx_prop_srcfile", "a.c"}, {"ovx_prop_srcfunction", "f"}});
    set(event, {{"ovx_prop_srcline", "7"}});
    EXPECT_EQ(recordOf(event), "<Trace Level=\"OTHER\">\n" + kTimeLine +
                                   " <LogText><![CDATA[text]]></LogText>\n"
                                   " <Source FileName=\"a.c\" Method=\"f\" Line=\"7\"/>\n"
                                   " <Thread>18446744073709551614</Thread>\n"
                                   " <Process>-2</Process>\n"
                                   "</Trace>\n");
}

TEST_F(Records, ATextEndsAtAZeroByteItsRecordDoesNot)
{
    const MadeEvent event = eventAt(kTime, 4000, nullptr, 0, "ABC123E%1$cb", OVX_PARM_BOOL, 0, 0);
    EXPECT_EQ(recordOf(event), "<Trace Level=\"INFO\">\n" + kTimeLine +
                                   " <LogText><![CDATA[ABC123E]]></LogText>\n"
                                   " <Source FileName=\"None\" Method=\"None\"/>\n"
                                   "</Trace>\n");
    EXPECT_EQ(lineOf(event), "\x1e[2008-04-01 11:05:09.042+00:00] - INFO  -  -  -  - "
                             "ABC123E - ABC123E\n");
    EXPECT_EQ(format(get("basic", "ovx_basicformatter"), event),
              "2008-04-01 11:05:09.042+00:00 ABC123E\n");
}

std::string firstLine(const std::string &record)
{
    return record.substr(0, record.find('\n'));
}

TEST_F(Records, LevelsAreWords)
{
    const struct {
        int level;
        const char *xmlWord;
        const char *traceWord;
    } cases[] = {
        {1000, "MAX", " MAX "},   {2000, "MID", " MID "},   {3000, "MIN", " MIN "},
        {4000, "INFO", "INFO "},  {5000, "WARN", "WARN "},  {6000, "ERROR", "ERROR"},
        {7000, "ERROR", "ERROR"}, {4500, "OTHER", "OTHER"}, {0, "OTHER", "OTHER"},
    };
    for (const auto &entry : cases) {
        const MadeEvent event = eventAt(kTime, entry.level, "", 1, "text", 0);
        EXPECT_EQ(firstLine(recordOf(event)),
                  std::string("<Message Id=\"None\" Severity=\"") + entry.xmlWord + "\">");
        EXPECT_EQ(lineOf(event), std::string("\x1e[2008-04-01 11:05:09.042+00:00] - ") +
                                     entry.traceWord + " -  -  -  -  - text\n");
    }
}

TEST_F(Records, OneForceSwitchDecidesBothAreNone)
{
    const MadeEvent message = eventAt(kTime, 6000, "ovxmsg", 1, "OVXLG01E text", 0);
    const MadeEvent text = eventAt(kTime, 6000, nullptr, 0, "plain", 0);
    OvxSetObjProp(xml, "forceAsTrace", "TRUE");
    EXPECT_EQ(firstLine(recordOf(message)), "<Trace Level=\"ERROR\">");
    EXPECT_EQ(recordOf(message).find("TranslationInfo"), std::string::npos);
    OvxSetObjProp(xml, "forceAsMessage", "true");
    EXPECT_EQ(firstLine(recordOf(message)), "<Message Id=\"OVXLG01E\" Severity=\"ERROR\">");
    EXPECT_EQ(firstLine(recordOf(text)), "<Trace Level=\"ERROR\">");
    OvxSetObjProp(xml, "forceAsTrace", "yes"); // no truth value: off
    EXPECT_EQ(firstLine(recordOf(text)), "<Message Id=\"None\" Severity=\"ERROR\">");
    EXPECT_NE(recordOf(text).find("Catalog=\"\" MsgKey=\"0\" SetId=\"1\">"), std::string::npos);
}

TEST_F(Records, WhatStaysTheSameIsWrittenOnceAfterEachHeader)
{
    const MadeEvent event = eventAt(kTime, 6000, nullptr, 0, "text", 0);
    set(event, {{"server", "s"}, {"product", "p"}, {"component", "c"}, {"productInstance", "i"}});
    for (const char *name : {"singleServer", "singleProduct", "singleComponent", "singleProductId"})
        OvxSetObjProp(xml, name, "true");
    const std::string once = " <Server Format=\"\">s</Server>\n <ProductId>p</ProductId>\n"
                             " <Component>c</Component>\n <ProductInstance>i</ProductInstance>\n";
    const std::string bare = "<Trace Level=\"ERROR\">\n" + kTimeLine +
                             " <LogText><![CDATA[text]]></LogText>\n"
                             " <Source FileName=\"None\" Method=\"None\"/>\n</Trace>\n";
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(recordOf(event), once + bare);
        EXPECT_EQ(recordOf(event), bare);
        EXPECT_EQ(OvxHandlerGetFmtHeader(handler), nullptr);
    }
    OvxSetObjProp(xml, "singleServer", "false");
    const std::string record = recordOf(event); // the server is told in each record again
    EXPECT_EQ(record.find(" <ProductId>"), 0u);
    EXPECT_LT(record.find("<Trace"), record.find(" <Server"));
}

TEST_F(Records, TheXmlFormattersDateFormatAndLocaleCount)
{
    const MadeEvent event = eventAt(kTime, 6000, nullptr, 0, "text", 0);
    OvxSetObjProp(xml, "dateTimeFormat", "%H:%M");
    OvxSetObjProp(xml, "locale", "de-de");
    EXPECT_NE(recordOf(event).find(">11:05</Time>"), std::string::npos);
    const char *borrowed = ovxGetEventLocale(event.get());
    OvxSetObjProp(xml, "locale", "fr");
    EXPECT_STREQ(borrowed, "de_DE"); // names that events borrow never go away
}

TEST_F(Records, ATraceLineHasAllItsFieldsAlways)
{
    const std::string start = "\x1e[2008-04-01 11:05:09.042+00:00] - ";
    MadeEvent event = eventAt(kTime, 4000, "ovxmsg", 20, "OVXBC0020E Out of memory.", 0);
    set(event, {{"server", "node7.example.org"}, {"processId", "1234"}, {"threadId", "5"}});
    set(event, {{"ovx_prop_srcfile", "main.c"}, {"ovx_prop_srcfunction", "doWork"}});
    set(event, {{"ovx_prop_srcline", "117"}});
    const std::string line = start + "INFO  - node7 - p1234:t5 - main.c:doWork(117) - OVXBC0020E - "
                                     "OVXBC0020E Out of memory.\n";
    EXPECT_EQ(lineOf(event), line); // the identifier is found in the text
    OvxSetEventMessageId(event.get(), "OVXBC0020E");
    EXPECT_EQ(lineOf(event), line);
    OvxSetEventMessageId(event.get(), "");
    EXPECT_EQ(lineOf(event), start + "INFO  - node7 - p1234:t5 - main.c:doWork(117) -  - "
                                     "OVXBC0020E Out of memory.\n");
    event = eventAt(kTime, 4000, nullptr, 0, nullptr, 0);
    EXPECT_EQ(lineOf(event), start + "INFO  -  -  -  -  - \n");
    set(event, {{"server", "alpha"}, {"threadId", "-1"}, {"ovx_prop_srcline", "0"}});
    EXPECT_EQ(lineOf(event), start + "INFO  - alpha - t18446744073709551615 - (0) -  - \n");
    set(event, {{"processId", "8"}, {"threadId", "x"}, {"ovx_prop_srcfunction", "f"}});
    EXPECT_EQ(lineOf(event), start + "INFO  - alpha - p8 - f(0) -  - \n");
}

TEST_F(Records, TheIdentifierIsLookedForOnce)
{
    const MadeEvent event = eventAt(kTime, 6000, "ovxmsg", 1, "no identifier", 0);
    ovxPDXMLFormatterCacheMessageID(nullptr, event.get());
    EXPECT_EQ(take(OvxGetEventMessageId(event.get())), "");
    OvxSetI18MsgTxt(event->message, "OVXLG01E text");
    EXPECT_EQ(firstLine(recordOf(event)), "<Message Id=\"None\" Severity=\"ERROR\">");
    EXPECT_EQ(take(ovxPDXMLGetMessageID("OVXLG01E text")), "OVXLG01E");
    OvxSetEventMessageId(event.get(), "ABC123E"); // before the text's
    EXPECT_EQ(firstLine(recordOf(event)), "<Message Id=\"ABC123E\" Severity=\"ERROR\">");
}

} // namespace
