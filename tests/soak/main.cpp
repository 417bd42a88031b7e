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
#include <map>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Reader.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Options {
    unsigned long processes = 4;
    unsigned long threads = 2;
    unsigned long records = 100000;
    unsigned long seconds = 3600;
    unsigned long killMs = 50; // 0: nobody is killed
    unsigned long maxFileBytes = 1 << 20;
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
        << "soakFile.maxFiles = 10000\n"
        << "soakFile.MPFileSemKey = " << semaphoreKey() << "\n";
}

soak::Board *makeBoard()
{
    void *memory = mmap(nullptr, sizeof(soak::Board), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
    return new (memory) soak::Board;
}

class Soak {
  public:
    explicit Soak(const Options &options) : options_(options)
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
        end_ = Clock::now() + std::chrono::seconds(options_.seconds);
        for (unsigned p = 0; p < options_.processes; ++p)
            start();
        const bool isStuck = !watchOver();
        const soak::Findings found =
            soak::Reader(board_, writers_, options_.threads).read(directory_);
        isGood_ = found.isGood() && !isStuck && failures_ == 0;
        print(found, isStuck);
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
        if (process == 0) runWriter(writer);
        running_.push_back({process, writer});
    }

    // The part of one process, in which it is one writer.
    [[noreturn]] void runWriter(unsigned writer)
    {
        if (!OvxOpenToolkit((directory_ / "soak.properties").c_str())) _exit(3);
        OvxObject *logger = OvxGetObject("soak", nullptr);
        std::vector<std::thread> threads;
        for (unsigned t = 0; t < options_.threads; ++t)
            threads.emplace_back([=, this] { write(logger, writer, t); });
        for (std::thread &thread : threads)
            thread.join();
        OvxReleaseObject(logger);
        OvxCloseToolkit();
        _exit(0);
    }

    void write(OvxObject *logger, unsigned writer, unsigned thread)
    {
        auto &done = board_.writers[writer].done[thread];
        for (std::uint32_t n = 0; board_.begun++ < options_.records; ++n) {
            const std::string text = soak::compose({writer, thread, n});
            OvxLogInfo(logger, nullptr, 0, 0, text.c_str(), 0);
            done = n + 1;
            if (n % 64 == 0 && Clock::now() >= end_) return;
        }
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

    void print(const soak::Findings &found, bool isStuck) const
    {
        std::cout << kills_ << " kills: " << found.records << " records; lost " << found.lost
                  << ", doubled " << found.doubled << ", torn " << found.torn << ", out of order "
                  << found.outOfOrder << ", unknown " << found.unknown << ", failed writers "
                  << failures_ << (isStuck ? "; STUCK\n" : "\n");
        if (!isGood_) std::cout << "the files are kept in " << directory_ << "\n";
    }

    const Options &options_;
    soak::Board &board_ = *makeBoard();
    fs::path directory_;
    Clock::time_point end_;
    std::vector<Running> running_;
    std::mt19937 random_{std::random_device()()};
    unsigned writers_ = 0;
    unsigned kills_ = 0;
    unsigned failures_ = 0;
    bool isGood_ = false;
};

bool readOptions(int count, char **arguments, Options &options)
{
    const std::map<std::string_view, unsigned long *> numbers = {
        {"--processes", &options.processes}, {"--threads", &options.threads},
        {"--records", &options.records},     {"--seconds", &options.seconds},
        {"--kill-ms", &options.killMs},      {"--max-bytes", &options.maxFileBytes},
    };
    for (int i = 1; i + 1 < count; i += 2) {
        const auto number = numbers.find(arguments[i]);
        if (number != numbers.end())
            *number->second = std::strtoul(arguments[i + 1], nullptr, 10);
        else if (arguments[i] == std::string_view("--dir"))
            options.parent = arguments[i + 1];
        else
            return false;
    }
    return count % 2 == 1 && options.threads <= soak::kMostThreads && options.processes > 0;
}

} // namespace

int main(int count, char **arguments)
try {
    Options options;
    if (!readOptions(count, arguments, options)) return 2;
    return Soak(options).run();
} catch (const std::exception &error) {
    std::cerr << "olvex_soak: " << error.what() << "\n";
    return 1;
}
