// One character at a time: what the sides of a conversion have in common. A side decodes or encodes
// one character of UTF-8, UCS-2 or a family of code sets; the one loop of Skeleton.h runs a
// decoding and an encoding side against each other and knows about cutting, resuming and
// substitution.
//
// A side has
//   Place                      char, or char16_t for UCS-2
//   kLongest                   places that an ordinary character takes at most, either way
//   kHasShifts                 whether decoding may yield kShift
//   explicit Side(uc_ch_t &)   may keep the handle for its shift states and its table
//   copiesAscii()              whether characters below 0x80 are themselves
//   decode(in, size)           `size` is never 0
//   encode(value, out, room)   places written, kNoRoom or kNoCode
//   substitute(out, room)      a question mark: places written, or kNoRoom
// Neither encode nor a shift state changes anything when there is no room.
#pragma once

#include "ucv/Handle.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace olvex::ucv {

inline constexpr CodePoint kFirstSupplementary = 0x10000;
inline constexpr CodePoint kLastCodePoint = 0x10FFFF;

// How many places a character takes, 0 when the input ends inside it.
struct Decoded {
    std::size_t size;
    CodePoint value;
};
inline constexpr Decoded kCut = {0, kUnmapped};

inline constexpr int kNoRoom = 0;
inline constexpr int kNoCode = -1;

inline CodePoint byteOf(char c)
{
    return static_cast<unsigned char>(c);
}

template <class... Bytes>
int put(char *out, std::size_t room, Bytes... bytes)
{
    if (room < sizeof...(bytes)) return kNoRoom;
    ((*out++ = static_cast<char>(bytes)), ...);
    return static_cast<int>(sizeof...(bytes));
}

inline Decoded mapped(std::size_t size, CodePoint value)
{
    return {size, value == kHole ? kUnmapped : value};
}

} // namespace olvex::ucv
