// Conversion: the one loop for every pair of decoder and encoder, and the entry points around it.
#include "ucv/Convert.h"

#include <olvex/Memory.h>
#include <olvex/UcvWide.h>

#include <algorithm>
#include <type_traits>

#include <climits>
#include <cstring>

using namespace olvex::ucv;

namespace olvex::ucv {

namespace {

constexpr FamilyRow kFamilies[] = {
    {kBytes, true, true, decodeByte, encodeByte, decodeUtf8, decodeUnit, encodeUnit, nullptr},
    {kUtf8, true, false, decodeUtf8, encodeUtf8, decodeUtf8, decodeSurrogates, encodeSurrogates,
     nullptr},
};

} // namespace

const FamilyRow &familyOf(const uc_ch_t &handle)
{
    for (const FamilyRow &row : kFamilies)
        if (row.type == handle.type) return row;
    return kFamilies[0];
}

} // namespace olvex::ucv

namespace {

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

bool isAscii(char c)
{
    return static_cast<signed char>(c) >= 0;
}
bool isAscii(char16_t unit)
{
    return unit < 0x80;
}

// How many places at the start of both spans can be copied as ASCII.
template <class In, class Out>
std::size_t copyAscii(const Span<const In> &in, const Span<Out> &out)
{
    const std::size_t most = std::min(in.left, out.left);
    std::size_t count = 0;
    if constexpr (sizeof(In) == 1 && sizeof(Out) == 1) {
        for (std::uint64_t word; count + sizeof word <= most; count += sizeof word) {
            std::memcpy(&word, in.at + count, sizeof word);
            if (word & 0x8080808080808080u) break;
            std::memcpy(out.at + count, &word, sizeof word);
        }
    }
    for (; count < most && isAscii(in.at[count]); ++count)
        out.at[count] = static_cast<Out>(in.at[count]);
    return count;
}

// Converts until the input is used up, the output is full, or the input ends inside a character. A
// character is written whole or not at all.
template <class In, class Out>
Result convert(uc_ch_t &handle, bool copiesAscii, Decode<In> decode, Encode<Out> encode,
               Span<const In> &in, Span<Out> &out)
{
    while (in.left > 0) {
        if (copiesAscii) {
            const std::size_t count = copyAscii(in, out);
            in.advance(count);
            out.advance(count);
            if (in.left == 0) break;
        }
        if (out.left == 0) return kOutputFull;
        const bool inShift = handle.inShift;
        const Decoded decoded = decode(handle, in.at, in.left);
        if (decoded.size == 0) return kInputCut;
        const bool mapped = decoded.value != kUnmapped;
        const Encoded encoded =
            encode(handle, mapped ? decoded.value : kQuestionMark, out.at, out.left);
        if (encoded.size == 0) {
            handle.inShift = inShift;
            return kOutputFull;
        }
        if (!mapped || encoded.substituted) ++handle.substCount;
        in.advance(decoded.size);
        out.advance(encoded.size);
    }
    return kAllConsumed;
}

// UTF-8 as it is, cut at a character when it does not fit.
Result copyUtf8(Span<const char> &in, Span<char> &out)
{
    std::size_t count = std::min(in.left, out.left);
    if (count < in.left)
        while (count > 0 && (in.at[count] & 0xC0) == 0x80)
            --count;
    std::memcpy(out.at, in.at, count);
    in.advance(count);
    out.advance(count);
    return in.left > 0 ? kOutputFull : kAllConsumed;
}

template <class In>
Result toCodeSet(uc_ch_t &handle, Span<const In> &in, Span<char> &out)
{
    const FamilyRow &family = familyOf(handle);
    if constexpr (std::is_same_v<In, char>) {
        if (family.copiesUtf8) return copyUtf8(in, out);
        return convert<In, char>(handle, family.asciiIsItself, family.decodeUtf8, family.encode, in,
                                 out);
    } else {
        return convert<In, char>(handle, family.asciiIsItself, family.decodeUcs2, family.encode, in,
                                 out);
    }
}

template <class Out>
Result fromCodeSet(uc_ch_t &handle, Span<const char> &in, Span<Out> &out)
{
    const FamilyRow &family = familyOf(handle);
    if constexpr (std::is_same_v<Out, char>)
        return convert<char, Out>(handle, family.asciiIsItself, family.decode, encodeUtf8, in, out);
    else
        return convert<char, Out>(handle, family.asciiIsItself, family.decode, family.encodeUcs2,
                                  in, out);
}

Result endShift(uc_ch_t &handle, Span<char> &out)
{
    const FamilyRow &family = familyOf(handle);
    return !family.endShift || family.endShift(handle, out.at, out.left) ? kAllConsumed
                                                                         : kOutputFull;
}

std::size_t countOf(int number)
{
    return number > 0 ? static_cast<std::size_t>(number) : 0;
}

// The public form of a conversion: pointers and counts in the caller's hands.
template <class In, class Out>
int run(uc_ch_t *handle, const In **in, int *inLeft, Out **out, int *outLeft,
        Result (*work)(uc_ch_t &, Span<const In> &, Span<Out> &))
{
    Span<const In> input{*in, countOf(*inLeft)};
    Span<Out> output{*out, countOf(*outLeft)};
    const Result result = work(*handle, input, output);
    *in = input.at;
    *inLeft = static_cast<int>(input.left);
    *out = output.at;
    *outLeft = static_cast<int>(output.left);
    return result;
}

bool haveOutput(const void *out, const int *outLeft)
{
    return out && outLeft;
}

int reset(uc_ch_t *handle, char **out, int *outLeft)
{
    if (!haveOutput(out, outLeft) || !*out) {
        handle->outShift = false;
        return kAllConsumed;
    }
    Span<char> output{*out, countOf(*outLeft)};
    const Result result = endShift(*handle, output);
    *out = output.at;
    *outLeft = static_cast<int>(output.left);
    return result;
}

std::size_t lengthOf(const char *text)
{
    return std::strlen(text);
}
std::size_t lengthOf(const char16_t *text)
{
    std::size_t length = 0;
    while (text[length])
        ++length;
    return length;
}

// A whole string in one go; returns how much of the target was filled.
template <class In, class Out>
int convertWhole(uc_ch_t *handle, const In *source, int length, Out *target, int size,
                 Result (*work)(uc_ch_t &, Span<const In> &, Span<Out> &))
{
    if (!source || !target || size <= 0) return 0;
    handle = orDefault(handle);
    handle->inShift = handle->outShift = false;
    const bool terminated = length < 0;
    Span<const In> in{source, terminated ? lengthOf(source) : countOf(length)};
    Span<Out> out{target, countOf(size) - (terminated ? 1 : 0)};
    work(*handle, in, out);
    if constexpr (std::is_same_v<Out, char>) endShift(*handle, out);
    handle->inShift = handle->outShift = false;
    if (terminated) *out.at++ = 0;
    return static_cast<int>(out.at - target);
}

// A new block with room for `factor` bytes for each of the source, and a terminator.
char *convertToBlock(uc_ch_t *handle, const char *source, int length, int factor, int *lengthOut,
                     int (*work)(uc_ch_t *, const char *, int, char *, int))
{
    if (lengthOut) *lengthOut = 0;
    if (!source) return nullptr;
    const std::size_t bytes = length < 0 ? std::strlen(source) : countOf(length);
    const std::size_t size = bytes * countOf(factor) + 1;
    if (size > INT_MAX) return nullptr;
    auto *block = static_cast<char *>(BaxMemoryMalloc(size));
    if (!block) return nullptr;
    const int written = work(handle, source, length, block, static_cast<int>(size));
    if (lengthOut) *lengthOut = written;
    return block;
}

} // namespace

int ucv_to_utf8_r(uc_ch_t *handle, const char **in, int *inLeft, char **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return handle->inShift = false, kAllConsumed;
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, fromCodeSet<char>);
}

int ucv_from_utf8_r(uc_ch_t *handle, const char **in, int *inLeft, char **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return reset(handle, out, outLeft);
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, toCodeSet<char>);
}

int ucv_to_ucs2_r(uc_ch_t *handle, const char **in, int *inLeft, char16_t **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return handle->inShift = false, kAllConsumed;
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, fromCodeSet<char16_t>);
}

int ucv_from_ucs2_r(uc_ch_t *handle, const char16_t **in, int *inLeft, char **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return reset(handle, out, outLeft);
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, toCodeSet<char16_t>);
}

int ucv_to_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, fromCodeSet<char>);
}

int ucv_from_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, toCodeSet<char>);
}

int ucv_to_ucs2(uc_ch_t *handle, const char *source, int length, char16_t *target, int size)
{
    return convertWhole(handle, source, length, target, size, fromCodeSet<char16_t>);
}

int ucv_from_ucs2(uc_ch_t *handle, const char16_t *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, toCodeSet<char16_t>);
}

char *ucv_fromu_alloc(uc_ch_t *handle, const char *source, int length, int *lengthOut)
{
    return convertToBlock(handle, source, length, 2, lengthOut, ucv_from_utf8);
}

char *ucv_tou_alloc(uc_ch_t *handle, const char *source, int length, int *lengthOut)
{
    return convertToBlock(handle, source, length, 3, lengthOut, ucv_to_utf8);
}

void ucv_free(void *block)
{
    BaxMemoryFree(block);
}
