// The beginning and the end of things: logging while the process ends, after the toolkit was
// closed, over forks, and where only OvxEmergencyWrite may be called.
#include "core/LogDirectory.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <thread>

using namespace olvex::test;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

OvxObject *lastLogger;

void say(const char *text)
{
    OvxLogText(lastLogger, text, 0);
}

// A log that a child leaves open until it ends.
class Life : public LogWithHandler {
  protected:
    void SetUp() override { open("ovx_filehandler"); }

    void open(const char *handlerClass)
    {
        start(handlerClass, "life.log");
        set("maxFiles", "1");
        lastLogger = logger_;
    }

    std::string content() const { return directory_.read("life.log"); }
};
struct LogsAtItsEnd {
    ~LogsAtItsEnd() { say("static destructor"); }
};

TEST_F(Life, HandlersAtExitAndStaticDestructorsLog)
{
    EXPECT_EQ(inChild([]() -> int {
                  static const LogsAtItsEnd last;
                  atexit([] { say("exit handler"); });
                  exit(0);
              }),
              0);
    EXPECT_EQ(content(), "exit handler\nstatic destructor\n");
}

TEST_F(Life, NothingIsLoggedOnceTheToolkitIsClosed)
{
    EXPECT_EQ(inChild([]() -> int {
                  static const LogsAtItsEnd last;
                  atexit([] {
                      OvxCloseToolkit();
                      say("closed");
                      OvxReleaseObject(lastLogger);
                      lastLogger = nullptr;
                  });
                  say("open");
                  exit(0);
              }),
              0);
    EXPECT_EQ(content(), "open\n");
}

[[noreturn]] void goOnAndOn()
{
    for (;;)
        say("on and on");
}

TEST_F(Life, TheProcessEndsWhileThreadsLog)
{
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(inChild([]() -> int {
                      for (int i = 0; i < 4; ++i)
                          std::thread(goOnAndOn).detach();
                      usleep(5000);
                      exit(0);
                  }),
                  0);
        const std::string text = content();
        // The system cuts the write of a thread that it ends, between two pages of the file.
        EXPECT_TRUE(text.size() % 4096 == 0 || text.back() == '\n');
    }
}

class LifeThreads : public Life, public ::testing::WithParamInterface<const char *> {
  protected:
    void SetUp() override { open(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(, LifeThreads,
                         ::testing::Values("ovx_filehandler", "ovx_multiproc_filehandler"));

// The threads hold the lock nearly all the time, some of it in the middle of a write.
TEST_P(LifeThreads, BothSidesOfAForkLogEachRecordOnce)
{
    std::atomic<bool> stop = false;
    std::atomic<int> expected = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (; !stop; ++expected)
                say("parent");
        });
    constexpr int kChildren = 30;
    for (int i = 0; i < kChildren; ++i)
        EXPECT_EQ(inChild([] {
                      for (int n = 0; n < 10; ++n)
                          say("child");
                      return 0;
                  }),
                  0);
    stop = true;
    for (std::thread &thread : threads)
        thread.join();
    std::map<std::string, int> found;
    std::istringstream lines(content());
    for (std::string line; std::getline(lines, line);)
        ++found[line];
    EXPECT_EQ(found, (std::map<std::string, int>{{"child", 10 * kChildren}, {"parent", expected}}));
}

// What the toolkit has open is not passed on.
TEST_F(Life, AProgramStartedByAChildFindsNoDescriptors)
{
    EXPECT_EQ(inChild([&] {
                  OvxSetEmergencyFile((directory_ / "emergency").c_str());
                  say("child");
                  execl("/bin/sh", "sh", "-c", "! ls -l /proc/self/fd | grep -q \"$0\"",
                        directory_.path().c_str(), nullptr);
                  return 127;
              }),
              0);
}

class Emergency : public OpenToolkit {
  protected:
    ~Emergency() override { OvxSetEmergencyFile(nullptr); }

    LogDirectory directory_;
    const std::string file_ = directory_ / "emergency";
};

using EmergencyThreads = Emergency;

TEST_F(Emergency, TextsGoToStandardErrorAndTheFile)
{
    CaptureStderr();
    OvxEmergencyWrite("unnamed\n");
    EXPECT_TRUE(OvxSetEmergencyFile(file_.c_str()));
    errno = 7;
    OvxEmergencyWrite("one\n");
    EXPECT_EQ(errno, 7);
    EXPECT_TRUE(OvxSetEmergencyFile(file_.c_str())); // again: appended to
    OvxEmergencyWrite("two\n");
    EXPECT_FALSE(OvxSetEmergencyFile(nullptr));
    OvxEmergencyWrite("none any more\n");
    EXPECT_EQ(directory_.read("emergency"), "one\ntwo\n");
    EXPECT_EQ(GetCapturedStderr(), "unnamed\none\ntwo\nnone any more\n");
    EXPECT_FALSE(OvxSetEmergencyFile((directory_ / "no/such").c_str()));
}

// The signal comes while the thread holds the lock.
TEST_F(Emergency, ASignalHandlerMayWrite)
{
    OvxSetEmergencyFile(file_.c_str());
    const auto before = signal(SIGUSR1, [](int) { OvxEmergencyWrite("signal\n"); });
    OvxObject *logger = loggerWith("raise", [](OvxObject *, OvxEvent *) { raise(SIGUSR1); });
    OvxLogText(logger, "text", 0);
    signal(SIGUSR1, before);
    EXPECT_EQ(directory_.read("emergency"), "signal\n");
}

// A host may have closed its standard descriptors; what it opens next takes their place.
TEST_F(Emergency, TheFileIsNoStandardDescriptor)
{
    EXPECT_EQ(inChild([&] {
                  close(STDERR_FILENO);
                  OvxSetEmergencyFile(file_.c_str());
                  return open("/dev/null", O_RDONLY);
              }),
              STDERR_FILENO);
}

// A program that goes into the background closes all descriptors, and puts others in their place.
TEST_F(Emergency, AHostsOwnFileIsNeverWritten)
{
    EXPECT_EQ(inChild([&] {
                  OvxSetEmergencyFile(file_.c_str());
                  closefrom(3);
                  int last = 0;
                  for (int i = 0; i < 600; ++i)
                      last = open((directory_ / "own").c_str(), O_WRONLY | O_CREAT, 0600);
                  OvxEmergencyWrite("lost\n");
                  OvxSetEmergencyFile(nullptr);
                  return last == 602 && write(512, "own", 3) == 3 ? 0 : 1;
              }),
              0);
    EXPECT_EQ(directory_.read("emergency"), "");
    EXPECT_EQ(directory_.read("own"), "own");
}

// One thread names files in turn, others write, and a host opens files of its own meanwhile. Every
// text is in one of the two files, whole, and none is in the host's.
TEST_F(EmergencyThreads, NamingAFileAndWritingAtOnce)
{
    constexpr int kWriters = 3, kTexts = 3000;
    const std::string files[] = {directory_ / "one", directory_ / "two"};
    OvxSetEmergencyFile(files[0].c_str());
    std::atomic<int> writing{kWriters};
    std::vector<std::thread> threads;
    CaptureStderr();
    for (int i = 0; i < kWriters; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < kTexts; ++n)
                OvxEmergencyWrite("0123456789abcdef\n");
            --writing;
        });
    std::vector<int> own;
    for (int turn = 1; writing > 0; ++turn) {
        OvxSetEmergencyFile(files[turn % 2].c_str());
        const int opened = open((directory_ / "own").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        own.push_back(
            fcntl(opened, F_DUPFD_CLOEXEC, 512)); // the lowest number: often the old file's
        close(opened);
        if (own.size() < 4) continue;
        close(own.front());
        own.erase(own.begin());
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const int each : own)
        close(each);
    GetCapturedStderr();
    EXPECT_EQ(directory_.read("own"), "");
    const std::string all = directory_.read("one") + directory_.read("two");
    EXPECT_EQ(all.size(), std::size_t{17} * kWriters * kTexts);
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), kWriters * kTexts);
}

TEST_F(Emergency, LeavesNoDescriptorOpen)
{
    const auto opened = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = opened();
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(OvxSetEmergencyFile(file_.c_str()));
    EXPECT_EQ(opened(), before + 1);
    OvxSetEmergencyFile(nullptr);
    EXPECT_EQ(opened(), before);
}

} // namespace
