// Files: thin layers over the POSIX calls, one call each. What is opened gets no number of a
// standard stream, even if those are free.
#include <olvex/File.h>

#include <olvex/Memory.h>

#include "util/CxResult.h"
#include "util/Descriptors.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace olvex;

namespace {

// A name with slashes, of at most 254 bytes.
class LocalName {
  public:
    explicit LocalName(const char *name)
    {
        fits_ = name && std::strlen(name) < sizeof bytes_ &&
                CxFileNameLocalize(name, bytes_, sizeof bytes_) == 1;
    }
    bool fits() const { return fits_; }
    const char *get() const { return bytes_; }

  private:
    char bytes_[255];
    bool fits_;
};

void turnBackslashes(char *name, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        if (name[i] == '\\') name[i] = '/';
}

} // namespace

CxResult CxFileOpen(CxFile *file, const char *name, int flags)
{
    return CxFileOpenMode(file, name, flags, 0600);
}

CxResult CxFileOpenMode(CxFile *file, const char *name, int flags, uint32_t mode)
{
    const LocalName local(name);
    if (!file || !local.fits()) return badArgument();
    *file = aboveStandard(open(local.get(), flags | O_CLOEXEC, mode));
    return resultOf(*file);
}

CxResult CxFileRead(CxFile *file, void *buffer, size_t length, int64_t *count)
{
    if (!file || !buffer || !count) return badArgument();
    *count = read(*file, buffer, length);
    return resultOf(*count);
}

CxResult CxFileWrite(CxFile *file, const void *buffer, size_t length, int64_t *count)
{
    if (!file || !buffer || !count) return badArgument();
    *count = write(*file, buffer, length);
    return resultOf(*count);
}

CxResult CxFileSeek(CxFile *file, int64_t offset, int whence)
{
    return file ? resultOf(lseek(*file, offset, whence)) : badArgument();
}

CxResult CxFileTrunc(CxFile *file)
{
    if (!file) return badArgument();
    if (lseek(*file, 0, SEEK_SET) != 0 || ftruncate(*file, 0) != 0) return failure(errno);
    struct stat status = {};
    if (fstat(*file, &status) != 0) return failure(errno);
    return status.st_size == 0 ? success() : badArgument();
}

CxResult CxFileGetSize(CxFile *file, int64_t *size)
{
    if (!file || !size) return badArgument();
    struct stat status = {};
    if (fstat(*file, &status) != 0) return failure(errno);
    *size = status.st_size;
    return success();
}

CxResult CxFileFlush(CxFile *file)
{
    return file ? resultOf(fsync(*file)) : badArgument();
}

CxResult CxFileClose(CxFile *file)
{
    if (!file) return badArgument();
    const CxResult result = resultOf(close(*file));
    *file = -1;
    return result;
}

CxResult CxFileNameGetSize(const char *name, int64_t *size)
{
    if (!name || !size) return badArgument();
    struct stat status = {};
    if (stat(name, &status) != 0) return failure(errno);
    *size = status.st_size;
    return success();
}

CxResult CxFileNameGetInfo(CxFileInfo *info, const char *name)
{
    if (!info || !name || !*name) return badArgument();
    struct stat status = {};
    if (stat(name, &status) != 0) return failure(errno);
    *info = {status.st_size, status.st_ctime, status.st_mtime, status.st_atime};
    return success();
}

CxResult CxFileNameRemove(const char *name)
{
    const LocalName local(name);
    return local.fits() ? resultOf(remove(local.get())) : badArgument();
}

CxResult CxFileNameRename(const char *oldName, const char *newName)
{
    const LocalName from(oldName);
    const LocalName to(newName);
    return from.fits() && to.fits() ? resultOf(rename(from.get(), to.get())) : badArgument();
}

int CxFileNameLocalize(const char *name, char *target, size_t size)
{
    if (!name || !target || size == 0) return 0;
    BaxStringNCpy(target, name, size);
    turnBackslashes(target, strnlen(target, size));
    return 1;
}

int CxFileNameGetNative(const char *name, char *target, size_t size)
{
    if (!name || !target) return 0;
    BaxStringNCpy(target, name, size);
    turnBackslashes(target, size);
    return 1;
}
