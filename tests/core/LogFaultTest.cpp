// What can go wrong underneath the file handlers: after each fault the host runs on, the fault is
// reported, listeners still got the event, and the next record after the fault is written.
#include "LogDirectory.h"

#include "OvxFileHandler.h"
#include "OvxPathWatch.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;

// Sets a limit for a scope.
class Limit {
  public:
    Limit(int resource, rlim_t value) : resource_(static_cast<__rlimit_resource>(resource))
    {
        getrlimit(resource_, &before_);
        const rlimit now = {value, before_.rlim_max};
        setrlimit(resource_, &now);
    }
    ~Limit() { setrlimit(resource_, &before_); }
    Limit(const Limit &) = delete;
    Limit &operator=(const Limit &) = delete;

  private:
    __rlimit_resource resource_;
    rlimit before_ = {};
};

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

    // Logs "lost", which must be reported as `report` and reach the listener, or not even that when
    // the shared log cannot be opened.
    void expectLost(const std::string &report, bool isOpen = true)
    {
        records.clear();
        log("lost");
        expectReported(report, isOpen);
    }

    void expectReported(const std::string &report, bool isOpen)
    {
        ASSERT_FALSE(reports().empty());
        EXPECT_EQ(reports()[0], report);
        EXPECT_EQ(recordedBy("behind"), isOpen || !isShared() ? Strings{"lost"} : Strings{});
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
    {
        const Limit limit(RLIMIT_FSIZE, 6);
        expectLost("File too large");
        EXPECT_EQ(content(), "one\n");
    }
    log("two");
    EXPECT_EQ(content(), "one\ntwo\n");
}

TEST_P(LogFault, AFullDeviceThatIsReplaced)
{
    fs::create_directory(directory_ / "logs");
    fs::create_symlink("/dev/full", directory_ / "logs/app.log");
    expectLost("No space left on device");
    errno = ENOENT; // what the host may be logging about
    expectLost("No space left on device");
    EXPECT_EQ(errno, ENOENT);
    fs::remove(directory_ / "logs/app.log");
    log("two");
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, AFullFileSystem)
{
    fs::create_directory(directory_ / "logs");
    if (mount("none", (directory_ / "logs").c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "nothing can be mounted here";
    set("maxFiles", "3");
    set("maxFileBytes", "1000000");
    const std::string block(1000, 'b');
    int written = 0;
    for (; reports().empty() && written < 100; ++written)
        log(block);
    EXPECT_EQ(reports(), Strings{"No space left on device"});
    EXPECT_EQ(content().size() % 1001, 0u);
    fs::resize_file(directory_ / "logs/app.log", 0);
    log("two");
    EXPECT_EQ(content(), "two\n");
    closeToolkit();
    umount((directory_ / "logs").c_str());
}

TEST_P(LogFault, NoDescriptorLeft)
{
    OvxObject *const logger = logger_; // the sanitizer of types needs descriptors to look at this
    {
        const int next = dup(0);
        close(next);
        const Limit limit(RLIMIT_NOFILE, static_cast<rlim_t>(next));
        OvxLogText(logger, "lost", 0);
    }
    expectReported("Too many open files", false);
    log("two");
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, ADirectoryThatIsRemovedIsMadeAnew)
{
    for (const int looks : {0, olvex::kLooksBeforeWatching}) {
        olvex::countPathLooks(looks);
        log("one");
        log("one more");
        fs::remove_all(directory_ / "logs");
        log("two");
        EXPECT_EQ(content(), "two\n");
        EXPECT_EQ(reports(), Strings{});
    }
}

TEST_P(LogFault, ADirectoryThatIsAFile)
{
    directory_.write("logs", "");
    expectLost("OVXFH0032E Property 'fileName' must be a valid file path for this platform, but "
               "value '" +
                   (directory_ / "logs") + "' was given.",
               false);
    fs::remove(directory_ / "logs");
    log("two");
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, ADirectoryWithoutPermission)
{
    if (geteuid() != 0) GTEST_SKIP() << "not root";
    fs::create_directory(directory_ / "logs");
    chmod(directory_.path().c_str(), 0755);
    ASSERT_EQ(seteuid(65534), 0);
    expectLost("Permission denied", false);
    ASSERT_EQ(seteuid(0), 0);
    log("two");
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, AnActiveFileThatBecomesSomethingElse)
{
    log("one");
    fs::remove(directory_ / "logs/app.log");
    fs::create_directories(directory_ / "logs/app.log");
    expectLost("Is a directory", false);
    fs::remove(directory_ / "logs/app.log");
    log("two");
    EXPECT_EQ(content(), "two\n");
}

// The open descriptors of the log, or of what watches its path.
std::vector<int> descriptorsOf(const std::string &target)
{
    std::vector<int> found;
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        std::error_code error;
        if (fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error) == target)
            found.push_back(descriptor);
    }
    return found;
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
        for (const int descriptor : descriptorsOf(path))
            close(descriptor);
        log("three");
        EXPECT_EQ(reports(), Strings{"Bad file descriptor"});
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        for (const char *target : {path.c_str(), "anon_inode:inotify"})
            for (const int descriptor : descriptorsOf(target))
                dup2(ends[1], descriptor);
        log("four");
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        char stray;
        EXPECT_LT(read(ends[0], &stray, 1), 0) << "written into the host's pipe";
        EXPECT_EQ(content(), expected + "three\nfour\n");
        close(ends[0]);
        close(ends[1]);
    }
}

TEST_P(LogFault, NamesAsLongAsTheyMayBeAndLonger)
{
    const std::string head = directory_ / "";
    const auto nameOf = [&](std::size_t length) {
        return head + std::string(length - head.size(), 'n');
    };
    set("fileName", nameOf(254));
    log("fits");
    EXPECT_EQ(directory_.read(std::string(254 - head.size(), 'n')), "fits\n");
    EXPECT_EQ(reports(), Strings{});
    set("fileName", nameOf(255));
    expectLost("Invalid argument", false);
    records.clear();
    set("fileName", nameOf(256));
    EXPECT_EQ(reports(), Strings{"OVXBC0031E Property 'fileName' must be 255 characters or less."});
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
    if (isShared()) return; // would copy all of it
    set("maxFiles", "3");
    log("two");
    EXPECT_EQ(fs::file_size(directory_ / "logs/app1.log"), kSize + 4);
    EXPECT_EQ(content(), "two\n");
}

TEST_P(LogFault, DescriptorsStayBehindWhenAProgramIsStarted)
{
    olvex::countPathLooks(olvex::kLooksBeforeWatching);
    log("one");
    log("two");
    int seen = 0;
    for (const std::string &target :
         {directory_ / "logs/app.log", std::string("anon_inode:inotify")})
        for (const int descriptor : descriptorsOf(target)) {
            ++seen;
            EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC) << target;
        }
    EXPECT_EQ(seen, 2);
}

TEST_P(LogFault, ALinkThatIsMadeToLeadElsewhere)
{
    for (const int looks : {0, olvex::kLooksBeforeWatching}) {
        olvex::countPathLooks(looks);
        fs::remove_all(directory_ / "logs");
        fs::create_directories(directory_ / "logs");
        fs::create_symlink("first", directory_ / "logs/app.log");
        log("one");
        log("two");
        fs::create_symlink("second", directory_ / "logs/new");
        fs::rename(directory_ / "logs/new", directory_ / "logs/app.log");
        log("three");
        EXPECT_EQ(directory_.read("logs/first"), "one\ntwo\n");
        EXPECT_EQ(directory_.read("logs/second"), "three\n");
    }
}

class Ticking {
  public:
    Ticking()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, nullptr); // without SA_RESTART
        const itimerval every = {{0, 1000}, {0, 1000}};
        setitimer(ITIMER_REAL, &every, nullptr);
    }
    ~Ticking()
    {
        const itimerval never = {};
        setitimer(ITIMER_REAL, &never, nullptr);
        signal(SIGALRM, SIG_DFL);
    }
    Ticking(const Ticking &) = delete;
    Ticking &operator=(const Ticking &) = delete;
};

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
    {
        const Ticking ticking;
        EXPECT_EQ(CxSemLock(&sem).code, 0);
    }
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
    {
        const Ticking ticking;
        CxFile file = ends[1];
        EXPECT_EQ(olvex::writeAll(&file, sent.data(), sent.size()).code, 0);
    }
    close(ends[1]);
    reader.join();
    close(ends[0]);
    EXPECT_TRUE(received == sent);
}

} // namespace
