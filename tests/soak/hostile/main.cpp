// A soak with hosts that do to themselves what hosts do: close all descriptors, drop privileges,
// change root, run out of descriptors and of disk, remove semaphores, and are killed. In rounds of
// a fraction of a second, each of its own seed. Nothing of a host's own may be changed, nothing may
// turn up in 0 to 2, no logging call may take over a second, no record may be lost without a report
// or stand twice. Exit status: 0 when all that held, 1 otherwise, 2 for a mistake on the command
// line.
#include <algorithm>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "../SoakRecord.h"
#include "Board.h"

namespace {

using namespace hostile;
namespace fs = std::filesystem;

constexpr Time kPatience = 5 * kSecond; // with one call; then its host is killed
constexpr Time kSetWait = 9 * kSecond;  // once a host, for a semaphore set that is never used
constexpr unsigned kExamples = 3;       // of each fault that are printed

constexpr const char *kFaultNames[kFaults] = {"something of the host's was changed",
                                              "something stands in 0, 1 or 2",
                                              "a call took over a second",
                                              "records were lost without a report",
                                              "records stand twice",
                                              "records are torn",
                                              "a host died"};

struct Totals {
    unsigned rounds = 0;
    unsigned kills = 0;
    std::uint64_t records = 0;
    std::uint64_t lostReported = 0;
    unsigned faults[kFaults] = {};
    Time longest = 0;
    std::string longestWhere;
};

class Game {
  public:
    Game(std::uint64_t seed, const std::string &parent, bool canMount, Totals &totals)
        : random_(static_cast<std::mt19937::result_type>(seed)), totals_(totals)
    {
        std::string pattern = parent + "/olvex-hostile-XXXXXX";
        if (!mkdtemp(pattern.data())) throw fs::filesystem_error("mkdtemp", pattern, {});
        round_ = {seed, pattern, toss(), canMount && toss(), 1, 0x60000000 + getpid()};
        if (round_.isShared) round_.hosts += static_cast<unsigned>(random_() % kMostHosts);
        void *memory = mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        board_ = new (memory) Board;
        makeDirectories();
        board_->copiesMayFail = round_.isSmallDisk;
        writeProperties();
    }
    ~Game()
    {
        const int set = semget(round_.semaphoreKey, 1, 0);
        if (set >= 0) semctl(set, 0, IPC_RMID);
        if (round_.isSmallDisk) umount((round_.directory + "/log").c_str());
        fs::remove_all(round_.directory);
        munmap(board_, sizeof(Board));
    }
    Game(const Game &) = delete;
    Game &operator=(const Game &) = delete;

    void play()
    {
        for (unsigned host = 0; host < round_.hosts; ++host)
            start(host);
        if (toss()) killAt_ = now() + static_cast<Time>(random_() % 200) * 1'000'000;
        while (!running_.empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            collect();
            watch();
        }
        judge();
    }

  private:
    bool toss() { return random_() % 2 == 0; }

    void makeDirectories()
    {
        const std::string log = round_.directory + "/log", own = round_.directory + "/own";
        fs::create_directory(own);
        fs::create_directory(log);
        if (round_.isSmallDisk)
            round_.isSmallDisk = mount("none", log.c_str(), "tmpfs", 0, "size=512k") == 0;
        constexpr mode_t kModes[] = {0700, 0711, 0733, 0755};
        chmod(round_.directory.c_str(), 0755);
        chmod(log.c_str(), kModes[random_() % std::size(kModes)]);
        for (unsigned host = 0; host < round_.hosts; ++host) {
            const std::string file = own + "/" + std::to_string(host);
            std::ofstream(file) << ownContent();
            chmod(file.c_str(), 0666);
        }
    }

    void writeProperties()
    {
        constexpr int kSizes[] = {1000, 4000, 100000};
        std::ofstream(round_.directory + "/hostile.properties")
            << "hostile.className = ovx_basiclogger\n"
            << "hostile.level = INFO\n"
            << "hostile.listenerNames = file\n"
            << "file.className = " << handler() << "\n"
            << "file.fileName = " << round_.directory << "/log/hostile.log\n"
            << "file.maxFileBytes = " << kSizes[random_() % std::size(kSizes)] << "\n"
            << "file.maxFiles = " << (toss() ? 10000 : 2147483647) << "\n"
            << "file.MPFileSemKey = " << round_.semaphoreKey << "\n";
    }

    const char *handler() const
    {
        return round_.isShared ? "ovx_multiproc_filehandler" : "ovx_filehandler";
    }

    void start(unsigned host)
    {
        const pid_t process = fork();
        if (process == 0) runHost(round_, *board_, host);
        running_[process] = host;
    }

    void collect()
    {
        std::erase_if(running_, [this](const auto &one) {
            int status = 0;
            if (waitpid(one.first, &status, WNOHANG) != one.first) return false;
            if (status != 0 && !board_->hosts[one.second].wasKilled)
                note(one.second, Fault::kDied, "status " + std::to_string(status));
            return true;
        });
    }

    void watch()
    {
        const bool isTime = killAt_ != 0 && now() >= killAt_;
        if (isTime) killAt_ = 0;
        const std::size_t victim =
            isTime && !running_.empty() ? random_() % running_.size() : kMostHosts;
        std::size_t n = 0;
        for (const auto &[process, host] : running_) {
            const Time began = board_->hosts[host].callBegan;
            const Time patience = board_->hasUnusedSet ? kPatience + kSetWait : kPatience;
            const bool hangs = began != 0 && now() - began > patience;
            if (hangs) note(host, Fault::kSlow, "a call had no end");
            if (hangs || n++ == victim) killHost(process, host);
        }
    }

    // What a killed host would have reported counts as reported.
    void killHost(pid_t process, unsigned index)
    {
        Host &host = board_->hosts[index];
        host.wasKilled = true;
        kill(process, SIGKILL);
        waitid(P_PID, static_cast<id_t>(process), nullptr, WEXITED | WNOWAIT);
        if (host.begun > host.done && board_->copiesMayFail) board_->emptied = now();
        ++totals_.kills;
    }

    void note(unsigned index, Fault kind, const std::string &text)
    {
        Host &host = board_->hosts[index];
        char *first = host.first[static_cast<unsigned>(kind)];
        if (host.count[static_cast<unsigned>(kind)]++ == 0)
            std::snprintf(first, sizeof *host.first, "%s, after: %s", text.c_str(),
                          host.step ? host.step : "");
    }

    void judge()
    {
        std::vector<std::vector<unsigned>> seen(round_.hosts);
        for (unsigned host = 0; host < round_.hosts; ++host)
            seen[host].resize(board_->hosts[host].begun);
        readLogs(seen);
        unsigned forgiven = board_->removedSets * round_.hosts; // one a writer each time
        for (unsigned host = 0; host < round_.hosts; ++host) {
            judgeRecords(host, seen[host], forgiven);
            judgeFile(host);
            addUp(host);
        }
        ++totals_.rounds;
    }

    void readLogs(std::vector<std::vector<unsigned>> &seen)
    {
        unsigned torn = 0, excusable = board_->removedSets * round_.hosts;
        for (unsigned host = 0; host < round_.hosts; ++host)
            excusable += board_->hosts[host].wasKilled;
        for (const auto &entry : fs::recursive_directory_iterator(round_.directory)) {
            if (!entry.path().filename().string().starts_with("hostile") ||
                !entry.is_regular_file())
                continue;
            if (entry.path().extension() == ".properties") continue;
            std::ifstream file(entry.path(), std::ios::binary);
            for (std::string line; std::getline(file, line);) {
                const auto id = soak::parse(line.substr(std::min(line.rfind('<'), line.size())));
                if (id && id->writer < seen.size() && id->number < seen[id->writer].size())
                    ++seen[id->writer][id->number];
                else
                    ++torn;
            }
        }
        if (torn > excusable && board_->emptied == 0)
            note(0, Fault::kTorn, std::to_string(torn) + " lines");
    }

    // A record may be missing when its call reported something, when it follows such a one that is
    // missing, when the log was reported to have been emptied since, and when its call never
    // returned.
    void judgeRecords(unsigned index, const std::vector<unsigned> &seen, unsigned &forgiven)
    {
        Host &host = board_->hosts[index];
        bool isExplained = false;
        unsigned lost = 0;
        for (std::uint32_t n = 0; n < seen.size(); ++n) {
            const Entry &entry = host.entries[n];
            isExplained = seen[n] == 0 && (isExplained || entry.isReported);
            if (seen[n] > 1)
                host.step = entry.step, note(index, Fault::kDoubled, "record " + std::to_string(n));
            if (seen[n] > 0 || n >= host.done) continue;
            if (isExplained || entry.began < board_->emptied) {
                ++totals_.lostReported;
            } else if (forgiven > 0) {
                --forgiven;
            } else {
                ++lost;
                host.step = entry.step;
                note(index, Fault::kLost, "record " + std::to_string(n));
            }
        }
        totals_.records += seen.size();
    }

    void judgeFile(unsigned host)
    {
        std::ifstream file(round_.directory + "/own/" + std::to_string(host), std::ios::binary);
        const std::string content((std::istreambuf_iterator<char>(file)), {});
        if (content != ownContent()) note(host, Fault::kForeign, "its file has other content");
    }

    void addUp(unsigned index)
    {
        const Host &host = board_->hosts[index];
        for (unsigned kind = 0; kind < kFaults; ++kind) {
            if (host.count[kind] == 0) continue;
            if (totals_.faults[kind]++ >= kExamples) continue;
            std::printf("seed %" PRIu64
                        ", %s, host %u of %u, longest call %.3f s: %s (%u times): %s\n",
                        round_.seed, handler(), index, round_.hosts, double(host.longest) / kSecond,
                        kFaultNames[kind], host.count[kind], host.first[kind]);
        }
        if (host.longest <= totals_.longest) return;
        totals_.longest = host.longest;
        totals_.longestWhere = std::string(handler()) + ", seed " + std::to_string(round_.seed) +
                               ", after: " + host.longestStep;
    }

    std::mt19937 random_;
    Totals &totals_;
    Round round_;
    Board *board_ = nullptr;
    std::map<pid_t, unsigned> running_;
    Time killAt_ = 0;
};

struct Options {
    unsigned long seconds = 10;
    unsigned long seed = std::random_device()();
    unsigned long rounds = 0; // 0: as many as there is time for
    std::string parent = "/tmp";
};

bool readOptions(int count, char **arguments, Options &options)
{
    const std::map<std::string_view, unsigned long *> numbers = {
        {"--seconds", &options.seconds}, {"--seed", &options.seed}, {"--rounds", &options.rounds}};
    for (int i = 1; i + 1 < count; i += 2) {
        const auto number = numbers.find(arguments[i]);
        if (number != numbers.end())
            *number->second = std::strtoul(arguments[i + 1], nullptr, 10);
        else if (arguments[i] == std::string_view("--dir"))
            options.parent = arguments[i + 1];
        else
            return false;
    }
    return count % 2 == 1;
}

// Mounts that no other program sees, and that are gone with this one.
bool canMountHere()
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool print(const Totals &totals)
{
    std::printf("%u rounds, %u kills, %" PRIu64 " records, %" PRIu64
                " lost with a report; longest call %.3f s (%s)\n",
                totals.rounds, totals.kills, totals.records, totals.lostReported,
                double(totals.longest) / kSecond, totals.longestWhere.c_str());
    bool isGood = true;
    for (unsigned kind = 0; kind < kFaults; ++kind)
        if (totals.faults[kind] > 0) {
            isGood = false;
            std::printf("FAULT: %s, with %u hosts\n", kFaultNames[kind], totals.faults[kind]);
        }
    return isGood;
}

} // namespace

int main(int count, char **arguments)
try {
    Options options;
    if (!readOptions(count, arguments, options)) return 2;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    umask(022);
    const bool canMount = canMountHere();
    const Time end = now() + static_cast<Time>(options.seconds) * kSecond;
    Totals totals;
    while (now() < end && (options.rounds == 0 || totals.rounds < options.rounds))
        Game(options.seed + totals.rounds, options.parent, canMount, totals).play();
    return print(totals) ? 0 : 1;
} catch (const std::exception &error) {
    std::fprintf(stderr, "olvex_hostile: %s\n", error.what());
    return 1;
}
