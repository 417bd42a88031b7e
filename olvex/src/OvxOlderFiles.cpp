// Finding the numbered files of a log in its directory.
#include "OvxOlderFiles.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <dirent.h>

using namespace olvex;

namespace {

constexpr std::int32_t kFewNumbers = 32;

struct CloseDirectory {
    void operator()(DIR *directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

// The number in a file's name, 0 when it is none of the log's older files.
std::int32_t numberOf(std::string_view file, const LogName &name)
{
    const std::string_view base = name.base.get();
    if (!file.starts_with(base)) return 0;
    const char *const digits = file.data() + base.size();
    const char *const end = file.data() + file.size();
    std::int32_t number = 0;
    const auto read = std::from_chars(digits, end, number);
    if (read.ec != std::errc() || *digits == '0' || number < 1) return 0;
    const std::string_view rest(read.ptr, static_cast<std::size_t>(end - read.ptr));
    if (!name.extension) return rest.empty() ? number : 0;
    return rest.starts_with('.') && rest.substr(1) == name.extension.get() ? number : 0;
}

// Whether all the log's files are in its directory, so that this can be searched for them.
bool canBeSearched(const LogName &name)
{
    return name.directory && name.base &&
           !(name.extension && BaxStringRChr(name.extension.get(), '/'));
}

} // namespace

namespace olvex {

OlderFiles::OlderFiles(const LogName &name, std::int32_t highest)
    : nextOfAll_(highest <= kFewNumbers || !find(name, highest) ? highest : 0)
{}

std::int32_t OlderFiles::next()
{
    if (nextOfAll_ > 0) return nextOfAll_--;
    return count_ ? found_.get()[--count_] : 0;
}

// False when the directory cannot be searched.
bool OlderFiles::find(const LogName &name, std::int32_t highest)
{
    const Directory directory(canBeSearched(name) ? opendir(name.directory.get()) : nullptr);
    if (!directory) return false;
    while (const dirent *entry = readdir(directory.get())) {
        const std::int32_t number = numberOf(entry->d_name, name);
        if (number >= 1 && number <= highest && !add(number)) return false;
    }
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
