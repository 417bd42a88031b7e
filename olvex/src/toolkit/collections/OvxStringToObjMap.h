// Maps from names to objects: what the C++ of the library sees of them. The functions are those of
// <olvex/StringToObjMap.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Map.h"

#include <olvex/StringToObjMap.h>

struct StringToObjMapNode : olvex::MapNode<StringToObjMapNode, olvex::ObjectPolicy> {};

struct StringToObjMap : olvex::MapShape<StringToObjMap, StringToObjMapNode, olvex::ObjectPolicy> {
    using MapShape::MapShape;
};

// The place of a key, borrowed, or null.
StringToObjMapNode *ovxIntlStringToObjMapGetNode(const StringToObjMap *map, const char *key);

// Removes a place of this map and gives up what it holds.
void ovxIntlStringToObjMapRemNode(StringToObjMap *map, StringToObjMapNode *node);
