// What the file handlers ask about their files, as narrowly as the kernel allows. Times are not
// asked for: the kernel would have to stamp the file anew at the next write.
#pragma once

#include <cstdint>

namespace olvex {

struct FileState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    bool isRegular = false;

    bool isSameFile(const FileState &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

// Reads the state of an open file or of what stands under a path; 0 or the error number.
int readFileState(int descriptor, FileState &state);
int readFileState(const char *path, FileState &state);

// Reads the size of a regular file that is known to be open, the cheapest question of all; its
// position is at its end then. 0 or the error number.
int readFileSize(int descriptor, std::uint64_t &size);

} // namespace olvex
