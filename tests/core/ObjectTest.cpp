// Objects: found or made by name, counted, configured, torn down with the toolkit.
#include "Toolkit.h"

#include "toolkit/OvxObject.h"
#include "toolkit/OvxToolkit.h"

#include <malloc.h>

using namespace olvex::test;

namespace {

class Objects : public OpenToolkit {};

Strings calls; // of the functions of the class below, in order

void *makeTracedVars(void)
{
    static int number = 0;
    number = calls.empty() ? 0 : number;
    calls.push_back("make" + std::to_string(++number));
    return new int(number);
}

void freeTracedVars(void *variables)
{
    auto *number = static_cast<int *>(variables);
    calls.push_back("free" + (number ? std::to_string(*number) : ""));
    delete number;
}

void traceClose(OvxObject *object)
{
    auto *formatter = ovxIntlHandlerGetFormatter(object);
    const auto *group = ovxFetchListenerGroup(object, false);
    calls.push_back(std::string("close ") + ovxIntlGetObjectName(object) +
                    (ovxIntlGetObjectVars(object) ? " with variables" : "") +
                    (formatter ? " formatter" : "") + (group ? " listeners" : ""));
    ovxIntlReleaseObject(formatter);
    ovxIntlReleaseObject(ovxIntlAcquireObject(object)); // does not end it once more
}

void addTracedClass()
{
    calls.clear();
    OvxAddHandlerClass("test_traced", nullptr, makeTracedVars, freeTracedVars,
                       OvxBasicHandlerFCfgChange, nullptr, nullptr, traceClose);
    OvxObjCfg *cfg = OvxLogMgrGetCfg("traced");
    OvxSetObjCfgProp(cfg, "className", "test_traced");
    OvxReleaseObjCfg(cfg);
}

TEST_F(Objects, AreFoundAgainUntilTheLastReferenceGoes)
{
    addTracedClass();
    OvxObject *first = OvxGetObject("one", "test_traced");
    EXPECT_EQ(OvxGetObject("one", nullptr), first);
    EXPECT_EQ(first->references, 3u);
    OvxReleaseObject(first);
    EXPECT_EQ(calls, Strings{"make1"});
    OvxReleaseObject(first);
    EXPECT_EQ(calls, (Strings{"make1", "close one with variables formatter", "free1"}));
}

TEST_F(Objects, TellWhyTheyCannotBeHad)
{
    get("one", "ovx_consolehandler");
    EXPECT_EQ(OvxGetObject("one", "ovx_basiclogger"), nullptr);
    EXPECT_EQ(OvxGetObject("two", "no_such_class"), nullptr);
    EXPECT_EQ(OvxGetObject("three", nullptr), nullptr);
    EXPECT_TRUE(OvxLogMgrHasCfg("three"));
    EXPECT_EQ(OvxGetObject(nullptr, "ovx_basiclogger"), nullptr);
    EXPECT_EQ(reports(),
              (Strings{"OVXBC0061W Object 'one' exists but is of class 'ovx_consolehandler' "
                       "instead of 'ovx_basiclogger' .",
                       "OVXBC0062W Class 'no_such_class' must be defined before object 'two' can "
                       "be created.",
                       "OVXBC0063W A class must be specified before object 'three' can be "
                       "created."}));
}

TEST_F(Objects, ListenerNamesReplaceAllListeners)
{
    OvxObject *logger = loggerWithRecorder("log");
    get("a", "test_recorder");
    get("b", "test_recorder");
    OvxSetObjProp(logger, "listenerNames", " a \t missing  b ");
    OvxLogText(logger, "first", 0);
    OvxSetObjProp(logger, "listenerNames", "b");
    OvxLogText(logger, "second", 0);
    EXPECT_EQ(recordedBy("a"), Strings{"first"});
    EXPECT_EQ(recordedBy("b"), (Strings{"first", "second"}));
    EXPECT_EQ(recordedBy("logRecorder"), Strings{});
    EXPECT_EQ(reports().size(), 1u); // "missing" has no class
}

TEST_F(Objects, LoggingPropertyKnowsFourWordsInAnyCase)
{
    OvxObject *logger = loggerWithRecorder("log");
    const std::pair<const char *, bool> cases[] = {{"OFF", false}, {"maybe", false}, {"True", true},
                                                   {"", true},     {"false", false}, {"on", true}};
    for (const auto &[word, enabled] : cases) {
        OvxSetObjProp(logger, "logging", word);
        EXPECT_EQ(OvxIsObjectEnabled(logger), enabled) << word;
        EXPECT_EQ(OvxIsLoggable(logger, OVX_LEVEL_FATAL), enabled) << word;
    }
}

TEST_F(Objects, EndAtCloseInAnOrderThatLeavesNoPointerBehind)
{
    addTracedClass();
    OvxObject *b = get("traced.b");
    OvxObject *a = get("traced.a");
    OvxAddListener(a, b);
    OvxAddListener(b, a);
    closeToolkit();
    EXPECT_EQ(calls, (Strings{"make1", "make2", "free1", "free2", "close traced.b", "free",
                              "close traced.a", "free"}));
}

std::vector<OvxObject *> keptAtClose; // by the class below

TEST_F(Objects, MadeAtCloseWithoutEndAreLeftAsShells)
{
    // Makes another object of its class for each that goes.
    const auto freeAndMakeAnother = [](void *) {
        const std::string name = "made" + std::to_string(keptAtClose.size());
        keptAtClose.push_back(ovxIntlGetObject(name.c_str(), "test_endless"));
    };
    OvxAddLoggerClass("test_endless", nullptr, nullptr, freeAndMakeAnother, nullptr, nullptr);
    OvxReleaseObject(OvxGetObject("first", "test_endless"));
    closeToolkit();
    EXPECT_GT(keptAtClose.size(), 2u);
    for (OvxObject *object : keptAtClose) {
        EXPECT_EQ(OvxGetObjectName(object), nullptr);
        OvxReleaseObject(object);
    }
}

OvxObject *ending = nullptr; // what the class below sets a property of

// A class that sets properties of its objects to the last.
TEST_F(Objects, MaySetPropertiesWhileTheyEnd)
{
    OvxAddLoggerClass(
        "test_restless", nullptr, nullptr,
        [](void *) { ovxIntlSetObjProp(ending, "level", "ALL"); }, OvxBasicLoggerFCfgChange,
        nullptr);
    const auto before = mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i) {
        ending = OvxGetObject("restless", "test_restless");
        OvxReleaseObject(ending);
    }
    EXPECT_LT(mallinfo2().uordblks, before + 50000);
    ending = OvxGetObject("restless", "test_restless");
    closeToolkit();
    EXPECT_FALSE(OvxIsLoggable(ending, OVX_LEVEL_FATAL)); // a shell takes nothing
    OvxReleaseObject(ending);
}

TEST_F(Objects, MayLeaveTheirClassFunctionsToTheCategory)
{
    OvxAddLoggerClass("l", nullptr, nullptr, nullptr, nullptr, nullptr);
    OvxAddFilterClass(
        "low", nullptr, nullptr, nullptr, nullptr, nullptr,
        [](OvxObject *, OvxEvent *event) { return OvxGetEventLevel(event) < OVX_LEVEL_INFO; },
        nullptr);
    addHandlerClass("h", nullptr);
    OvxObject *logger = get("logger", "l");
    OvxSetObjProp(logger, "level", "FATAL"); // nobody is told
    OvxObject *handler = get("handler", "h");
    OvxAddListener(handler, get("unreached", "test_recorder")); // a handler that does nothing
    OvxAddListener(logger, get("low", "low"));
    OvxAddListener(get("low"), get("lowRecorder", "test_recorder"));
    OvxAddListener(logger, handler);
    OvxAddListener(logger, get("other", "ovx_basiclogger")); // only filters and handlers listen
    OvxLogWarn(logger, nullptr, 0, 0, "warn", 0);
    OvxLogDebugMin(logger, nullptr, nullptr, 0, "debug", 0);
    EXPECT_EQ(recordedBy("lowRecorder"), Strings{"debug"});
    EXPECT_EQ(recordedBy("unreached"), Strings{});
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(Objects, WhatTheHostHoldsAfterCloseIsAnEmptyShell)
{
    OvxObject *handler = OvxGetObject("held", "ovx_consolehandler");
    OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
    OvxAddListener(logger, handler);
    OvxObjCfg *cfg = OvxLogMgrGetCfg("held");
    closeToolkit();
    EXPECT_FALSE(OvxIsLoggable(logger, OVX_LEVEL_FATAL));
    OvxLogText(logger, "nobody hears", 0);
    OvxSetObjProp(logger, "level", "ALL");
    OvxAddListener(logger, handler);
    EXPECT_EQ(OvxGetObjectName(logger), nullptr);
    EXPECT_EQ(OvxGetListeners(logger), nullptr);
    EXPECT_FALSE(OvxIsObjectEnabled(handler));
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_NE(get("log", "ovx_basiclogger"), logger);
    OvxReleaseObject(logger);
    OvxReleaseObject(handler);
    OvxReleaseObjCfg(cfg);
}

} // namespace
