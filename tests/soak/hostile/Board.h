// What hostile hosts leave behind for the one who judges them, in memory that a killed host cannot
// take along.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

namespace hostile {

inline constexpr unsigned kMostHosts = 3;
inline constexpr std::uint32_t kMostRecords = 1 << 15; // of one host
inline constexpr std::size_t kOwnBytes = 2000;         // of each file that a host has for itself

using Time = std::int64_t; // nanoseconds of the steady clock; 0: never

inline constexpr Time kSecond = 1'000'000'000;

inline Time now()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

// What can be wrong, in the order in which it is summed up.
enum class Fault { kForeign, kStandard, kSlow, kLost, kDoubled, kTorn, kDied };
inline constexpr unsigned kFaults = 7;

struct Entry {
    Time began;
    const char *step; // what the host had done before
    bool isReported;  // the error logger said something during this call
};

struct Host {
    std::atomic<std::uint32_t> begun;
    std::atomic<std::uint32_t> done;
    std::atomic<Time> callBegan; // 0 outside of a call
    std::atomic<Time> longest;   // call
    const char *step;
    const char *longestStep;
    unsigned count[kFaults];
    char first[kFaults][160]; // what was found first, with the step before it
    bool wasKilled;
    Entry entries[kMostRecords];
};

struct Board {
    std::atomic<Time> emptied;         // when a log was last reported to have been emptied uncopied
    std::atomic<unsigned> removedSets; // semaphore sets
    std::atomic<bool> copiesMayFail;
    std::atomic<bool> hasUnusedSet; // each host waits for it once, nine seconds
    Host hosts[kMostHosts];
};

// What the hosts of one round have in common.
struct Round {
    std::uint64_t seed;
    std::string directory; // holds "log", in which the log is, and "own", with the hosts' files
    bool isShared;         // ovx_multiproc_filehandler, with several hosts
    bool isSmallDisk;      // "log" is a small file system
    unsigned hosts;
    int semaphoreKey;
};

// The life of one host, in the process that calls it.
[[noreturn]] void runHost(const Round &round, Board &board, unsigned index);

// The content of a host's own file.
std::string ownContent();

} // namespace hostile
