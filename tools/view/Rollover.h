// Notices that a log was rolled over while it was being followed, and finds the files in which it
// goes on. Handlers either rename the full file, or copy it to the file of number 1 and empty it.
#pragma once

#include <string>
#include <vector>

#include "view/Files.h"

namespace tools::view {

// How far a file was read: what a rollover is recognised by.
struct ReadMark {
    FileId id;
    std::string head;         // its first bytes
    std::uint64_t offset = 0; // the first byte that was not used yet
    std::uint64_t read = 0;   // the first byte that was not read yet
};

struct Rollover {
    enum class Kind : std::uint8_t {
        kNone,
        kRenamed, // what was not read yet is still to be had from the open file
        kEmptied, // it is to be had from the first of `files`, if `keepsPlace`
    };
    Kind kind = Kind::kNone;
    bool keepsPlace = false;    // nothing is missing between the place and `files`
    std::vector<LogFile> files; // what follows, the oldest first
};

// Looks at the log `path`, of which the file that was written was read up to `mark`. `seen` are the
// files that were read before that one.
Rollover findRollover(const std::string &path, int descriptor, const ReadMark &mark,
                      const std::vector<ReadMark> &seen);

} // namespace tools::view
