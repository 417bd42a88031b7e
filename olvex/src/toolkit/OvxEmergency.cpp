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

// Where a host that closes all descriptors and opens its own seldom comes, and above the standard
// ones in any case; the first that the limit on descriptors allows.
constexpr int kLeastDescriptors[] = {512, 128, STDERR_FILENO + 1};

// An open emergency file. It is open while anybody uses it: its being the current one counts as one
// use, each write as another. The last one closes it, so no other file takes its descriptor before.
struct OpenFile {
    std::atomic<int> uses{0}; // 0: this place is free
    int descriptor = -1;      // what follows is written only while the place is free
    dev_t device = 0;
    ino_t inode = 0;
};

// As many as can be in use at once. Only writes that hang in an old file keep a place from being
// free again.
OpenFile files[16];
std::atomic<OpenFile *> current{nullptr};
static_assert(std::atomic<int>::is_always_lock_free &&
              std::atomic<OpenFile *>::is_always_lock_free);

int openHigh(const char *path)
{
    const int opened = open(path, kFlags, 0600);
    if (opened < 0) return opened;
    int moved = -1;
    for (const int least : kLeastDescriptors)
        if (moved < 0) moved = fcntl(opened, F_DUPFD_CLOEXEC, least);
    const int error = errno;
    close(opened);
    errno = error;
    return moved;
}

// A host that closes all descriptors may have put another file in this one's place.
bool isOurs(int descriptor, dev_t device, ino_t inode)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && status.st_dev == device && status.st_ino == inode;
}

// The current file, in use until it is dropped; null when there is none. One whose last use has
// ended is not the current one any more.
OpenFile *useCurrent()
{
    while (OpenFile *file = current.load()) {
        int uses = file->uses.load();
        while (uses > 0)
            if (file->uses.compare_exchange_weak(uses, uses + 1)) return file;
    }
    return nullptr;
}

// What belongs to the place is read before it becomes free.
void drop(OpenFile *file)
{
    if (!file) return;
    const int descriptor = file->descriptor;
    const dev_t device = file->device;
    const ino_t inode = file->inode;
    if (file->uses.fetch_sub(1) == 1 && isOurs(descriptor, device, inode)) close(descriptor);
}

// Runs with the API mutex held, so nobody else fills a free place.
OpenFile *findFreePlace()
{
    for (OpenFile &file : files)
        if (file.uses.load() == 0) return &file;
    return nullptr;
}

void forgetFile()
{
    drop(current.exchange(nullptr));
}

CxResult useFile(const char *path)
{
    OpenFile *place = findFreePlace();
    if (!place) return failure(EMFILE);
    const int descriptor = openHigh(path);
    if (descriptor < 0) return failure(errno);
    struct stat status = {};
    fstat(descriptor, &status);
    place->descriptor = descriptor;
    place->device = status.st_dev;
    place->inode = status.st_ino;
    place->uses = 1;
    drop(current.exchange(place));
    return success();
}

bool setFile(const char *path)
{
    if (!path || !*path) return forgetFile(), false;
    const CxResult result = useFile(path);
    if (!ok(result)) forgetFile();
    OvxReportPlatformErr(result.kind, result.code);
    return ok(result);
}

void writeTo(int descriptor, const char *text, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = write(descriptor, text, size);
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
    OpenFile *file = useCurrent();
    if (file && isOurs(file->descriptor, file->device, file->inode))
        writeTo(file->descriptor, text, size);
    drop(file);
    errno = before;
}
