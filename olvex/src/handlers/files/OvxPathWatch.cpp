// See OvxPathWatch.h. One inotify instance for the process, made when the first path is to be
// watched. Events are rare, so they are not told apart: each of them ends the quiet of all paths.
#include "handlers/files/OvxPathWatch.h"

#include "util/Descriptors.h"
#include "util/Memory.h"

#include <utility>

#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <linux/magic.h>

using namespace olvex;

namespace {

constexpr std::uint32_t kDirectoryEvents = IN_MOVE_SELF | IN_DELETE_SELF | IN_DONT_FOLLOW;
// Also the removal of a link to the file, and the closing of a descriptor for writing.
constexpr std::uint32_t kFileEvents = kDirectoryEvents | IN_ATTRIB | IN_CLOSE_WRITE;
constexpr int kMostLinks = 8;

// File systems that only this kernel changes, so that inotify reports every change.
constexpr unsigned long kWatchableFileSystems[] = {
    EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC,       BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC,
    TMPFS_MAGIC,      OVERLAYFS_SUPER_MAGIC, RAMFS_MAGIC,
};

int instance = -1;
int users = 0;
int looks = 0;

// A host that closes all descriptors may have opened others under the numbers of ours; those must
// be neither read, changed nor closed. Inotify instances and epolls all share one inode, so ours
// are marked by the signal for asynchronous notification, which nobody has asked for.
constexpr int kMark = SIGPWR;

int marked(int descriptor)
{
    if (descriptor >= 0) fcntl(descriptor, F_SETSIG, kMark);
    return descriptor;
}

bool isOurs(int descriptor)
{
    return descriptor >= 0 && fcntl(descriptor, F_GETSIG) == kMark;
}

void closeInstance()
{
    for (int *descriptor : {&instance, &PathEvents::epoll}) {
        if (isOurs(*descriptor)) close(*descriptor);
        *descriptor = -1;
    }
}

bool openInstance()
{
    if (instance >= 0) return true;
    instance = marked(keepHigh(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)));
    PathEvents::epoll = marked(keepHigh(epoll_create1(EPOLL_CLOEXEC)));
    epoll_event interest = {};
    interest.events = EPOLLIN;
    if (PathEvents::areOurs() &&
        epoll_ctl(PathEvents::epoll, EPOLL_CTL_ADD, instance, &interest) == 0)
        return true;
    closeInstance();
    return false;
}

// The child shares the parent's instance and would take its events away.
void startAnewInChild()
{
    closeInstance();
    looks = 0;
    ++PathEvents::now;
}

[[gnu::constructor]] void startAnewInChildren()
{
    pthread_atfork(nullptr, nullptr, startAnewInChild);
}

bool isWatchable(const char *path)
{
    struct statfs system = {};
    if (statfs(path, &system) != 0) return false;
    for (const unsigned long known : kWatchableFileSystems)
        if (static_cast<unsigned long>(system.f_type) == known) return true;
    return false;
}

// Watches a path and, where parts of it are symbolic links, what these lead to.
class Walk {
  public:
    // Watches everything that the path leads over; the watch on its end, or -1. The path is cut at
    // each of its parts and made whole again.
    int watchAll(char *path)
    {
        if (path[0] != '/') return -1;
        int last = watchOne("/");
        for (char *end = path; *end && last >= 0;) {
            end += 1 + std::strcspn(end + 1, "/");
            const char separator = std::exchange(*end, '\0');
            last = watchOne(path);
            *end = separator;
        }
        return last;
    }

  private:
    int watchOne(const char *path)
    {
        struct stat status = {};
        if (lstat(path, &status) != 0 || !isWatchable(path)) return -1;
        const int watch = inotify_add_watch(
            instance, path, S_ISDIR(status.st_mode) ? kDirectoryEvents : kFileEvents);
        return watch >= 0 && S_ISLNK(status.st_mode) ? watchTarget(path) : watch;
    }

    int watchTarget(const char *link)
    {
        if (++links_ > kMostLinks) return -1;
        const Owned<char> target(static_cast<char *>(BaxMemoryMalloc(2 * PATH_MAX)));
        if (!target) return -1;
        const char *slash = std::strrchr(link, '/');
        const auto head = static_cast<std::size_t>(slash - link) + 1;
        char *name = target.get() + head;
        const ssize_t count = readlink(link, name, PATH_MAX - 1);
        if (count <= 0) return -1;
        name[count] = '\0';
        if (name[0] == '/') return watchAll(name);
        std::memcpy(target.get(), link, head);
        return watchAll(target.get());
    }

    int links_ = 0;
};

} // namespace

namespace olvex {

int PathEvents::epoll = -1;
std::uint64_t PathEvents::now = 1;
std::uint32_t PathEvents::questions = 0;
const epoll_event PathEvents::kNoPlace = {};

[[gnu::cold]] bool PathEvents::areOurs()
{
    return isOurs(instance) && isOurs(epoll);
}

[[gnu::cold]] void PathEvents::take()
{
    alignas(inotify_event) char events[4096];
    ++now;
    if (!areOurs())
        closeInstance();
    else
        while (read(instance, events, sizeof events) > 0) {
        }
}

PathWatch::~PathWatch()
{
    end();
    if (isUser_ && --users == 0) closeInstance();
}

void PathWatch::beforeLook(const char *path)
{
    if (isQuiet()) return;
    watchedSince_ = 0;
    if (isRefused_ || ++looks < kLooksBeforeWatching) return;
    looks = kLooksBeforeWatching;
    if (--looksToGo_ > 0) return;
    looksToGo_ = kLooksBetweenWatches;
    if (!isUser_) ++users;
    isUser_ = true;
    if (PathEvents::arePending() || !PathEvents::areOurs())
        PathEvents::take(); // of the watch that ended
    const Text copy(BaxStringDup(path));
    file_ = copy && openInstance() ? Walk().watchAll(copy.get()) : -1;
    isRefused_ = file_ < 0;
    watchedSince_ = isRefused_ ? 0 : PathEvents::now;
}

void PathWatch::end()
{
    if (file_ >= 0 && isOurs(instance)) inotify_rm_watch(instance, file_);
    file_ = -1;
    watchedSince_ = 0;
    isRefused_ = false;
}

void countPathLooks(int count)
{
    looks = count;
}

} // namespace olvex
