// Typed properties of a map.
#include "toolkit/OvxProps.h"

#include <olvex/Parm.h>

#include <algorithm>
#include <charconv>

#include "logging/OvxPrintf.h"
#include "util/Memory.h"
#include "util/collections/OvxStringToStringMap.h"

#include <cstdio>
#include <cstdlib>

using namespace olvex;

namespace {

void tell(bool *ok, bool value)
{
    if (ok) *ok = value;
}

const char *peek(const StringToStringMap *map, const char *name)
{
    const StringToStringMapNode *node = map && name ? map->find(name) : nullptr;
    return node ? node->value() : nullptr;
}

// A decimal number at the start of the text, as scanning with "%lld" reads it; the nearest limit
// beyond the range.
std::int64_t scanInteger(const char *text, bool *ok)
{
    char *end = nullptr;
    const long long value = text ? std::strtoll(text, &end, 10) : 0;
    tell(ok, text && end != text);
    return value;
}

// Scanning refuses beginnings of numbers ("0x", "infin") of which strtod takes a part.
template <class Number>
Number scanFloating(const char *text, const char *format, bool *ok)
{
    Number value{};
    tell(ok, text && std::sscanf(text, format, &value) == 1);
    return value;
}

void setText(StringToStringMap *map, const char *name, const OvxParm &value)
{
    const Text text(ovxParmToLocalStr(nullptr, &value));
    if (text) OvxSetMapProp(map, name, text.get());
}

} // namespace

bool ovxPropStrToBool(const char *text, bool *ok)
{
    const bool isTrue = BaxStringICmp(text, "true") == 0;
    tell(ok, isTrue || BaxStringICmp(text, "false") == 0);
    return isTrue;
}

char ovxPropStrToChar(const char *text, bool *ok)
{
    tell(ok, text != nullptr);
    return text ? *text : '\0';
}

int32_t ovxPropStrToInt32(const char *text, bool *ok)
{
    const std::int64_t value = scanInteger(text, ok);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}

int64_t ovxPropStrToInt64(const char *text, bool *ok)
{
    return scanInteger(text, ok);
}

float ovxPropStrToFloat32(const char *text, bool *ok)
{
    return scanFloating<float>(text, "%f", ok);
}

double ovxPropStrToFloat64(const char *text, bool *ok)
{
    return scanFloating<double>(text, "%lf", ok);
}

char *OvxGetMapProp(const StringToStringMap *map, const char *name, bool *found)
{
    tell(found, map && name && map->find(name));
    return BaxStringDup(peek(map, name));
}

bool OvxGetMapPropBool(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToBool(peek(map, name), found);
}

char OvxGetMapPropChar(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToChar(peek(map, name), found);
}

int32_t OvxGetMapPropInt(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToInt32(peek(map, name), found);
}

int64_t OvxGetMapPropLong(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToInt64(peek(map, name), found);
}

float OvxGetMapPropFloat(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToFloat32(peek(map, name), found);
}

double OvxGetMapPropDouble(const StringToStringMap *map, const char *name, bool *found)
{
    return ovxPropStrToFloat64(peek(map, name), found);
}

void OvxSetMapProp(StringToStringMap *map, const char *name, const char *value)
{
    ovxIntlStringToStringMapPut(map, name, value);
}

void OvxSetMapPropBool(StringToStringMap *map, const char *name, bool value)
{
    OvxSetMapProp(map, name, value ? "true" : "false");
}

void OvxSetMapPropChar(StringToStringMap *map, const char *name, char value)
{
    const char text[] = {value, '\0'};
    OvxSetMapProp(map, name, text);
}

void OvxSetMapPropInt(StringToStringMap *map, const char *name, int32_t value)
{
    OvxSetMapPropLong(map, name, value);
}

void OvxSetMapPropLong(StringToStringMap *map, const char *name, int64_t value)
{
    char text[24] = {};
    std::to_chars(text, text + sizeof text - 1, value);
    OvxSetMapProp(map, name, text);
}

void OvxSetMapPropFloat(StringToStringMap *map, const char *name, float value)
{
    setText(map, name, {OVX_PARM_FLOAT, {.floating = value}});
}

void OvxSetMapPropDouble(StringToStringMap *map, const char *name, double value)
{
    setText(map, name, {OVX_PARM_DOUBLE, {.doubleFloating = value}});
}
