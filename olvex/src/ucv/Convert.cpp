// Conversion: which sides serve which family, and the entry points around the one loop.
#include "ucv/Convert.h"

#include <olvex/Memory.h>
#include <olvex/UcvWide.h>

#include <array>
#include <type_traits>

#include "ucv/EbcdicFamilies.h"
#include "ucv/Gb18030.h"

#include <climits>
#include <cstring>

using namespace olvex::ucv;

namespace olvex::ucv {

namespace {

bool isFollowing(char byte)
{
    return (byte & 0xC0) == 0x80;
}

// How much of so many bytes ends at a character. Bytes that are no UTF-8 are cut anywhere, so that
// there is always something to go on with.
std::size_t wholeCharacters(const char *in, std::size_t count)
{
    const std::size_t least = count - std::min<std::size_t>(count, Utf8::kLongest - 1);
    std::size_t start = count;
    while (start > least && isFollowing(in[start]))
        --start;
    return isFollowing(in[start]) ? count : start;
}

// UTF-8 as it is, cut at a character when it does not fit.
Result copyUtf8(uc_ch_t &, Span<const char> &in, Span<char> &out)
{
    std::size_t count = std::min(in.left(), out.left());
    if (count < in.left()) count = wholeCharacters(in.at, count);
    std::memcpy(out.at, in.at, count);
    in.at += count;
    out.at += count;
    return in.at < in.end ? kOutputFull : kAllConsumed;
}

Result endDoubleByte(uc_ch_t &handle, Span<char> &out)
{
    const int written = EbcdicDoubleByte::end(handle, out.at, out.left());
    if (written < 0) return kOutputFull;
    out.at += written;
    return kAllConsumed;
}

template <class CodeSet>
constexpr Conversions conversions()
{
    using Utf8Side = typename CodeSet::Utf8Side;
    using Ucs2Side = typename CodeSet::Ucs2Side;
    return {convert<CodeSet, Utf8>, convert<Utf8Side, CodeSet>, convert<CodeSet, Ucs2Side>,
            convert<Ucs2Side, CodeSet>, nullptr};
}

constexpr auto kConversions = [] {
    std::array<Conversions, kFamilyCount> rows = {};
    rows.fill(conversions<PlainBytes>());
    for (Conversions &row : rows)
        row.fromUtf8 = copyUtf8;
    rows[kAsciiSingleByte] = conversions<AsciiSingleByte>();
    rows[kAsciiDoubleByte] = conversions<AsciiDoubleByte>();
    rows[kAsciiMultiByte] = conversions<AsciiMultiByte>();
    rows[kEbcdicSingleByte] = conversions<EbcdicSingleByte>();
    rows[kEbcdicDoubleByte] = conversions<EbcdicDoubleByte>();
    rows[kEbcdicDoubleByte].end = endDoubleByte;
    rows[kGb18030] = conversions<Gb18030>();
    rows[kUtf8] = conversions<Utf8CodeSet>();
    return rows;
}();

} // namespace

const Conversions &conversionsOf(const uc_ch_t &handle)
{
    return kConversions[handle.type < kFamilyCount ? handle.type : std::uint16_t{kBytes}];
}

bool copiesUtf8(const uc_ch_t &handle)
{
    return conversionsOf(handle).fromUtf8 == copyUtf8;
}

bool mapsAsciiToItself(uc_ch_t &handle)
{
    for (char16_t unit = 0; unit < 0x80; ++unit) {
        char byte = '\0';
        const char16_t *in = &unit;
        Span<const char16_t> source{in, in + 1};
        Span<char> target{&byte, &byte + 1};
        if (conversionsOf(handle).fromUcs2(handle, source, target) != kAllConsumed) return false;
        if (static_cast<char16_t>(byte) != unit || handle.substCount != 0) return false;
    }
    return true;
}

} // namespace olvex::ucv

namespace {

Result endShift(uc_ch_t &handle, Span<char> &out)
{
    const auto end = conversionsOf(handle).end;
    return end ? end(handle, out) : kAllConsumed;
}

std::size_t countOf(int number)
{
    return number > 0 ? static_cast<std::size_t>(number) : 0;
}

// The public form of a conversion: pointers and counts in the caller's hands.
template <class In, class Out>
int run(uc_ch_t *handle, const In **in, int *inLeft, Out **out, int *outLeft,
        Conversion<In, Out> work)
{
    Span<const In> input{*in, *in + countOf(*inLeft)};
    Span<Out> output{*out, *out + countOf(*outLeft)};
    const Result result = work(*handle, input, output);
    *in = input.at;
    *inLeft = static_cast<int>(input.left());
    *out = output.at;
    *outLeft = static_cast<int>(output.left());
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
    Span<char> output{*out, *out + countOf(*outLeft)};
    const Result result = endShift(*handle, output);
    *out = output.at;
    *outLeft = static_cast<int>(output.left());
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
                 Conversion<In, Out> Conversions::*direction)
{
    if (!source || !target || size <= 0) return 0;
    handle = orDefault(handle);
    handle->inShift = handle->outShift = false;
    const bool terminated = length < 0;
    Span<const In> in{source, source + (terminated ? lengthOf(source) : countOf(length))};
    Span<Out> out{target, target + countOf(size) - terminated};
    (conversionsOf(*handle).*direction)(*handle, in, out);
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
    return run(handle, in, inLeft, out, outLeft, conversionsOf(*handle).toUtf8);
}

int ucv_from_utf8_r(uc_ch_t *handle, const char **in, int *inLeft, char **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return reset(handle, out, outLeft);
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, conversionsOf(*handle).fromUtf8);
}

int ucv_to_ucs2_r(uc_ch_t *handle, const char **in, int *inLeft, char16_t **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return handle->inShift = false, kAllConsumed;
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, conversionsOf(*handle).toUcs2);
}

int ucv_from_ucs2_r(uc_ch_t *handle, const char16_t **in, int *inLeft, char **out, int *outLeft)
{
    handle = orDefault(handle);
    if (!in || !*in) return reset(handle, out, outLeft);
    if (!inLeft || !haveOutput(out, outLeft)) return kAllConsumed;
    return run(handle, in, inLeft, out, outLeft, conversionsOf(*handle).fromUcs2);
}

int ucv_to_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, &Conversions::toUtf8);
}

int ucv_from_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, &Conversions::fromUtf8);
}

int ucv_to_ucs2(uc_ch_t *handle, const char *source, int length, char16_t *target, int size)
{
    return convertWhole(handle, source, length, target, size, &Conversions::toUcs2);
}

int ucv_from_ucs2(uc_ch_t *handle, const char16_t *source, int length, char *target, int size)
{
    return convertWhole(handle, source, length, target, size, &Conversions::fromUcs2);
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
