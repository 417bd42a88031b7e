// Where the trace file can be written: home directory, write test, relocation. Without locks.
#include "OlvLogConfig.h"

#include <olvex/Config.h>
#include <olvex/Memory.h>
#include <olvex/Misc.h>
#include <olvex/trace/OlvLogWrapper.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *kTraceFileCfg = "handlers.traceFile";
constexpr const char *kFileName = "fileName";
constexpr std::size_t kLargestEntry = 1024 * 1024;

// A string from the toolkit, freed at the end.
class OwnedText {
  public:
    explicit OwnedText(char *text) : text_(text) {}
    ~OwnedText() { BaxMemoryFree(text_); }
    OwnedText(const OwnedText &) = delete;
    OwnedText &operator=(const OwnedText &) = delete;
    char *get() const { return text_; }

  private:
    char *text_;
};

// Copies the home directory of an entry of the user database, which lookUp gets, into `home`.
template <typename LookUp>
bool copyHome(char *home, LookUp lookUp)
{
    int error = ERANGE;
    for (std::size_t size = 1024; error == ERANGE && size <= kLargestEntry; size *= 4) {
        const OwnedText block(static_cast<char *>(BaxMemoryMalloc(size)));
        if (!block.get()) return false;
        passwd entry;
        passwd *found = nullptr;
        error = lookUp(&entry, block.get(), size, &found);
        if (error != 0 || !found || !found->pw_dir) continue;
        const std::size_t length = std::strlen(found->pw_dir);
        if (length >= olvex::kTraceBuffer) return false;
        std::memcpy(home, found->pw_dir, length + 1);
        return true;
    }
    return false;
}

bool isHomeOfUserId(char *home)
{
    return copyHome(home, [](passwd *entry, char *block, std::size_t size, passwd **found) {
        return getpwuid_r(getuid(), entry, block, size, found);
    });
}

bool isHomeOfLogin(char *home)
{
    char login[256];
    if (getlogin_r(login, sizeof login) != 0) return false;
    return copyHome(home, [&](passwd *entry, char *block, std::size_t size, passwd **found) {
        return getpwnam_r(login, entry, block, size, found);
    });
}

bool isDirectory(const char *path)
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

// Asks with the rights that opening a file would have.
bool mayAccess(const char *path, int mode)
{
    return faccessat(AT_FDCWD, path, mode, AT_EACCESS) == 0;
}

// The directory of a path with slashes, cut in place after `separator`, the place of the last one.
const char *cutToDirectory(char *path, std::ptrdiff_t separator)
{
    if (separator < 0) return ".";
    path[separator > 0 ? separator : 1] = '\0';
    return path;
}

// The name of the trace file in the home directory, yours, when it has to go there; else none.
char *relocated(const char *fileName)
{
    const OwnedText path(convertSlashes(BaxStringDup(fileName)));
    const OwnedText copy(BaxStringDup(path.get()));
    if (!path.get() || !copy.get()) return nullptr;
    const char *last = std::strrchr(path.get(), '/');
    const char *directory = cutToDirectory(copy.get(), last ? last - path.get() : -1);
    if (!isDirectory(directory) || !isWriteBlocked(path.get(), directory)) return nullptr;
    const char *name = last ? fileName + (last - path.get()) : fileName;
    const char *parts[] = {getHomeDir(), last ? nullptr : "/", name};
    return OvxStrACat(3, parts, nullptr);
}

} // namespace

void olvex::relocateTraceFile()
{
    if (!OvxLogMgrHasCfg(kTraceFileCfg)) return;
    OvxObjCfg *cfg = OvxLogMgrGetCfg(kTraceFileCfg);
    const OwnedText fileName(OvxGetObjCfgProp(cfg, kFileName, nullptr));
    if (fileName.get() && *fileName.get()) {
        const OwnedText moved(relocated(fileName.get()));
        if (moved.get()) OvxSetObjCfgProp(cfg, kFileName, moved.get());
    }
    OvxReleaseObjCfg(cfg);
}

inline namespace olvex_trace {

const char *getHomeDir()
{
    static thread_local char home[olvex::kTraceBuffer];
    return isHomeOfUserId(home) || isHomeOfLogin(home) ? home : nullptr;
}

int isWriteBlocked(const char *file, const char *directory)
{
    if (file && mayAccess(file, F_OK) && !mayAccess(file, W_OK)) return 1;
    return directory && !mayAccess(directory, W_OK);
}

} // namespace olvex_trace
