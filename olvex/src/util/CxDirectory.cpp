// Listing of directories.
#include <olvex/File.h>

#include "util/CxResult.h"

#include <cstring>
#include <dirent.h>

using namespace olvex;

namespace {

DIR *streamOf(CxDirectory directory)
{
    return reinterpret_cast<DIR *>(directory);
}

} // namespace

CxResult CxDirectoryOpen(CxDirectory *directory, const char *name)
{
    CxFilePath path;
    if (!directory || CxInitFilePath(&path, name) == 0 || CxFilePathIsDir(&path) != 0)
        return badArgument();
    *directory = reinterpret_cast<CxDirectory>(opendir(path.path));
    return *directory ? success() : failure(errno);
}

CxResult CxDirectoryGetNext(CxDirectory *directory, char *name, size_t length)
{
    if (!directory || !*directory || !name) return badArgument();
    *name = '\0';
    errno = 0;
    const dirent *entry = readdir(streamOf(*directory));
    if (entry) std::strncat(name, entry->d_name, length);
    return entry || errno == 0 || errno == ENOENT ? success() : failure(errno);
}

CxResult CxDirectoryClose(CxDirectory *directory)
{
    if (!directory || !*directory) return badArgument();
    const CxResult result = resultOf(closedir(streamOf(*directory)));
    *directory = nullptr;
    return result;
}
