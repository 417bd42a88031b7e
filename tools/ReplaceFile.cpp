#include "ReplaceFile.h"

#include <stdexcept>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace tools {

namespace {

bool writeAll(int file, std::string_view contents)
{
    while (!contents.empty()) {
        const ssize_t count = write(file, contents.data(), contents.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        contents.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// What a new file of this process may be read and written by.
mode_t newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

[[noreturn]] void fail(const std::string &path, int error)
{
    throw std::runtime_error(path + " cannot be written: " + std::strerror(error));
}

} // namespace

void replaceFile(const std::string &path, std::string_view contents)
{
    std::string temporary = path + ".XXXXXX";
    const int file = mkstemp(temporary.data());
    if (file < 0) fail(path, errno);
    bool ok = writeAll(file, contents) && fchmod(file, newFileMode()) == 0;
    int error = ok ? 0 : errno;
    if (close(file) != 0 && ok) ok = false, error = errno;
    if (ok && rename(temporary.c_str(), path.c_str()) == 0) return;
    if (ok) error = errno;
    unlink(temporary.c_str());
    fail(path, error);
}

} // namespace tools
