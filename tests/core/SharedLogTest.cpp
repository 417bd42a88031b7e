// The log shared by processes: rollover in place, writers of several processes, and rollovers that
// are cut short by the death of their process.
#include "LogDirectory.h"

#include "handlers/OvxFileHandler.h"
#include "handlers/files/OvxRolloverPoints.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <set>
#include <sys/ipc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <tuple>

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

// Nothing is lost, whatever prevents the copy: the log grows until it can be made.
TEST_F(SharedLog, IsLeftAsItIsWhileItsCopyCannotBeMadeIfThatIsWanted)
{
    const std::string logs = directory_ / "logs";
    const auto lower = [](rlim_t value) {
        const rlimit limit = {value, 1024};
        setrlimit(RLIMIT_NOFILE, &limit);
    };
    const struct {
        const char *what;
        std::function<void()> hinder;
        std::function<void()> relieve;
        std::string reason;
    } cases[] = {
        {"directory", [&] { chmod(logs.c_str(), 0555), std::ignore = seteuid(65534); },
         [&] { std::ignore = seteuid(0), chmod(logs.c_str(), 0777); }, "Permission denied"},
        {"descriptors",
         [&] {
             const int next = dup(0);
             close(next);
             lower(static_cast<rlim_t>(next));
         },
         [&] { lower(1024); }, "Too many open files"},
        {"rename", [&] { fs::create_directories(logs + "/app3.log/occupied"); },
         [&] { fs::remove_all(logs + "/app3.log"); }, "Directory not empty"},
    };
    chmod(directory_.path().c_str(), 0755);
    set("fileName", logs + "/app.log");
    set("filePermission", "0666");
    set("maxFileBytes", "4");
    set("maxFiles", "4");
    set("emptyUncopied", "false");
    for (const auto &entry : cases) {
        fs::remove_all(logs);
        fs::create_directory(logs);
        chmod(logs.c_str(), 0777);
        for (const char *text : {"one", "two", "three"})
            log(text);
        chmod((logs + "/app.log").c_str(), 0666);
        records.clear();
        const std::string before = directory_.read("logs/app1.log");
        entry.hinder();
        log("four");
        log("five");
        entry.relieve();
        EXPECT_EQ(directory_.read("logs/app.log"), "three\nfour\nfive\n") << entry.what;
        EXPECT_EQ(std::ranges::count(reports(), entry.reason), 1) << entry.what;
        EXPECT_EQ(reports().size(), 2u) << entry.what;
        log("six");
        EXPECT_EQ(directory_.read("logs/app.log"), "six\n") << entry.what;
        EXPECT_EQ(directory_.read("logs/app1.log"), "three\nfour\nfive\n") << entry.what;
        EXPECT_EQ(directory_.read("logs/app2.log"), before) << entry.what;
    }
}

// A file of the user's with the name that copies once had, and a copy that others left behind.
TEST_F(SharedLog, TakesNoOtherFileForItsCopyAndOverwritesNone)
{
    set("maxFiles", "1");
    for (const char *name : {"app.log.rollover", "app.log.ovx-roll", "app1.log"})
        directory_.write(name, name);
    log("one");
    EXPECT_EQ(directory_.read("app1.log"), "app1.log");
    set("maxFiles", "3");
    log("two");
    EXPECT_EQ(directory_.read("app.log.rollover"), "app.log.rollover");
    EXPECT_EQ(directory_.read("app1.log"), "app.log.ovx-roll");
    EXPECT_EQ(directory_.read("app2.log"), "app1.log");
    EXPECT_EQ(directory_.read("app.log"), "one\ntwo\n");
}

TEST_F(SharedLog, AKeyThatKeepsNobodyApartIsReportedAndReplaced)
{
    const auto keyOf = [&] {
        return static_cast<OvxFileHandlerVars *>(handler_->variables)->semKey;
    };
    const struct {
        const char *value;
        int key;
    } cases[] = {
        {"0x7c4d", 0x7c4d},    {" 0XFFFFFFFF ", -1}, {"-5", -5},
        {"12 monkeys", 12},    {"010", 10},          {"0", 0},
        {"zero", 0},           {"0x0", 0},           {"0x", 0},
        {"0x7c4d monkeys", 0}, {"0x1ffffffff", 0},   {"0x-1", 0},
    };
    for (const auto &entry : cases) {
        records.clear();
        set("MPFileSemKey", entry.value);
        EXPECT_EQ(keyOf(), entry.key ? entry.key : 31821) << entry.value;
        const std::string report =
            std::string("OVXMP0166W Property 'MPFileSemKey' will be ignored for file handler "
                        "'file', because the value '") +
            entry.value + "' is not the key of a semaphore. The default key 31821 is used.";
        EXPECT_EQ(reports(), entry.key ? Strings{} : Strings{report});
    }
}

// Writers of a log whose semaphore is removed all the time: what it costs at most is the record
// that a writer has under way.
TEST_F(SharedLog, WritersMeetInTheNewSetWhenTheirsIsRemoved)
{
    constexpr int kWriters = 4, kRecords = 5000;
    const LogDirectory memory("/dev/shm");
    set("maxFiles", "2000");
    set("maxFileBytes", "2000");
    set("fileName", memory / "app.log");
    for (int writer = 0; writer < kWriters; ++writer) {
        if (fork() != 0) continue;
        alarm(60);
        for (int n = 0; n < kRecords; ++n)
            log(std::to_string(writer) + ' ' + std::to_string(n));
        _exit(0);
    }
    unsigned removals = 0;
    for (int ended = 0; ended < kWriters; ++removals) {
        usleep(1000 + removals * 997 % 4000);
        removeSemaphoreOf(key_);
        while (waitpid(-1, nullptr, WNOHANG) > 0)
            ++ended;
    }
    const Strings lines = readBack(memory, 2000);
    const std::set<std::string> different(lines.begin(), lines.end());
    const auto lost = kWriters * kRecords - static_cast<int>(different.size());
    std::printf("%d of %d records lost in %u removals, %zu files\n", lost, kWriters * kRecords,
                removals, memory.names().size());
    EXPECT_LE(lost, kWriters);
    EXPECT_EQ(lines.size(), different.size()) << "doubled";
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
