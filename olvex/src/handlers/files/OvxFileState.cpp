// The state of a file: one system call each.
#include "handlers/files/OvxFileState.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace olvex {

namespace {

int read(int descriptor, const char *path, int flags, FileState &state)
{
    struct statx found = {};
    if (statx(descriptor, path, flags, STATX_TYPE | STATX_INO | STATX_SIZE, &found) != 0)
        return errno;
    state.device = makedev(found.stx_dev_major, found.stx_dev_minor);
    state.inode = found.stx_ino;
    state.size = found.stx_size;
    state.isRegular = S_ISREG(found.stx_mode);
    return 0;
}

} // namespace

int readFileState(int descriptor, FileState &state)
{
    return read(descriptor, "", AT_EMPTY_PATH, state);
}

int readFileState(const char *path, FileState &state)
{
    return read(AT_FDCWD, path, 0, state);
}

int readFileSize(int descriptor, std::uint64_t &size)
{
    const off_t end = lseek(descriptor, 0, SEEK_END);
    if (end < 0) return errno;
    size = static_cast<std::uint64_t>(end);
    return 0;
}

} // namespace olvex
