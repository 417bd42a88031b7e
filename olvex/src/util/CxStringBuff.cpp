// The growable string. Sizes are worked out in 64 bits and refused above the signed 32-bit range.
#include "util/CxStringBuff.h"
#include "util/HotPath.h"

#include <olvex/Memory.h>
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#include <algorithm>
#include <utility>

#include <cstring>

using namespace olvex;

namespace {

constexpr std::uint32_t kFirstBlock = 1024;
constexpr std::uint64_t kLargest = INT32_MAX;

bool allocateFirst(CxStringBuff *buffer)
{
    buffer->str = static_cast<char *>(BaxMemoryMalloc(kFirstBlock));
    if (!buffer->str) return false;
    buffer->capacity = kFirstBlock;
    buffer->length = 0;
    buffer->str[0] = '\0';
    return true;
}

[[gnu::cold]] bool grow(CxStringBuff *buffer, std::uint64_t need)
{
    std::uint64_t capacity = std::max(buffer->capacity, 1U);
    while (capacity <= need)
        capacity *= 2;
    if (capacity > kLargest) return false;
    auto *block =
        static_cast<char *>(BaxMemoryRealloc(buffer->str, static_cast<std::size_t>(capacity)));
    if (!block) return false;
    buffer->str = block;
    buffer->capacity = static_cast<std::uint32_t>(capacity);
    return true;
}

// How many continuation bytes a code point takes, and what its lead byte begins with.
struct Utf8Form {
    std::int32_t last; // the greatest code point of this form
    int continuations;
    unsigned char lead;
};

constexpr Utf8Form kUtf8Forms[] = {
    {0x7F, 0, 0x00},     {0x7FF, 1, 0xC0},     {0xFFFF, 2, 0xE0},
    {0x1FFFFF, 3, 0xF0}, {0x3FFFFFF, 4, 0xF8}, {INT32_MAX, 5, 0xFC},
};

const Utf8Form &formOf(std::int32_t codePoint)
{
    const Utf8Form *form = kUtf8Forms;
    while (codePoint > form->last)
        ++form;
    return *form;
}

constexpr DigitSet kEbcdicDigits = {'\xF0', '\x60'};

bool appendDigits(CxStringBuff *buffer, std::uint64_t magnitude, bool negative, DigitSet digits)
{
    char scratch[kMostDigits];
    char *const end = scratch + sizeof scratch;
    const char *const first = writeDigits(end, magnitude, negative, digits);
    return appendBytes(buffer, first, static_cast<std::size_t>(end - first));
}

bool appendSigned(CxStringBuff *buffer, std::int64_t value, DigitSet digits)
{
    return appendDigits(buffer, magnitudeOf(value), value < 0, digits);
}

// Converts the whole text with one of the services' converters into a block with room for `factor`
// times its length, and puts that in the place of the old one.
bool change(uc_ch_t *codeSet, CxStringBuff *buffer, std::uint32_t factor,
            int (*convert)(uc_ch_t *, const char *, int, char *, int))
{
    if (!buffer) return false;
    CxStringBuff changed = {};
    int count = -1;
    if (cxStringBuffHasCapacity(&changed, std::size_t{buffer->length} * factor))
        count = convert(codeSet, buffer->str ? buffer->str : "", static_cast<int>(buffer->length),
                        changed.str, static_cast<int>(changed.capacity - 1));
    if (count < 0 || static_cast<std::uint32_t>(count) >= changed.capacity) {
        CxStringBuffDiscard(&changed); // which may have its first block
        return false;
    }
    changed.str[count] = '\0';
    changed.length = static_cast<std::uint32_t>(count);
    BaxMemoryFree(std::exchange(*buffer, changed).str);
    return true;
}

constexpr std::size_t kLongestCharacter = 8;

} // namespace

int cxStringBuffHasCapacity(CxStringBuff *buffer, std::size_t extra)
{
    if (!buffer || extra >= kLargest) return 0;
    if (!buffer->str && !allocateFirst(buffer)) return 0;
    const std::uint64_t need = std::uint64_t{buffer->length} + extra + 1;
    return buffer->capacity >= need || grow(buffer, need);
}

int CxStringBuffAppendChar(CxStringBuff *buffer, char byte)
{
    return appendBytes(buffer, &byte, 1);
}

int CxStringBuffAppendUTF32Char(CxStringBuff *buffer, int32_t codePoint)
{
    if (codePoint <= 0x7F)
        return CxStringBuffAppendChar(buffer, static_cast<char>(codePoint & 0x7F));
    const Utf8Form &form = formOf(codePoint);
    char bytes[6];
    auto rest = static_cast<std::uint32_t>(codePoint);
    for (int i = form.continuations; i > 0; --i, rest >>= 6)
        bytes[i] = static_cast<char>(0x80 | (rest & 0x3F));
    bytes[0] = static_cast<char>(form.lead | rest);
    return appendBytes(buffer, bytes, static_cast<std::size_t>(form.continuations) + 1);
}

int CxStringBuffAppendUCS2Char(CxStringBuff *buffer, char16_t unit)
{
    return CxStringBuffAppendUTF32Char(buffer, unit);
}

int CxStringBuffAppendInt32(CxStringBuff *buffer, int32_t value)
{
    return appendSigned(buffer, value, kAsciiDigits);
}

int CxStringBuffAppendInt64(CxStringBuff *buffer, int64_t value)
{
    return appendSigned(buffer, value, kAsciiDigits);
}

int CxStringBuffAppendUInt64(CxStringBuff *buffer, uint64_t value)
{
    return appendDigits(buffer, value, false, kAsciiDigits);
}

int CxStringBuffAppendEBCDICInt64(CxStringBuff *buffer, int64_t value)
{
    return appendSigned(buffer, value, kEbcdicDigits);
}

int CxStringBuffAppendStr(CxStringBuff *buffer, const char *string)
{
    return string && appendBytes(buffer, string, std::strlen(string));
}

int CxStringBuffAppendStrN(CxStringBuff *buffer, const char *string, int32_t count)
{
    if (!string || count < 0) return CxStringBuffAppendStr(buffer, string);
    return appendBytes(buffer, string, strnlen(string, static_cast<std::size_t>(count)));
}

int CxStringBuffAppendWStrN(CxStringBuff *buffer, uc_ch_t *codeSet, const char16_t *string,
                            int32_t limit)
{
    if (!buffer || !string) return 0;
    std::int64_t appended = 0;
    // At the limit no unit is looked at: there need be no more.
    for (; appended != limit && *string; ++string) {
        char character[kLongestCharacter];
        const int size = ucv_wctomb(codeSet, character, *string);
        if (size < 0) return 0;
        appended += size;
        if (limit >= 0 && appended > limit) return 1;
        if (!appendBytes(buffer, character, static_cast<std::size_t>(size))) return 0;
    }
    return 1;
}

int CxStringBuffInsertStr(CxStringBuff *buffer, const char *string, int32_t position)
{
    if (!buffer || !string || position < 0) return 0;
    const auto at = static_cast<std::uint32_t>(position);
    const std::size_t size = std::strlen(string);
    if (at > buffer->length || !cxStringBuffHasCapacity(buffer, size)) return 0;
    std::memmove(buffer->str + at + size, buffer->str + at, buffer->length - at + 1);
    std::memcpy(buffer->str + at, string, size);
    buffer->length += static_cast<std::uint32_t>(size);
    return 1;
}

char *CxStringBuffTakeStr(CxStringBuff *buffer)
{
    return buffer ? std::exchange(*buffer, CxStringBuff{}).str : nullptr;
}

char *CxStringBuffPeekStr(const CxStringBuff *buffer)
{
    return buffer ? buffer->str : nullptr;
}

char *CxStringBuffCopyStr(const CxStringBuff *buffer)
{
    return BaxStringDup(CxStringBuffPeekStr(buffer));
}

int CxStringBuffChangeFromUTF8(uc_ch_t *codeSet, CxStringBuff *buffer)
{
    return change(codeSet, buffer, 2, ucv_from_utf8);
}

int CxStringBuffChangeToUTF8(uc_ch_t *codeSet, CxStringBuff *buffer)
{
    return change(codeSet, buffer, 3, ucv_to_utf8);
}

OVX_HOT void CxStringBuffRestart(CxStringBuff *buffer)
{
    if (!buffer) return;
    buffer->length = 0;
    if (buffer->str) buffer->str[0] = '\0';
}

void CxStringBuffDiscard(CxStringBuff *buffer)
{
    BaxMemoryFree(CxStringBuffTakeStr(buffer));
}

int CxStringBuffPack(CxStringBuff *buffer)
{
    if (!buffer) return 0;
    if (buffer->length == 0) {
        CxStringBuffDiscard(buffer);
        return 1;
    }
    if (buffer->capacity == buffer->length + 1) return 0;
    auto *block = static_cast<char *>(BaxMemoryRealloc(buffer->str, buffer->length + 1));
    if (!block) return 0;
    buffer->str = block;
    buffer->capacity = buffer->length + 1;
    return 1;
}
