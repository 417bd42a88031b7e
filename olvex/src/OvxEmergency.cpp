// The last words of a process: texts from where nothing else may be called, such as a signal
// handler. Takes no locks, allocates nothing, and keeps errno.
#include <olvex/Log.h>
#include <olvex/class.h>

#include "util/CxResult.h"
#include "util/Locked.h"

#include <atomic>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

std::atomic<int> emergencyFile{-1};
std::atomic<dev_t> device{0};
std::atomic<ino_t> inode{0};
static_assert(std::atomic<int>::is_always_lock_free);

// Above the standard descriptors, which a host may have closed.
int openAbove(const char *path)
{
    const int opened = open(path, kFlags, 0600);
    if (opened < 0 || opened > STDERR_FILENO) return opened;
    const int moved = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(opened);
    return moved;
}

// A host that closes all descriptors may have put another file in this one's place.
bool isOurs(int file)
{
    struct stat status = {};
    return file >= 0 && fstat(file, &status) == 0 && status.st_dev == device.load() &&
           status.st_ino == inode.load();
}

void forgetFile()
{
    const int file = emergencyFile.exchange(-1);
    if (isOurs(file)) close(file);
}

CxResult useFile(const char *path)
{
    forgetFile();
    const int file = openAbove(path);
    if (file < 0) return failure(errno);
    struct stat status = {};
    fstat(file, &status);
    device = status.st_dev;
    inode = status.st_ino;
    emergencyFile = file;
    return success();
}

bool setFile(const char *path)
{
    if (!path || !*path) return forgetFile(), false;
    const CxResult result = useFile(path);
    OvxReportPlatformErr(result.kind, result.code);
    return ok(result);
}

void writeTo(int file, const char *text, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = write(file, text, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        text += count;
        size -= static_cast<std::size_t>(count);
    }
}

} // namespace

bool OvxSetEmergencyFile(const char *path)
{
    return locked([path] { return setFile(path); });
}

void OvxEmergencyWrite(const char *text)
{
    if (!text) return;
    const int before = errno;
    const std::size_t size = std::strlen(text);
    writeTo(STDERR_FILENO, text, size);
    const int file = emergencyFile.load();
    if (isOurs(file)) writeTo(file, text, size);
    errno = before;
}
