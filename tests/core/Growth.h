// Tries that eight times as much takes about eight times as long. Time is that of this process
// alone, so that other work on the machine does not count.
#pragma once

#include <gtest/gtest.h>

#include <ctime>

namespace olvex::test {

inline constexpr int kMore = 8;

// AddressSanitizer, asked to be strict, measures a whole string each time that a part is sought in
// it: there the works are done, but their times are not the library's.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kTimesCount = false;
#else
inline constexpr bool kTimesCount = true;
#endif

template <class Work>
double secondsOf(Work work, int count)
{
    const std::clock_t start = std::clock();
    work(count);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// What grows with the square takes 64 times as long, caches and the allocator two or three times.
// Some milliseconds are for what does not grow.
template <class Work>
void expectLinear(int few, Work work)
{
    double small = 0, large = 0;
    for (int attempt = 0; attempt < 3; ++attempt) {
        small = secondsOf(work, few);
        large = secondsOf(work, few * kMore);
        if (!kTimesCount || large < small * kMore * 3 + 0.005) return;
    }
    ADD_FAILURE() << small << " s for " << few << ", " << large << " s for " << few * kMore;
}

} // namespace olvex::test
