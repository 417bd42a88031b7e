// Configurations as the toolkit sees them: counted records that refer to each other by name only,
// so that each link is looked up when it is followed. All under the API mutex.
#pragma once

#include "util/Memory.h"
#include "util/collections/OvxStringGroup.h"
#include "util/collections/OvxStringToStringMap.h"
#include "util/shapes/Map.h"

#include <olvex/Config.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace olvex {

// A group that belongs to the map which holds it.
struct OwnGroupPolicy {
    using Given = StringGroup *;
    using Stored = StringGroup *;

    static std::size_t room(Given) { return 0; }
    static Stored keep(Given group, void *) { return group; }
    static void drop(Stored group) { Memory().destroy(group); }
};

} // namespace olvex

struct NameGapsNode : olvex::MapNode<NameGapsNode, olvex::OwnGroupPolicy> {};

// Names between a configuration and a child that is more than one name longer, each with the
// children below it: with a and its child a.b.c, the name a.b. A configuration that is entered
// under such a name takes these children over, and no others need be looked at.
struct NameGaps : olvex::MapShape<NameGaps, NameGapsNode, olvex::OwnGroupPolicy> {};

struct OvxObjCfg {
    std::uint32_t references = 1;
    olvex::Text name;
    olvex::Text parentName;
    StringGroup children;
    NameGaps gaps;            // which children a configuration entered in between takes over
    StringGroup deepChildren; // those that lie so far below that they are not in the gaps
    StringToStringMap properties;
    bool fromFile = false;
    mutable std::uint64_t lastWalk = 0; // see olvex::CfgWalk

    // A null name clears it; without the memory for a copy it stays.
    void setParentName(const char *newName);
    void addChildName(const char *child);
    void removeChildName(const char *child); // may be a text that is stored here
};

namespace olvex {

// Says whether `name` lies anywhere below `ancestor` in the tree of names.
bool isBelow(const char *name, const char *ancestor);

// One walk from configuration to parent. Parents may be set in a circle, so a walk ends at the
// first configuration that it has visited already.
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
