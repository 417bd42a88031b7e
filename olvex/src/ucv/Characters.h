// One character at a time: how the families of code sets decode and encode. A converter is a
// decoder and an encoder run by the one loop of Convert.cpp, which knows about cutting, resuming
// and substitution; what a family adds is in these small functions only.
#pragma once

#include "ucv/Handle.h"

#include <cstddef>
#include <cstdint>

namespace olvex::ucv {

using CodePoint = std::uint32_t;

inline constexpr CodePoint kUnmapped = 0xFFFFFFFF;
inline constexpr CodePoint kQuestionMark = '?';

// What a decoder took: how many places of the input, 0 when the input ends inside the character;
// and the character, kUnmapped for what has none.
struct Decoded {
    std::size_t size;
    CodePoint value;
};

// What an encoder wrote: how many places of the output, 0 when there was no room; and whether that
// is a substitute.
struct Encoded {
    std::size_t size;
    bool substituted;
};

// Input is never empty. A decoder may change the handle's inShift, an encoder its outShift; both
// may consume or write nothing but a shift.
template <class Place>
using Decode = Decoded (*)(uc_ch_t &handle, const Place *in, std::size_t size);
template <class Place>
using Encode = Encoded (*)(uc_ch_t &handle, CodePoint value, Place *out, std::size_t room);

// UTF-8 of one to four bytes; continuation bytes are not checked.
Decoded decodeUtf8(uc_ch_t &handle, const char *in, std::size_t size);
// UTF-8 as the families of the Basic Multilingual Plane take it: never more than three bytes.
Decoded decodeShortUtf8(uc_ch_t &handle, const char *in, std::size_t size);
Encoded encodeUtf8(uc_ch_t &handle, CodePoint value, char *out, std::size_t room);

// UCS-2 with surrogate pairs, and without.
Decoded decodeSurrogates(uc_ch_t &handle, const char16_t *in, std::size_t size);
Encoded encodeSurrogates(uc_ch_t &handle, CodePoint value, char16_t *out, std::size_t room);
Decoded decodeUnit(uc_ch_t &handle, const char16_t *in, std::size_t size);
Encoded encodeUnit(uc_ch_t &handle, CodePoint value, char16_t *out, std::size_t room);

// Bytes as the code points 0 to 255.
Decoded decodeByte(uc_ch_t &handle, const char *in, std::size_t size);
Encoded encodeByte(uc_ch_t &handle, CodePoint value, char *out, std::size_t room);

} // namespace olvex::ucv
