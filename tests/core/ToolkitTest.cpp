// Opening and closing: the error logger, properties files, the registry of classes.
#include "Toolkit.h"

#include "OvxToolkit.h"

#include <sys/wait.h>

using namespace olvex::test;

namespace {

using Strings = std::vector<std::string>;

Strings names(StringGroupNode *node)
{
    Strings result;
    for (; OvxStringGroupIterHasNext(node); node = OvxStringGroupIterNext(node))
        result.push_back(take(OvxStringGroupIterGet(node)));
    return result;
}

Strings listenersOf(const char *name)
{
    Strings result;
    OvxObject *object = OvxGetObject(name, nullptr);
    for (auto *node = OvxGetListeners(object); node; node = OvxListenerGroupIterNext(node)) {
        OvxObject *listener = OvxListenerGroupIterGet(node);
        result.push_back(take(OvxGetObjectName(listener)));
        OvxReleaseObject(listener);
    }
    OvxReleaseObject(object);
    return result;
}

class Toolkit : public testing::Test {
  protected:
    void TearDown() override { OvxCloseToolkit(); }
};

TEST_F(Toolkit, OpensWithItsErrorLogger)
{
    EXPECT_FALSE(OvxIsToolkitOpen());
    EXPECT_EQ(ovxToolkitLogger(), nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_TRUE(OvxIsToolkitOpen());
    EXPECT_EQ(listenersOf("olvex.errorLogger"), Strings{"olvex.stderrHandler"});
    OvxObject *handler = OvxGetObject("olvex.stderrHandler", "ovx_stderrhandler");
    OvxObject *formatter = OvxHandlerGetFormatter(handler);
    EXPECT_EQ(take(OvxGetObjectName(formatter)), "olvex.defaultFormatter");
    OvxReleaseObject(formatter);
    OvxReleaseObject(handler);
    OvxCloseToolkit();
    EXPECT_FALSE(OvxIsToolkitOpen());
    EXPECT_EQ(ovxToolkitLogger(), nullptr);
}

TEST_F(Toolkit, TakesListenersOfTheErrorLoggerFromTheFile)
{
    const TemporaryFile file("olvex.errorLogger.listenerNames = mine\n"
                             "mine.className = ovx_consolehandler\n");
    ASSERT_TRUE(OvxOpenToolkit(file.path()));
    EXPECT_EQ(listenersOf("olvex.errorLogger"), (Strings{"mine", "olvex.stderrHandler"}));
}

TEST_F(Toolkit, ReadsAFileOnceAndFurtherOnesOnDemand)
{
    const TemporaryFile first("a.x = 1\n");
    const TemporaryFile second("a.x = 2\n");
    const TemporaryFile broken("a.y = 3\nno separator\n");
    ASSERT_TRUE(OvxLoadAdditionalProperties(first.path()));
    ASSERT_TRUE(OvxOpenToolkit(second.path()));
    OvxObjCfg *cfg = OvxLogMgrGetCfg("a");
    EXPECT_EQ(OvxGetObjCfgPropInt(cfg, "x", nullptr), 1);
    ASSERT_TRUE(OvxLoadAdditionalProperties(second.path()));
    EXPECT_EQ(OvxGetObjCfgPropInt(cfg, "x", nullptr), 2);
    EXPECT_FALSE(OvxLoadAdditionalProperties(broken.path()));
    EXPECT_TRUE(OvxIsToolkitOpen());
    EXPECT_EQ(OvxGetObjCfgPropInt(cfg, "y", nullptr), 3);
    OvxReleaseObjCfg(cfg);
}

TEST_F(Toolkit, AnUnreadableFileLeavesItClosed)
{
    OvxAddHandlerClass("mine", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    OvxObject *early = OvxGetObject("early", "mine");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(OvxOpenToolkit("/nonexistent/file"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "OVX0051E The log manager could not read the properties file /nonexistent/file.\n");
    EXPECT_FALSE(OvxIsToolkitOpen());
    EXPECT_EQ(OvxGetObjectName(early), nullptr);
    OvxReleaseObject(early);
    EXPECT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_NE(names(OvxGetHandlerClasses()).back(), "mine");
}

// Until there is an error logger, only what stands in the way of opening is said.
TEST_F(Toolkit, SaysLittleWhileItOpens)
{
    const TemporaryFile strange("olvex.errorLogger.listenerNames = missing\n"
                                "olvex.stderrHandler.formatterName = missing\n");
    const TemporaryFile broken("a.b = c\\d\n");
    testing::internal::CaptureStderr();
    EXPECT_TRUE(OvxOpenToolkit(strange.path()));
    OvxCloseToolkit();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(OvxOpenToolkit(broken.path()));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.find("OVX0052E The value of property 'a.b' "), 0u);
    EXPECT_NE(said.find(std::string("\nOVX0051E The log manager could not read the properties "
                                    "file ") +
                        broken.path() + ".\n"),
              std::string::npos);
}

TEST_F(Toolkit, ListsClassesInOrderOfRegistration)
{
    OvxAddHandlerClass("mine", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    const Strings handlers = names(OvxGetHandlerClasses());
    EXPECT_EQ(handlers, (Strings{"ovx_consolehandler", "ovx_stderrhandler", "ovx_filehandler",
                                 "ovx_multiproc_filehandler", "ovx_ffdc_trigger_handler",
                                 "ovx_ffdc_filecopy_handler", "mine"}));
    EXPECT_EQ(names(OvxGetLoggerClasses()), (Strings{"ovx_basiclogger", "ovx_pdlogger"}));
    EXPECT_EQ(names(OvxGetFilterClasses()), (Strings{"ovx_levelfilter", "ovx_msgidfilter"}));
    EXPECT_EQ(names(OvxGetFormatterClasses()),
              (Strings{"ovx_basicformatter", "ovx_xmlformatter", "ovx_mavtraceformatter"}));
    const std::size_t count = handlers.size();
    OvxAddHandlerClass("mine", nullptr, nullptr, nullptr, nullptr, record, nullptr, nullptr);
    EXPECT_EQ(names(OvxGetHandlerClasses()).size(), count);
}

TEST_F(Toolkit, OpensAndClosesManyTimes)
{
    const TemporaryFile file("log.className = ovx_basiclogger\nlog.level = WARN\n");
    for (int round = 0; round < 50; ++round) {
        ASSERT_TRUE(OvxOpenToolkit(file.path()));
        OvxObject *logger = OvxGetObject("log", nullptr);
        EXPECT_FALSE(OvxIsLoggable(logger, OVX_LEVEL_INFO));
        OvxReleaseObject(logger);
        OvxCloseToolkit();
        OvxCloseToolkit();
    }
}

TEST_F(Toolkit, AChildProcessMayLog)
{
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *handler = OvxGetObject("out", "ovx_consolehandler");
    OvxAddListener(logger, handler);
    const pid_t child = fork();
    if (child == 0) {
        if (!freopen("/dev/null", "w", stdout)) _exit(2);
        OvxLogText(logger, "from the child", 0);
        OvxCloseToolkit();
        _exit(OvxIsToolkitOpen() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    OvxReleaseObject(handler);
    OvxReleaseObject(logger);
}

} // namespace
