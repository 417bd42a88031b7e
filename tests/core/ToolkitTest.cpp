// Opening and closing: the error logger, properties files, the registry of classes.
#include "Toolkit.h"

#include "toolkit/OvxToolkit.h"

using namespace olvex::test;

namespace {

Strings listenersOf(const char *name)
{
    Strings result;
    const Held object(name);
    for (auto *node = OvxGetListeners(object); node; node = OvxListenerGroupIterNext(node)) {
        OvxObject *listener = OvxListenerGroupIterGet(node);
        result.push_back(take(OvxGetObjectName(listener)));
        OvxReleaseObject(listener);
    }
    return result;
}

class Toolkit : public testing::Test {
  protected:
    void TearDown() override { OvxCloseToolkit(); }
};

TEST_F(Toolkit, OpensWithItsErrorLogger)
{
    EXPECT_EQ(ovxToolkitLogger(), nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_EQ(listenersOf("olvex.errorLogger"), Strings{"olvex.stderrHandler"});
    OvxObject *formatter = OvxHandlerGetFormatter(Held("olvex.stderrHandler"));
    EXPECT_EQ(take(OvxGetObjectName(formatter)), "olvex.defaultFormatter");
    OvxReleaseObject(formatter);
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
    addHandlerClass("mine", nullptr);
    OvxObject *early = OvxGetObject("early", "mine");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(OvxOpenToolkit("/nonexistent/file"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "OVX0051E The log manager could not read the properties file /nonexistent/file.\n");
    EXPECT_FALSE(OvxIsToolkitOpen());
    EXPECT_EQ(OvxGetObjectName(early), nullptr);
    OvxReleaseObject(early);
    EXPECT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_NE(namesFrom(OvxGetHandlerClasses()).back(), "mine");
}

TEST_F(Toolkit, ListsClassesInOrderOfRegistration)
{
    addHandlerClass("mine", nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    addHandlerClass("mine", record); // once
    EXPECT_EQ(namesFrom(OvxGetHandlerClasses()),
              (Strings{"ovx_consolehandler", "ovx_stderrhandler", "ovx_filehandler",
                       "ovx_multiproc_filehandler", "ovx_ffdc_trigger_handler",
                       "ovx_ffdc_filecopy_handler", "mine"}));
    EXPECT_EQ(namesFrom(OvxGetLoggerClasses()), (Strings{"ovx_basiclogger", "ovx_pdlogger"}));
    EXPECT_EQ(namesFrom(OvxGetFilterClasses()), (Strings{"ovx_levelfilter", "ovx_msgidfilter"}));
    EXPECT_EQ(namesFrom(OvxGetFormatterClasses()),
              (Strings{"ovx_basicformatter", "ovx_xmlformatter", "ovx_mavtraceformatter"}));
}

} // namespace
