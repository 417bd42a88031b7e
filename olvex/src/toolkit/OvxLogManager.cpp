// The registry of configurations and the tree that their dotted names form. Called by the toolkit's
// lifecycle, the properties reader, the object model and hosts; the internal functions expect the
// API mutex to be held.
#include "toolkit/OvxLogManager.h"

#include "toolkit/OvxObjConfig.h"

#include <olvex/class.h>

#include "toolkit/collections/OvxStringToObjCfgMap.h"
#include "util/Locked.h"

#include <cstring>
#include <utility>

using namespace olvex;

namespace {

constexpr const char *kRoot = "/";

// Both exist exactly while the log manager is open.
StringToObjCfgMap *configurations = nullptr;
StringGroup *configNames = nullptr;

bool isRoot(const char *name)
{
    return std::strcmp(name, kRoot) == 0;
}

// A reference to the configuration of that name, if there is one.
CfgHandle findCfg(const char *name)
{
    return CfgHandle(ovxIntlStringToObjCfgMapGet(configurations, name));
}

// A child whose name has no configuration is moved as a name only.
void moveChild(OvxObjCfg &from, OvxObjCfg *to, const char *name)
{
    const CfgHandle child = findCfg(name);
    OvxObjCfg *newParent = child.get() == to ? nullptr : to;
    if (newParent) newParent->addChildName(name);
    if (child) child->setParentName(newParent ? newParent->name.get() : nullptr);
    from.removeChildName(name);
}

// The first node of a list that holds, in order, all children of the parent that lie below the
// name.
const StringGroupNode *mayLieBelow(const char *name, const OvxObjCfg &parent)
{
    const NameGapsNode *gap = parent.gaps.find(name);
    const StringGroupNode *deep = parent.deepChildren.first();
    if (gap && deep) return parent.children.first();
    return gap ? gap->value()->first() : deep;
}

// Takes over the parent's children below the configuration's own name. When that name lies below
// the parent's, the parent knows them; a parent of another name was set by a host.
void adoptChildren(OvxObjCfg &cfg, OvxObjCfg &parent)
{
    const char *name = cfg.name.get();
    const bool isNested = isBelow(name, parent.name.get());
    for (const auto *node = isNested ? mayLieBelow(name, parent) : parent.children.first(); node;) {
        const char *child = node->element();
        node = node->next();
        if (isBelow(child, name)) moveChild(parent, &cfg, child);
    }
}

void joinParent(OvxObjCfg *cfg)
{
    const Text parentName(ovxLogMgrGetParentConfigName(cfg));
    const CfgHandle parent(ovxIntlLogMgrGetCfg(parentName.get()));
    if (!parent || parent.get() == cfg) return;
    ovxIntlObjCfgSetParent(cfg, parent.get());
    adoptChildren(*cfg, *parent);
    ovxIntlObjCfgAddChild(parent.get(), cfg);
}

// Called when the configuration is no longer found by its name. One that is its own parent must not
// be created anew by looking for the parent.
void leaveParent(OvxObjCfg *cfg)
{
    const char *parentName = cfg->parentName.get();
    const bool isOwnParent = parentName && std::strcmp(parentName, cfg->name.get()) == 0;
    const CfgHandle parent(isOwnParent ? nullptr : ovxIntlObjCfgGetParent(cfg));
    ovxIntlObjCfgRemChild(parent.get(), cfg);
    while (const StringGroupNode *node = cfg->children.first())
        moveChild(*cfg, parent.get(), node->element());
}

// The configurations of a name and its ancestors, nearest first; it ends at the root or where a
// circle of parents closes.
void collectLineage(const char *name, StringToObjCfgMap &lineage)
{
    CfgHandle cfg(ovxIntlLogMgrGetCfg(name));
    while (cfg && !lineage.find(cfg->name.get()) && lineage.put(cfg->name.get(), cfg.get())) {
        const Text parentName(ovxLogMgrGetParentConfigName(cfg.get()));
        cfg.reset(ovxIntlLogMgrGetCfg(parentName.get()));
    }
}

// The object's class may change the configuration meanwhile: its nodes stay, its values may not.
void applyProperties(OvxObject *object, const OvxObjCfg &cfg)
{
    for (const auto *node = cfg.properties.first(); node; node = node->next()) {
        const Text value(node->handOut());
        if (value || !node->value()) ovxIntlSetObjProp(object, node->key(), value.get());
    }
}

} // namespace

void ovxInitLogMgr()
{
    if (configurations) return;
    configurations = ovxIntlAllocStringToObjCfgMap();
    configNames = ovxIntlAllocStringGroup();
    if (!configurations || !configNames) ovxCloseLogMgr();
}

void ovxCloseLogMgr()
{
    ovxIntlFreeStringGroup(std::exchange(configNames, nullptr));
    ovxIntlFreeStringToObjCfgMap(std::exchange(configurations, nullptr));
}

void ovxIntlLogMgrAddCfg(OvxObjCfg *cfg)
{
    if (!configurations || !cfg) return;
    const char *name = cfg->name.get();
    if (isRoot(name) || configurations->find(name) || !configurations->put(name, cfg)) return;
    joinParent(cfg);
    configNames->add(name);
}

void ovxIntlLogMgrRemCfg(OvxObjCfg *cfg)
{
    const CfgHandle registered = findCfg(cfg ? cfg->name.get() : nullptr);
    if (!registered) return;
    const char *name = registered->name.get();
    configurations->remove(name);
    leaveParent(registered.get());
    configNames->remove(name);
}

void ovxIntlLogMgrUpdateCfg(OvxObjCfg *cfg)
{
    const CfgHandle held(ovxIntlAcquireObjCfg(cfg));
    if (!cfg || !ovxIntlLogMgrHasCfg(cfg->name.get())) return;
    ovxIntlLogMgrRemCfg(cfg);
    ovxIntlLogMgrAddCfg(cfg);
}

OvxObjCfg *ovxIntlLogMgrGetCfg(const char *name)
{
    if (!configurations || !name || isRoot(name)) return nullptr;
    CfgHandle cfg = findCfg(name);
    if (cfg) return cfg.release();
    cfg.reset(ovxIntlAllocObjCfg(name));
    ovxIntlLogMgrAddCfg(cfg.get());
    return ovxIntlLogMgrHasCfg(name) ? cfg.release() : nullptr;
}

bool ovxIntlLogMgrHasCfg(const char *name)
{
    return ovxIntlStringToObjCfgMapHasKey(configurations, name);
}

bool ovxIntlLogMgrApplyCfg(OvxObject *object, const char *name)
{
    if (!object) return false;
    StringToObjCfgMap lineage;
    collectLineage(name, lineage);
    for (const auto *node = lineage.last(); node; node = node->previous())
        applyProperties(object, *node->value());
    return lineage.first();
}

char *ovxLogMgrGetParentConfigName(OvxObjCfg *cfg)
{
    if (!cfg) return nullptr;
    if (cfg->parentName) return Memory().duplicate(cfg->parentName.get());
    const auto *above = configurations ? configurations->findAbove(cfg->name.get(), '.') : nullptr;
    if (!above) return Memory().duplicate(kRoot);
    ovxIntlObjCfgSetParent(cfg, above->value());
    return Memory().duplicate(above->key());
}

bool ovxLogMgrAddCfgFromFile(const char *configName, const char *propertyName, const char *value)
{
    if (!configName || !*configName || !propertyName || !*propertyName || !value) return false;
    const bool isNew = !ovxIntlLogMgrHasCfg(configName);
    const CfgHandle cfg(ovxIntlLogMgrGetCfg(configName));
    if (!cfg) return false;
    if (isNew) cfg->fromFile = true;
    return cfg->properties.put(propertyName, value);
}

void OvxLogMgrAddCfg(OvxObjCfg *cfg)
{
    locked([&] { ovxIntlLogMgrAddCfg(cfg); });
}

void OvxLogMgrRemCfg(OvxObjCfg *cfg)
{
    locked([&] { ovxIntlLogMgrRemCfg(cfg); });
}

void OvxLogMgrUpdateCfg(OvxObjCfg *cfg)
{
    locked([&] { ovxIntlLogMgrUpdateCfg(cfg); });
}

StringGroupNode *OvxLogMgrConfigNames(void)
{
    return locked([] { return ovxIntlStringGroupIterator(configNames); });
}

OvxObjCfg *OvxLogMgrGetCfg(const char *name)
{
    return locked([&] { return ovxIntlLogMgrGetCfg(name); });
}

bool OvxLogMgrHasCfg(const char *name)
{
    return locked([&] { return ovxIntlLogMgrHasCfg(name); });
}

bool OvxLogMgrApplyCfg(OvxObject *object, const char *name)
{
    return locked([&] { return ovxIntlLogMgrApplyCfg(object, name); });
}
