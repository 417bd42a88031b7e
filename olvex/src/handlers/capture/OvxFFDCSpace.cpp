// Counting, judging and freeing the disk space of first failure data capture. Directories are
// walked through descriptors, so that none of them can be exchanged for a link on the way.
#include "handlers/capture/OvxFFDCSpace.h"

#include <algorithm>

#include "handlers/capture/OvxFFDCTriggerHandler.h"
#include "messages/Messages.h"
#include "util/Sums.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr std::int32_t kFirstCapacity = 16;

// The path of a walk, which gets longer and shorter.
class WalkPath {
  public:
    explicit WalkPath(const char *start) { append("", start); }

    const char *get() const { return bytes_; }
    std::size_t length() const { return length_; }
    // False, and no change, when that does not fit.
    bool enter(const char *name) { return append("/", name); }
    void leaveTo(std::size_t length) { bytes_[length_ = length] = '\0'; }

  private:
    bool append(const char *separator, const char *name)
    {
        const std::size_t size = std::strlen(separator) + std::strlen(name);
        if (size >= sizeof bytes_ - length_) return false;
        std::strcpy(stpcpy(bytes_ + length_, separator), name);
        length_ += size;
        return true;
    }

    char bytes_[256] = "";
    std::size_t length_ = 0;
};

static_assert(sizeof(OvxFileData::path) >= 256);

DIR *openDirectory(int parent, const char *name, int moreFlags)
{
    const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | moreFlags);
    if (descriptor < 0) return nullptr;
    DIR *directory = fdopendir(descriptor);
    if (!directory) close(descriptor);
    return directory;
}

bool isSelfOrParent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

template <class Visit>
void walk(DIR *directory, WalkPath &path, const Visit &visit);

template <class Visit>
void visitEntry(int parent, const char *name, WalkPath &path, const Visit &visit)
{
    struct stat status = {};
    if (fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
    if (S_ISDIR(status.st_mode))
        walk(openDirectory(parent, name, O_NOFOLLOW), path, visit);
    else
        visit(path.get(), status);
}

// Visits every file below an open directory and closes that. Each level of the path takes at least
// two bytes, which bounds the depth.
template <class Visit>
void walk(DIR *directory, WalkPath &path, const Visit &visit)
{
    if (!directory) return;
    const std::size_t length = path.length();
    while (const dirent *entry = readdir(directory)) {
        if (isSelfOrParent(entry->d_name) || !path.enter(entry->d_name)) continue;
        visitEntry(dirfd(directory), entry->d_name, path, visit);
        path.leaveTo(length);
    }
    closedir(directory);
}

// The base directory itself may be reached through links.
template <class Visit>
void forEachFileBelow(const char *dir, const Visit &visit)
{
    if (!dir) return;
    WalkPath path(dir);
    if (path.length() > 0) walk(openDirectory(AT_FDCWD, dir, 0), path, visit);
}

double shareOf(const OvxFFDCHandlerVars &vars, double fraction)
{
    return static_cast<double>(vars.maxDiskSpace) * fraction;
}

double percent(double fraction)
{
    return static_cast<double>(static_cast<float>(fraction * 100));
}

constexpr long toLong(std::int64_t bytes)
{
    return static_cast<long>(bytes);
}

void warnOfSpace(const OvxObject *handler, const OvxFFDCHandlerVars &vars, std::int64_t used,
                 std::int64_t needed)
{
    const auto bytes = static_cast<double>(used);
    const bool reachedSecond = bytes >= shareOf(vars, vars.secondWarning);
    const bool reachedFirst = bytes >= shareOf(vars, vars.firstWarning);
    if (!vars.warnOnDiskSpace || !(reachedSecond || reachedFirst)) return;
    report(OVX_LEVEL_WARN, Message::kSpaceWarning,
           percent(reachedSecond ? vars.secondWarning : vars.firstWarning),
           toLong(vars.maxDiskSpace), toLong(used), toLong(needed), ovxIntlGetObjectName(handler));
}

bool makeRoom(OvxObject *handler, const OvxFFDCHandlerVars &vars)
{
    const bool isDone = ovxFFDCCleanup(handler);
    if (!isDone && vars.warnOnDiskSpace)
        report(OVX_LEVEL_WARN, Message::kCleanUpIncomplete, vars.baseDir.get(),
               percent(vars.firstWarning), toLong(vars.maxDiskSpace),
               ovxIntlGetObjectName(handler));
    return isDone;
}

bool refuse(const OvxObject *handler, const OvxFFDCHandlerVars &vars, std::int64_t used)
{
    report(OVX_LEVEL_ERROR, Message::kSpaceExceeded, vars.baseDir.get(), toLong(used),
           ovxIntlGetObjectName(handler), toLong(vars.maxDiskSpace));
    return false;
}

void warnOfCleanUp(const OvxObject *handler, const OvxFFDCHandlerVars &vars, std::int64_t excess)
{
    if (!vars.warnOnDiskSpace) return;
    report(OVX_LEVEL_WARN, Message::kCleaningUp, vars.baseDir.get(), percent(vars.firstWarning),
           toLong(vars.maxDiskSpace), toLong(excess), ovxIntlGetObjectName(handler));
}

// A file that went away by itself is as good as deleted.
bool removeFile(const char *path)
{
    return unlink(path) == 0 || errno == ENOENT;
}

// Deletes files in the order of the list until `excess` bytes are gone. The size of a file counts
// even when it cannot be deleted.
bool removeUntil(std::int64_t excess, const OvxFileDataList &list)
{
    bool isDone = true;
    for (std::int32_t i = 0; i < list.count && excess > 0; ++i) {
        excess -= list.items[i].size;
        isDone = removeFile(list.items[i].path) && isDone;
    }
    return isDone && excess <= 0;
}

} // namespace

std::int64_t ovxCountFFDCSpaceUsed(const char *dir)
{
    std::int64_t used = 0;
    forEachFileBelow(dir, [&](const char *, const struct stat &status) {
        used = saturatedSum(used, status.st_size);
    });
    return used;
}

bool ovxIsFFDCSpaceAvailable(OvxObject *handler, std::int64_t bytesNeeded)
{
    const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars) return false;
    const std::int64_t used = ovxCountFFDCSpaceUsed(vars->baseDir.get());
    warnOfSpace(handler, *vars, used, bytesNeeded);
    if (saturatedSum(used, bytesNeeded) <= vars->maxDiskSpace) return true;
    switch (vars->quotaPolicy) {
    case QuotaPolicy::kIgnore: return true;
    case QuotaPolicy::kAutoDelete: return makeRoom(handler, *vars);
    case QuotaPolicy::kSuspend: break;
    }
    return refuse(handler, *vars, used);
}

bool ovxFFDCCleanup(OvxObject *handler)
{
    const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars || !hasBaseDirectory(*vars)) return false;
    const auto limit = static_cast<std::int64_t>(shareOf(*vars, vars->firstWarning));
    const std::int64_t excess = ovxCountFFDCSpaceUsed(vars->baseDir.get()) - limit;
    if (excess <= 0) return true;
    warnOfCleanUp(handler, *vars, excess);
    OvxFileDataList list = {};
    ovxFindAllFileData(vars->baseDir.get(), &list);
    if (list.count > 0)
        std::qsort(list.items, static_cast<std::size_t>(list.count), sizeof *list.items,
                   ovxCompareFileAges);
    const bool isDone = removeUntil(excess, list);
    BaxMemoryFree(list.items);
    return isDone;
}

void ovxFindAllFileData(const char *dir, OvxFileDataList *list)
{
    if (!list) return;
    forEachFileBelow(dir, [&](const char *path, const struct stat &status) {
        if (!ovxEnsureFileDataListCapacity(list)) return;
        OvxFileData &item = list->items[list->count++];
        item.size = status.st_size;
        item.modifyTime = status.st_mtime;
        std::strcpy(item.path, path);
    });
}

bool ovxEnsureFileDataListCapacity(OvxFileDataList *list)
{
    if (!list) return false;
    if (list->count < list->capacity) return true;
    if (list->capacity > INT32_MAX / 2) return false;
    const std::int32_t capacity = std::max(kFirstCapacity, list->capacity * 2);
    const std::size_t size = static_cast<std::size_t>(capacity) * sizeof(OvxFileData);
    void *items = BaxMemoryRealloc(list->items, size);
    if (!items) return false;
    list->items = static_cast<OvxFileData *>(items);
    list->capacity = capacity;
    return true;
}

int ovxCompareFileAges(const void *a, const void *b)
{
    const std::int64_t first = static_cast<const OvxFileData *>(a)->modifyTime;
    const std::int64_t second = static_cast<const OvxFileData *>(b)->modifyTime;
    return (first > second) - (first < second);
}
