// The log shared by processes: rollover in place, writers of several processes, and rollovers that
// are cut short by the death of their process.
#include "LogDirectory.h"

#include "OvxFileHandler.h"
#include "OvxRolloverPoints.h"

#include <chrono>
#include <cstring>
#include <sys/ipc.h>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;

class SharedLog : public LogWithHandler {
  protected:
    void SetUp() override { start("ovx_multiproc_filehandler", "app.log"); }

    // All records of the log, oldest file first.
    static Strings readBack(const LogDirectory &directory, int files)
    {
        Strings lines;
        for (int n = files; n >= 0; --n) {
            std::istringstream content(
                directory.read(n ? "app" + std::to_string(n) + ".log" : "app.log"));
            for (std::string line; std::getline(content, line);)
                lines.push_back(line);
        }
        return lines;
    }
};

TEST_F(SharedLog, KeepsTheActiveFileAtRollover)
{
    set("maxFiles", "3");
    set("maxFileBytes", "10");
    set("appending", "false");   // without effect
    useFormatter("test_framed"); // whose header and trailer are not written
    struct stat before = {};
    struct stat after = {};
    log("one");
    stat((directory_ / "app.log").c_str(), &before);
    for (const char *text : {"two", "three", "four", "five", "six", "seven"})
        log(text);
    stat((directory_ / "app.log").c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(directory_.names(), (Names{"app.log", "app1.log", "app2.log"}));
    EXPECT_EQ(directory_.read("app2.log"), "one\ntwo\nthree\n");
    EXPECT_EQ(directory_.read("app1.log"), "four\nfive\n");
    EXPECT_EQ(directory_.read("app.log"), "six\nseven\n");
}

TEST_F(SharedLog, OpensASemaphoreThatWasRemovedAnew)
{
    log("one");
    removeSemaphoreOf(key_);
    log("two");
    EXPECT_EQ(directory_.read("app.log"), "one\ntwo\n");
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(SharedLog, AForeignSemaphoreSetKeepsItClosed)
{
    const int foreign = semget(key_, 3, IPC_CREAT | 0600);
    semctl(foreign, 0, SETVAL, 1);
    sembuf operation = {0, 1, 0};
    semop(foreign, &operation, 1); // makes it look ready
    OvxAddListener(handler_, get("behind", "test_recorder"));
    log("lost");
    EXPECT_EQ(directory_.names(), Names{});
    EXPECT_EQ(recordedBy("behind"), Strings{});
    EXPECT_EQ(reports(), Strings{"Invalid argument"});
    semctl(foreign, 0, IPC_RMID);
    log("written");
    EXPECT_EQ(directory_.read("app.log"), "written\n");
}

TEST_F(SharedLog, IsReadyForOthersAsSoonAsItIsOpen)
{
    OvxMultiProcFileHandlerFOpen(handler_); // and ends before its first record
    CxSem other = -1;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(CxSemOpen(&other, key_).kind, '-');
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

// Something that cannot be moved away stands where the copy belongs.
TEST_F(SharedLog, AFailedCopyIsReportedAndTheFileEmptiedAllTheSame)
{
    set("maxFileBytes", "4");
    set("maxFiles", "2");
    log("one");
    fs::create_directories(directory_ / "app1.log/occupied");
    testing::internal::CaptureStdout();
    log("two");
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ERR opening " + (directory_ / "app1.log") + " pre rollover\n");
    EXPECT_EQ(directory_.read("app.log"), "two\n");
    EXPECT_EQ(reports(), (Strings{"Directory not empty", "OVXMP0073W Could not write to the backup "
                                                         "log file " +
                                                             (directory_ / "app1.log") +
                                                             " during log file rollover."}));
    EXPECT_EQ(directory_.names(), (Names{"app.log", "app1.log"}));
}

TEST_F(SharedLog, RollsOverWithoutAPassingFileToo)
{
    set("maxFileBytes", "4");
    fs::create_directory(directory_ / "app.log.ovx-roll");
    log("one");
    log("two");
    EXPECT_EQ(directory_.read("app1.log"), "one\n");
    EXPECT_EQ(directory_.read("app.log"), "two\n");
    EXPECT_EQ(reports(), Strings{});
}

const char *deadlyPoint = "";
int passesLeft = 0;

void dieAtPoint(const char *point)
{
    if (std::strcmp(point, deadlyPoint) == 0 && passesLeft-- == 0) _exit(9);
}

// A process dies inside a rollover, and perhaps a second one while it mends that; this one, which
// has the log open, goes on.
class CutRollover : public SharedLog {
  protected:
    void SetUp() override
    {
        SharedLog::SetUp();
        set("maxFiles", "5");
        set("maxFileBytes", "20000");
        set("fileName", memory_ / "app.log");
    }

    void logNext() { log(std::to_string(number_++) + std::string(5000, '.')); }

    // Leaves a full file and three older ones.
    void fill()
    {
        for (const std::string &name : memory_.names())
            fs::remove(memory_ / name);
        number_ = 0;
        while (memory_.names().size() < 4)
            logNext();
        while (memory_.read("app.log").size() < 20000)
            logNext();
    }

    void dieAt(const char *point, int passes)
    {
        const int status = inChild([&] {
            deadlyPoint = point;
            passesLeft = passes;
            olvex::rolloverPointHook = dieAtPoint;
            log("never written");
            return 0;
        });
        ASSERT_EQ(status, 9) << point << " was not reached";
    }

    // All from that one on, in so many files.
    void expectAllOnce(const std::string &what, int expected = 0, std::size_t files = 5)
    {
        for (const std::string &line : readBack(memory_, static_cast<int>(files) - 1))
            EXPECT_EQ(std::stoi(line), expected++) << what;
        EXPECT_EQ(expected, number_) << what;
        EXPECT_EQ(memory_.names().size(), files) << what;
        EXPECT_EQ(reports(), Strings{});
    }

    LogDirectory memory_{"/dev/shm"}; // where flushing takes no time
    int number_ = 0;
};

TEST_F(CutRollover, LosesNothingAndDoublesNothing)
{
    const struct {
        const char *point;
        int passes;         // how often it is passed unharmed
        const char *second; // where the next process dies
    } cases[] = {
        {"begun", 0, nullptr},     {"renamed", 0, nullptr},    {"renamed", 1, nullptr},
        {"renamed", 2, nullptr},   {"copying", 0, nullptr},    {"copying", 1, nullptr},
        {"copied", 0, nullptr},    {"truncated", 0, nullptr},  {"begun", 0, "renamed"},
        {"renamed", 0, "renamed"}, {"renamed", 0, "copying"},  {"copying", 0, "copying"},
        {"copied", 0, "copied"},   {"copied", 0, "truncated"}, {"copying", 1, "begun"},
    };
    for (const auto &entry : cases) {
        const std::string what =
            std::string(entry.point) + ", " + (entry.second ? entry.second : "");
        fill();
        dieAt(entry.point, entry.passes);
        if (entry.second) dieAt(entry.second, 0);
        const auto start = std::chrono::steady_clock::now();
        logNext();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << what;
        logNext();
        expectAllOnce(what);
    }
}

// With as many files as may be, the oldest goes, and only that.
TEST_F(CutRollover, RemovesTheOldestFileOnce)
{
    set("maxFiles", "4");
    fill();
    dieAt("removed", 0);
    logNext();
    expectAllOnce("oldest", 4, 4);
}

// One that comes later finds what was left behind before it writes its first record.
TEST_F(CutRollover, IsFinishedByAProcessThatComesLater)
{
    fill();
    dieAt("truncated", 0);
    OvxMultiProcFileHandlerFClose(handler_);
    logNext();
    expectAllOnce("late");
}

} // namespace
