// What a file handler asks about its file before every record, in one system call: is the file
// under the path still the one that is open, and how long is it.
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

// Reads the state of an open file or of what stands under a path; 0 or the error number. Times are
// not asked for: the kernel would have to stamp the file anew at the next write.
int readFileState(int descriptor, FileState &state);
int readFileState(const char *path, FileState &state);

} // namespace olvex
