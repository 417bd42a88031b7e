// Single characters and times in any code set.
#include <olvex/UcvWide.h>

#include "ucv/Handle.h"
#include "util/Memory.h"

using namespace olvex;
using namespace olvex::ucv;

namespace {

constexpr int kLongestCharacter = 4;

// A text in another code set, through UCS-2; null when memory runs out.
Text recode(uc_ch_t *from, uc_ch_t *to, const char *text)
{
    const std::size_t length = std::strlen(text);
    const Owned<char16_t> units(
        static_cast<char16_t *>(BaxMemoryMalloc((length + 1) * sizeof(char16_t))));
    const std::size_t size = length * 4 + 1;
    Text recoded(units ? static_cast<char *>(BaxMemoryMalloc(size)) : nullptr);
    if (!recoded) return nullptr;
    ucv_to_ucs2(from, text, -1, units.get(), static_cast<int>(length + 1));
    ucv_from_ucs2(to, units.get(), -1, recoded.get(), static_cast<int>(size));
    return recoded;
}

} // namespace

int ucv_wctomb(uc_ch_t *handle, char *target, char16_t unit)
{
    handle = orDefault(handle);
    if (!target) {
        handle->outShift = false;
        return handle->type == kEbcdicDoubleByte;
    }
    const char16_t *in = &unit;
    int inLeft = 1;
    int outLeft = kLongestCharacter;
    const int result = ucv_from_ucs2_r(handle, &in, &inLeft, &target, &outLeft);
    return result == 0 && outLeft < kLongestCharacter ? kLongestCharacter - outLeft : -1;
}

size_t ucv_strftime(uc_ch_t *handle, void *, char *buffer, size_t size, const char *format,
                    const struct tm *time)
{
    if (!buffer || size == 0 || !format || !time) return 0;
    handle = orDefault(handle);
    if (handle == osLocaleHandle) return strftime(buffer, size, format, time);
    const Text localFormat = recode(handle, osLocaleHandle, format);
    const std::size_t localSize = size * 4;
    const Text local(static_cast<char *>(BaxMemoryMalloc(localSize)));
    if (!localFormat || !local || strftime(local.get(), localSize, localFormat.get(), time) == 0)
        return 0;
    const Text result = recode(osLocaleHandle, handle, local.get());
    if (!result) return 0;
    const std::size_t length = strnlen(result.get(), size - 1);
    std::memcpy(buffer, result.get(), length);
    buffer[length] = '\0';
    return length;
}
