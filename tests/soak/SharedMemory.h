// What the soak's processes tell each other: how far each writer came. Lives in memory that a
// killed writer cannot take along.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace soak {

inline constexpr int kMostThreads = 16;
inline constexpr int kMostWriters = 1 << 16; // a writer that takes a killed one's place counts anew

// One process. A thread's records are numbered from 0; `done` counts those whose call returned.
struct Writer {
    std::atomic<std::uint32_t> done[kMostThreads];
    std::atomic<bool> wasKilled;
};

struct Board {
    std::atomic<std::uint64_t> begun; // records of all writers
    Writer writers[kMostWriters];

    static Board *make()
    {
        void *memory = mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
        return new (memory) Board;
    }
};

} // namespace soak
