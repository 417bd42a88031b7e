// Loads the library, works with it and unloads it, again and again: it must go each time, and leave
// neither memory nor descriptors nor functions to be called at a fork.
// Usage: olvex_unload LIBRARY TIMES
#include <olvex/olvex.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// The function of the library by that name, of the type of its declaration.
#define FUNCTION(name) reinterpret_cast<decltype(&name)>(dlsym(library, #name))

bool use(void *library, const std::string &directory)
{
    if (!FUNCTION(OvxOpenToolkit)(nullptr)) return false;
    OvxObject *logger = FUNCTION(OvxGetObject)("log", "ovx_pdlogger");
    OvxObject *file = FUNCTION(OvxGetObject)("file", "ovx_filehandler");
    FUNCTION(OvxSetObjProp)(file, "fileName", (directory + "/unload.log").c_str());
    FUNCTION(OvxAddListener)(logger, file);
    for (int i = 0; i < 40; ++i) // until the path is watched
        FUNCTION(OvxLogError)(logger, "hostmsg", 1, 1, "text %1$d", OVX_PARM_INT, i, 0);
    FUNCTION(OvxSetEmergencyFile)((directory + "/emergency").c_str());
    FUNCTION(OvxSetEmergencyFile)(nullptr);
    FUNCTION(OvxReleaseObject)(file);
    FUNCTION(OvxReleaseObject)(logger);
    FUNCTION(OvxCloseToolkit)();
    return true;
}

bool loadAndUnload(const char *path, const std::string &directory)
{
    void *library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library) std::fprintf(stderr, "%s\n", dlerror());
    if (!library || !use(library, directory)) return false;
    dlclose(library);
    return dlopen(path, RTLD_NOW | RTLD_NOLOAD) == nullptr;
}

struct Holdings {
    std::size_t memory;
    long descriptors;
};

Holdings measure()
{
    const auto descriptors = std::distance(fs::directory_iterator("/proc/self/fd"), {});
    return {mallinfo2().uordblks, descriptors};
}

bool canFork()
{
    const pid_t child = fork();
    if (child == 0) _exit(0);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) return 2;
    char directory[] = "/tmp/olvex-unload-XXXXXX";
    if (!mkdtemp(directory)) return 2;
    bool good = loadAndUnload(argv[1], directory) && loadAndUnload(argv[1], directory);
    const Holdings before = measure();
    const int times = std::atoi(argv[2]);
    for (int i = 0; good && i < times; ++i)
        good = loadAndUnload(argv[1], directory);
    const Holdings after = measure();
    fs::remove_all(directory);
    std::printf("%d times: memory %zu to %zu, descriptors %ld to %ld\n", times, before.memory,
                after.memory, before.descriptors, after.descriptors);
    const bool same =
        after.memory <= before.memory + 65536 && after.descriptors == before.descriptors;
    return good && same && canFork() ? 0 : 1;
}
