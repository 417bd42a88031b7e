// Failures on demand. The program is linked with --wrap for the functions of calls.def and those of
// the allocator, so that each such call that the library makes comes here first and may be made to
// fail. The C library's own calls and those of the C++ runtime are not touched.
#pragma once

#include <climits>

namespace olvex::test {

inline constexpr long kForEver = LONG_MAX / 2;

// Which calls fail: `count` of them from number `first` on, counted from now; none when that is 0.
struct Plan {
    long first;
    long count;
    int error;
    const char *call; // a function of calls.def, where there is a choice
    long made;
    long failed;

    bool fails();
};

inline Plan callPlan, allocationPlan;
inline long blocksAlive = 0;

} // namespace olvex::test
