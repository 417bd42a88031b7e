// The lock belongs to the process, which a child that inherits the descriptor is not, and ends with
// it. It covers a byte where no log has one, by which it is told from the locks of other programs.
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

// Whether what stands in the way is a rollover, or has just ended.
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
