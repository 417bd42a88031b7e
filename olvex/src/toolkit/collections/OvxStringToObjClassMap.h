// Maps from names to classes: what the C++ of the library sees of them. The functions are those of
// <olvex/StringToObjClassMap.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Map.h"

#include <olvex/StringToObjClassMap.h>

struct StringToObjClassMapNode : olvex::MapNode<StringToObjClassMapNode, olvex::ObjClassPolicy> {};

struct StringToObjClassMap
    : olvex::MapShape<StringToObjClassMap, StringToObjClassMapNode, olvex::ObjClassPolicy> {
    using MapShape::MapShape;
};

// The place of a key, borrowed, or null.
StringToObjClassMapNode *ovxIntlStringToObjClassMapGetNode(const StringToObjClassMap *map,
                                                           const char *key);

// Removes a place of this map and gives up what it holds.
void ovxIntlStringToObjClassMapRemNode(StringToObjClassMap *map, StringToObjClassMapNode *node);
