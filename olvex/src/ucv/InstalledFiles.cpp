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
    if (!realpath(library.dli_fname, directory)) *directory = '\0';
    char *const end = std::strrchr(directory, '/');
    if (!end) return;
    if (sizeof kFromLibrary > sizeof directory - static_cast<std::size_t>(end - directory))
        *directory = '\0';
    else
        std::memcpy(end, kFromLibrary, sizeof kFromLibrary);
}

} // namespace

const char *installedDirectory()
{
    pthread_once(&once, findDirectory);
    return directory;
}

} // namespace olvex::ucv
