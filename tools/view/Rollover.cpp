// See Rollover.h.
#include "view/Rollover.h"

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace tools::view {

namespace {

std::string headOf(int descriptor, std::size_t length)
{
    std::string head(length, '\0');
    const ssize_t count = ::pread(descriptor, head.data(), length, 0);
    head.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return head;
}

// Numbers of files are used again, so their first bytes must be the same too.
bool isSeen(const LogFile &file, const std::vector<ReadMark> &seen)
{
    return std::any_of(seen.begin(), seen.end(), [&](const ReadMark &mark) {
        return file.id == mark.id && !mark.head.empty() &&
               headOf(file.descriptor.get(), mark.head.size()) == mark.head;
    });
}

bool isEmptied(int descriptor, const ReadMark &mark)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return false;
    return static_cast<std::uint64_t>(status.st_size) < mark.read ||
           headOf(descriptor, mark.head.size()) != mark.head;
}

// Opens the files of a log from the newest to the oldest, so that a rollover meanwhile makes a file
// appear twice rather than not at all, until `isOld` says that a file is known.
template <class IsOld>
bool openNewer(const std::string &path, std::vector<LogFile> &files, IsOld isOld)
{
    const LogName name(path);
    std::vector<unsigned long> numbers = name.findNumbers();
    numbers.insert(numbers.begin(), 0);
    bool isFound = false;
    for (const unsigned long number : numbers) {
        LogFile file = openFile(name.pathOf(number));
        if (!file.descriptor.isOpen()) continue;
        isFound = isOld(file, number);
        if (isFound) break;
        const bool isTwice = std::any_of(files.begin(), files.end(),
                                         [&](const LogFile &other) { return other.id == file.id; });
        if (!isTwice) files.push_back(std::move(file));
    }
    std::reverse(files.begin(), files.end());
    return isFound;
}

Rollover findRenamed(const std::string &path, const ReadMark &mark,
                     const std::vector<ReadMark> &seen)
{
    Rollover rollover{Rollover::Kind::kRenamed, false, {}};
    rollover.keepsPlace = openNewer(path, rollover.files, [&](const LogFile &file, unsigned long) {
        return file.id == mark.id || isSeen(file, seen);
    });
    return rollover;
}

// The copy is recognised by its first bytes; reading goes on in it.
Rollover findEmptied(const std::string &path, const ReadMark &mark)
{
    Rollover rollover{Rollover::Kind::kEmptied, false, {}};
    LogFile copy;
    const bool isFound = openNewer(path, rollover.files, [&](LogFile &file, unsigned long number) {
        if (number == 0 || mark.head.empty() || file.size < mark.offset ||
            headOf(file.descriptor.get(), mark.head.size()) != mark.head)
            return false;
        copy = std::move(file);
        return true;
    });
    rollover.keepsPlace = isFound;
    if (isFound) {
        copy.start = mark.offset;
        rollover.files.insert(rollover.files.begin(), std::move(copy));
        return rollover;
    }
    // Without the copy only the file itself is known to be new.
    if (rollover.files.size() > 1)
        rollover.files.erase(rollover.files.begin(), rollover.files.end() - 1);
    return rollover;
}

} // namespace

Rollover findRollover(const std::string &path, int descriptor, const ReadMark &mark,
                      const std::vector<ReadMark> &seen)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {}; // between a rename and the new file
    if (FileId{status.st_dev, status.st_ino} == mark.id)
        return isEmptied(descriptor, mark) ? findEmptied(path, mark) : Rollover{};
    return findRenamed(path, mark, seen);
}

} // namespace tools::view
