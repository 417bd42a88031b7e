// What a record in a file costs, beside a bare write of the same line; and what the ways cost of
// noticing that the file was removed or replaced. Every record is in the kernel when the call
// returns. run.sh prints ratios to the bare write, of rounds in turn.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <olvex/olvex.h>

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class Directory {
  public:
    Directory()
    {
        char pattern[] = "/tmp/olvex-bench-XXXXXX";
        path_ = mkdtemp(pattern);
    }
    ~Directory() { fs::remove_all(path_); }
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    fs::path operator/(const char *name) const { return path_ / name; }

  private:
    fs::path path_;
};

constexpr int kWarmUp = 12000; // more than there are looks at a path before it is watched

void logOne(OvxObject *logger)
{
    OvxLogInfo(logger, nullptr, 0, 0, "The user %1$s opened the file %2$s for the %3$d. time",
               OVX_PARM_STRING, "operator", OVX_PARM_STRING, "/var/lib/shop/orders.db",
               OVX_PARM_INT, 4711, 0);
}

constexpr char kLine[] = "2024-05-01 13:05:09.042+02:00 The user operator opened the file "
                         "/var/lib/shop/orders.db for the 4711. time\n";

// A toolkit with a logger that writes to a file.
class Log {
  public:
    Log(const Directory &directory, const char *handlerClass, int maxFiles)
    {
        const fs::path properties = directory / "log.properties";
        std::ofstream(properties) << "log.className = ovx_basiclogger\n"
                                  << "log.listenerNames = file\n"
                                  << "file.className = " << handlerClass << "\n"
                                  << "file.fileName = " << (directory / "app.log").string() << "\n"
                                  << "file.maxFileBytes = 1048576\n"
                                  << "file.maxFiles = " << maxFiles << "\n"
                                  << "file.MPFileSemKey = " << key() << "\n";
        OvxOpenToolkit(properties.c_str());
        logger_ = OvxGetObject("log", nullptr);
    }
    ~Log()
    {
        OvxReleaseObject(logger_);
        OvxCloseToolkit();
        const int set = semget(key(), 1, 0);
        if (set >= 0) semctl(set, 0, IPC_RMID);
    }
    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;

    OvxObject *get() const { return logger_; }

  private:
    static int key()
    {
        static const int key = 0x42000000 + getpid();
        return key;
    }
    OvxObject *logger_ = nullptr;
};

void writeLine(int file)
{
    if (write(file, kLine, sizeof kLine - 1) < 0) std::abort();
}

int openFile(const Directory &directory)
{
    return open((directory / "app.log").c_str(), O_CREAT | O_RDWR | O_APPEND | O_CLOEXEC, 0644);
}

// A bare write, with a question before it.
template <class Ask>
void writeAsking(benchmark::State &state, Ask ask)
{
    const Directory directory;
    const int file = openFile(directory);
    const std::string path = (directory / "app.log").string();
    for (auto _ : state) {
        ask(file, path.c_str());
        writeLine(file);
    }
    close(file);
}

void fileBareWrite(benchmark::State &state)
{
    writeAsking(state, [](int, const char *) {});
}
BENCHMARK(fileBareWrite);

void logTo(benchmark::State &state, const char *handlerClass, int maxFiles)
{
    const Directory directory;
    const Log log(directory, handlerClass, maxFiles);
    for (int i = 0; i < kWarmUp; ++i)
        logOne(log.get());
    for (auto _ : state)
        logOne(log.get());
}

// A record at the end of a log that is large already.
void sizeOfLog(benchmark::State &state)
{
    const Directory directory;
    std::ofstream(directory / "app.log").close();
    fs::resize_file(directory / "app.log", static_cast<std::uintmax_t>(state.range(0)));
    const Log log(directory, "ovx_filehandler", 1);
    for (int i = 0; i < kWarmUp; ++i)
        logOne(log.get());
    for (auto _ : state)
        logOne(log.get());
}
BENCHMARK(sizeOfLog)->RangeMultiplier(1024)->Range(1024, 1LL << 33);

void fileHandler(benchmark::State &state)
{
    logTo(state, "ovx_filehandler", 1);
}
BENCHMARK(fileHandler);

void fileRolling(benchmark::State &state)
{
    logTo(state, "ovx_filehandler", 3);
}
BENCHMARK(fileRolling);

void fileShared(benchmark::State &state)
{
    logTo(state, "ovx_multiproc_filehandler", 1);
}
BENCHMARK(fileShared);

void fileSharedRolling(benchmark::State &state)
{
    logTo(state, "ovx_multiproc_filehandler", 3);
}
BENCHMARK(fileSharedRolling);

// Questions before a write

void askStat(benchmark::State &state)
{
    writeAsking(state, [](int, const char *path) {
        struct stat found;
        benchmark::DoNotOptimize(stat(path, &found));
    });
}
BENCHMARK(askStat);

void askNarrowly(benchmark::State &state)
{
    writeAsking(state, [](int, const char *path) {
        struct statx found;
        benchmark::DoNotOptimize(
            statx(AT_FDCWD, path, 0, STATX_TYPE | STATX_INO | STATX_SIZE, &found));
    });
}
BENCHMARK(askNarrowly);

void askDescriptorNarrowly(benchmark::State &state)
{
    writeAsking(state, [](int file, const char *) {
        struct statx found;
        benchmark::DoNotOptimize(statx(file, "", AT_EMPTY_PATH, STATX_NLINK | STATX_SIZE, &found));
    });
}
BENCHMARK(askDescriptorNarrowly);

// A watch on a path, asked through an epoll.
class Watch {
  public:
    explicit Watch(const char *path)
    {
        inotify_add_watch(instance_, path, IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF);
        epoll_event interest = {};
        interest.events = EPOLLIN;
        epoll_ctl(poll_, EPOLL_CTL_ADD, instance_, &interest);
    }
    ~Watch()
    {
        close(poll_);
        close(instance_);
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    int ask() const
    {
        epoll_event event;
        return epoll_wait(poll_, &event, 1, 0);
    }

  private:
    int instance_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    int poll_ = epoll_create1(EPOLL_CLOEXEC);
};

void askWatch(benchmark::State &state)
{
    std::optional<Watch> watch;
    writeAsking(state, [&](int, const char *path) {
        if (!watch) watch.emplace(path);
        benchmark::DoNotOptimize(watch->ask());
    });
}
BENCHMARK(askWatch);

void askWatchAndSize(benchmark::State &state)
{
    std::optional<Watch> watch;
    writeAsking(state, [&](int file, const char *path) {
        if (!watch) watch.emplace(path);
        benchmark::DoNotOptimize(watch->ask());
        benchmark::DoNotOptimize(lseek(file, 0, SEEK_END));
    });
}
BENCHMARK(askWatchAndSize);

// Several processes, one rolling file

constexpr int kRecordsEach = 20000;

void startWriter(const Log &log, std::vector<pid_t> &writers)
{
    const pid_t writer = fork();
    if (writer == 0) {
        for (int i = 0; i < kRecordsEach; ++i)
            logOne(log.get());
        _exit(0);
    }
    writers.push_back(writer);
}

void processesShareARollingFile(benchmark::State &state)
{
    const Directory directory;
    const Log log(directory, "ovx_multiproc_filehandler", 3);
    for (auto _ : state) {
        std::vector<pid_t> writers;
        for (int p = 0; p < state.range(0); ++p)
            startWriter(log, writers);
        for (const pid_t writer : writers)
            waitpid(writer, nullptr, 0);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * kRecordsEach);
}
BENCHMARK(processesShareARollingFile)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->UseRealTime();

} // namespace
