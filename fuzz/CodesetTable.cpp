// Table files of code sets: loading, and conversions in all directions with what they say.
#include <olvex/olvex.h>

#include "Input.h"

namespace {

constexpr int kRoom = 4096;

void convertEverything(uc_ch_t *handle)
{
    char bytes[1024], target[kRoom];
    char16_t units[512];
    for (int i = 0; i < 1024; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 256);
    for (int i = 0; i < 512; ++i)
        units[i] = static_cast<char16_t>(i * 131);
    ucv_to_utf8(handle, bytes, 1024, target, kRoom);
    ucv_from_utf8(handle, bytes, 1024, target, kRoom);
    ucv_from_ucs2(handle, units, 512, target, kRoom);
    ucv_to_ucs2(handle, bytes, 1024, units, 512);
    ucv_mblen(handle, bytes + 1, 1000);
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
