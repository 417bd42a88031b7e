// A soak of the shared log: many processes of many threads write numbered records through one
// rolling log while one of them is killed every now and then; then everything is read back.
// Exit status: 0 when nothing is missing but what killed writers were about to write, 1 otherwise,
// 2 for a mistake on the command line.
#include <olvex/olvex.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <getopt.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Reader.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Options {
    unsigned processes = 4;
    unsigned threads = 2;
    std::uint64_t records = 100000;
    double seconds = 3600;
    unsigned killMs = 50; // 0: nobody is killed
    std::uint64_t maxFileBytes = 1 << 20;
    unsigned maxFiles = 10000;
    std::string parent = "/tmp";
};

constexpr auto kPatience = std::chrono::seconds(20); // without a single record

int semaphoreKey()
{
    return 0x50000000 + getpid();
}

void writeProperties(const fs::path &directory, const Options &options)
{
    std::ofstream(directory / "soak.properties")
        << "soak.className = ovx_basiclogger\n"
        << "soak.level = INFO\n"
        << "soak.listenerNames = soakFile\n"
        << "soakFile.className = ovx_multiproc_filehandler\n"
        << "soakFile.fileName = " << (directory / "soak.log").string() << "\n"
        << "soakFile.maxFileBytes = " << options.maxFileBytes << "\n"
        << "soakFile.maxFiles = " << options.maxFiles << "\n"
        << "soakFile.MPFileSemKey = " << semaphoreKey() << "\n";
}

// The part of one process, in which it is one writer.
class WriterProcess {
  public:
    WriterProcess(const Options &options, soak::Board &board, unsigned writer,
                  Clock::time_point end)
        : options_(options), board_(board), writer_(writer), end_(end)
    {}

    [[noreturn]] void run(const fs::path &directory)
    {
        if (!OvxOpenToolkit((directory / "soak.properties").c_str())) _exit(3);
        logger_ = OvxGetObject("soak", nullptr);
        std::vector<std::thread> threads;
        for (unsigned t = 0; t < options_.threads; ++t)
            threads.emplace_back([this, t] { write(t); });
        for (std::thread &thread : threads)
            thread.join();
        OvxReleaseObject(logger_);
        OvxCloseToolkit();
        _exit(0);
    }

  private:
    void write(unsigned thread)
    {
        auto &done = board_.writers[writer_].done[thread];
        for (std::uint32_t n = 0; board_.begun++ < options_.records; ++n) {
            const std::string text = soak::compose({writer_, thread, n});
            OvxLogInfo(logger_, nullptr, 0, 0, text.c_str(), 0);
            done = n + 1;
            if (n % 64 == 0 && Clock::now() >= end_) return;
        }
    }

    const Options &options_;
    soak::Board &board_;
    unsigned writer_;
    Clock::time_point end_;
    OvxObject *logger_ = nullptr;
};

class Soak {
  public:
    explicit Soak(const Options &options) : options_(options), board_(*soak::Board::make())
    {
        std::string pattern = options.parent + "/olvex-soak-XXXXXX";
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no directory " + pattern);
        directory_ = pattern;
        writeProperties(directory_, options_);
    }
    ~Soak()
    {
        const int set = semget(semaphoreKey(), 1, 0);
        if (set >= 0) semctl(set, 0, IPC_RMID);
        if (isGood_) fs::remove_all(directory_);
    }
    Soak(const Soak &) = delete;
    Soak &operator=(const Soak &) = delete;

    int run()
    {
        const auto begin = Clock::now();
        end_ = begin + std::chrono::milliseconds(static_cast<long>(options_.seconds * 1000));
        for (unsigned p = 0; p < options_.processes; ++p)
            start();
        const bool isStuck = !watchOver();
        const std::chrono::duration<double> taken = Clock::now() - begin;
        const soak::Findings found =
            soak::Reader(board_, writers_, options_.threads).read(directory_);
        isGood_ = found.isGood() && !isStuck && failures_ == 0;
        print(found, taken.count(), isStuck);
        return isGood_ ? 0 : 1;
    }

  private:
    struct Running {
        pid_t process;
        unsigned writer;
    };

    void start()
    {
        if (writers_ == soak::kMostWriters) return;
        const unsigned writer = writers_++;
        const pid_t process = fork();
        if (process == 0) WriterProcess(options_, board_, writer, end_).run(directory_);
        running_.push_back({process, writer});
    }

    bool isOver() const { return board_.begun >= options_.records || Clock::now() >= end_; }

    // Kills and replaces writers until enough is written; false when nothing moves any more.
    bool watchOver()
    {
        auto nextKill = Clock::now();
        auto lastMove = nextKill;
        std::uint64_t seen = 0;
        while (!running_.empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            collect();
            const auto now = Clock::now();
            if (std::exchange(seen, board_.begun) != board_.begun) lastMove = now;
            if (now - lastMove > kPatience) return killAll();
            if (options_.killMs == 0 || isOver() || now < nextKill) continue;
            nextKill = now + std::chrono::milliseconds(options_.killMs);
            killOne();
            start();
        }
        return true;
    }

    // Takes leave of writers that ended by themselves.
    void collect()
    {
        std::erase_if(running_, [this](const Running &one) {
            int status = 0;
            if (waitpid(one.process, &status, WNOHANG) != one.process) return false;
            if (status != 0) ++failures_;
            return true;
        });
    }

    void killOne()
    {
        if (running_.empty()) return;
        const std::size_t index = random_() % running_.size();
        const Running victim = running_[index];
        running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(index));
        kill(victim.process, SIGKILL);
        int status = 0;
        waitpid(victim.process, &status, 0);
        board_.writers[victim.writer].wasKilled = WIFSIGNALED(status);
        ++kills_;
    }

    bool killAll()
    {
        while (!running_.empty())
            killOne();
        return false;
    }

    void print(const soak::Findings &found, double seconds, bool isStuck) const
    {
        std::printf("%u processes of %u threads, %u kills: %llu records in %d files, %.1f s, "
                    "%.0f/s; lost %llu, doubled %llu, torn %llu, out of order %llu, unknown %llu; "
                    "last ones of killed writers: %llu missing, %llu torn%s\n",
                    options_.processes, options_.threads, kills_,
                    static_cast<unsigned long long>(found.records), found.files, seconds,
                    static_cast<double>(found.records) / seconds,
                    static_cast<unsigned long long>(found.lost),
                    static_cast<unsigned long long>(found.doubled),
                    static_cast<unsigned long long>(found.torn),
                    static_cast<unsigned long long>(found.outOfOrder),
                    static_cast<unsigned long long>(found.unknown),
                    static_cast<unsigned long long>(found.lastMissing),
                    static_cast<unsigned long long>(found.lastTorn), isStuck ? "; STUCK" : "");
        if (failures_) std::printf("%u writers failed\n", failures_);
        if (!isGood_) std::printf("the files are kept in %s\n", directory_.c_str());
    }

    const Options &options_;
    soak::Board &board_;
    fs::path directory_;
    Clock::time_point end_;
    std::vector<Running> running_;
    std::mt19937 random_{std::random_device()()};
    unsigned writers_ = 0;
    unsigned kills_ = 0;
    unsigned failures_ = 0;
    bool isGood_ = false;
};

int usage()
{
    std::cerr << "Usage: olvex_soak [--processes N] [--threads N] [--records N] [--seconds N]\n"
                 "                  [--kill-ms N] [--max-bytes N] [--max-files N] [--dir DIR]\n";
    return 2;
}

bool readOptions(int count, char **arguments, Options &options)
{
    static const option kOptions[] = {
        {"processes", 1, nullptr, 'p'}, {"threads", 1, nullptr, 't'},
        {"records", 1, nullptr, 'r'},   {"seconds", 1, nullptr, 's'},
        {"kill-ms", 1, nullptr, 'k'},   {"max-bytes", 1, nullptr, 'b'},
        {"max-files", 1, nullptr, 'f'}, {"dir", 1, nullptr, 'd'},
        {nullptr, 0, nullptr, 0}};
    for (int letter; (letter = getopt_long(count, arguments, "", kOptions, nullptr)) != -1;) {
        const auto number = [] { return static_cast<unsigned>(std::atoi(optarg)); };
        switch (letter) {
        case 'p': options.processes = number(); break;
        case 't': options.threads = number(); break;
        case 'r': options.records = std::strtoull(optarg, nullptr, 10); break;
        case 's': options.seconds = std::atof(optarg); break;
        case 'k': options.killMs = number(); break;
        case 'b': options.maxFileBytes = number(); break;
        case 'f': options.maxFiles = number(); break;
        case 'd': options.parent = optarg; break;
        default: return false;
        }
    }
    return optind == count && options.threads <= soak::kMostThreads && options.processes > 0;
}

} // namespace

int main(int count, char **arguments)
try {
    Options options;
    if (!readOptions(count, arguments, options)) return usage();
    return Soak(options).run();
} catch (const std::exception &error) {
    std::cerr << "olvex_soak: " << error.what() << "\n";
    return 1;
}
