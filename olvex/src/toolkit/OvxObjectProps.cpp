// Properties of objects: text under names, told to the object's class when set. Called with the API
// mutex held; the public twins take it.
#include "toolkit/OvxObject.h"

#include <olvex/Props.h>

#include "util/Locked.h"
#include "util/collections/OvxStringToStringMap.h"

using namespace olvex;

namespace {

const StringToStringMap *mapOf(const OvxObject *object)
{
    return object ? object->properties : nullptr;
}

// Stores a value with the map's setter of its type, then tells the class.
template <class Value>
void setProperty(OvxObject *object, const char *name, Value value,
                 void (*setInMap)(StringToStringMap *, const char *, Value))
{
    StringToStringMap *map = name ? ovxFetchObjPropMap(object) : nullptr;
    if (!map) return;
    setInMap(map, name, value);
    ovxNotifyObjCfgChange(object, name);
}

} // namespace

namespace olvex {

const char *peekProperty(const OvxObject *object, const char *name)
{
    const StringToStringMap *map = mapOf(object);
    const StringToStringMapNode *node = map ? map->find(name) : nullptr;
    return node ? node->value() : nullptr;
}

} // namespace olvex

StringToStringMap *ovxFetchObjPropMap(OvxObject *object)
{
    if (!object || !object->cls) return nullptr;
    if (!object->properties) object->properties = ovxIntlAllocStringToStringMap();
    return object->properties;
}

void ovxNotifyObjCfgChange(OvxObject *object, const char *name)
{
    if (object && object->cls && object->cls->slots.cfgChange)
        object->cls->slots.cfgChange(object, name);
}

char *ovxIntlGetObjProp(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapProp(mapOf(object), name, found);
}

bool ovxIntlGetObjPropBool(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapPropBool(mapOf(object), name, found);
}

int32_t ovxIntlGetObjPropInt(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapPropInt(mapOf(object), name, found);
}

int64_t ovxIntlGetObjPropLong(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapPropLong(mapOf(object), name, found);
}

float ovxIntlGetObjPropFloat(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapPropFloat(mapOf(object), name, found);
}

double ovxIntlGetObjPropDouble(const OvxObject *object, const char *name, bool *found)
{
    return OvxGetMapPropDouble(mapOf(object), name, found);
}

void ovxIntlSetObjProp(OvxObject *object, const char *name, const char *value)
{
    setProperty(object, name, value, OvxSetMapProp);
}

void ovxIntlSetObjPropBool(OvxObject *object, const char *name, bool value)
{
    setProperty(object, name, value, OvxSetMapPropBool);
}

void ovxIntlSetObjPropInt(OvxObject *object, const char *name, int32_t value)
{
    setProperty(object, name, value, OvxSetMapPropInt);
}

void ovxIntlSetObjPropLong(OvxObject *object, const char *name, int64_t value)
{
    setProperty(object, name, value, OvxSetMapPropLong);
}

void ovxIntlSetObjPropFloat(OvxObject *object, const char *name, float value)
{
    setProperty(object, name, value, OvxSetMapPropFloat);
}

void ovxIntlSetObjPropDouble(OvxObject *object, const char *name, double value)
{
    setProperty(object, name, value, OvxSetMapPropDouble);
}

char *OvxGetObjProp(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjProp(object, name, found); });
}

bool OvxGetObjPropBool(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjPropBool(object, name, found); });
}

int32_t OvxGetObjPropInt(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjPropInt(object, name, found); });
}

int64_t OvxGetObjPropLong(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjPropLong(object, name, found); });
}

float OvxGetObjPropFloat(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjPropFloat(object, name, found); });
}

double OvxGetObjPropDouble(const OvxObject *object, const char *name, bool *found)
{
    return lockedLookup(found, [&] { return ovxIntlGetObjPropDouble(object, name, found); });
}

void OvxSetObjProp(OvxObject *object, const char *name, const char *value)
{
    locked([&] { ovxIntlSetObjProp(object, name, value); });
}

void OvxSetObjPropBool(OvxObject *object, const char *name, bool value)
{
    locked([&] { ovxIntlSetObjPropBool(object, name, value); });
}

void OvxSetObjPropInt(OvxObject *object, const char *name, int32_t value)
{
    locked([&] { ovxIntlSetObjPropInt(object, name, value); });
}

void OvxSetObjPropLong(OvxObject *object, const char *name, int64_t value)
{
    locked([&] { ovxIntlSetObjPropLong(object, name, value); });
}

void OvxSetObjPropFloat(OvxObject *object, const char *name, float value)
{
    locked([&] { ovxIntlSetObjPropFloat(object, name, value); });
}

void OvxSetObjPropDouble(OvxObject *object, const char *name, double value)
{
    locked([&] { ovxIntlSetObjPropDouble(object, name, value); });
}
