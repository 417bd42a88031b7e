// Configuration records: names, children, properties and their inheritance. Called by the log
// manager and by hosts. The internal functions expect the API mutex to be held; the public twins at
// the end take it.
#include "toolkit/OvxObjConfig.h"

#include "toolkit/OvxLogManager.h"
#include "toolkit/OvxProps.h"

#include <olvex/ClassCollections.h>
#include <olvex/Props.h>

#include "util/Locked.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

using namespace olvex;

namespace {

// How many names between a configuration and its child are kept at most: the memory for all of them
// would grow with the square of the length of the child's name.
constexpr std::ptrdiff_t kMostGaps = 8;

bool isDeep(const OvxObjCfg &cfg, const char *child)
{
    const std::string_view names(child);
    const std::size_t length = std::strlen(cfg.name.get());
    return isBelow(child, cfg.name.get()) &&
           std::count(names.begin() + static_cast<std::ptrdiff_t>(length) + 1, names.end(), '.') >
               kMostGaps;
}

// Calls the action with each name between the configuration and a child below it.
template <class Action>
void forEachGap(const OvxObjCfg &cfg, const char *child, Action action)
{
    const Text name(isBelow(child, cfg.name.get()) ? Memory().duplicate(child) : nullptr);
    char *dot = name ? name.get() + std::strlen(cfg.name.get()) : nullptr;
    while (dot && (dot = std::strchr(dot + 1, '.'))) {
        *dot = '\0';
        action(name.get());
        *dot = '.';
    }
}

void addToGap(NameGaps &gaps, const char *gap, const char *child)
{
    const NameGapsNode *node = gaps.find(gap);
    StringGroup *group = node ? node->value() : ovxIntlAllocStringGroup();
    if (!group) return;
    group->add(child);
    if (!node && !gaps.put(gap, group)) ovxIntlFreeStringGroup(group);
}

void removeFromGap(NameGaps &gaps, const char *gap, const char *child)
{
    NameGapsNode *node = gaps.find(gap);
    if (!node) return;
    node->value()->remove(child);
    if (!node->value()->first()) gaps.remove(node);
}

bool *cleared(bool *found)
{
    if (found) *found = false;
    return found;
}

template <class Value>
Value getAs(const OvxObjCfg *cfg, const char *name, bool *found,
            Value (*convert)(const char *, bool *))
{
    cleared(found);
    return locked([&] {
        const Text value(ovxIntlGetInheritedObjCfgProp(cfg, name, nullptr));
        return convert(value.get(), found);
    });
}

template <class Value>
void setAs(OvxObjCfg *cfg, const char *name, Value value,
           void (*setInMap)(StringToStringMap *, const char *, Value))
{
    locked([&] { setInMap(ovxFetchObjCfgPropMap(cfg), name, value); });
}

} // namespace

namespace olvex {

bool isBelow(const char *name, const char *ancestor)
{
    const std::size_t length = std::strlen(ancestor);
    return std::strncmp(name, ancestor, length) == 0 && name[length] == '.';
}

} // namespace olvex

void OvxObjCfg::setParentName(const char *newName)
{
    Text copy(Memory().duplicate(newName));
    if (copy || !newName) parentName = std::move(copy);
}

void OvxObjCfg::addChildName(const char *child)
{
    if (!children.add(child)) return;
    if (isDeep(*this, child))
        deepChildren.add(child);
    else
        forEachGap(*this, child, [&](const char *gap) { addToGap(gaps, gap, child); });
}

void OvxObjCfg::removeChildName(const char *child)
{
    StringGroupNode *node = children.find(child);
    if (!node) return;
    if (isDeep(*this, node->element()))
        deepChildren.remove(node->element());
    else
        forEachGap(*this, node->element(),
                   [&](const char *gap) { removeFromGap(gaps, gap, node->element()); });
    children.remove(node);
}

OvxObjCfg *ovxIntlAllocObjCfg(const char *name)
{
    CfgHandle cfg(name ? Memory().make<OvxObjCfg>() : nullptr);
    if (!cfg) return nullptr;
    cfg->name.reset(Memory().duplicate(name));
    return cfg->name ? cfg.release() : nullptr;
}

OvxObjCfg *ovxIntlAcquireObjCfg(OvxObjCfg *cfg)
{
    if (cfg) ++cfg->references;
    return cfg;
}

void ovxIntlReleaseObjCfg(OvxObjCfg *cfg)
{
    if (cfg && --cfg->references == 0) Memory().destroy(cfg);
}

char *ovxIntlObjCfgGetName(const OvxObjCfg *cfg)
{
    return cfg ? Memory().duplicate(cfg->name.get()) : nullptr;
}

void ovxIntlObjCfgSetFromFile(OvxObjCfg *cfg, bool fromFile)
{
    if (cfg) cfg->fromFile = fromFile;
}

OvxObjCfg *ovxIntlObjCfgGetParent(const OvxObjCfg *cfg)
{
    return cfg ? ovxIntlLogMgrGetCfg(cfg->parentName.get()) : nullptr;
}

void ovxIntlObjCfgSetParent(OvxObjCfg *cfg, const OvxObjCfg *parent)
{
    if (cfg && parent) cfg->setParentName(parent->name.get());
}

void ovxIntlObjCfgAddChild(OvxObjCfg *cfg, OvxObjCfg *child)
{
    if (!cfg || !child) return;
    cfg->addChildName(child->name.get());
    child->setParentName(cfg->name.get());
}

void ovxIntlObjCfgRemChild(OvxObjCfg *cfg, OvxObjCfg *child)
{
    if (!cfg || !child || !cfg->children.first()) return;
    child->setParentName(nullptr);
    cfg->removeChildName(child->name.get());
}

StringGroupNode *ovxIntlObjCfgChildrenNames(const OvxObjCfg *cfg)
{
    return cfg ? cfg->children.first() : nullptr;
}

StringToStringMapNode *ovxIntlObjCfgProperties(const OvxObjCfg *cfg)
{
    return cfg ? cfg->properties.first() : nullptr;
}

char *ovxIntlGetInheritedObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found)
{
    CfgWalk walk;
    CfgHandle ancestor;
    const StringToStringMapNode *node = nullptr;
    while (cfg && walk.isFirstVisit(cfg) && !(node = cfg->properties.find(name))) {
        ancestor.reset(ovxIntlObjCfgGetParent(cfg));
        cfg = ancestor.get();
    }
    if (found) *found = node;
    return node ? node->handOut() : nullptr;
}

void ovxIntlSetObjCfgProp(OvxObjCfg *cfg, const char *name, const char *value)
{
    OvxSetMapProp(ovxFetchObjCfgPropMap(cfg), name, value);
}

StringToStringMap *ovxFetchObjCfgPropMap(OvxObjCfg *cfg)
{
    return cfg ? &cfg->properties : nullptr;
}

OvxObjCfg *OvxAllocObjCfg(const char *name)
{
    return locked([&] { return ovxIntlAllocObjCfg(name); });
}

OvxObjCfg *OvxAcquireObjCfg(OvxObjCfg *cfg)
{
    return locked([&] { return ovxIntlAcquireObjCfg(cfg); });
}

void OvxReleaseObjCfg(OvxObjCfg *cfg)
{
    locked([&] { ovxIntlReleaseObjCfg(cfg); });
}

char *OvxObjCfgGetName(const OvxObjCfg *cfg)
{
    return locked([&] { return ovxIntlObjCfgGetName(cfg); });
}

bool OvxObjCfgIsFromFile(const OvxObjCfg *cfg)
{
    return locked([&] { return cfg && cfg->fromFile; });
}

void OvxObjCfgSetFromFile(OvxObjCfg *cfg, bool fromFile)
{
    locked([&] { ovxIntlObjCfgSetFromFile(cfg, fromFile); });
}

OvxObjCfg *OvxObjCfgGetParent(const OvxObjCfg *cfg)
{
    return locked([&] { return ovxIntlObjCfgGetParent(cfg); });
}

void OvxObjCfgSetParent(OvxObjCfg *cfg, const OvxObjCfg *parent)
{
    locked([&] { ovxIntlObjCfgSetParent(cfg, parent); });
}

void OvxObjCfgAddChild(OvxObjCfg *cfg, OvxObjCfg *child)
{
    locked([&] { ovxIntlObjCfgAddChild(cfg, child); });
}

void OvxObjCfgRemChild(OvxObjCfg *cfg, OvxObjCfg *child)
{
    locked([&] { ovxIntlObjCfgRemChild(cfg, child); });
}

StringGroupNode *OvxObjCfgChildrenNames(const OvxObjCfg *cfg)
{
    return locked([&] { return ovxIntlObjCfgChildrenNames(cfg); });
}

StringToStringMapNode *OvxObjCfgProperties(const OvxObjCfg *cfg)
{
    return locked([&] { return ovxIntlObjCfgProperties(cfg); });
}

char *OvxGetObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return OvxGetInheritedObjCfgProp(cfg, name, found);
}

char *OvxGetInheritedObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found)
{
    cleared(found);
    return locked([&] { return ovxIntlGetInheritedObjCfgProp(cfg, name, found); });
}

bool OvxGetObjCfgPropBool(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return getAs(cfg, name, found, ovxPropStrToBool);
}

int32_t OvxGetObjCfgPropInt(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return getAs(cfg, name, found, ovxPropStrToInt32);
}

int64_t OvxGetObjCfgPropLong(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return getAs(cfg, name, found, ovxPropStrToInt64);
}

float OvxGetObjCfgPropFloat(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return getAs(cfg, name, found, ovxPropStrToFloat32);
}

double OvxGetObjCfgPropDouble(const OvxObjCfg *cfg, const char *name, bool *found)
{
    return getAs(cfg, name, found, ovxPropStrToFloat64);
}

void OvxSetObjCfgProp(OvxObjCfg *cfg, const char *name, const char *value)
{
    locked([&] { ovxIntlSetObjCfgProp(cfg, name, value); });
}

void OvxSetObjCfgPropBool(OvxObjCfg *cfg, const char *name, bool value)
{
    setAs(cfg, name, value, OvxSetMapPropBool);
}

void OvxSetObjCfgPropInt(OvxObjCfg *cfg, const char *name, int32_t value)
{
    setAs(cfg, name, value, OvxSetMapPropInt);
}

void OvxSetObjCfgPropLong(OvxObjCfg *cfg, const char *name, int64_t value)
{
    setAs(cfg, name, value, OvxSetMapPropLong);
}

void OvxSetObjCfgPropFloat(OvxObjCfg *cfg, const char *name, float value)
{
    setAs(cfg, name, value, OvxSetMapPropFloat);
}

void OvxSetObjCfgPropDouble(OvxObjCfg *cfg, const char *name, double value)
{
    setAs(cfg, name, value, OvxSetMapPropDouble);
}
