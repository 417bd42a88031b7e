// Whole strings from one code set to another, and times.
#include <olvex/UcvWide.h>

#include <climits>
#include <cstring>

#include "ucv/Handle.h"
#include "util/Memory.h"

using namespace olvex;
using namespace olvex::ucv;

namespace {

// A string's length when `factor` times it and a terminator can be counted, else -1.
int lengthOf(const char *string, std::size_t factor)
{
    const std::size_t length = std::strlen(string);
    return length < INT_MAX / factor ? static_cast<int>(length) : -1;
}

// The buffer for a result: that of the slot, or a new one for the slot.
char *bufferFor(std::size_t size, char **slot)
{
    if (slot && *slot) return *slot;
    auto *buffer = static_cast<char *>(BaxMemoryMalloc(size));
    if (slot) *slot = buffer;
    return buffer;
}

// Converts a string directly with one of the conversions of whole strings.
char *convertInto(uc_ch_t *handle, const char *string, char **slot, int factor,
                  int (*conversion)(uc_ch_t *, const char *, int, char *, int))
{
    if (!string) string = "";
    const int length = lengthOf(string, static_cast<std::size_t>(factor));
    if (length < 0) return nullptr;
    const int size = length * factor + 1;
    char *buffer = bufferFor(static_cast<std::size_t>(size), slot);
    if (buffer) conversion(handle, string, -1, buffer, size);
    return buffer;
}

using Units = Owned<char16_t>;

// A string as UCS-2, which never has more units than the string has bytes.
Units unitsOf(uc_ch_t *handle, const char *string, int length)
{
    const auto count = static_cast<std::size_t>(length) + 1;
    Units units(static_cast<char16_t *>(BaxMemoryMalloc(count * sizeof(char16_t))));
    if (units) ucv_to_ucs2(handle, string, -1, units.get(), length + 1);
    return units;
}

// Converts into `size` bytes at most; the bytes written without the terminator.
std::size_t convertWithin(uc_ch_t *from, uc_ch_t *to, const char *string, char *target,
                          std::size_t size)
{
    const int length = lengthOf(string, 1);
    const Units units = length < 0 ? nullptr : unitsOf(from, string, length);
    const int room = size < INT_MAX ? static_cast<int>(size) : INT_MAX;
    const int written = units ? ucv_from_ucs2(to, units.get(), -1, target, room) : 0;
    return written > 0 ? static_cast<std::size_t>(written) - 1 : 0;
}

Text recoded(uc_ch_t *from, uc_ch_t *to, const char *string)
{
    return Text(ucv_strconv(from, to, string, nullptr));
}

// The place behind as many characters of a string as stand in the first `bytes` of its copy in
// another code set.
const char *placeBehind(uc_ch_t *handle, const char *string, uc_ch_t *other, const char *copy,
                        int bytes)
{
    const Units units = unitsOf(other, copy, bytes);
    if (!units) return string;
    char16_t *out = units.get();
    int count = ucv_to_ucs2(other, copy, bytes, out, bytes);
    int left = lengthOf(string, 1);
    handle->inShift = false;
    ucv_to_ucs2_r(handle, &string, &left, &out, &count);
    handle->inShift = false;
    return string;
}

} // namespace

char *ucv_s2u(uc_ch_t *handle, const char *string, char **slot)
{
    return convertInto(handle, string, slot, 3, ucv_to_utf8);
}

char *ucv_u2s(uc_ch_t *handle, const char *string, char **slot)
{
    return convertInto(handle, string, slot, 2, ucv_from_utf8);
}

char *ucv_strconv(uc_ch_t *from, uc_ch_t *to, const char *string, char **slot)
{
    constexpr int kFactor = 4;
    if (!string) string = "";
    const int length = lengthOf(string, kFactor);
    const Units units = length < 0 ? nullptr : unitsOf(from, string, length);
    if (!units) return nullptr;
    const int size = length * kFactor + 1;
    char *buffer = bufferFor(static_cast<std::size_t>(size), slot);
    if (buffer) ucv_from_ucs2(to, units.get(), -1, buffer, size);
    return buffer;
}

size_t ucv_strftime(uc_ch_t *handle, void *, char *buffer, size_t size, const char *format,
                    const struct tm *time)
{
    if (!buffer || size == 0 || size > SIZE_MAX / 4 || !format || !time) return 0;
    ucv_init(); // for the platform's code set
    handle = orDefault(handle);
    if (handle == osLocaleHandle) return strftime(buffer, size, format, time);
    const Text localFormat = recoded(handle, osLocaleHandle, format);
    const Text local(static_cast<char *>(BaxMemoryMalloc(size * 4)));
    if (!localFormat || !local || !strftime(local.get(), size * 4, localFormat.get(), time))
        return 0;
    return convertWithin(osLocaleHandle, handle, local.get(), buffer, size);
}

char *ucv_strptime(uc_ch_t *handle, void *, const char *string, const char *format, struct tm *time)
{
    if (!string || !format || !time) return nullptr;
    ucv_init(); // for the platform's code set
    handle = orDefault(handle);
    if (handle == osLocaleHandle) return strptime(string, format, time);
    const Text local = recoded(handle, osLocaleHandle, string);
    const Text localFormat = recoded(handle, osLocaleHandle, format);
    if (!local || !localFormat) return nullptr;
    const char *end = strptime(local.get(), localFormat.get(), time);
    if (!end) return nullptr;
    const auto read = static_cast<int>(end - local.get());
    return const_cast<char *>(placeBehind(handle, string, osLocaleHandle, local.get(), read));
}
