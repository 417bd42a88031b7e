// The beginning and the end of things: logging while the process ends, after the toolkit was
// closed, over forks, and where only OvxEmergencyWrite may be called.
#include "core/LogDirectory.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <thread>

using namespace olvex::test;

namespace {

// A logger with a file, which stays open until the process ends.
OvxObject *openLog(const LogDirectory &directory)
{
    OvxOpenToolkit(nullptr);
    addPlainFormatters();
    OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *file = OvxGetObject("file", "ovx_filehandler");
    OvxObject *formatter = OvxGetObject("plain", "test_plain");
    OvxSetObjProp(file, "fileName", (directory / "life.log").c_str());
    OvxSetObjPropInt(file, "maxFiles", 1);
    OvxHandlerSetFormatter(file, formatter);
    OvxAddListener(logger, file);
    OvxReleaseObject(formatter);
    OvxReleaseObject(file);
    return logger;
}

// Runs `body` in a child, which has twenty seconds; its exit status, or -1 when it was killed.
template <class Body>
int inChild(Body body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        body();
        exit(0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

OvxObject *lastLogger;

void log(const char *text)
{
    OvxLogText(lastLogger, text, 0);
}

struct LogsAtItsEnd {
    ~LogsAtItsEnd() { log("static destructor"); }
};

TEST(Life, HandlersAtExitAndStaticDestructorsLog)
{
    const LogDirectory directory;
    EXPECT_EQ(inChild([&] {
                  static const LogsAtItsEnd last;
                  atexit([] { log("exit handler"); });
                  lastLogger = openLog(directory);
              }),
              0);
    EXPECT_EQ(directory.read("life.log"), "exit handler\nstatic destructor\n");
}

TEST(Life, NothingIsLoggedOnceTheToolkitIsClosed)
{
    const LogDirectory directory;
    EXPECT_EQ(inChild([&] {
                  static const LogsAtItsEnd last;
                  atexit([] {
                      OvxCloseToolkit();
                      log("closed");
                      OvxReleaseObject(lastLogger);
                      lastLogger = nullptr;
                  });
                  lastLogger = openLog(directory);
                  log("open");
              }),
              0);
    EXPECT_EQ(directory.read("life.log"), "open\n");
}

TEST(Life, TheProcessEndsWhileThreadsLog)
{
    for (int round = 0; round < 10; ++round) {
        const LogDirectory directory;
        EXPECT_EQ(inChild([&] {
                      lastLogger = openLog(directory);
                      for (int i = 0; i < 4; ++i)
                          std::thread([] {
                              for (;;)
                                  log("on and on");
                          }).detach();
                      usleep(5000);
                  }),
                  0);
        const std::string text = directory.read("life.log");
        EXPECT_TRUE(text.empty() || text.back() == '\n');
    }
}

long countLines(const std::string &text, const std::string &line)
{
    long count = 0;
    for (std::size_t at = 0; (at = text.find(line + "\n", at)) != std::string::npos; ++at)
        ++count;
    return count;
}

// The threads hold the lock nearly all the time, some of it in the middle of a write.
TEST(LifeThreads, ChildrenOfAForkLogWhileThreadsHoldTheLock)
{
    const LogDirectory directory;
    lastLogger = openLog(directory);
    std::atomic<bool> stop = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!stop)
                log("parent");
        });
    constexpr int kChildren = 30;
    for (int i = 0; i < kChildren; ++i)
        EXPECT_EQ(inChild([] {
                      log("child");
                      _exit(0);
                  }),
                  0);
    stop = true;
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(countLines(directory.read("life.log"), "child"), kChildren);
    OvxReleaseObject(lastLogger);
    OvxCloseToolkit();
}

// What the toolkit has open is not passed on.
TEST(Life, AProgramStartedByAChildFindsNoDescriptors)
{
    const LogDirectory directory;
    EXPECT_EQ(inChild([&] {
                  lastLogger = openLog(directory);
                  OvxSetEmergencyFile((directory / "emergency").c_str());
                  log("child");
                  execl("/bin/sh", "sh", "-c", "! ls -l /proc/self/fd | grep -q \"$0\"",
                        directory.path().c_str(), nullptr);
                  _exit(127);
              }),
              0);
}

// Standard error, sent into a file while it lives.
class CaughtError {
  public:
    explicit CaughtError(const std::string &path) : kept_(dup(2))
    {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(file, 2);
        close(file);
    }
    ~CaughtError()
    {
        dup2(kept_, 2);
        close(kept_);
    }
    CaughtError(const CaughtError &) = delete;
    CaughtError &operator=(const CaughtError &) = delete;

  private:
    int kept_;
};

class Emergency : public ::testing::Test {
  protected:
    ~Emergency() override { OvxSetEmergencyFile(nullptr); }

    void write(const char *text) const
    {
        const CaughtError caught(directory_ / "stderr");
        OvxEmergencyWrite(text);
    }

    LogDirectory directory_;
    const std::string file_ = directory_ / "emergency";
};

TEST_F(Emergency, TextsGoToStandardErrorAndTheFile)
{
    write("unnamed\n");
    EXPECT_TRUE(OvxSetEmergencyFile(file_.c_str()));
    errno = 7;
    write("one\n");
    EXPECT_EQ(errno, 7);
    EXPECT_TRUE(OvxSetEmergencyFile(file_.c_str())); // again: appended to
    write("two\n");
    write(nullptr);
    EXPECT_FALSE(OvxSetEmergencyFile(nullptr));
    write("none any more\n");
    EXPECT_EQ(directory_.read("emergency"), "one\ntwo\n");
    EXPECT_EQ(directory_.read("stderr"), "unnamed\none\ntwo\nnone any more\n");
    EXPECT_FALSE(OvxSetEmergencyFile((directory_ / "no/such").c_str()));
}

void raiseSignal(OvxObject *, OvxEvent *)
{
    raise(SIGUSR1);
}

// The signal comes while the thread holds the lock.
TEST_F(Emergency, ASignalHandlerMayWrite)
{
    OvxOpenToolkit(nullptr);
    OvxAddHandlerClass("test_raise", nullptr, nullptr, nullptr, nullptr, raiseSignal, nullptr,
                       nullptr);
    OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *handler = OvxGetObject("raise", "test_raise");
    OvxAddListener(logger, handler);
    OvxSetEmergencyFile(file_.c_str());
    const auto before = signal(SIGUSR1, [](int) { OvxEmergencyWrite("signal\n"); });
    {
        const CaughtError caught(directory_ / "stderr");
        OvxLogText(logger, "text", 0);
    }
    signal(SIGUSR1, before);
    EXPECT_EQ(directory_.read("emergency"), "signal\n");
    OvxReleaseObject(handler);
    OvxReleaseObject(logger);
    OvxCloseToolkit();
}

// A host may have closed its standard descriptors; what it opens next takes their place.
TEST_F(Emergency, TheFileIsNoStandardDescriptor)
{
    EXPECT_EQ(inChild([&] {
                  closefrom(0);
                  OvxSetEmergencyFile(file_.c_str());
                  exit(open("/dev/null", O_RDONLY));
              }),
              0);
}

// A program that goes into the background closes all descriptors, and puts others in their place.
TEST_F(Emergency, AHostsOwnFileIsNeverWritten)
{
    EXPECT_EQ(inChild([&] {
                  OvxSetEmergencyFile(file_.c_str());
                  closefrom(3);
                  for (int i = 0; i < 20; ++i)
                      open((directory_ / "own").c_str(), O_WRONLY | O_CREAT, 0600);
                  write("lost\n");
                  OvxSetEmergencyFile(nullptr);
                  _exit(::write(22, "own", 3) == 3 ? 0 : 1);
              }),
              0);
    EXPECT_EQ(directory_.read("emergency"), "");
    EXPECT_EQ(directory_.read("own"), "own");
}

} // namespace
