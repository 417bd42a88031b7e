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

// The descriptor gets the first of these numbers, or one above it, that the limit on descriptors
// allows: high, where a host that closes all descriptors and opens its own seldom comes, and above
// the standard ones in any case.
constexpr int kLeastDescriptors[] = {512, 128, STDERR_FILENO + 1};

// An open emergency file, with a count of its uses: one for being the current file, one for each
// write under way. Who drops the last one closes it, so the descriptor is not used again before.
struct OpenFile {
    std::atomic<int> uses{0}; // 0: this place is free
    int descriptor = -1;      // what follows is written only while the place is free
    dev_t device = 0;
    ino_t inode = 0;
};

// As many files as can be in use at once. A former file keeps its place only while a write to it
// hangs.
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

// The current file with one more use, for drop() to give back; null when there is none. If its last
// use has ended meanwhile, another file has become the current one, or none.
OpenFile *useCurrent()
{
    while (OpenFile *file = current.load()) {
        int uses = file->uses.load();
        while (uses > 0)
            if (file->uses.compare_exchange_weak(uses, uses + 1)) return file;
    }
    return nullptr;
}

// The fields are read before the count can reach 0, from when on the place may be filled anew.
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
