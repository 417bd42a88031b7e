// Table files of code sets: loading, and conversions in all directions with what they say.
#include <olvex/olvex.h>

#include "Input.h"

namespace {

// Every lead byte and every row of a table is reached with these; more would only be slower.
constexpr int kBytes = 512;
constexpr int kUnits = 256;
constexpr int kRoom = 4 * kBytes;

void convertEverything(uc_ch_t *handle)
{
    char bytes[kBytes], target[kRoom];
    char16_t units[kUnits];
    for (int i = 0; i < kBytes; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 256);
    for (int i = 0; i < kUnits; ++i)
        units[i] = static_cast<char16_t>(i * 257);
    ucv_to_utf8(handle, bytes, kBytes, target, kRoom);
    ucv_from_utf8(handle, bytes, kBytes, target, kRoom);
    ucv_from_ucs2(handle, units, kUnits, target, kRoom);
    ucv_to_ucs2(handle, bytes, kBytes, units, kUnits);
    ucv_mblen(handle, bytes + 1, kBytes - 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const fuzz::File file(fuzz::Input(data, size).rest());
    if (uc_ch_t *handle = ucv_cs_new(file.path())) {
        convertEverything(handle);
        ucv_cs_free(handle);
    }
    return 0;
}
