// Failures on demand. The program is linked with --wrap for the functions of calls.def and those of
// the allocator, so that each such call that the library makes comes here first and may be made to
// fail. The C library's own calls and those of the C++ runtime are not touched.
#pragma once

#include <climits>

#include <sys/types.h>

namespace olvex::test {

// One row for each function of calls.def.
struct Call {
    const char *name;
    long made;
    long failFrom; // the number of the first call that fails, 0 for none
    long failCount;
    int error;
};

Call &call(const char *name);

// Lets calls fail: `count` of them from number `first` on, counted from now.
void failCalls(const char *name, long first, long count, int error);
void failNoCalls();
long callsFailed(); // since the last failCalls

inline constexpr long kForEver = LONG_MAX / 2;

void failAllocations(long first, long count);
long allocationsMade(); // since the last failAllocations
long allocationsFailed();
long blocksAlive();

} // namespace olvex::test
