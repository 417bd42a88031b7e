// What conversions look up in a table, prepared and made safe once when the table is loaded: every
// row that a conversion can reach lies in memory of ours, and what is outside the file is unmapped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace olvex::ucv {

struct TableImage;

using CodePoint = std::uint32_t;

inline constexpr std::uint16_t kHole = 0xFFFF;     // in a table: no character, no code, no row
inline constexpr CodePoint kUnmapped = 0xFFFFFFFF; // these places are no character
inline constexpr CodePoint kShift = 0xFFFFFFFE;    // they only change the shift state

inline std::uint32_t load16(const unsigned char *at)
{
    std::uint16_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

// A character's UTF-8, for copying all four places; a length of 0 for none.
struct Utf8Bytes {
    char bytes[3];
    unsigned char length;
};

struct Lookup {
    // By the high byte of a value: the row in which its low byte finds the code.
    const unsigned char *fromRows[256];
    // By a leading byte: the row of values by the following one, or the first node of a trie.
    const unsigned char *toRows[256];
    // The value of each byte that is a character by itself, and kUnmapped.
    CodePoint values[256];
    // The same as UTF-8.
    Utf8Bytes utf8[256];
    // How many bytes follow a byte in the character that it begins.
    unsigned char following[256];
    // For code sets with invariant characters: the row of the values below 0x100.
    unsigned char lowRow[512];

    const unsigned char *mapping;
    std::size_t mappingSize;
    unsigned char substitute;
    std::uint16_t substituteValue;

    // A row by its number, in units of 4 bytes; the padding for one that begins outside the file.
    const unsigned char *row(std::uint32_t number) const
    {
        const std::size_t at = std::size_t{4} * number;
        return mapping + (at < mappingSize ? at : mappingSize);
    }
};

// Fills the image's lookup and padding; `family` is the code set's.
void prepareLookup(TableImage &image, std::uint16_t family);

} // namespace olvex::ucv
