// See Files.h.
#include "view/Files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tools::view {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool exists(const std::string &path)
{
    return ::access(path.c_str(), F_OK) == 0;
}

// More files than a log has; such a number is a date.
constexpr unsigned long kMostFiles = 99'999;

// A pipe under the name of a log would be waited for.
bool canBeLog(const dirent &entry)
{
    return entry.d_type == DT_REG || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
}

// The number in a name between base and extension; 0 when there is none as handlers write it.
unsigned long numberIn(std::string_view name, std::string_view base, std::string_view extension)
{
    if (name.size() <= base.size() + extension.size() || !name.starts_with(base) ||
        !name.ends_with(extension))
        return 0;
    const std::string_view digits =
        name.substr(base.size(), name.size() - base.size() - extension.size());
    unsigned long number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = result.ec == std::errc() && result.ptr == digits.data() + digits.size();
    return isWhole && digits.front() != '0' && number <= kMostFiles ? number : 0;
}

} // namespace

void Descriptor::reset()
{
    if (number_ > STDERR_FILENO) ::close(number_);
    number_ = -1;
}

LogFile openFile(const std::string &path)
{
    LogFile file;
    file.path = path;
    const bool isInput = path == "-";
    file.descriptor =
        Descriptor(isInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file.descriptor.isOpen() || ::fstat(file.descriptor.get(), &status) != 0) return file;
    file.id = {status.st_dev, status.st_ino};
    file.isRegular = S_ISREG(status.st_mode);
    if (file.isRegular) file.size = static_cast<std::uint64_t>(status.st_size);
    return file;
}

LogName::LogName(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos) folder_ = path.substr(0, slash + 1);
    base_ = path.substr(folder_.size());
    const std::size_t dot = base_.rfind('.');
    if (dot == std::string::npos) return;
    extension_ = base_.substr(dot);
    base_.resize(dot);
}

bool LogName::isNumbered() const
{
    return !base_.empty() && isDigit(base_.back());
}

std::string LogName::pathOf(unsigned long number) const
{
    return folder_ + base_ + (number == 0 ? std::string() : std::to_string(number)) + extension_;
}

std::vector<unsigned long> LogName::findNumbers() const
{
    std::vector<unsigned long> numbers;
    const std::string folder = folder_.empty() ? "." : folder_;
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::opendir(folder.c_str()), ::closedir);
    if (!entries || base_.empty()) return numbers;
    while (const dirent *entry = ::readdir(entries.get())) {
        const unsigned long number = numberIn(entry->d_name, base_, extension_);
        if (number > 0 && canBeLog(*entry)) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string realName(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    const bool hasDot = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    const std::size_t end = hasDot ? dot : path.size();
    if (end == 0 || !isDigit(path[end - 1]) || exists(path)) return path;
    const std::string real = path.substr(0, end) + "_" + path.substr(end);
    return exists(real) ? real : path;
}

} // namespace tools::view
