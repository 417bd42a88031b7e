// What can go wrong underneath the file handlers: after each fault the host runs on, the fault is
// reported, listeners still got the event, and the next record after the fault is written.
#include "LogDirectory.h"

#include "handlers/OvxFileHandler.h"
#include "handlers/files/OvxPathWatch.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <tuple>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;

// Lowers a limit; the limit before.
rlimit lower(__rlimit_resource resource, rlim_t value)
{
    rlimit before = {};
    getrlimit(resource, &before);
    const rlimit now = {value, before.rlim_max};
    setrlimit(resource, &now);
    return before;
}

// A file handler of either class, its log "app.log" in `directory_`, and a recorder behind it.
class LogFault : public LogWithHandler, public ::testing::WithParamInterface<const char *> {
  protected:
    void SetUp() override
    {
        start(GetParam(), "logs/app.log");
        OvxAddListener(handler_, get("behind", "test_recorder"));
    }
    void TearDown() override
    {
        LogWithHandler::TearDown();
        olvex::countPathLooks(0);
    }

    bool isShared() const { return std::string(GetParam()) == "ovx_multiproc_filehandler"; }
    std::string content() const { return directory_.read("logs/app.log"); }

    // What a record that was lost is reported as; the listener got it, unless the shared log could
    // not be opened.
    void expectLost(const std::string &report, bool isOpen = true)
    {
        ASSERT_FALSE(reports().empty());
        EXPECT_EQ(reports()[0], report);
        const Strings heard = recordedBy("behind");
        EXPECT_EQ(!heard.empty() && heard.back() == "lost", isOpen || !isShared());
    }
};

INSTANTIATE_TEST_SUITE_P(, LogFault,
                         ::testing::Values("ovx_filehandler", "ovx_multiproc_filehandler"),
                         [](const auto &which) {
                             return std::string(which.index ? "Shared" : "Alone");
                         });

// The system takes a part of the record, then nothing.
TEST_P(LogFault, ARecordWithoutRoomIsTakenBackWhole)
{
    signal(SIGXFSZ, SIG_IGN);
    log("one");
    const rlimit before = lower(RLIMIT_FSIZE, 6);
    log("lost");
    expectLost("File too large");
    EXPECT_EQ(content(), "one\n");
    setrlimit(RLIMIT_FSIZE, &before);
    log("two");
    EXPECT_EQ(content(), "one\ntwo\n");
}

// What stands where the log belongs, until it is taken away.
TEST_P(LogFault, AFileOrDirectoryThatIsSomethingElse)
{
    const std::string logs = directory_ / "logs", path = logs + "/app.log";
    const struct {
        std::function<void()> put;
        std::string report;
        bool isOpen;
    } cases[] = {
        {[&] { fs::create_symlink("/dev/full", path); }, "No space left on device", true},
        {[&] { fs::create_directory(path); }, "Is a directory", false},
        {[&] {
             fs::remove(logs);
             directory_.write("logs", "");
         },
         "OVXFH0032E Property 'fileName' must be a valid file path for this platform, but value '" +
             logs + "' was given.",
         false},
        {[&] { chmod(logs.c_str(), 0555), std::ignore = seteuid(65534); }, "Permission denied",
         false},
    };
    chmod(directory_.path().c_str(), 0755);
    for (const auto &entry : cases) {
        fs::remove_all(logs);
        fs::create_directory(logs);
        entry.put();
        records.clear();
        errno = ENOENT; // what the host may be logging about
        log("lost");
        EXPECT_EQ(errno, ENOENT);
        std::ignore = seteuid(getuid());
        expectLost(entry.report, entry.isOpen);
        fs::remove_all(logs);
        log("two");
        EXPECT_EQ(content(), "two\n");
    }
}

TEST_P(LogFault, NoDescriptorLeft)
{
    OvxObject *const logger = logger_; // the sanitizer of types needs descriptors to look at this
    const int next = dup(0);
    close(next);
    const rlimit before = lower(RLIMIT_NOFILE, static_cast<rlim_t>(next));
    OvxLogText(logger, "lost", 0);
    setrlimit(RLIMIT_NOFILE, &before);
    expectLost("Too many open files", false);
    log("two");
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, ADirectoryThatIsRemovedAndALinkThatIsMadeToLeadElsewhere)
{
    for (const int looks : {0, olvex::kLooksBeforeWatching}) {
        olvex::countPathLooks(looks);
        log("one");
        log("one more");
        fs::remove_all(directory_ / "logs");
        log("two");
        EXPECT_EQ(content(), "two\n");
        fs::rename(directory_ / "logs/app.log", directory_ / "logs/first");
        fs::create_symlink("first", directory_ / "logs/app.log");
        log("three");
        log("four");
        fs::create_symlink("second", directory_ / "logs/new");
        fs::rename(directory_ / "logs/new", directory_ / "logs/app.log");
        log("five");
        EXPECT_EQ(directory_.read("logs/first"), "two\nthree\nfour\n");
        EXPECT_EQ(directory_.read("logs/second"), "five\n");
        EXPECT_EQ(reports(), Strings{});
    }
}

// Where it cannot be listed which files there are, those that can be found are moved.
TEST_P(LogFault, ARolloverInADirectoryThatCannotBeListedTakesNoTime)
{
    chmod(directory_.path().c_str(), 0755);
    for (const char *name : {"logs/app.log", "logs.d/app"}) {
        const fs::path path = directory_ / name;
        const auto numbered = [&](int number) {
            std::string text = path;
            return text.insert(text.find_last_of('.'), std::to_string(number));
        };
        for (const int number : {1, 2, 40, 41})
            fs::create_directories(fs::path(numbered(number)).parent_path());
        fs::create_directories(path.parent_path());
        for (const int number : {1, 40})
            std::ofstream(numbered(number)) << number;
        std::ofstream(path) << "full";
        chmod(path.c_str(), 0666);
        chmod(path.parent_path().c_str(), 0733);
        set("fileName", path);
        set("maxFiles", "1000000");
        set("maxFileBytes", "1");
        std::ignore = seteuid(path.extension() == ".log" ? 65534 : getuid());
        const auto start = std::chrono::steady_clock::now();
        log("new");
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
        std::ignore = seteuid(getuid());
        const auto content = [](const std::string &file) {
            std::string text;
            std::ifstream(file) >> text;
            return text;
        };
        EXPECT_EQ(content(path), "new");
        EXPECT_EQ(content(numbered(1)), "full");
        EXPECT_EQ(content(numbered(2)), "1");
        EXPECT_EQ(content(numbered(41)), "40");
        EXPECT_EQ(reports(), Strings{});
    }
}

// A program that goes into the background closes all descriptors, and puts others in their place.
TEST_P(LogFault, AHostThatClosesAllDescriptors)
{
    const std::string path = directory_ / "logs/app.log";
    set("maxFileBytes", "1000000"); // far away, so that a file that is watched is not looked at
    for (const int looks : {0, olvex::kLooksBeforeWatching}) {
        fs::remove_all(directory_ / "logs");
        records.clear();
        olvex::countPathLooks(looks);
        std::string expected;
        for (int i = 0; i < 2 * olvex::kLooksBetweenWatches; ++i, expected += "one\n")
            log("one");
        for (const int descriptor : descriptorsOf(path)) {
            EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
            close(descriptor);
        }
        log("three");
        EXPECT_EQ(reports(), Strings{"Bad file descriptor"});
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        std::vector<int> taken = descriptorsOf(path);
        for (const int descriptor : descriptorsOf("anon_inode:inotify"))
            taken.push_back(descriptor);
        for (const int descriptor : taken)
            dup2(ends[1], descriptor);
        log("four");
        for (const int descriptor : taken) {
            struct stat status = {};
            fstat(descriptor, &status);
            EXPECT_TRUE(S_ISFIFO(status.st_mode)) << "closed the host's descriptor";
            close(descriptor);
        }
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        char stray;
        EXPECT_LT(read(ends[0], &stray, 1), 0) << "written into the host's pipe";
        EXPECT_EQ(content(), expected + "three\nfour\n");
        close(ends[0]);
        close(ends[1]);
    }
}

TEST_P(LogFault, FilesBeyondFourGibibytes)
{
    constexpr std::uintmax_t kSize = 5ull << 30;
    fs::create_directory(directory_ / "logs");
    directory_.write("logs/app.log", "");
    fs::resize_file(directory_ / "logs/app.log", kSize);
    set("maxFiles", "1");
    log("one");
    EXPECT_EQ(fs::file_size(directory_ / "logs/app.log"), kSize + 4);
}

// Lets signals come so many microseconds apart, which system calls are not begun again after; 0:
// none.
void tick(suseconds_t microseconds)
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);
    const itimerval every = {{0, microseconds}, {0, microseconds}};
    setitimer(ITIMER_REAL, &every, nullptr);
}

TEST(LogFaultOfSystem, SignalsDoNotKeepARecordFromWaitingForTheSemaphore)
{
    const int key = 0x4f580000 + getpid() % 0xffff;
    CxSem sem = -1;
    ASSERT_EQ(CxSemOpen(&sem, key).kind, '-');
    CxSemLock(&sem);
    CxSemUnlock(&sem);
    const pid_t holder = fork();
    if (holder == 0) {
        CxSemLock(&sem);
        usleep(1500000);
        _exit(0); // which gives it back
    }
    usleep(100000);
    tick(1000);
    EXPECT_EQ(CxSemLock(&sem).code, 0);
    tick(0);
    CxSemUnlock(&sem);
    waitpid(holder, nullptr, 0);
    semctl(sem, 0, IPC_RMID);
}

// A pipe takes what it has room for when a signal comes.
TEST(LogFaultOfSystem, WhatIsTakenShortIsFollowedByTheRest)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string sent(1 << 20, '.');
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<char>('a' + i * 7 % 26);
    std::string received;
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGALRM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread reader([&] {
        char block[30000];
        for (ssize_t count; (count = read(ends[0], block, sizeof block)) > 0; usleep(3000))
            received.append(block, static_cast<std::size_t>(count));
    });
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    tick(1000);
    CxFile file = ends[1];
    EXPECT_EQ(olvex::writeAll(&file, sent.data(), sent.size()).code, 0);
    tick(0);
    close(ends[1]);
    reader.join();
    close(ends[0]);
    EXPECT_TRUE(received == sent);
}

} // namespace
