// Maps from names to configurations: what the C++ of the library sees of them. The functions are
// those of <olvex/StringToObjCfgMap.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Map.h"

#include <olvex/StringToObjCfgMap.h>

struct StringToObjCfgMapNode : olvex::MapNode<StringToObjCfgMapNode, olvex::ObjCfgPolicy> {};

struct StringToObjCfgMap
    : olvex::MapShape<StringToObjCfgMap, StringToObjCfgMapNode, olvex::ObjCfgPolicy> {
    using MapShape::MapShape;
};

// The place of a key, borrowed, or null.
StringToObjCfgMapNode *ovxIntlStringToObjCfgMapGetNode(const StringToObjCfgMap *map,
                                                       const char *key);

// Removes a place of this map and gives up what it holds.
void ovxIntlStringToObjCfgMapRemNode(StringToObjCfgMap *map, StringToObjCfgMapNode *node);
