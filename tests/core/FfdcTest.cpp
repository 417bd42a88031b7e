// First failure data capture up to the action: settings, the trigger, dated directories, the quota
// and the deleting of the oldest files.
#include "Ffdc.h"

#include "handlers/capture/OvxFFDCSpace.h"
#include "handlers/capture/OvxFFDCTriggerHandler.h"

using namespace olvex::test;

namespace {

class FfdcSettings : public Ffdc {};

TEST_F(FfdcSettings, AreReadFromPropertiesAsFarAsTheyMakeSense)
{
    OvxObject *handler = get("settings", "ovx_ffdc_trigger_handler");
    EXPECT_EQ(take(OvxFFDCTriggerHandlerGetQuotaPolicy(handler)), "QUOTA_AUTODELETE");
    EXPECT_EQ(OvxFFDCTriggerHandlerGetMaxDisk(handler), 10485760);
    const std::pair<const char *, const char *> properties[] = {
        {"baseDir", "a\\b/c"},           {"maxDiskSpace", "5000000000"},   {"maxDiskSpace", "0"},
        {"triggerRepeatTime", "-1"},     {"quotaPolicy", "QUOTA_SUSPEND"}, {"warnOnDiskSpace", "1"},
        {"quotaPolicy", "quota_ignore"}, {"firstWarning", "0.5"},          {"firstWarning", "1.5"},
        {"warnOnDiskSpace", "true"}};
    for (const auto &[name, value] : properties)
        OvxSetObjProp(handler, name, value);
    EXPECT_EQ(take(OvxFFDCTriggerHandlerGetBaseDir(handler)), "a/b/c");
    EXPECT_EQ(OvxFFDCTriggerHandlerGetMaxDisk(handler), 5000000000);
    EXPECT_EQ(OvxFFDCTriggerHandlerGetInterval(handler), 0);
    EXPECT_EQ(take(OvxFFDCTriggerHandlerGetQuotaPolicy(handler)), "QUOTA_SUSPEND");
    EXPECT_EQ(OvxFFDCTriggerHandlerGetFirstWarning(handler), 0.5);
    EXPECT_TRUE(olvex::ffdcVarsOf(handler)->warnOnDiskSpace);
    OvxSetObjProp(handler, "baseDir", std::string(256, 'x').c_str());
    EXPECT_EQ(take(OvxFFDCTriggerHandlerGetBaseDir(handler)), "(none)");
    EXPECT_EQ(reports(), Strings{});
}

class FfdcTrigger : public Ffdc {
  protected:
    // Whether the copier acts on an event of that time.
    bool acts(std::int64_t time, const char *text = "OVXBC0020E text")
    {
        const MadeEvent event = eventAt(time, 6000, "ovxmsg", 999, text, 0);
        return ovxShouldFFDCActionOccur(copier, event.get());
    }
};

TEST_F(FfdcTrigger, ActsOnSelectedEventsFarEnoughApart)
{
    EXPECT_FALSE(acts(9000)); // not open yet, so without a filter
    for (OvxObject *filter : {get("other", "ovx_levelfilter"), get("trigger")})
        OvxFFDCTriggerHandlerSetFilter(copier, filter);
    OvxFFDCTriggerHandlerFOpen(copier); // keeps the filter that it has
    EXPECT_TRUE(acts(7));
    EXPECT_FALSE(acts(7)); // once in a millisecond
    EXPECT_TRUE(acts(8));
    OvxSetObjProp(copier, "triggerRepeatTime", "5000");
    EXPECT_FALSE(acts(9999, "OVXBC0020W text"));
    EXPECT_TRUE(acts(10000));
    EXPECT_FALSE(acts(12000));
    EXPECT_FALSE(acts(15000));
    EXPECT_TRUE(acts(15001));
    OvxSetObjPropLong(copier, "triggerRepeatTime", INT64_MAX);
    EXPECT_FALSE(acts(20000000));
    OvxFFDCTriggerHandlerFClose(copier);
    EXPECT_EQ(OvxFFDCTriggerHandlerGetFilter(copier), nullptr);
}

TEST_F(FfdcTrigger, DatesAreOfTheEventsLocalTime)
{
    const std::string source = folder / "a.log";
    folder.write("a.log", "text");
    OvxSetObjProp(copier, "filesToCopy", source.c_str());
    setZone("CET-1");
    log(1207090799999); // 23:59:59.999 there
    log(1207090800000);
    EXPECT_EQ(kept(), (Names{"2008.04.01/a.log", "2008.04.02/a.log"}));
    struct stat status = {};
    ASSERT_EQ(stat((base + "/2008.04.01").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0771u);
}

TEST_F(FfdcTrigger, HandlersOfOneEventShareItsDirectory)
{
    folder.write("a.log", "a");
    folder.write("b.log", "b");
    OvxSetObjProp(copier, "filesToCopy", (folder / "a.log").c_str());
    OvxObject *second = copierNamed("second");
    OvxSetObjProp(second, "filesToCopy", (folder / "b.log").c_str());
    OvxSetObjProp(second, "baseDir", (folder / "elsewhere").c_str());
    log(kNoon);
    EXPECT_EQ(kept(), (Names{"2008.04.01/a.log", "2008.04.01/b.log"}));
    EXPECT_EQ(folder.names(), (Names{"a.log", "b.log", "base", "elsewhere"}));
}

TEST_F(FfdcTrigger, NothingHappensWithoutBaseDirectoryOrFilterOrWhenDisabled)
{
    folder.write("a.log", "a");
    OvxSetObjProp(copier, "filesToCopy", (folder / "a.log").c_str());
    OvxSetObjectEnabled(copier, false);
    log(kNoon);
    OvxAddListener(copier, get("behind", "test_recorder"));
    OvxSetObjectEnabled(copier, true);
    const std::string missing = "OVXFF0012E The First Failure Data Capture base directory has not "
                                "been specified for the handler copier.";
    for (const char *nowhere : {"", "//"}) {
        records.clear();
        OvxSetObjProp(copier, "baseDir", nowhere);
        log(kNoon);
        OvxFFDCTriggerHandlerFClose(copier);
        EXPECT_EQ(recordedBy("behind").size(), 1u);
        EXPECT_EQ(reports(), Strings{missing});
    }
    OvxObject *second = get("second", "ovx_ffdc_filecopy_handler");
    OvxSetObjProp(second, "baseDir", base.c_str());
    OvxAddListener(logger, second);
    log(kNoon);
    EXPECT_EQ(reports().back(), "OVXFF0011E No triggering filter has been specified for the First "
                                "Failure Data Capture handler second.");
    EXPECT_EQ(kept(), Names{});
}

class FfdcQuota : public Ffdc {
  protected:
    void SetUp() override
    {
        Ffdc::SetUp();
        OvxSetObjProp(copier, "maxDiskSpace", "1000");
        OvxSetObjProp(copier, "warnOnDiskSpace", "1");
    }

    bool isAvailable(std::int64_t bytes) { return ovxIsFFDCSpaceAvailable(copier, bytes); }
};

TEST_F(FfdcQuota, WarnsOfTheHigherLimitReached)
{
    const std::string start =
        "OVXFF0060W The First Failure Data Capture (FFDC) disk space requested "
        "has exceeded ";
    put("2008.03.01/a", 749, 1);
    EXPECT_TRUE(isAvailable(251));
    EXPECT_EQ(reports(), Strings{});
    put("2008.03.01/b", 1, 2);
    EXPECT_TRUE(isAvailable(250));
    EXPECT_EQ(reports().back(),
              start + "75.00 percent of the maximum disk space, 1000 bytes. The current space used "
                      "is 750 bytes, and the estimated space needed to complete the FFDC action is "
                      "250 bytes for handler, copier.");
    put("2008.03.02/b", 150, 3);
    EXPECT_TRUE(isAvailable(100));
    EXPECT_EQ(reports().back().substr(0, start.size() + 5), start + "90.00");
    OvxSetObjProp(copier, "warnOnDiskSpace", "0");
    EXPECT_TRUE(isAvailable(100));
    EXPECT_EQ(reports().size(), 2u);
}

TEST_F(FfdcQuota, SuspendsOrIgnores)
{
    put("old", 900, 1);
    OvxSetObjProp(copier, "warnOnDiskSpace", "0");
    OvxSetObjProp(copier, "quotaPolicy", "QUOTA_IGNORE");
    EXPECT_TRUE(isAvailable(INT64_MAX));
    OvxSetObjProp(copier, "quotaPolicy", "QUOTA_SUSPEND");
    EXPECT_FALSE(isAvailable(101));
    EXPECT_EQ(reports(),
              Strings{"OVXFF0061E First Failure Data Capture (FFDC) actions cannot be peformed "
                      "since the maximum disk space allocated for FFDC will be exceeded and quota "
                      "policy is QUOTA_SUSPEND. The disk space used by directory, " +
                      base +
                      " is 900 bytes and the maximum disk space specified for FFDC for "
                      "handler, copier, is 1000 bytes."});
    EXPECT_EQ(kept(), Names{"old"});
}

TEST_F(FfdcQuota, DeletesTheOldestFilesFirstUntilTheLimitIsReached)
{
    put("2008.03.02/second", 100, 200);
    put("2008.03.01/deep/down/first", 100, 100);
    put("third", 700, 300);
    EXPECT_TRUE(isAvailable(200)); // 150 bytes too many
    EXPECT_EQ(kept(), Names{"third"});
    EXPECT_TRUE(std::filesystem::is_directory(base + "/2008.03.01/deep/down"));
    EXPECT_EQ(
        reports()[1],
        "OVXFF0015I Attempting to delete the oldest files in the FFDC directory, " + base +
            ", to reduce it below the first warning limit, 75.00, percent of the maximum disk "
            "space, 1000. This is approximately 150 bytes being deleted by handler, copier.");
    EXPECT_TRUE(isAvailable(5000)); // nothing to delete, and no second look at what is needed
}

TEST_F(FfdcQuota, NeverFollowsLinksAndLeavesOddNamesAlone)
{
    folder.write("outside.log", std::string(5000, 'x'));
    std::filesystem::create_directory(folder / "outside");
    folder.write("outside/file", std::string(5000, 'x'));
    std::filesystem::create_symlink(folder / "outside", base + "/directory");
    std::filesystem::create_symlink(folder / "outside.log", base + "/file");
    std::filesystem::create_symlink(base, base + "/circle");
    put("..\\outside.log", 100, 1); // a name with a backslash is a name
    EXPECT_LT(ovxCountFFDCSpaceUsed(base.c_str()), 1000);
    OvxFFDCTriggerHandlerSetMaxDisk(copier, 1);
    EXPECT_TRUE(ovxFFDCCleanup(copier));
    EXPECT_EQ(kept(), Names{});
    EXPECT_EQ(folder.read("outside.log").size(), 5000u);
    EXPECT_EQ(folder.read("outside/file").size(), 5000u);
}

TEST_F(FfdcQuota, WhatCannotBeDeletedCountsButFails)
{
    put("locked/first", 200, 1);
    put("second", 200, 2);
    put("third", 600, 3);
    chmod((base + "/locked").c_str(), 0555);
    const bool isRoot = geteuid() == 0;
    chmod((folder / "").c_str(), 0777);
    chmod(base.c_str(), 0777);
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    EXPECT_FALSE(isAvailable(500)); // 250 bytes too many: the first and the second
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
    chmod((base + "/locked").c_str(), 0755);
    EXPECT_EQ(kept(), (Names{"locked/first", "third"}));
    EXPECT_EQ(reports().back(),
              "OVXFF0014W Could not delete all the oldest files in the FFDC directory " + base +
                  " to reduce the disk space below the first warning limit, 75.00 percent of the "
                  "maxiumum disk space, 1000 bytes, for handler, copier.");
}

} // namespace
