// A code set: the value of each code, and the code of each value of the Basic Multilingual Plane.
// What the platform says, read through iconv one character at a time, corrected by
// codesets/published.def.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "codeset/CodeSets.h"

namespace codeset {

inline constexpr char16_t kNoValue = 0xFFFF;
inline constexpr std::size_t kValueCount = 0x10000;

struct Mapping {
    // Codes without shift bytes, in ascending order, and their values.
    std::vector<std::pair<std::string, char16_t>> values;
    // By value; empty for none.
    std::vector<std::string> codes = std::vector<std::string>(kValueCount);
    // By first byte: bytes of a character, 0 for a byte that begins none.
    std::array<unsigned char, 256> lengths = {};
    // What a table cannot hold: codes whose character is not one value of the plane, and values
    // that take several codes.
    int lostCodes = 0;
    int lostValues = 0;
};

// Throws std::runtime_error when the platform does not know the code set.
Mapping readMapping(const CodeSet &codeSet);

} // namespace codeset
