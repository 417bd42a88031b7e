// Message identifiers: how they are recognised, selected by patterns, filtered, held back when they
// repeat, and stamped on events by the problem-determination logger.
#include "MadeEvent.h"
#include "Toolkit.h"

#include <climits>
#include <thread>

using namespace olvex::test;

namespace {

TEST(MessageIdParser, KnowsElevenShapes)
{
    const struct {
        const char *text;
        const char *name;
        int number;
        const char *id;
    } cases[] = {
        {"ABC123I", "KEL3.3.1", 331, "ABC123I"},
        {"OVX0034E text", "KEL3.4.1", 341, "OVX0034E"},
        {"ABC12345W", "KEL3.5.1", 351, "ABC12345W"},
        {"ABC123456E:", "KEL3.6.1", 361, "ABC123456E"},
        {"ABCD123I", "KEL4.3.1", 431, "ABCD123I"},
        {"abcd1234W", "KEL4.4.1", 441, "abcd1234W"},
        {"ABCD12345E", "KEL4.5.1", 451, "ABCD12345E"},
        {"OVXLG01E No listeners", "KEL5.2.1", 521, "OVXLG01E"},
        {"ABCDE123Inothing follows", "KEL5.3.1", 531, "ABCDE123I"},
        {"OVXBC0020E Out of memory.", "KEL5.4.1", 541, "OVXBC0020E"},
        {"ABCDEF123W", "KEL6.3.1", 631, "ABCDEF123W"},
    };
    for (const auto &entry : cases) {
        const CxZMSIDInfo info = CxParseZMSID(entry.text);
        EXPECT_STREQ(info.formatName, entry.name) << entry.text;
        EXPECT_EQ(info.formatNumber, entry.number) << entry.text;
        EXPECT_STREQ(info.id, entry.id) << entry.text;
        EXPECT_EQ(info.length, static_cast<int>(std::strlen(entry.id))) << entry.text;
        EXPECT_EQ(info.severity, entry.id[info.length - 1]) << entry.text;
    }
}

TEST(MessageIdParser, RefusesWhatComesClose)
{
    constexpr const char *kTexts[] = {
        nullptr,       "",          "AB1234E",     "ABC12E",       "ABC1234567E", "ABC123X",
        "ab1234w",     "ABC123e",   " ABC123E",    "ABCDE1E",      "ABCDE12345E", "ABCDEF12E",
        "ABCDEF1234E", "ABCDEFG1E", "ABCD123456E", "\u00c4BC123E", "ABC123",      "ABC"};
    for (const char *text : kTexts) {
        const CxZMSIDInfo info = CxParseZMSID(text);
        EXPECT_STREQ(info.formatName, "") << text;
        EXPECT_STREQ(info.id, "") << text;
        EXPECT_EQ(info.formatNumber + info.length + info.severity, 0) << text;
    }
}

TEST(MessageIdPattern, StarsStandForAnything)
{
    const struct {
        const char *pattern;
        const char *text;
        bool matches;
    } cases[] = {
        {"*W", "OVXWH0094W", true},
        {"OVXBC*", "OVXBC0020E", true},
        {"OVXBC*", "XOVXBC0020E", false},
        {"OVX*0021*", "OVXBC0020E", false},
        {"OVXBC0020E", "OVXBC0020EX", false},
        {"ovxbc*", "OVXBC0020E", false},
        {"*", "", true},
        {"", "anything", true},
        {"A*A", "A", false},
        {"*AB", "ABAAB", true}, // the last piece counts from the end
        {"AB*B", "AB", false},  // no byte serves two pieces
        {nullptr, "text", false},
        {"*", nullptr, false},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(OvxPatternMatch(entry.pattern, entry.text), entry.matches)
            << (entry.pattern ? entry.pattern : "(none)") << " " << (entry.text ? entry.text : "");
}

class MessageIdFilter : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        filter = get("filter", "ovx_msgidfilter");
    }

    bool passes(const char *text, std::int64_t time = 0)
    {
        const MadeEvent event = eventAt(time, 6000, "ovxmsg", 999, text, 0);
        return OvxIsLoggableByFilter(filter, event.get());
    }

    OvxObject *filter = nullptr;
};

TEST_F(MessageIdFilter, BlocksOrPassesWhatItsPatternsSelect)
{
    const struct {
        const char *name, *value; // set before
        const char *text;
        bool passes;
    } cases[] = {
        {nullptr, nullptr, "OVXBC0020E", true}, // warnings and information are blocked at first
        {nullptr, nullptr, "OVXBC0070W text", false},
        {nullptr, nullptr, "OVXFF0015I text", false},
        {nullptr, nullptr, "no identifier", true},
        {"mode", "passthru", "OVXBC0020E", false},
        {"msgIds", "OVXFF*  \n ABC123E", "OVXFF0011E text", true},
        {nullptr, nullptr, "ABC123E", true},
        {nullptr, nullptr, "no identifier", false},
        {"msgIds", "*", "no identifier", true},
        {"msgIds", "", "OVXFF0011E text", false},
        {"mode", "SILENT", "OVXBC0020E", true}, // blocks
    };
    for (const auto &entry : cases) {
        if (entry.name) OvxSetObjProp(filter, entry.name, entry.value);
        EXPECT_EQ(passes(entry.text), entry.passes)
            << (entry.name ? entry.value : "") << " " << entry.text;
    }
    EXPECT_EQ(reports(), Strings{"OVXFF0020W The property 'mode' for message ID filter filter was "
                                 "set to unknown value SILENT. Expected values are 'BLOCK' or "
                                 "'PASSTHRU'."});
}

TEST_F(MessageIdFilter, HoldsRepeatsBackUntilTheTimeIsOver)
{
    OvxSetObjProp(filter, "msgIdRepeatTime", "60000");
    OvxSetObjProp(filter, "msgIdRepeatTime", "soon"); // changes nothing
    EXPECT_TRUE(passes("OVXBC0020E", 100000));
    EXPECT_FALSE(passes("OVXBC0020E", 110000));
    EXPECT_TRUE(passes("OVXBC0021E", 110000)); // each identifier by itself
    EXPECT_FALSE(passes("OVXBC0020E", 159999));
    EXPECT_TRUE(passes("OVXBC0020E", 160000));
    EXPECT_FALSE(passes("OVXBC0020E", 170000)); // counted from the one that passed
    EXPECT_FALSE(passes("OVXBC0020W", 500000)); // blocked by pattern: not noted
    EXPECT_TRUE(passes("text", 500000));
    EXPECT_TRUE(passes("text", 500000)); // nothing repeats that has no identifier
    OvxSetObjPropLong(filter, "msgIdRepeatTime", INT64_MAX);
    EXPECT_FALSE(passes("OVXBC0020E", 1000000)); // the sum does not wrap around
    OvxSetObjProp(filter, "msgIdRepeatTime", "0");
    EXPECT_TRUE(passes("OVXBC0020E", 170000));
}

// They come from texts, so there is no end to them: those whose time is over are forgotten, not
// others.
TEST_F(MessageIdFilter, HoldsBackAnyNumberOfIdentifiers)
{
    OvxSetObjProp(filter, "msgIdRepeatTime", "10");
    const auto passesAt = [&](int number, std::int64_t time) {
        MadeEvent event = eventAt(time, 6000, "ovxmsg", 999, "text", 0);
        OvxSetEventMessageId(event.get(), ("ABC" + std::to_string(number) + "E").c_str());
        return OvxIsLoggableByFilter(filter, event.get());
    };
    for (int i = 0; i < 20000; ++i) {
        ASSERT_TRUE(passesAt(100000 + i, 1000 + i));
        ASSERT_FALSE(passesAt(100000 + i, 1009 + i));
        if (i < 10) continue;
        ASSERT_TRUE(passesAt(100000 + i - 10, 1000 + i));
        ASSERT_FALSE(passesAt(100000 + i - 9, 1000 + i));
    }
}

// What the problem-determination logger's events carry when they arrive.
std::vector<std::string> stamps;

void noteStamps(OvxObject *, OvxEvent *event)
{
    constexpr const char *kNames[] = {"organization", "product",      "component",
                                      "client",       "serverFormat", "productInstance"};
    std::string line;
    for (const char *name : kNames) {
        const std::string value = take(OvxGetEventProp(event, name, nullptr));
        if (value != "(none)") line += std::string(name) + "=" + value + " ";
    }
    stamps.push_back(line + take(OvxGetEventMessageId(event)));
    EXPECT_EQ(OvxGetEventPropLong(event, "processId", nullptr), getpid());
    EXPECT_EQ(OvxGetEventPropLong(event, "threadId", nullptr), gettid());
}

class ProblemLogger : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        stamps.clear();
        addHandlerClass("test_stamps", noteStamps);
        logger = get("problems", "ovx_pdlogger");
        OvxAddListener(logger, get("stamps", "test_stamps"));
    }

    OvxObject *logger = nullptr;
};

TEST_F(ProblemLogger, StampsWhatItKnows)
{
    OvxLogError(logger, nullptr, 0, 0, "OVXBC0020E text", 0);
    OvxSetObjProp(logger, "product", "shop");
    OvxSetObjProp(logger, "organization", "ACME");
    OvxSetObjProp(logger, "serverFormat", "hostname");
    std::thread([this] { OvxLogError(logger, nullptr, 0, 0, "no identifier", 0); }).join();
    OvxSetObjProp(logger, "product", nullptr);
    OvxSetObjProp(logger, "productInstance", "1");
    OvxLogError(logger, nullptr, 0, 0, "ABC123X", OVX_PROP, "client", OVX_PARM_STRING, "me", 0);
    EXPECT_EQ(stamps, (Strings{"serverFormat=IP OVXBC0020E",
                               "organization=ACME product=shop serverFormat=hostname ",
                               "organization=ACME client=me serverFormat=hostname "
                               "productInstance=1 "}));
}

TEST_F(ProblemLogger, StampsAChildWithItsOwnIds)
{
    OvxLogError(logger, nullptr, 0, 0, "OVXBC0020E text", 0);
    EXPECT_EQ(inChild([&] {
                  OvxLogError(logger, nullptr, 0, 0, "OVXBC0020E text", 0);
                  return HasFailure() || stamps.size() != 2;
              }),
              0);
}

TEST_F(ProblemLogger, KnowsTheHost)
{
    char host[256] = "";
    const bool hasName = CxSystemGetFQHostname(host, sizeof host).kind == '-';
    const MadeEvent event = eventAt(0, 6000, "ovxmsg", 20, "text", 0);
    OvxLoggerGetFLog(logger)(logger, event.get());
    EXPECT_EQ(take(OvxGetEventProp(event.get(), "server", nullptr)), hasName ? host : "(none)");
    EXPECT_EQ(reports().size(), hasName ? 0u : 1u);
}

} // namespace
