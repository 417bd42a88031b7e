// Finding the numbered files of a log in its directory.
#include "handlers/files/OvxOlderFiles.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <sys/stat.h>

using namespace olvex;

namespace {

constexpr std::int32_t kFewNumbers = 32;

// How many numbers without a file end the search where the directory cannot be listed.
constexpr std::int32_t kLongestGap = 64;

struct CloseDirectory {
    void operator()(DIR *directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

// What stands behind the number in an entry of the directory. An extension may hold slashes; then
// the numbered entries are directories: "logs.d/app" has the older file "logs1.d/app".
std::string_view extensionOfEntry(const LogName &name)
{
    const std::string_view extension = name.extension.get();
    return extension.substr(0, extension.find('/'));
}

// The number in the name of an entry, 0 when it is none of the log's older files.
std::int32_t numberOf(std::string_view entry, const LogName &name)
{
    const std::string_view base = name.base.get();
    if (!entry.starts_with(base)) return 0;
    const char *const digits = entry.data() + base.size();
    const char *const end = entry.data() + entry.size();
    std::int32_t number = 0;
    const auto read = std::from_chars(digits, end, number);
    if (read.ec != std::errc() || *digits == '0' || number < 1) return 0;
    const std::string_view rest(read.ptr, static_cast<std::size_t>(end - read.ptr));
    if (!name.extension) return rest.empty() ? number : 0;
    return rest.starts_with('.') && rest.substr(1) == extensionOfEntry(name) ? number : 0;
}

DIR *openDirectoryOf(const LogName &name)
{
    if (!name.base) return nullptr;
    return opendir(name.directory ? name.directory.get() : ".");
}

// 0, or why the file of that number cannot be looked at; ENOENT when there is none.
int lookAt(const LogName &name, std::int32_t number)
{
    const Text path = name.pathOf(number);
    struct stat status = {};
    if (!path) return ENOMEM;
    if (lstat(path.get(), &status) == 0) return 0;
    return errno == ENOTDIR ? ENOENT : errno;
}

// The highest number before a long gap. A file that cannot be looked at ends the search and counts,
// so that moving it is tried and its failure reported.
std::int32_t highestByProbing(const LogName &name, std::int32_t highest)
{
    std::int32_t found = 0;
    for (std::int32_t n = 1; n <= highest && n - found <= kLongestGap; ++n) {
        const int error = lookAt(name, n);
        if (error == ENOENT) continue;
        found = n;
        if (error != 0) break;
    }
    return found;
}

} // namespace

namespace olvex {

OlderFiles::OlderFiles(const LogName &name, std::int32_t highest)
{
    if (highest <= kFewNumbers) {
        nextOfAll_ = highest;
    } else if (!list(name, highest)) {
        count_ = 0;
        nextOfAll_ = highestByProbing(name, highest);
        beforeAll_ = nextOfAll_ < highest ? highest : 0;
    }
}

std::int32_t OlderFiles::next()
{
    if (beforeAll_ > 0) return std::exchange(beforeAll_, 0);
    if (nextOfAll_ > 0) return nextOfAll_--;
    return count_ ? found_.get()[--count_] : 0;
}

// False when the directory cannot be listed to its end: an entry that was missed would be replaced
// by the one below it.
bool OlderFiles::list(const LogName &name, std::int32_t highest)
{
    const Directory directory(openDirectoryOf(name));
    if (!directory) return false;
    errno = 0;
    while (const dirent *entry = readdir(directory.get())) {
        const std::int32_t number = numberOf(entry->d_name, name);
        if (number >= 1 && number <= highest && !add(number)) return false;
        errno = 0;
    }
    if (errno != 0) return false;
    std::sort(found_.get(), found_.get() + count_);
    return true;
}

bool OlderFiles::add(std::int32_t number)
{
    if (count_ == capacity_) {
        const std::size_t capacity = capacity_ ? 2 * capacity_ : 64;
        auto *block = static_cast<std::int32_t *>(
            BaxMemoryRealloc(found_.get(), capacity * sizeof(std::int32_t)));
        if (!block) return false;
        (void)found_.release();
        found_.reset(block);
        capacity_ = capacity;
    }
    found_.get()[count_++] = number;
    return true;
}

} // namespace olvex
