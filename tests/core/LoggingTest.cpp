// Logging: the calls, levels, the typed parameter list, filters, and events that come back.
#include "MadeEvent.h"
#include "Toolkit.h"

#include <climits>

using namespace olvex::test;

namespace {

class Logging : public OpenToolkit {};

TEST_F(Logging, EveryCallHasItsLevelAndKind)
{
    OvxObject *logger = loggerWithRecorder("log");
    OvxSetObjProp(logger, "level", "ALL");
    OvxLogMsg(logger, "cat", 1, 2, "msg", 0);
    OvxLogInfo(logger, "cat", 1, 2, "info %1$s", OVX_PARM_STRING, "x", 0);
    OvxLogWarn(logger, "cat", 1, 2, "warn", 0);
    OvxLogError(logger, "cat", 1, 2, "error", 0);
    OvxLogFatal(logger, "cat", 1, 2, "fatal", 0);
    OvxLogDebugMin(logger, nullptr, nullptr, 0, "min", 0);
    OvxLogDebugMid(logger, nullptr, nullptr, 0, "mid", 0);
    OvxLogDebugMax(logger, nullptr, nullptr, 0, "max", 0);
    OvxLogText(logger, "text", OVX_LEVEL_WARN, 0);
    Strings seen;
    for (const Record &entry : records)
        seen.push_back(entry.text + " " + std::to_string(entry.level) +
                       (entry.isMessage ? " message" : " trace"));
    EXPECT_EQ(seen, (Strings{"msg -9999 message", "info x 4000 message", "warn 5000 message",
                             "error 6000 message", "fatal 7000 message", "min 3000 trace",
                             "mid 2000 trace", "max 1000 trace", "text 5000 trace"}));
}

TEST_F(Logging, TheThresholdDecidesByFunctionAndInlineAlike)
{
    OvxObject *logger = get("log", "ovx_basiclogger");
    const struct {
        const char *level;
        int passes;
        int fails;
    } cases[] = {{"warn", 5000, 4999}, {"", 4000, 3999},
                 {"OFF", 9999, 9998},  {"2147483647", INT32_MAX, INT32_MAX - 1},
                 {"-5", -5, -6},       {"nonsense", INT32_MIN, 0}};
    for (const auto &entry : cases) {
        OvxSetObjProp(logger, "level", entry.level);
        for (const int level : {entry.passes, static_cast<int>(OVX_LEVEL_NONE)}) {
            EXPECT_TRUE(OvxIsLoggable(logger, level)) << entry.level;
            EXPECT_TRUE(OvxWouldLog(logger, level)) << entry.level;
        }
        if (entry.level == std::string("nonsense")) continue; // no threshold: nothing fails
        EXPECT_FALSE(OvxIsLoggable(logger, entry.fails)) << entry.level;
    }
    OvxSetObjProp(get("filter", "ovx_levelfilter"), "level", "");
    const std::string start = "OVXBC04E Property 'level' will be ignored for '";
    EXPECT_EQ(reports(), (Strings{start + "log' because the value is empty or blank.",
                                  start + "filter' because the value is empty or blank."}));
    OvxSetObjectEnabled(logger, false);
    EXPECT_FALSE(OvxIsLoggable(logger, OVX_LEVEL_NONE));
    EXPECT_FALSE(OvxIsLoggable(get("filter"), OVX_LEVEL_FATAL));
    int evaluated = 0;
    OVX_IF_LOGGABLE(logger, OVX_LEVEL_FATAL)++ evaluated;
    EXPECT_EQ(evaluated, 0);
}

std::string lastProperty; // of the event that the handler below saw last

TEST_F(Logging, DebugCallsRecordWhereTheyStand)
{
    OvxObject *logger = loggerWith("props", [](OvxObject *, OvxEvent *event) {
        lastProperty.clear();
        for (const std::string name : {"srcfile", "srcline", "srcfunction"})
            lastProperty +=
                take(OvxGetEventProp(event, ("ovx_prop_" + name).c_str(), nullptr)) + " ";
        lastProperty += take(OvxGetEventProp(event, "x", nullptr));
    });
    OvxLogDebugMin(logger, "a.c", "f", 12, "text", 0);
    EXPECT_EQ(lastProperty, "a.c 12 f (none)");
    OvxLogText(logger, "text", OVX_PROP, "x", OVX_PARM_INT, 7, 0);
    EXPECT_EQ(lastProperty, "(none) (none) (none) 7");
    OvxLogText(logger, "%1$s", OVX_PROP, nullptr, OVX_PARM_INT, 7, OVX_PARM_STRING, "kept", 0);
    EXPECT_EQ(lastProperty, "(none) (none) (none) (none)");
}

TEST_F(Logging, ALoggerWithoutListenersSaysSoOnceEach)
{
    OvxObject *logger = get("lonely", "ovx_basiclogger");
    OvxLogText(logger, "one", 0);
    OvxLogText(logger, "two", 0);
    const std::string line = "OVXLG01E No listeners are registered with the logger lonely.";
    EXPECT_EQ(reports(), (Strings{line, line}));
    OvxRemListener(get("olvex.errorLogger"), get("reports"));
    OvxLogText(logger, "three", 0); // the error logger has none either: no endless report
}

TEST_F(Logging, LevelFiltersPassByThreshold)
{
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxObject *filter = get("filter", "ovx_levelfilter");
    OvxSetObjProp(logger, "level", "ALL");
    OvxAddListener(logger, filter);
    OvxAddListener(filter, get("behind", "test_recorder"));
    OvxLogDebugMax(logger, nullptr, nullptr, 0, "unset", 0);
    OvxSetObjProp(filter, "level", "WARN");
    OvxLogInfo(logger, nullptr, 0, 0, "info", 0);
    OvxLogWarn(logger, nullptr, 0, 0, "warn", 0);
    OvxLogText(logger, "none", 0);
    OvxSetObjectEnabled(filter, false);
    OvxLogFatal(logger, nullptr, 0, 0, "fatal", 0);
    EXPECT_EQ(recordedBy("behind"), (Strings{"unset", "warn", "none"}));
}

TEST_F(Logging, ListsOfUpTo62EntriesAreComplete)
{
    OvxObject *logger = loggerWithRecorder("log");
#define INTS10 INTS5 INTS5
#define INTS5 INT INT INT INT INT
#define INT OVX_PARM_INT, 7,
#define INTS60 INTS10 INTS10 INTS10 INTS10 INTS10 INTS10
    OvxLogText(logger, "%62$d", INTS60 INT INT 0);
    EXPECT_EQ(reports(), Strings{});
    OvxLogText(logger, "%1$d", INTS60 INT INT INT 0);
    OvxLogText(logger, "%1$d", INTS60 INTS10 INTS10 0);
    const std::string notEnded =
        "OVXBC0070W The logging method parameter list did not end with a NULL.";
    EXPECT_EQ(reports(), (Strings{notEnded, notEnded}));
    EXPECT_EQ(recordedBy("logRecorder"), (Strings{"7", "7", "7"}));
}

TEST_F(Logging, AnUnknownMarkerEndsTheListAndIsReported)
{
    OvxObject *logger = loggerWithRecorder("log");
    OvxLogText(logger, "%1$d %2$s", OVX_PARM_INT, 1, OVX_PARM_STRING, "two", 42, "lost", 0);
    OvxLogText(logger, "three", OVX_PROP, "lost", 42, OVX_PARM_INT, 1, 0);
    EXPECT_EQ(recordedBy("logRecorder"), (Strings{"1 two", "three"}));
    const std::string noMarkers =
        "OVXBC0071W The logging method's parameter list is missing type markers.";
    EXPECT_EQ(reports(), (Strings{noMarkers, noMarkers}));
}

TEST_F(Logging, EventsKeepWhatTheyAreGiven)
{
    const MadeEvent made = eventAt(
        0, OVX_LEVEL_WARN, "cat", 2, "text", OVX_PROP, "long", OVX_PARM_LONG, LONG_MIN, OVX_PROP,
        "float", OVX_PARM_FLOAT, 1.5, OVX_PROP, "bool", OVX_PARM_BOOL, 1, OVX_PROP, "char",
        OVX_PARM_CHAR, 'c', OVX_PROP, "none", OVX_PARM_STRING, nullptr, 0);
    OvxEvent *event = made.get();
    EXPECT_EQ(OvxGetEventPropLong(event, "long", nullptr), LONG_MIN);
    EXPECT_EQ(OvxGetEventPropFloat(event, "float", nullptr), 1.5F);
    EXPECT_TRUE(OvxGetEventPropBool(event, "bool", nullptr));
    EXPECT_EQ(take(OvxGetEventProp(event, "char", nullptr)), "c");
    bool found = false;
    EXPECT_EQ(OvxGetEventProp(event, "none", &found), nullptr);
    EXPECT_TRUE(found);
}

TEST_F(Logging, APublicCallInsideAClassFunctionIsRefusedNotStuck)
{
    OvxObject *logger = loggerWith("calls", [](OvxObject *handler, OvxEvent *event) {
        lastProperty = take(OvxGetObjectName(handler));
        record(handler, event);
    });
    OvxLogText(logger, "text", 0);
    EXPECT_EQ(lastProperty, "(none)");
    EXPECT_EQ(recordedBy("calls"), Strings{"text"});
    EXPECT_EQ(reports(), Strings{"Resource deadlock avoided"});
}

TEST_F(Logging, EventsThatComeBackEnd)
{
    OvxObject *a = get("a", "test_recorder");
    OvxObject *logger = loggerWithRecorder("log");
    OvxAddListener(get("logRecorder"), a);
    OvxAddListener(a, get("logRecorder"));
    OvxLogText(logger, "round", 0);
    EXPECT_EQ(recordedBy("a"), Strings{"round"});
    EXPECT_EQ(recordedBy("logRecorder"), Strings{"round"});
}

TEST_F(Logging, AFailingHandlerOfTheErrorLoggerDoesNotFeedItself)
{
    addHandlerClass("test_fails", [](OvxObject *handler, OvxEvent *event) {
        OvxReportPlatformErr('p', 5);
        record(handler, event);
    });
    OvxObject *errors = get("olvex.errorLogger");
    OvxAddListener(errors, get("fails", "test_fails"));
    OvxLogText(errors, "first", 0);
    EXPECT_EQ(recordedBy("fails"), Strings{"first"});
    EXPECT_EQ(reports(), (Strings{"first", "Input/output error"}));
}

TEST_F(Logging, ListenersMayChangeWhileAnEventIsPassedOn)
{
    get("late", "test_recorder");
    OvxObject *logger = loggerWith("first", [](OvxObject *handler, OvxEvent *event) {
        record(handler, event);
        OvxObject *passing = ovxIntlGetObject("log", nullptr);
        ovxIntlSetObjProp(passing, "listenerNames", "late");
        ovxIntlReleaseObject(passing);
    });
    OvxAddListener(logger, Held("second", "test_own")); // which the logger alone holds
    OvxLogText(logger, "one", 0);
    OvxLogText(logger, "two", 0);
    EXPECT_EQ(recordedBy("first"), Strings{"one"});
    EXPECT_EQ(recordedBy("late").back(), "two");
}

TEST_F(Logging, LevelsAreReadFromText)
{
    const std::pair<const char *, int> cases[] = {
        {"Warn", 5000},    {"warning", 5000},   {"war", -9999},
        {"debug", -9999},  {"min", 3000},       {"MID", 2000},
        {"maximum", 1000}, {"debug_max", 1000}, {"5000", 5000},
        {"-3", -3},        {"12abc", 12},       {"   ", 0},
        {nullptr, -9999},  {"off", 9999},       {"99999999999", INT32_MAX},
        {" all", -9999}};
    for (const auto &[text, level] : cases)
        EXPECT_EQ(OvxGetLevelFromString(text), level) << (text ? text : "");
}

} // namespace
