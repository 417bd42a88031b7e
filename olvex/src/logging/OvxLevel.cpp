// Levels: reading them from text, and what the "level" property means.
#include <olvex/Level.h>

#include "messages/Messages.h"
#include "toolkit/OvxObject.h"
#include "toolkit/OvxProps.h"
#include "util/Memory.h"

using namespace olvex;

namespace {

struct LevelName {
    const char *name;
    std::int32_t level;
};

// In the order in which they are tried; each matches any word that begins with it.
constexpr LevelName kLevelNames[] = {
    {"FATAL", OVX_LEVEL_FATAL},
    {"ERROR", OVX_LEVEL_ERROR},
    {"WARN", OVX_LEVEL_WARN},
    {"INFO", OVX_LEVEL_INFO},
    {"DEBUG_MIN", OVX_LEVEL_DEBUG_MIN},
    {"MIN", OVX_LEVEL_DEBUG_MIN},
    {"DEBUG_MID", OVX_LEVEL_DEBUG_MID},
    {"MID", OVX_LEVEL_DEBUG_MID},
    {"DEBUG_MAX", OVX_LEVEL_DEBUG_MAX},
    {"MAX", OVX_LEVEL_DEBUG_MAX},
    {"ALL", OVX_LEVEL_ALL},
    {"OFF", OVX_LEVEL_OFF},
};

bool isBlank(const char *text)
{
    return text[BaxStringStrspn(text, " \t\r\n\f\v")] == '\0';
}

std::int32_t levelFromName(const char *text)
{
    for (const LevelName &entry : kLevelNames)
        if (BaxStringNICmp(text, entry.name, BaxStringLen(entry.name)) == 0) return entry.level;
    return OVX_LEVEL_NONE;
}

} // namespace

namespace olvex {

void applyLevelProperty(OvxObject *object)
{
    const char *value = peekProperty(object, "level");
    if (value && *value) return setThreshold(object, OvxGetLevelFromString(value));
    report(OVX_LEVEL_WARN, Message::kEmptyProperty, "level", ovxIntlGetObjectName(object));
    setThreshold(object, OVX_LEVEL_INFO);
}

} // namespace olvex

int32_t OvxGetLevelFromString(const char *text)
{
    if (!text) return OVX_LEVEL_NONE;
    bool isNumber = false;
    const std::int32_t number = ovxPropStrToInt32(text, &isNumber);
    return isNumber || isBlank(text) ? number : levelFromName(text);
}
