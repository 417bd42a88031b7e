// See Descriptors.h.
#include "util/Descriptors.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace olvex {

namespace {

constexpr rlim_t kLargestTable = 1024;

// The last sixteenth of the numbers that the process may have.
int highNumber()
{
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    const auto numbers = static_cast<int>(std::min(limit.rlim_cur, kLargestTable));
    return std::max(numbers - numbers / 16, STDERR_FILENO + 1);
}

// The copy with the lowest free number from `lowest` on; the original is closed if there is one.
int move(int descriptor, int lowest)
{
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, lowest);
    if (moved >= 0) close(descriptor);
    return moved;
}

} // namespace

int aboveStandard(int descriptor)
{
    if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
    const int moved = move(descriptor, STDERR_FILENO + 1);
    if (moved >= 0) return moved;
    const int error = errno;
    close(descriptor);
    errno = error;
    return -1;
}

int keepHigh(int descriptor)
{
    const int moved = descriptor < 0 ? -1 : move(descriptor, highNumber());
    return moved >= 0 ? moved : aboveStandard(descriptor);
}

} // namespace olvex
