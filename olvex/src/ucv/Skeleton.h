// The one loop of all conversions: it runs a decoding against an encoding side (Characters.h), and
// knows about cutting, resuming and substitution. Runs of ASCII are copied in blocks.
#pragma once

#include <algorithm>

#include "ucv/Characters.h"

namespace olvex::ucv {

// Results of a restartable conversion.
enum Result : int { kAllConsumed = 0, kOutputFull = 1, kInputCut = 2 };

// A stretch of input or output and how much of it is left.
template <class Place>
struct Span {
    Place *at;
    std::size_t left;

    void advance(std::size_t count)
    {
        at += count;
        left -= count;
    }
};

inline bool isAscii(char c)
{
    return static_cast<signed char>(c) >= 0;
}
inline bool isAscii(char16_t unit)
{
    return unit < 0x80;
}

// How many places are looked at and copied at once; loops over them become vector instructions.
inline constexpr std::size_t kBlock = 32;

template <class Place>
bool isAsciiBlock(const Place *in)
{
    unsigned bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i)
        bits |= static_cast<std::make_unsigned_t<Place>>(in[i]);
    return bits < 0x80;
}

template <class In, class Out>
void copyBlock(const In *in, Out *out)
{
    for (std::size_t i = 0; i < kBlock; ++i)
        out[i] = static_cast<Out>(in[i]);
}

// Copies as much ASCII as there is at the start of the input and as fits.
template <class In, class Out>
void copyAscii(Span<const In> &in, Span<Out> &out)
{
    const std::size_t most = std::min(in.left, out.left);
    std::size_t count = 0;
    for (; count + kBlock <= most && isAsciiBlock(in.at + count); count += kBlock)
        copyBlock(in.at + count, out.at + count);
    for (; count < most && isAscii(in.at[count]); ++count)
        out.at[count] = static_cast<Out>(in.at[count]);
    in.advance(count);
    out.advance(count);
}

// Writes a character, or a question mark in its place, which is counted: places written, or
// kNoRoom.
template <class To, class Place>
int write(uc_ch_t &handle, To &to, CodePoint value, const Span<Place> &out)
{
    if (value != kUnmapped) {
        const int written = to.encode(value, out.at, out.left);
        if (written != kNoCode) return written;
    }
    const int written = to.substitute(out.at, out.left);
    if (written != kNoRoom) ++handle.substCount;
    return written;
}

// Converts until the input is used up, the output is full, or the input ends inside a character. A
// character is written whole or not at all.
template <class From, class To>
Result convert(uc_ch_t &handle, Span<const typename From::Place> &in, Span<typename To::Place> &out)
{
    From from(handle);
    To to(handle);
    const bool copiesAscii = from.copiesAscii() && to.copiesAscii();
    while (in.left > 0) {
        if (copiesAscii && isAscii(*in.at)) {
            copyAscii(in, out);
            if (in.left == 0) break;
        }
        if (out.left == 0) return kOutputFull;
        const Decoded decoded = from.decode(in.at, in.left);
        if (decoded.size == 0) return kInputCut;
        if (decoded.value != kShift) {
            const int written = write(handle, to, decoded.value, out);
            if (written == kNoRoom) return kOutputFull;
            out.advance(static_cast<std::size_t>(written));
        }
        in.advance(decoded.size);
    }
    return kAllConsumed;
}

} // namespace olvex::ucv
