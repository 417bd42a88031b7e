// Finding what an installation brings: the build says how the data lie relative to the library, the
// loader where the library is.
#include "ucv/InstalledFiles.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <pthread.h>

namespace olvex::ucv {

namespace {

// OLVEX_DATA_FROM_LIBRARY is a path such as "../share/olvex".
constexpr char kFromLibrary[] = "/" OLVEX_DATA_FROM_LIBRARY;

char directory[PATH_MAX] = "";
pthread_once_t once = PTHREAD_ONCE_INIT;

// The path is made absolute while the working directory is still that of the start.
void findDirectory()
{
    Dl_info library = {};
    if (dladdr(&once, &library) == 0 || !library.dli_fname) return;
    char path[PATH_MAX];
    if (!realpath(library.dli_fname, path)) return;
    *std::strrchr(path, '/') = '\0'; // realpath() always gives one
    if (std::strlen(path) + sizeof kFromLibrary > sizeof directory) return;
    std::strcpy(directory, path);
    std::strcat(directory, kFromLibrary);
}

} // namespace

const char *installedDirectory()
{
    pthread_once(&once, findDirectory);
    return directory;
}

} // namespace olvex::ucv
