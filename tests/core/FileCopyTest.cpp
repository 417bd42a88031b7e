// The file copy handler: copying one by one and into zip archives, with everything that stands in
// its way.
#include "Ffdc.h"

#include "handlers/capture/OvxFFDCSpace.h"
#include "handlers/capture/OvxFileCopy.h"

#include <chrono>
#include <csignal>
#include <functional>

using namespace olvex::test;

namespace {

class FileCopy : public Ffdc {
  protected:
    void copy(const std::string &files)
    {
        OvxSetObjProp(copier, "filesToCopy", files.c_str());
        log(time++);
    }

    std::string copied(const std::string &name) const
    {
        return folder.read("base/2008.04.01/" + name);
    }

    static std::string missing(const std::string &file)
    {
        return "OVXFF0062W Could not find the file " + file +
               " to be copied by the file copying handler copier.";
    }
    static std::string notCopied(const std::string &file)
    {
        return "OVXFF0063W The file copying handler copier could not copy the file " + file + ".";
    }

    // An executable script, by its path.
    std::string script(const std::string &name, const std::string &lines)
    {
        folder.write(name, "#!/bin/sh\n" + lines);
        chmod((folder / name).c_str(), 0755);
        return folder / name;
    }

    void useZip(const std::string &command)
    {
        OvxSetObjProp(copier, "zipFileName", "dump");
        OvxSetObjProp(copier, "zipCmdPath", command.c_str());
    }

    std::int64_t time = kNoon;
};

TEST_F(FileCopy, TakesPathsApartAtBlanksAndKeepsQuotedOnes)
{
    folder.write("a.log", "first");
    folder.write("my file.txt", std::string(20000, 'y'));
    folder.write("empty", "");
    copy("  " + (folder / "a.log") + " \"" + (folder / "my file.txt") + "\"  " +
         (folder / "empty"));
    EXPECT_EQ(kept(), (Names{"2008.04.01/a.log", "2008.04.01/my file.txt", "2008.04.01/empty"}));
    EXPECT_EQ(copied("a.log"), "first");
    EXPECT_EQ(copied("my file.txt"), std::string(20000, 'y'));
    struct stat status = {};
    stat((base + "/2008.04.01/a.log").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777u, 0600u);
    folder.write("a.log", "FIR");
    copy((folder / "gone") + " /nowhere/ " + (folder / "a.log"));
    const std::string gone = missing(folder / "gone"), nowhere = missing("/nowhere/");
    EXPECT_EQ(reports(), (Strings{gone, nowhere, gone, nowhere})); // when counting, when copying
    EXPECT_EQ(copied("a.log"), "FIRst");                           // written over, not cut
}

TEST_F(FileCopy, CopiesRegularFilesOnlyAndNeverWaits)
{
    folder.write("a.log", "text");
    mkfifo((folder / "pipe").c_str(), 0600);
    std::filesystem::create_symlink(folder / "a.log", folder / "link");
    const std::string odd = (folder / "pipe") + " /dev/zero " + (folder / "link") + " ";
    copy(odd + base + " " + base + "/ " + (folder / "a.log"));
    const Strings notOnes = {notCopied(folder / "pipe"), notCopied("/dev/zero"),
                             notCopied(folder / "link")};
    Strings expected = notOnes;
    expected.insert(expected.end(), {missing(base), missing(base + "/")});
    EXPECT_EQ(reports(), expected);
    EXPECT_EQ(kept(), Names{"2008.04.01/a.log"});
    records.clear();
    useZip(script("zip", "shift 3; echo \"$@\" >" + (folder / "seen") + "; touch " + base +
                             "/2008.04.01/dump.zip\n"));
    copy(odd + (folder / "a.log"));
    EXPECT_EQ(folder.read("seen"), (folder / "a.log") + "\n");
    EXPECT_EQ(reports(), notOnes);
}

// The files below /proc say that they are empty.
TEST_F(FileCopy, CopiesFilesOfUnknownSizeToTheirEndWithinTheQuota)
{
    constexpr std::size_t kQuota = 3u << 20, kFirst = 2u << 20;
    put("2008.03.01/old", 1000, 1);
    OvxSetObjProp(copier, "maxDiskSpace", std::to_string(kQuota).c_str());
    folder.write("a.log", std::string(kFirst, 'x'));
    copy("/proc/self/status " + (folder / "a.log") + " /proc/self/pagemap"); // one without an end
    EXPECT_NE(copied("status").find("VmSize"), std::string::npos);
    EXPECT_EQ(reports(), Strings{notCopied(base + "/2008.04.01//pagemap")});
    EXPECT_EQ(static_cast<std::size_t>(ovxCountFFDCSpaceUsed(base.c_str())), kQuota);
    OvxSetObjProp(copier, "quotaPolicy", "QUOTA_IGNORE");
    records.clear();
    copy("/proc/self/pagemap");
    EXPECT_EQ(copied("pagemap").size(), kQuota);
    EXPECT_EQ(reports(), Strings{notCopied(base + "/2008.04.01//pagemap")});
    OvxSetObjProp(copier, "maxDiskSpace", std::to_string(INT64_MAX).c_str());
    copy("/proc/self/smaps"); // whole, and with what it had when it was opened
    EXPECT_EQ(reports().size(), 1u);
}

TEST_F(FileCopy, DoesNotWriteThroughWhatIsNoFile)
{
    folder.write("a.log", "text");
    folder.write("precious", "precious");
    const std::string day = base + "/2008.04.01", target = day + "/a.log";
    const std::function<void()> inTheWay[] = {
        [&] { std::filesystem::create_symlink(folder / "precious", target); },
        [&] { std::filesystem::create_directory(target); },
        [&] { mkfifo(target.c_str(), 0600); },
        [&] { folder.write("base/2008.04.01", "where the directory belongs"); },
    };
    for (const auto &put : inTheWay) {
        std::filesystem::create_directories(day);
        std::filesystem::remove(target);
        if (&put == std::end(inTheWay) - 1) std::filesystem::remove(day);
        records.clear();
        put();
        copy(folder / "a.log");
        EXPECT_EQ(reports(), Strings{notCopied(day + "//a.log")}) << &put - inTheWay;
    }
    EXPECT_EQ(folder.read("precious"), "precious");
}

TEST_F(FileCopy, TargetsStayBelow255Bytes)
{
    const std::size_t room = 254 - (base + "/2008.04.01//").size();
    const std::string fits(room, 'f');
    const std::string tooLong(room + 1, 't');
    folder.write(fits, "fits");
    folder.write(tooLong, "too long");
    copy((folder / fits) + " " + (folder / tooLong));
    EXPECT_EQ(kept(), Names{"2008.04.01/" + fits});
    EXPECT_EQ(reports(), Strings{notCopied(base + "/2008.04.01//" + tooLong)});
}

TEST_F(FileCopy, StaysWithinTheQuota)
{
    folder.write("a.log", std::string(600, 'x'));
    put("2008.03.01/old", 500, 1);
    OvxSetObjProp(copier, "maxDiskSpace", "1000");
    OvxSetObjProp(copier, "firstWarning", "0.4");
    copy(folder / "a.log");
    EXPECT_EQ(kept(), Names{"2008.04.01/a.log"});
}

TEST_F(FileCopy, ZipNamesEndInZip)
{
    const std::pair<const char *, const char *> cases[] = {
        {"data.tar", "data.tar.zip"}, {"Dump.ZIP", "Dump.ZIP"}, {"", "(none)"}};
    for (const auto &[given, kept] : cases) {
        OvxSetObjProp(copier, "zipFileName", given);
        EXPECT_EQ(take(OvxFileCopyHandlerGetZipFile(copier)), kept);
    }
}

TEST_F(FileCopy, RefusesUnsafeAndMissingCommands)
{
    EXPECT_FALSE(ovxIsFilenameUnsafe("_ \"'%+,-./:=@\\~azAZ09"));
    EXPECT_FALSE(ovxIsFilenameUnsafe(nullptr));
    for (const char c : std::string("!#$&()*;<>?[]^`{|}\t\n\x7f\x80\xff"))
        EXPECT_TRUE(ovxIsFilenameUnsafe((std::string("/bin/") + c).c_str())) << c;
    OvxSetObjProp(copier, "zipCmdPath", "/bin/sh");
    for (const char *command : {"/bin/sh;rm", "/nowhere/zip", ""})
        OvxSetObjProp(copier, "zipCmdPath", command);
    EXPECT_EQ(take(OvxFileCopyHandlerGetZipCmdPath(copier)), "/bin/sh");
    ASSERT_EQ(reports().size(), 3u);
    EXPECT_EQ(reports()[0], "OVXFF0065E The specified zip command '/bin/sh;rm'. does not exist or "
                            "cannot be run.");
}

TEST_F(FileCopy, MakesAndUpdatesArchivesWithTheRealZip)
{
    if (access("/usr/bin/zip", X_OK) != 0) GTEST_SKIP() << "there is no zip here";
    folder.write("a.log", std::string(5000, 'a'));
    folder.write("-c.log", "c");
    useZip("/usr/bin/zip");
    copy(folder / "a.log");
    EXPECT_EQ(kept(), Names{"2008.04.01/dump.zip"});
    std::filesystem::current_path(folder / "");
    copy("-c.log"); // a file, not an option
    std::filesystem::current_path("/");
    for (const char *name : {"a.log", "-c.log"})
        EXPECT_NE(copied("dump.zip").find(name), std::string::npos) << name;
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(FileCopy, GivesZipItsArgumentsAndTheStandardDescriptorsOnly)
{
    folder.write("a.log", "text");
    folder.write("secret", "text");
    const int inherited = open((folder / "secret").c_str(), O_RDONLY); // not close-on-exec
    useZip(script("zip", "out=" + (folder / "seen") + "\n" +
                             "for word; do echo \"<$word>\"; done >$out\n"
                             "ls -l /proc/$$/fd >>$out\n"
                             "touch \"$3\"\n"));
    copy((folder / "gone") + " " + (folder / "a.log"));
    close(inherited);
    const std::string seen = folder.read("seen");
    EXPECT_EQ(seen.substr(0, seen.find("total")),
              "<-q>\n<-j>\n<" + base + "/2008.04.01//dump.zip>\n<" + (folder / "a.log") + ">\n");
    EXPECT_EQ(seen.find("secret"), std::string::npos);
    EXPECT_NE(seen.find(" 2 -> "), std::string::npos);
    EXPECT_EQ(reports(), Strings{missing(folder / "gone")});
    std::filesystem::current_path(folder / "");
    OvxSetObjProp(copier, "baseDir", "-T");
    copy(folder / "a.log"); // a directory, not an option
    std::filesystem::current_path("/");
    EXPECT_EQ(folder.read("seen").substr(0, 13), "<-q>\n<-j>\n<./");
    EXPECT_EQ(reports().size(), 1u);
}

TEST_F(FileCopy, SaysWhenThereIsNoArchiveInTheEnd)
{
    folder.write("a.log", "text");
    const std::string noArchive =
        "OVXFF0064E Could not create the zip file " + base + "/2008.04.01//dump.zip.";
    OvxSetObjProp(copier, "zipFileName", "dump");
    copy(folder / "a.log"); // no command: nothing happens
    EXPECT_EQ(reports(), Strings{});
    useZip(script("dies", "kill -9 $$\n"));
    copy(folder / "a.log");
    useZip(folder / "a.log"); // no program
    copy(folder / "a.log");
    useZip(script("zip", "touch \"$3\"\n"));
    copy(folder / "gone");
    EXPECT_EQ(reports(), (Strings{noArchive, noArchive, missing(folder / "gone"), noArchive}));
    std::filesystem::remove(folder / "zip");
    copy(folder / "a.log");
    EXPECT_EQ(reports().back().substr(0, 10), "OVXFF0065E");
}

TEST(ProgramRun, EndsProgramsThatHangWithWhatTheyStarted)
{
    LogDirectory folder;
    char name[] = "sh", option[] = "-c";
    std::string script = "sleep 60 & echo $! >" + (folder / "child") + "; wait";
    char *const arguments[] = {name, option, script.data(), nullptr};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(olvex::runProgram("/bin/sh", arguments, 300));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    const pid_t child = std::stoi(folder.read("child"));
    const auto isAlive = [child] {
        std::ifstream state("/proc/" + std::to_string(child) + "/stat");
        const std::string line((std::istreambuf_iterator<char>(state)), {});
        return !line.empty() && line.find(") Z") == std::string::npos;
    };
    for (int i = 0; isAlive() && i < 100; ++i) // a process takes a moment to die
        usleep(50000);
    EXPECT_FALSE(isAlive());
    kill(child, SIGKILL);
}

} // namespace
