// What the file handlers ask the kernel about their files, and no more. Times are not read: reading
// them makes some file systems update the time stamp again at the next write.
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
