// Helpers of the toolkit that belong to no object: joining strings, reporting platform errors.
#include <olvex/Misc.h>

#include <olvex/Ucv.h>
#include <olvex/class.h>

#include "util/Memory.h"

using namespace olvex;

namespace {

struct Joined {
    char *at; // null while only the length is wanted
    std::size_t length = 0;

    void add(const char *text)
    {
        const std::size_t size = BaxStringLen(text);
        if (at && size) std::memcpy(at + length, text, size);
        length += size;
    }
};

std::size_t join(char *target, int count, const char *const *strings, const char *separator)
{
    Joined joined{target};
    bool first = true;
    for (int index = 0; index < count; ++index) {
        if (!strings[index]) continue;
        if (!first && separator) joined.add(separator);
        joined.add(strings[index]);
        first = false;
    }
    return joined.length;
}

} // namespace

char *OvxStrACat(int count, const char *const *strings, const char *separator)
{
    if (!strings) count = 0;
    const std::size_t length = join(nullptr, count, strings, separator);
    auto *text = static_cast<char *>(BaxMemoryMalloc(length + 1));
    if (!text) return nullptr;
    join(text, count, strings, separator);
    text[length] = '\0';
    return text;
}

// The text goes as the message itself, so a percent sign in it cannot be told from a directive; the
// system's texts have none.
void OvxReportPlatformErr(char kind, int code)
{
    if (kind != 'p') return;
    char local[512];
    char utf8[512];
    ucv_to_utf8(nullptr, strerror_r(code, local, sizeof local), -1, utf8, sizeof utf8);
    ovxIntlLogVA(OVX_LEVEL_WARN, 0, utf8, 0);
}
