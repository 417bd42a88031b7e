// Configurations as the toolkit sees them: counted records that refer to each other by name only,
// so that each link is looked up when it is followed. All under the API mutex.
#pragma once

#include "util/Memory.h"
#include "util/OvxStringGroup.h"
#include "util/OvxStringToStringMap.h"

#include <olvex/Config.h>

#include <cstdint>
#include <memory>
#include <utility>

struct OvxObjCfg {
    std::uint32_t references = 1;
    olvex::Text name;
    olvex::Text parentName;
    StringGroup children;
    StringGroup farChildren; // those whose names are more than one name longer
    StringToStringMap properties;
    bool fromFile = false;
    mutable std::uint64_t lastWalk = 0; // see olvex::CfgWalk

    // A null name clears it; without the memory for a copy it stays.
    void setParentName(const char *newName);
    void addChildName(const char *child);
    void removeChildName(const char *child); // may be the name that a group here holds
};

namespace olvex {

// Says whether `name` lies anywhere below `ancestor` in the tree of names.
bool isBelow(const char *name, const char *ancestor);

// One way up from configuration to configuration. Parents may be set in a circle: who goes up stops
// where a walk has been before.
class CfgWalk {
  public:
    bool isFirstVisit(const OvxObjCfg *cfg)
    {
        return std::exchange(cfg->lastWalk, number_) != number_;
    }

  private:
    static inline std::uint64_t count_ = 0;
    std::uint64_t number_ = ++count_;
};

} // namespace olvex

OvxObjCfg *ovxIntlAllocObjCfg(const char *name);
OvxObjCfg *ovxIntlAcquireObjCfg(OvxObjCfg *cfg);
void ovxIntlReleaseObjCfg(OvxObjCfg *cfg);
char *ovxIntlObjCfgGetName(const OvxObjCfg *cfg);
void ovxIntlObjCfgSetFromFile(OvxObjCfg *cfg, bool fromFile);
OvxObjCfg *ovxIntlObjCfgGetParent(const OvxObjCfg *cfg);
void ovxIntlObjCfgSetParent(OvxObjCfg *cfg, const OvxObjCfg *parent);
void ovxIntlObjCfgAddChild(OvxObjCfg *cfg, OvxObjCfg *child);
void ovxIntlObjCfgRemChild(OvxObjCfg *cfg, OvxObjCfg *child);
StringGroupNode *ovxIntlObjCfgChildrenNames(const OvxObjCfg *cfg);
StringToStringMapNode *ovxIntlObjCfgProperties(const OvxObjCfg *cfg);
char *ovxIntlGetInheritedObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found);
void ovxIntlSetObjCfgProp(OvxObjCfg *cfg, const char *name, const char *value);
StringToStringMap *ovxFetchObjCfgPropMap(OvxObjCfg *cfg);

namespace olvex {

struct ReleaseCfg {
    void operator()(OvxObjCfg *cfg) const { ovxIntlReleaseObjCfg(cfg); }
};
using CfgHandle = std::unique_ptr<OvxObjCfg, ReleaseCfg>;

} // namespace olvex
