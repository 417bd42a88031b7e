// A POSIX record lock: it belongs to the process, not to children that inherit the descriptor, and
// ends with it. It covers one byte beyond the end of any log, which tells it from the locks of
// other programs.
#include "handlers/files/OvxRolloverLock.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

namespace olvex {

namespace {

constexpr off_t kPlace = INT64_MAX - 1;

struct flock markOf(short type)
{
    struct flock mark = {};
    mark.l_type = type;
    mark.l_whence = SEEK_SET;
    mark.l_start = kPlace;
    mark.l_len = 1;
    return mark;
}

// Whether the conflicting lock is that of a rollover, or is gone already.
bool isRollover(CxFile file)
{
    struct flock other = markOf(F_WRLCK);
    if (fcntl(file, F_GETLK, &other) != 0) return false;
    return other.l_type == F_UNLCK ||
           (other.l_type == F_WRLCK && other.l_start == kPlace && other.l_len == 1);
}

} // namespace

void RolloverLock::take(CxFile file)
{
    constexpr timespec kMillisecond = {0, 1000000};
    struct flock mark = markOf(F_WRLCK);
    while (fcntl(file, F_SETLK, &mark) != 0) {
        if ((errno != EAGAIN && errno != EACCES) || !isRollover(file)) return;
        nanosleep(&kMillisecond, nullptr);
    }
    file_ = file;
}

void RolloverLock::release()
{
    struct flock mark = markOf(F_UNLCK);
    fcntl(file_, F_SETLK, &mark);
}

} // namespace olvex
