// Paths of bounded length: what stands there, their parents, and making chains of directories.
#include <olvex/File.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <sys/stat.h>

namespace {

constexpr std::int32_t kUnset = -1;

bool isUnset(const CxFilePath *path)
{
    return !path || path->length <= 0;
}

std::int32_t findLastSeparator(const CxFilePath &path)
{
    std::int32_t at = path.length - 1;
    while (at >= 0 && path.path[at] != '/')
        --at;
    return at;
}

// Makes one directory with exactly this mode; one that another process made meanwhile is as good.
int makeDirectory(const CxFilePath &path, std::uint32_t mode)
{
    if (mkdir(path.path, 0777) != 0) return errno == EEXIST ? 0 : errno;
    chmod(path.path, mode);
    return 0;
}

// The parent of a path directly under the root is the root, which is there.
int makeParents(const CxFilePath &path, std::uint32_t mode)
{
    CxFilePath parent;
    if (CxFilePathParent(&path, &parent) == 0 || parent.length == 0) return 0;
    return CxFilePathMkdirs(&parent, mode);
}

} // namespace

int CxInitFilePath(CxFilePath *path, const char *name)
{
    if (!path) return 0;
    path->length = path->lastSep = kUnset;
    path->path[0] = '\0';
    const std::size_t size = name ? std::strlen(name) : sizeof path->path;
    if (size > sizeof path->path - 2) return 0;
    CxFileNameLocalize(name, path->path, sizeof path->path);
    path->length = static_cast<std::int32_t>(size);
    path->lastSep = findLastSeparator(*path);
    return 1;
}

int CxFilePathIsDir(const CxFilePath *path)
{
    if (isUnset(path)) return CX_EINVAL;
    struct stat status = {};
    if (stat(path->path, &status) != 0) return errno;
    return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
}

int CxFilePathExists(const CxFilePath *path)
{
    if (isUnset(path)) return CX_EINVAL;
    struct stat status = {};
    return stat(path->path, &status) == 0 ? 0 : errno;
}

int CxFilePathParent(const CxFilePath *path, CxFilePath *parent)
{
    if (isUnset(path) || !parent || path->lastSep < 0) return 0;
    const std::int32_t length = path->lastSep;
    std::memmove(parent->path, path->path, static_cast<std::size_t>(length));
    parent->path[length] = '\0';
    parent->length = length;
    parent->lastSep = findLastSeparator(*parent);
    return 1;
}

int CxFilePathMkdirs(const CxFilePath *path, uint32_t mode)
{
    const int state = CxFilePathIsDir(path);
    if (state != ENOENT) return state;
    if (const int failed = makeParents(*path, mode)) return failed;
    return makeDirectory(*path, mode);
}
