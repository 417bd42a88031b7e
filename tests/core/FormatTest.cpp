// What stands on the console: the basic formatter's line, timestamps in several zones, and the
// console handlers with header, trailer and long lines.
#include "Toolkit.h"

#include "OvxBasicFormatter.h"
#include "OvxEvent.h"

#include <cstdlib>
#include <ctime>
#include <sys/resource.h>

using namespace olvex::test;

namespace {

using Strings = std::vector<std::string>;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

class Format : public OpenToolkit {
  protected:
    void TearDown() override
    {
        setZone("UTC0");
        OpenToolkit::TearDown();
    }

    static void setZone(const char *zone)
    {
        setenv("TZ", zone, 1);
        tzset();
    }
};

OvxEvent *makeEvent(int level, const char *text, ...)
{
    va_list list;
    va_start(list, text);
    OvxEvent *event = OvxVaAllocEvent(level, nullptr, 0, 0, text, list);
    va_end(list);
    return event;
}

TEST_F(Format, TimestampsCarryTheZone)
{
    constexpr std::int64_t kWinter = 1200398400000; // 2008-01-15 12:00:00 UTC
    constexpr std::int64_t kSummer = 1207047909042; // 2008-04-01 11:05:09.042 UTC
    const struct {
        const char *zone;
        std::int64_t time;
        const char *text;
    } cases[] = {
        {"UTC0", kWinter, "2008-01-15 12:00:00.000+00:00"},
        {"IST-5:30", kWinter, "2008-01-15 17:30:00.000+05:30"},
        {"NST3:30", kWinter, "2008-01-15 08:30:00.000-03:30"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", kSummer, "2008-04-01 13:05:09.042+02:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", kWinter, "2008-01-15 13:00:00.000+01:00"},
        {"NST3:30NDT,M3.2.0,M11.1.0", kSummer, "2008-04-01 08:35:09.042-02:30"},
        {"UTC0", kWinter - 1, "2008-01-15 11:59:59.999+00:00"},
        {"UTC0", -1, "1970-01-01 00:00:00.-001+00:00"},
    };
    OvxObject *formatter = get("olvex.defaultFormatter");
    for (const auto &entry : cases) {
        setZone(entry.zone);
        EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, entry.time)), entry.text);
    }
}

TEST_F(Format, ADateFormatOfOnesOwnStandsAlone)
{
    setZone("UTC0");
    OvxObject *formatter = get("own", "ovx_basicformatter");
    OvxSetObjProp(formatter, "dateTimeFormat", "%H:%M");
    EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, 1200398400000)), "12:00");
    OvxSetObjProp(formatter, "dateTimeFormat", "");
    EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, 1200398400000)), "");
}

TEST_F(Format, ALineShowsWhatTheEventCarriesInOrder)
{
    OvxObject *formatter = get("own", "ovx_basicformatter");
    OvxSetObjProp(formatter, "dateTimeFormat", "T");
    OvxEvent *event = makeEvent(4000, "Disk %1$s", OVX_PARM_STRING, "full", 0);
    const char *kOthers[] = {"server", "client", "component", "product", "organization"};
    for (const char *name : kOthers)
        OvxSetEventProp(event, name, name);
    OvxSetEventProp(event, "other", "unseen");
    OvxSetEventPropInt(event, "ovx_prop_srcline", 0);
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event)),
              "T 0 organization product component client server Disk full\n");
    OvxSetObjProp(formatter, "separator", "|");
    OvxSetEventProp(event, "ovx_prop_srcfunction", "doWork");
    OvxSetEventProp(event, "ovx_prop_srcfile", "main.c");
    OvxSetEventProp(event, "ovx_prop_srcline", "no number");
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event)),
              "T|main.c|doWork|organization|product|component|client|server|Disk full\n");
    OvxSetObjProp(formatter, "separator", "");
    OvxFreeEvent(event);
    event = makeEvent(4000, nullptr, 0);
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event)), "T\n");
    EXPECT_EQ(OvxBasicFormatterFFormat(get("olvex.errorLogger"), event), nullptr);
    OvxFreeEvent(event);
}

TEST_F(Format, TheFormattersLocaleStaysOnTheEvent)
{
    OvxObject *formatter = get("own", "ovx_basicformatter");
    OvxSetObjProp(formatter, "locale", "de-de");
    OvxEvent *event = makeEvent(4000, "text", 0);
    BaxMemoryFree(OvxBasicFormatterFFormat(formatter, event));
    const char *borrowed = ovxGetEventLocale(event);
    EXPECT_STREQ(borrowed, "de_DE");
    OvxSetObjProp(formatter, "locale", "fr");
    EXPECT_STREQ(borrowed, "de_DE"); // names that events borrow never go away
    OvxFreeEvent(event);
}

char *header(OvxObject *)
{
    return BaxStringDup("<head>\n");
}
char *trailer(OvxObject *)
{
    return BaxStringDup("<tail>\n");
}
char *body(OvxObject *, OvxEvent *event)
{
    return OvxBindEventMsg(event, ovxIntlBindI18Msg);
}

TEST_F(Format, ConsoleHandlersWriteHeaderRecordsAndTrailer)
{
    OvxAddFormatterClass("test_format", nullptr, nullptr, nullptr, nullptr, body, header, trailer,
                         nullptr);
    for (const char *className : {"ovx_consolehandler", "ovx_stderrhandler"}) {
        OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
        OvxObject *handler = OvxGetObject("console", className);
        OvxObject *formatter = OvxGetObject("format", "test_format");
        OvxHandlerSetFormatter(handler, formatter);
        OvxReleaseObject(formatter);
        OvxAddListener(logger, handler);
        CaptureStdout();
        CaptureStderr();
        OvxLogText(logger, "one\n", 0);
        OvxLogText(logger, "two\n", 0);
        OvxSetObjectEnabled(handler, false);
        OvxLogText(logger, "three\n", 0);
        OvxReleaseObject(logger);
        OvxReleaseObject(handler); // the last one: closes it
        const std::string out = GetCapturedStdout();
        const std::string err = GetCapturedStderr();
        const bool toError = className == std::string("ovx_stderrhandler");
        EXPECT_EQ(toError ? err : out, "<head>\none\ntwo\n<tail>\n");
        EXPECT_EQ(toError ? out : err, "");
    }
}

// Gives the handler another formatter, which ends the one that is at work.
char *changeFormatter(OvxObject *formatter, OvxEvent *event)
{
    OvxObject *handler = ovxIntlGetObject("console", nullptr);
    ovxIntlHandlerSetFormatter(handler, nullptr);
    ovxIntlReleaseObject(handler);
    OvxSetEventProp(event, "formatter", ovxIntlGetObjectName(formatter));
    return OvxGetEventProp(event, "formatter", nullptr);
}

TEST_F(Format, AFormatterLivesUntilItHasFormatted)
{
    OvxAddFormatterClass("test_changes", nullptr, nullptr, nullptr, nullptr, changeFormatter,
                         nullptr, nullptr, nullptr);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxObject *handler = get("console", "ovx_consolehandler");
    OvxAddListener(logger, handler);
    OvxObject *formatter = OvxGetObject("once", "test_changes");
    OvxHandlerSetFormatter(handler, formatter);
    OvxReleaseObject(formatter);
    CaptureStdout();
    OvxLogText(logger, "text", 0);
    EXPECT_EQ(GetCapturedStdout(), "once");
}

TEST_F(Format, AHandlerWithoutFormatterIsSilentButPassesOn)
{
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxObject *handler = get("console", "ovx_consolehandler");
    OvxAddListener(logger, handler);
    OvxAddListener(handler, get("behind", "test_recorder"));
    OvxHandlerSetFormatter(handler, nullptr);
    CaptureStdout();
    OvxLogText(logger, "text", 0);
    EXPECT_EQ(GetCapturedStdout(), "");
    EXPECT_EQ(recordedBy("behind"), Strings{"text"});
    OvxSetObjProp(handler, "formatterName", "nowhere");
    EXPECT_EQ(OvxHandlerGetFormatter(handler), nullptr);
    EXPECT_EQ(reports().size(), 1u);
    OvxSetObjProp(handler, "formatterName", "olvex.defaultFormatter");
    CaptureStdout();
    OvxLogText(logger, "text", 0);
    EXPECT_EQ(GetCapturedStdout().substr(29), " text\n");
}

TEST_F(Format, LongLinesAreCutAtACharacter)
{
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("console", "ovx_consolehandler"));
    std::string text;
    while (text.size() < 5000)
        text += "\xe2\x82\xac";
    CaptureStdout();
    OvxLogText(logger, "%1$s", OVX_PARM_STRING, text.c_str(), 0);
    const std::string out = GetCapturedStdout();
    EXPECT_LE(out.size(), 4095u);
    EXPECT_GE(out.size(), 4092u);
}

} // namespace
