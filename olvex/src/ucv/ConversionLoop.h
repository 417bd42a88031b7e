// The one loop of all conversions: it runs a decoding against an encoding side (Characters.h), and
// knows about cutting, resuming and substitution. Runs of ASCII are copied in blocks.
#pragma once

#include <algorithm>
#include <bit>

#include "ucv/Unicode.h"

namespace olvex::ucv {

// Results of a restartable conversion.
enum Result : int { kAllConsumed = 0, kOutputFull = 1, kInputCut = 2 };

// A stretch of input or output that is left.
template <class Place>
struct Span {
    Place *at;
    Place *end;

    std::size_t left() const { return static_cast<std::size_t>(end - at); }
};

// How many places are looked at and copied at once; the loops become vector instructions. Where a
// short block is not ASCII, so many characters are converted one by one.
inline constexpr std::size_t kLongBlock = 32;
inline constexpr std::size_t kShortBlock = 16;

// The bits that are not set in a word of ASCII.
template <class Place>
inline constexpr std::uint64_t kNotAscii = sizeof(Place) == 1 ? 0x8080808080808080u
                                                              : 0xFF80FF80FF80FF80u;

inline bool isAscii(char c)
{
    return static_cast<signed char>(c) >= 0;
}
inline bool isAscii(char16_t unit)
{
    return unit < 0x80;
}

// Whether a block is ASCII, by words of 8 bytes.
template <std::size_t Size, class Place>
bool isAsciiBlock(const Place *in)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < Size; i += sizeof bits / sizeof(Place)) {
        std::uint64_t word;
        std::memcpy(&word, in + i, sizeof word);
        bits |= word;
    }
    return (bits & kNotAscii<Place>) == 0;
}

template <std::size_t Size, class In, class Out>
void copyAsciiBlocks(Span<const In> &in, Span<Out> &out)
{
    while (in.left() >= Size && out.left() >= Size && isAsciiBlock<Size>(in.at)) {
        for (std::size_t i = 0; i < Size; ++i)
            out.at[i] = static_cast<Out>(in.at[i]);
        in.at += Size;
        out.at += Size;
    }
}

// Copies what ASCII there is at the start of the next 8 bytes; the output has room for all of them.
template <class In, class Out>
void copyAsciiRun(Span<const In> &in, Span<Out> &out)
{
    std::uint64_t word;
    std::memcpy(&word, in.at, sizeof word);
    for (std::size_t i = 0; i < sizeof word / sizeof(In); ++i)
        out.at[i] = static_cast<Out>(in.at[i]);
    word &= kNotAscii<In>;
    const auto bits = static_cast<std::size_t>(std::endian::native == std::endian::little
                                                   ? std::countr_zero(word)
                                                   : std::countl_zero(word));
    in.at += bits / (8 * sizeof(In));
    out.at += bits / (8 * sizeof(In));
}

// Writes a character, or a question mark in its place, which is counted: places written, or
// kNoRoom.
template <class To, class Place>
[[gnu::always_inline]] inline int write(uc_ch_t &handle, To &to, CodePoint value, Place *out,
                                        std::size_t room)
{
    if (value != kUnmapped) [[likely]] {
        const int written = to.encode(value, out, room);
        if (written != kNoCode) [[likely]]
            return written;
    }
    const int written = to.substitute(out, room);
    if (written != kNoRoom) ++handle.substCount;
    return written;
}

// Writes the UTF-8 that a code set of single bytes has at hand; false when it has none.
template <class From>
[[gnu::always_inline]] inline bool writeUtf8(const From &from, Span<const char> &in,
                                             Span<char> &out)
{
    const Utf8Bytes &utf8 = from.utf8Of(*in.at);
    if (utf8.length == 0) [[unlikely]]
        return false;
    std::memcpy(out.at, &utf8, sizeof utf8);
    out.at += utf8.length;
    ++in.at;
    return true;
}

// Converts one character, taking the input and output to have these sizes. kAllConsumed means that
// it is done.
template <class From, class To, class In, class Out>
[[gnu::always_inline]] inline Result convertOne(uc_ch_t &handle, From &from, To &to, Span<In> &in,
                                                std::size_t size, Span<Out> &out, std::size_t room)
{
    if constexpr (std::is_same_v<To, Utf8> && requires { from.utf8Of(*in.at); })
        if (room >= sizeof(Utf8Bytes) && writeUtf8(from, in, out)) return kAllConsumed;
    const Decoded decoded = from.decode(in.at, size);
    if (decoded.size == 0) return kInputCut;
    if (!From::kHasShifts || decoded.value != kShift) {
        const int written = write(handle, to, decoded.value, out.at, room);
        if (written == kNoRoom) return kOutputFull;
        out.at += written;
    }
    in.at += decoded.size;
    return kAllConsumed;
}

// Converts while there is so much of both that an ordinary character can neither be cut nor find no
// room; sizes are constants there, and their checks vanish.
template <class From, class To, class In, class Out>
void convertAmple(uc_ch_t &handle, From &from, To &to, Span<In> &in, Span<Out> &out)
{
    // Where a text's lengths decide over branches, short runs are worth copying too.
    constexpr bool kCopiesRuns = sizeof(In) > 1 ? To::kLongest > 1 : From::kLongest > 1;
    constexpr std::size_t kShortest = kCopiesRuns ? 8 / sizeof(In) : 1;
    constexpr std::size_t kInput = std::max(From::kLongest, kShortest);
    constexpr std::size_t kOutput = std::max(To::kLongest, kShortest);
    const bool copiesAscii = from.copiesAscii() && to.copiesAscii();
    for (;;) {
        if (copiesAscii) {
            copyAsciiBlocks<kLongBlock>(in, out);
            copyAsciiBlocks<kShortBlock>(in, out);
        }
        std::size_t count = std::min({in.left() / kInput, out.left() / kOutput, kShortBlock});
        if (count == 0) return;
        for (; count > 0; --count) {
            if (kCopiesRuns && copiesAscii && isAscii(*in.at))
                copyAsciiRun(in, out);
            else if (convertOne(handle, from, to, in, kInput, out, kOutput) != kAllConsumed)
                return;
        }
    }
}

// Converts until the input is used up, the output is full, or the input ends inside a character. A
// character is written whole or not at all.
template <class From, class To>
Result convert(uc_ch_t &handle, Span<const typename From::Place> &input,
               Span<typename To::Place> &output)
{
    From from(handle);
    To to(handle);
    auto in = input; // copies, which what is written cannot overlap
    auto out = output;
    convertAmple(handle, from, to, in, out);
    Result result = kAllConsumed;
    while (in.at < in.end && result == kAllConsumed)
        result = out.at == out.end ? kOutputFull
                                   : convertOne(handle, from, to, in, in.left(), out, out.left());
    input = in;
    output = out;
    return result;
}

} // namespace olvex::ucv
