// What stands on the console: the basic formatter's line, timestamps in several zones, and the
// console handlers with header, trailer and long lines.
#include "LogDirectory.h"
#include "MadeEvent.h"

#include "formatters/OvxBasicFormatter.h"
#include "logging/OvxEvent.h"

#include <sys/resource.h>

using namespace olvex::test;

namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

class Format : public OpenToolkit {};

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
        {"NST3:30NDT,M3.2.0,M11.1.0", kSummer, "2008-04-01 08:35:09.042-02:30"},
        {"UTC0", kWinter - 1, "2008-01-15 11:59:59.999+00:00"},
        {"UTC0", -1, "1970-01-01 00:00:00.-001+00:00"},
    };
    OvxObject *formatter = get("olvex.defaultFormatter");
    for (const auto &entry : cases) {
        setZone(entry.zone);
        EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, entry.time)), entry.text);
    }
    // Zones that differ in their summers only, twice each within one second.
    for (int i = 0; i < 4; ++i) {
        setZone(i % 2 ? "CET-1CEST,M3.5.0,M10.5.0/3" : "CET-1CEST,M9.5.0,M10.5.0/3");
        EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, kSummer)),
                  i % 2 ? "2008-04-01 13:05:09.042+02:00" : "2008-04-01 12:05:09.042+01:00");
    }
    setZone("UTC0");
    formatter = get("own", "ovx_basicformatter");
    OvxSetObjProp(formatter, "dateTimeFormat", "");
    EXPECT_EQ(take(OvxBasicFormatterFormatDate(formatter, kWinter)), "");
}

TEST_F(Format, ALineShowsWhatTheEventCarriesInOrder)
{
    OvxObject *formatter = get("own", "ovx_basicformatter");
    OvxSetObjProp(formatter, "dateTimeFormat", "T");
    MadeEvent event = eventAt(0, 4000, nullptr, 0, "Disk %1$s", OVX_PARM_STRING, "full", 0);
    const char *kOthers[] = {"server", "client", "component", "product", "organization"};
    for (const char *name : kOthers)
        OvxSetEventProp(event.get(), name, name);
    OvxSetEventProp(event.get(), "other", "unseen");
    OvxSetEventPropInt(event.get(), "ovx_prop_srcline", 0);
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event.get())),
              "T 0 organization product component client server Disk full\n");
    OvxSetObjProp(formatter, "separator", "|");
    OvxSetEventProp(event.get(), "ovx_prop_srcfunction", "doWork");
    OvxSetEventProp(event.get(), "ovx_prop_srcfile", "main.c");
    OvxSetEventProp(event.get(), "ovx_prop_srcline", "no number");
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event.get())),
              "T|main.c|doWork|organization|product|component|client|server|Disk full\n");
    OvxSetObjProp(formatter, "separator", "");
    event = eventAt(0, 4000, nullptr, 0, nullptr, 0);
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event.get())), "T\n");
    EXPECT_EQ(OvxBasicFormatterFFormat(get("olvex.errorLogger"), event.get()), nullptr);
}

TEST_F(Format, AClassMayBindMessagesItself)
{
    OvxAddFormatterClass("test_binds", nullptr, nullptr, nullptr, OvxBasicFormatterFCfgChange,
                         OvxBasicFormatterFFormat, nullptr, nullptr,
                         [](OvxI18Msg *) { return BaxStringDup("own"); });
    OvxObject *formatter = get("own", "test_binds");
    OvxSetObjProp(formatter, "dateTimeFormat", "T");
    const MadeEvent event = eventAt(0, 4000, nullptr, 0, "text", 0);
    EXPECT_EQ(take(OvxBasicFormatterFFormat(formatter, event.get())), "T own\n");
}

TEST_F(Format, ConsoleHandlersWriteHeaderRecordsAndTrailer)
{
    addPlainFormatters();
    for (const char *className : {"ovx_consolehandler", "ovx_stderrhandler"}) {
        OvxObject *logger = get(className, "ovx_basiclogger");
        OvxObject *handler = OvxGetObject("console", className);
        OvxHandlerSetFormatter(handler, get("format", "test_framed"));
        OvxAddListener(logger, handler);
        CaptureStdout();
        CaptureStderr();
        OvxLogText(logger, "one", 0);
        OvxLogText(logger, "two", 0);
        OvxSetObjectEnabled(handler, false);
        OvxLogText(logger, "three", 0);
        OvxRemListener(logger, handler);
        OvxReleaseObject(handler); // the last one: closes it
        const std::string out = GetCapturedStdout();
        const std::string err = GetCapturedStderr();
        const bool toError = className == std::string("ovx_stderrhandler");
        EXPECT_EQ(toError ? err : out, "<\none\ntwo\n>\n");
        EXPECT_EQ(toError ? out : err, "");
    }
}

// Gives the handler another formatter, which ends the one that is at work.
char *changeFormatter(OvxObject *formatter, OvxEvent *)
{
    OvxObject *handler = ovxIntlGetObject("console", nullptr);
    ovxIntlHandlerSetFormatter(handler, nullptr);
    ovxIntlReleaseObject(handler);
    return BaxStringDup(ovxIntlGetObjectName(formatter));
}

TEST_F(Format, AFormatterLivesUntilItHasFormatted)
{
    OvxAddFormatterClass("test_changes", nullptr, nullptr, nullptr, nullptr, changeFormatter,
                         nullptr, nullptr, nullptr);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxObject *handler = get("console", "ovx_consolehandler");
    OvxAddListener(logger, handler);
    OvxHandlerSetFormatter(handler, Held("once", "test_changes"));
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
