// Finding the trace properties file, and moving a trace file that cannot be written.
#include "TraceToolkit.h"

#include "common/olvex/OlvLogConfig.h"

#include <pwd.h>

using namespace olvex::test;

namespace {

std::string homeIn(const std::string &content)
{
    const TemporaryFile file(content);
    char home[olvex::kTraceBuffer];
    olvex::readHomeDirectory(file.path(), home);
    return home;
}

std::string configDirectory()
{
    char buffer[olvex::kTraceBuffer];
    return get_config_directory_path(buffer);
}

TEST(TraceConfig, ReadsTheHomeDirectoryFromTheProductFile)
{
    EXPECT_EQ(homeIn("# c\n[zet]\nother=1\n \tZET_HomeDirectory = /opt/zet \r\n"
                     "ZET_HomeDirectory=/late\n"),
              "/opt/zet");
    EXPECT_EQ(homeIn("zet_homedirectory=/x\nZET_HomeDirectory2=/y\nZET_HomeDirectory\n"), "");
    EXPECT_EQ(homeIn("ZET_HomeDirectory=/a=b"), "/a=b");
    // A line that is too long is cut, and its rest is no line.
    EXPECT_EQ(homeIn(std::string(1023, 'x') + "ZET_HomeDirectory=/no\nZET_HomeDirectory=/yes\n"),
              "/yes");
    const std::string longHome(2000, 'h');
    EXPECT_EQ(homeIn("ZET_HomeDirectory=" + longHome), longHome.substr(0, 1023 - 18));
    char home[olvex::kTraceBuffer] = "x";
    olvex::readHomeDirectory("/nonexistent/zet.ini", home);
    EXPECT_STREQ(home, "");
}

TEST(TraceConfig, TheEnvironmentComesBeforeTheProductFile)
{
    setenv("ZET_TEST", "/opt/z", 1);
    EXPECT_EQ(configDirectory(), "/opt/z/config/");
    EXPECT_STREQ(initializeWrapper(nullptr), "/opt/z/config/ZetTrace.properties");
    setenv("ZET_TEST", "", 1);
    EXPECT_EQ(configDirectory(), "/config/");
    setenv("ZET_TEST", std::string(3000, 'z').c_str(), 1);
    EXPECT_EQ(configDirectory(), std::string(1023, 'z'));
    EXPECT_EQ(initializeWrapper(nullptr), std::string(1023, 'z'));
    unsetenv("ZET_TEST");
    char home[olvex::kTraceBuffer];
    olvex::readHomeDirectory("/etc/zet/zet.ini", home);
    EXPECT_EQ(configDirectory(), home + std::string("/config/"));
}

TEST(TraceConfig, KeepsTheNamedFileWithSlashesAndCutToFit)
{
    EXPECT_EQ(initializeWrapper("D:\\zet\\trace.properties"), g_LogPropertiesFile);
    EXPECT_STREQ(g_LogPropertiesFile, "D:/zet/trace.properties");
    EXPECT_STREQ(initializeWrapper(g_LogPropertiesFile), "D:/zet/trace.properties");
    EXPECT_EQ(initializeWrapper(std::string(5000, 'p').c_str()), std::string(1023, 'p'));
    EXPECT_STREQ(initializeWrapper(""), "");
}

class TraceFile : public TraceToolkit {
  protected:
    // The name that the trace file has, for an ordinary user, when the handle was made.
    std::string nameAfterStart(const std::string &configured, const std::string &workingDirectory)
    {
        start("handlers.traceFile.fileName = " + configured + "\n");
        chmod((directory_ / "").c_str(), 0755);
        return asOrdinaryUser([&] {
            if (chdir(workingDirectory.c_str()) != 0 || !getOlvLogHw()->initialized)
                return std::string("not started");
            OvxObjCfg *cfg = OvxLogMgrGetCfg("handlers.traceFile");
            std::string name = take(OvxGetObjCfgProp(cfg, "fileName", nullptr));
            OvxReleaseObjCfg(cfg);
            return name;
        });
    }

    static std::string home()
    {
        setenv("HOME", "/elsewhere", 1); // the user database counts
        return asOrdinaryUser([] { return std::string(getpwuid(getuid())->pw_dir); });
    }
};

TEST_F(TraceFile, MovesToTheHomeDirectoryWhenItsOwnCannotBeWritten)
{
    const std::string open = directory_ / "open", closed = directory_ / "closed";
    for (const std::string folder : {"open", "closed"})
        for (const auto &[name, mode] : {std::pair{"/open.log", 0666u}, {"/closed.log", 0444u}})
            chmod(directory_.write(folder + name, "").c_str(), mode);
    chmod(open.c_str(), 0777);
    chmod(closed.c_str(), 0555);
    chmod((directory_ / "").c_str(), 0755);
    const struct {
        std::string configured, workingDirectory, name;
    } cases[] = {{closed + "/z.log", "/", home() + "/z.log"},
                 {closed + "\\\\z.log", "/", home() + "\\z.log"},
                 {"z.log", closed, home() + "/z.log"},
                 {closed + "/open.log", "/", home() + "/open.log"},
                 {open + "/closed.log", "/", home() + "/closed.log"},
                 {open + "/open.log", "/", open + "/open.log"},
                 {open + "/z.log", "/", open + "/z.log"},
                 {"z.log", open, "z.log"},
                 {"/nonexistent/z.log", "/", "/nonexistent/z.log"},
                 {"", "/", ""}};
    for (const auto &entry : cases)
        EXPECT_EQ(nameAfterStart(entry.configured, entry.workingDirectory), entry.name)
            << entry.configured;
    EXPECT_STREQ(getHomeDir(), getpwuid(getuid())->pw_dir);
    EXPECT_EQ(isWriteBlocked((open + "/closed.log").c_str(), open.c_str()), getuid() != 0);
    EXPECT_EQ(isWriteBlocked(nullptr, "/nonexistent"), 1);
}

} // namespace
