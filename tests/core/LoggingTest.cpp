// Logging: the calls, levels, the typed parameter list, filters, and events that come back.
#include "Toolkit.h"

#include <climits>

using namespace olvex::test;

namespace {

class Logging : public OpenToolkit {};

std::string lastProperty; // of the event that the handler below saw last

void keepProperties(OvxObject *, OvxEvent *event)
{
    lastProperty.clear();
    for (const char *name : {"ovx_prop_srcfile", "ovx_prop_srcline", "ovx_prop_srcfunction", "x"}) {
        char *value = OvxGetEventProp(event, name, nullptr);
        if (value) lastProperty += std::string(name) + "=" + value + ";";
        BaxMemoryFree(value);
    }
}

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
    const struct {
        const char *text;
        int level;
        bool isMessage;
    } expected[] = {{"msg", -9999, true},  {"info x", 4000, true}, {"warn", 5000, true},
                    {"error", 6000, true}, {"fatal", 7000, true},  {"min", 3000, false},
                    {"mid", 2000, false},  {"max", 1000, false},   {"text", 5000, false}};
    ASSERT_EQ(records.size(), std::size(expected));
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].text, expected[i].text);
        EXPECT_EQ(records[i].level, expected[i].level) << expected[i].text;
        EXPECT_EQ(records[i].isMessage, expected[i].isMessage) << expected[i].text;
    }
}

TEST_F(Logging, TheThresholdDecidesByFunctionAndInlineAlike)
{
    OvxObject *logger = get("log", "ovx_basiclogger");
    const struct {
        const char *level;
        int passes;
        int fails;
    } cases[] = {{"warn", 5000, 4999},
                 {"ALL", 0, -1},
                 {"nonsense", INT32_MIN, 0},
                 {"OFF", 9999, 9998},
                 {"2147483647", INT32_MAX, INT32_MAX - 1},
                 {"-5", -5, -6}};
    for (const auto &entry : cases) {
        OvxSetObjProp(logger, "level", entry.level);
        for (const int level : {entry.passes, static_cast<int>(OVX_LEVEL_NONE)}) {
            EXPECT_TRUE(OvxIsLoggable(logger, level)) << entry.level;
            EXPECT_TRUE(OvxWouldLog(logger, level)) << entry.level;
        }
        if (entry.level == std::string("nonsense")) continue; // no threshold: nothing fails
        EXPECT_FALSE(OvxIsLoggable(logger, entry.fails)) << entry.level;
    }
    OvxSetObjectEnabled(logger, false);
    EXPECT_FALSE(OvxIsLoggable(logger, OVX_LEVEL_NONE));
    EXPECT_FALSE(OvxIsLoggable(get("f", "ovx_levelfilter"), OVX_LEVEL_FATAL));
    int evaluated = 0;
    OVX_IF_LOGGABLE(logger, OVX_LEVEL_FATAL)++ evaluated;
    EXPECT_EQ(evaluated, 0);
}

TEST_F(Logging, AnEmptyLevelIsReportedAndBecomesInfo)
{
    for (const char *className : {"ovx_basiclogger", "ovx_levelfilter"}) {
        records.clear();
        OvxSetObjProp(get(className, className), "level", "");
        EXPECT_EQ(reports(),
                  Strings{std::string("OVXBC04E Property 'level' will be ignored for '") +
                          className + "' because the value is empty or blank."});
    }
    EXPECT_TRUE(OvxIsLoggable(get("ovx_basiclogger"), 4000));
    EXPECT_FALSE(OvxIsLoggable(get("ovx_basiclogger"), 3999));
}

TEST_F(Logging, DebugCallsRecordWhereTheyStand)
{
    addHandlerClass("test_props", keepProperties);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("props", "test_props"));
    OvxLogDebugMin(logger, "a.c", "f", 12, "text", 0);
    EXPECT_EQ(lastProperty, "ovx_prop_srcfile=a.c;ovx_prop_srcline=12;ovx_prop_srcfunction=f;");
    OvxLogDebugMin(logger, nullptr, "f", 12, "text", 0);
    EXPECT_EQ(lastProperty, "ovx_prop_srcfunction=f;");
    OvxLogText(logger, "text", OVX_PROP, "x", OVX_PARM_INT, 7, 0);
    EXPECT_EQ(lastProperty, "x=7;");
    OvxLogText(logger, "%1$s", OVX_PROP, nullptr, OVX_PARM_INT, 7, OVX_PARM_STRING, "kept", 0);
    EXPECT_EQ(lastProperty, "");
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

// A list of `count` int parameters, closed or not.
std::string logInts(OvxObject *logger, int count)
{
    records.clear();
    std::vector<int> list;
    switch (count) {
#define INT OVX_PARM_INT, 7,
#define INTS10 INT INT INT INT INT INT INT INT INT INT
#define INTS60 INTS10 INTS10 INTS10 INTS10 INTS10 INTS10
    case 62: OvxLogText(logger, "%62$d", INTS60 INT INT 0); break;
    case 63: OvxLogText(logger, "%1$d", INTS60 INT INT INT 0); break;
    default: OvxLogText(logger, "%1$d", INTS60 INTS10 INTS10 0); break;
    }
    const auto texts = recordedBy("logRecorder");
    return texts.empty() ? "" : texts[0];
}

TEST_F(Logging, ListsOfUpTo62EntriesAreComplete)
{
    OvxObject *logger = loggerWithRecorder("log");
    EXPECT_EQ(logInts(logger, 62), "7");
    EXPECT_EQ(reports(), Strings{});
    const Strings notEnded{"OVXBC0070W The logging method parameter list did not end with a NULL."};
    EXPECT_EQ(logInts(logger, 63), "7");
    EXPECT_EQ(reports(), notEnded);
    EXPECT_EQ(logInts(logger, 80), "7");
    EXPECT_EQ(reports(), notEnded);
}

TEST_F(Logging, AnUnknownMarkerEndsTheListAndIsReported)
{
    OvxObject *logger = loggerWithRecorder("log");
    OvxLogText(logger, "%1$d %2$s", OVX_PARM_INT, 1, OVX_PARM_STRING, "two", 42, "lost", 0);
    EXPECT_EQ(recordedBy("logRecorder"), Strings{"1 two"});
    EXPECT_EQ(reports(),
              Strings{"OVXBC0071W The logging method's parameter list is missing type markers."});
}

OvxEvent *makeEvent(const char *catalog, ...)
{
    va_list list;
    va_start(list, catalog);
    OvxEvent *event = OvxVaAllocEvent(OVX_LEVEL_WARN, catalog, 1, 2, "text", list);
    va_end(list);
    return event;
}

TEST_F(Logging, EventsKeepWhatTheyAreGiven)
{
    OvxEvent *event =
        makeEvent("cat", OVX_PROP, "long", OVX_PARM_LONG, LONG_MIN, OVX_PROP, "float",
                  OVX_PARM_FLOAT, 1.5, OVX_PROP, "bool", OVX_PARM_BOOL, 1, OVX_PROP, "char",
                  OVX_PARM_CHAR, 'c', OVX_PROP, "none", OVX_PARM_STRING, nullptr, 0);
    EXPECT_TRUE(OvxGetEventIsMessage(event)); // it has a catalog
    EXPECT_EQ(OvxGetEventLevel(event), OVX_LEVEL_WARN);
    EXPECT_EQ(OvxGetEventPropLong(event, "long", nullptr), LONG_MIN);
    EXPECT_EQ(OvxGetEventPropFloat(event, "float", nullptr), 1.5F);
    EXPECT_TRUE(OvxGetEventPropBool(event, "bool", nullptr));
    EXPECT_EQ(take(OvxGetEventProp(event, "char", nullptr)), "c");
    bool found = false;
    EXPECT_EQ(OvxGetEventProp(event, "none", &found), nullptr);
    EXPECT_TRUE(found);
    EXPECT_EQ(OvxGetEventMessageId(event), nullptr);
    OvxSetEventMessageId(event, "ID1");
    EXPECT_EQ(take(OvxGetEventMessageId(event)), "ID1");
    OvxSetEventMessageId(event, nullptr);
    EXPECT_EQ(OvxGetEventMessageId(event), nullptr);
    OvxFreeEvent(event);
    event = makeEvent(nullptr, OVX_PROP, "lost", 42, OVX_PARM_INT, 1, 0);
    EXPECT_FALSE(OvxGetEventIsMessage(event));
    EXPECT_EQ(reports(),
              Strings{"OVXBC0071W The logging method's parameter list is missing type markers."});
    OvxFreeEvent(event);
}

TEST_F(Logging, ParametersOfEveryTypeArePrinted)
{
    OvxObject *logger = loggerWithRecorder("log");
    OvxLogText(logger, "%1$c %2$d %3$ld %4$.2f %5$.3f %6$c %7$s", OVX_PARM_BOOL, true + '@' - 1,
               OVX_PARM_INT, -5, OVX_PARM_LONG, LONG_MAX, OVX_PARM_FLOAT, 1.5, OVX_PARM_DOUBLE,
               2.125, OVX_PARM_CHAR, 'z', OVX_PARM_STRING, "text", OVX_LEVEL_WARN, OVX_PROP, "p", 0,
               0);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "\1 -5 " + std::to_string(LONG_MAX) + " 1.50 2.125 z text");
    EXPECT_EQ(records[0].level, 0); // 0 behind a property's name is a level
}

void callPublic(OvxObject *handler, OvxEvent *event)
{
    lastProperty = take(OvxGetObjectName(handler));
    record(handler, event);
}

TEST_F(Logging, APublicCallInsideAClassFunctionIsRefusedNotStuck)
{
    addHandlerClass("test_calls", callPublic);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("calls", "test_calls"));
    OvxLogText(logger, "text", 0);
    EXPECT_EQ(lastProperty, "(none)");
    EXPECT_EQ(recordedBy("calls"), Strings{"text"});
    EXPECT_EQ(reports(), Strings{"Resource deadlock avoided"});
}

void failAndReport(OvxObject *handler, OvxEvent *event)
{
    OvxReportPlatformErr('p', 5);
    record(handler, event);
}

TEST_F(Logging, EventsThatComeBackEnd)
{
    OvxObject *a = get("a", "test_recorder");
    OvxObject *b = get("b", "test_recorder");
    OvxAddListener(a, b);
    OvxAddListener(b, a);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, a);
    OvxLogText(logger, "round", 0);
    EXPECT_EQ(recordedBy("a"), Strings{"round"});
    EXPECT_EQ(recordedBy("b"), Strings{"round"});
}

TEST_F(Logging, AFailingHandlerOfTheErrorLoggerDoesNotFeedItself)
{
    addHandlerClass("test_fails", failAndReport);
    OvxObject *errors = get("olvex.errorLogger");
    OvxAddListener(errors, get("fails", "test_fails"));
    OvxLogText(errors, "first", 0);
    EXPECT_EQ(recordedBy("fails"), Strings{"first"});
    EXPECT_EQ(reports(), (Strings{"first", "Input/output error"}));
}

void changeListeners(OvxObject *handler, OvxEvent *event)
{
    record(handler, event);
    OvxObject *logger = ovxIntlGetObject("log", nullptr);
    ovxIntlSetObjProp(logger, "listenerNames", "late");
    ovxIntlReleaseObject(logger);
}

TEST_F(Logging, ListenersMayChangeWhileAnEventIsPassedOn)
{
    addHandlerClass("test_changes", changeListeners);
    OvxObject *logger = get("log", "ovx_basiclogger");
    get("late", "test_recorder");
    for (const char *name : {"c1", "c2"}) { // held by the logger alone
        OvxObject *handler = OvxGetObject(name, "test_changes");
        OvxAddListener(logger, handler);
        OvxReleaseObject(handler);
    }
    OvxLogText(logger, "one", 0);
    OvxLogText(logger, "two", 0);
    EXPECT_EQ(recordedBy("c1"), Strings{"one"});
    EXPECT_EQ(recordedBy("late").back(), "two");
}

TEST_F(Logging, LevelsAreReadFromText)
{
    const struct {
        const char *text;
        int level;
    } cases[] = {{"Warn", 5000},    {"warning", 5000},   {"war", -9999},
                 {"debug", -9999},  {"min", 3000},       {"MID", 2000},
                 {"maximum", 1000}, {"debug_max", 1000}, {"5000", 5000},
                 {"-3", -3},        {"12abc", 12},       {"   ", 0},
                 {nullptr, -9999},  {"off", 9999},       {"99999999999", INT32_MAX},
                 {" all", -9999}};
    for (const auto &entry : cases)
        EXPECT_EQ(OvxGetLevelFromString(entry.text), entry.level) << (entry.text ? entry.text : "");
}

TEST_F(Logging, JoiningSkipsWhatIsMissing)
{
    const char *strings[] = {"a", nullptr, "b"};
    EXPECT_EQ(take(OvxStrACat(3, strings, "/")), "a/b");
    EXPECT_EQ(take(OvxStrACat(3, strings, nullptr)), "ab");
    EXPECT_EQ(take(OvxStrACat(-1, strings, "/")), "");
}

} // namespace
