// What the files of a directory of tables are.
#pragma once

#include <string>

namespace codeset {

// The header of a table file, or where an alias file leads.
struct FileInfo {
    bool isTable = false;
    bool isForeign = false; // a table in the byte order of other machines
    std::string name;       // of the code set; of an alias, its target
    unsigned family = 0;
    std::string contents;
};

// Throws std::runtime_error when the file cannot be read.
FileInfo inspect(const std::string &path);

// "EBCDIC single-byte"; "unknown" for a number that is none.
const char *familyText(unsigned family);

} // namespace codeset
