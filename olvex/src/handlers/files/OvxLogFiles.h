// The files of one log: their names, the numbered older ones, the directory they are in. Serves the
// file handler and the handler for shared files. Called with the API mutex held.
#pragma once

#include <olvex/File.h>

#include "util/CxResult.h"
#include "util/Memory.h"

#include <unistd.h>

namespace olvex {

// The parts of a log's name: directory "/" base, then a number for older files, "." extension.
struct LogName {
    Text path; // the active file
    Text directory;
    Text base;
    Text extension; // none when the name has no dot
    std::int32_t number = 0;

    // The path of the file of that number; 0 is the active one.
    Text pathOf(std::int32_t fileNumber) const;
};

// Longest name that a log may have, in bytes.
inline constexpr int kLongestLogName = 255;

// Makes the directory of the log and its missing parents; false when that failed.
bool makeLogDirectory(const LogName &name, std::uint32_t mode);

// Writes all bytes, however many calls that takes.
CxResult writeAll(CxFile *file, const char *bytes, std::size_t count);
// What appendRecord does when its one write was not enough or failed.
CxResult finishRecord(CxFile *file, const char *bytes, std::size_t count, std::uint64_t size,
                      ssize_t written);
// Writes a record to the end of a log of `size` bytes. When only a part of it finds room, that part
// is taken back, so that the next record does not stand in the middle of a line.
inline CxResult appendRecord(CxFile *file, const char *bytes, std::size_t count, std::uint64_t size)
{
    const ssize_t written = write(*file, bytes, count);
    if (written >= 0 && static_cast<std::size_t>(written) == count) [[likely]]
        return success();
    return finishRecord(file, bytes, count, size, written);
}

// Removes or renames a file; what is not there is no failure.
CxResult removeIfThere(const char *path);
CxResult renameIfThere(const char *from, const char *to);

// Gives the file of that number the next one, if it is there.
CxResult moveUp(const LogName &name, std::int32_t number);

} // namespace olvex

// Where a name's base ends in a digit, the place of that digit; else -1.
int ovxFHTrailingBaseDigit(const char *name);
// Copies at most 255 bytes of a name with slashes for backslashes.
bool ovxGetNativePath(const char *name, char *buffer);
// Takes a name apart; `reportsErrors` says whether a name that cannot be used is reported.
void ovxFHGetFileNameParts(const char *name, olvex::LogName &parts, bool reportsErrors);
// Joins a full name; none when there is no base. Yours.
void ovxSetFileNameParts(char **result, const char *directory, const char *base,
                         std::int32_t number, const char *extension);
