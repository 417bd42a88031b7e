// Single characters and their boundaries in any code set. Input ends at its terminator, whatever
// length the caller names.
#include <olvex/UcvWide.h>

#include <algorithm>
#include <utility>

#include <climits>
#include <cstring>

#include "ucv/Handle.h"

using namespace olvex::ucv;

namespace {

constexpr int kLongestWritten = 4;

// The longest character of a table, with a shift code or two in front.
constexpr std::size_t kLongestRead = 18;

bool isIn(std::uint16_t family, std::initializer_list<std::uint16_t> families)
{
    return std::find(families.begin(), families.end(), family) != families.end();
}

bool isAsciiBased(const uc_ch_t &handle)
{
    return isIn(handle.type,
                {kAsciiSingleByte, kAsciiDoubleByte, kAsciiMultiByte, kUtf8, kGb18030});
}

bool hasShifts(const uc_ch_t &handle)
{
    return handle.type == kEbcdicDoubleByte;
}

// One character in front of a terminator.
struct Character {
    int bytes = 0; // consumed, shift codes included
    int units = 0; // none: the character is cut, does not fit, or there are only shift codes
    bool ended = false;
    char16_t unit = 0;
    bool substituted = false;
};

// Reads a character that takes at most `room` units.
Character read(uc_ch_t &handle, const char *source, std::size_t size, int room)
{
    const std::size_t most = std::min(size, kLongestRead);
    const auto length = static_cast<int>(strnlen(source, most));
    char16_t units[2] = {};
    char16_t *out = units;
    const char *in = source;
    int inLeft = length;
    int outLeft = room;
    const std::uint16_t substitutes = handle.substCount;
    ucv_to_ucs2_r(&handle, &in, &inLeft, &out, &outLeft);
    Character character;
    character.bytes = length - inLeft;
    character.units = room - outLeft;
    character.ended = inLeft == 0 && static_cast<std::size_t>(length) < most;
    character.unit = units[0];
    character.substituted = handle.substCount != substitutes;
    return character;
}

// Puts a character's shift state back when it was none.
class StateKeeper {
  public:
    explicit StateKeeper(uc_ch_t &handle)
        : handle_(handle), inShift_(handle.inShift), substCount_(handle.substCount)
    {}
    int refuse()
    {
        handle_.inShift = inShift_;
        return -1;
    }
    void restore()
    {
        handle_.inShift = inShift_;
        handle_.substCount = substCount_;
    }
    void keepCount() { handle_.substCount = substCount_; }

  private:
    uc_ch_t &handle_;
    bool inShift_;
    std::uint16_t substCount_;
};

int resetInput(uc_ch_t &handle)
{
    handle.inShift = false;
    return hasShifts(handle);
}

// The length of a character that may take one unit or two. What is replaced by a question mark has
// the length of its code; a single byte that is replaced begins no character.
int measure(uc_ch_t &handle, const char *source, std::size_t size)
{
    Character character = read(handle, source, size, 1);
    if (character.units == 0 && !character.ended) character = read(handle, source, size, 2);
    if (character.units == 0) return character.ended ? 0 : -1;
    return character.substituted && character.bytes == 1 ? -1 : character.bytes;
}

// Counts the bytes of a conversion without keeping them. What ends a shift may need another area.
std::size_t countBytes(uc_ch_t &handle, const char16_t *in, int inLeft)
{
    std::size_t count = 0;
    for (int result = 1; result == 1;) {
        char area[256];
        char *out = area;
        int outLeft = sizeof area;
        result = ucv_from_ucs2_r(&handle, &in, &inLeft, &out, &outLeft);
        if (result == 2) return SIZE_MAX;
        if (result == 0) result = ucv_from_ucs2_r(&handle, nullptr, nullptr, &out, &outLeft);
        count += sizeof area - static_cast<std::size_t>(outLeft);
    }
    return count;
}

} // namespace

int ucv_wctomb(uc_ch_t *handle, char *target, char16_t unit)
{
    handle = orDefault(handle);
    if (!target) {
        handle->outShift = false;
        return hasShifts(*handle);
    }
    const char16_t *in = &unit;
    int inLeft = 1;
    int outLeft = kLongestWritten;
    const int result = ucv_from_ucs2_r(handle, &in, &inLeft, &target, &outLeft);
    return result == 0 && outLeft < kLongestWritten ? kLongestWritten - outLeft : -1;
}

int ucv_mbtowc(uc_ch_t *handle, char16_t *unit, const char *source, size_t size)
{
    handle = orDefault(handle);
    if (!source) return resetInput(*handle);
    if (size == 0) return -1;
    char16_t ignored = 0;
    char16_t &result = unit ? *unit : ignored;
    if (isAsciiBased(*handle) && static_cast<signed char>(*source) >= 0) {
        result = static_cast<unsigned char>(*source);
        return *source != '\0';
    }
    StateKeeper keeper(*handle);
    const Character character = read(*handle, source, size, 1);
    if (character.units == 0 && !character.ended) return keeper.refuse();
    result = character.unit;
    return character.units > 0 && result != 0 ? character.bytes : 0;
}

int ucv_mblen(uc_ch_t *handle, const char *source, size_t size)
{
    handle = orDefault(handle);
    if (!source) return resetInput(*handle);
    if (size == 0) return -1;
    if (*source == '\0') return 0;
    if (isIn(handle->type, {kAsciiSingleByte, kEbcdicSingleByte})) return 1;
    StateKeeper keeper(*handle);
    const int length = measure(*handle, source, size);
    keeper.keepCount();
    return length < 0 ? keeper.refuse() : length;
}

size_t ucv_wcstombs(uc_ch_t *handle, char *target, const char16_t *source, size_t size)
{
    if (!source) return 0;
    handle = orDefault(handle);
    handle->outShift = false;
    const std::size_t length = ucv_wcslen(source);
    if (length > INT_MAX) return SIZE_MAX;
    int inLeft = static_cast<int>(length);
    if (!target) {
        StateKeeper keeper(*handle);
        const std::size_t count = countBytes(*handle, source, inLeft);
        keeper.keepCount();
        return count;
    }
    const int room = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
    int outLeft = room;
    char *out = target;
    if (ucv_from_ucs2_r(handle, &source, &inLeft, &out, &outLeft) == 2) return SIZE_MAX;
    ucv_from_ucs2_r(handle, nullptr, nullptr, &out, &outLeft);
    if (outLeft > 0) *out = '\0';
    return static_cast<std::size_t>(room - outLeft);
}

size_t ucv_mbstowcs(uc_ch_t *handle, char16_t *target, const char *source, size_t count)
{
    if (!source) return 0;
    handle = orDefault(handle);
    handle->inShift = false;
    for (std::size_t units = 0; !target || units < count; ++units) {
        const int bytes =
            ucv_mbtowc(handle, target ? target + units : nullptr, source, kLongestRead);
        if (bytes < 0) return SIZE_MAX;
        if (bytes == 0) return units;
        source += bytes;
    }
    return count;
}

int ucv_mbsbtype(uc_ch_t *handle, const char *string, size_t index)
{
    if (!string) return -1;
    handle = orDefault(handle);
    StateKeeper keeper(*handle);
    handle->inShift = false;
    std::size_t start = 0;
    int length = ucv_mblen(handle, string, SIZE_MAX);
    while (length != 0 && start + static_cast<std::size_t>(std::max(length, 1)) <= index) {
        start += static_cast<std::size_t>(std::max(length, 1));
        length = ucv_mblen(handle, string + start, SIZE_MAX);
    }
    keeper.restore();
    if (length < 0 || start < index) return length > 0 ? 2 : -1;
    return length > 1;
}

int ucv_ismbs1st(uc_ch_t *handle, const char *string, const char *position)
{
    if (!string || !position || position < string) return 0;
    return ucv_mbsbtype(handle, string, static_cast<std::size_t>(position - string)) == 1;
}

int ucv_check_subs(uc_ch_t *handle)
{
    return std::exchange(orDefault(handle)->substCount, std::uint16_t{0});
}
