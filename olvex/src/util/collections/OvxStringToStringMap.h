// Maps from names to strings: what the C++ of the library sees of them. The functions are those of
// <olvex/StringToStringMap.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Map.h"

#include <olvex/StringToStringMap.h>

struct StringToStringMapNode : olvex::MapNode<StringToStringMapNode, olvex::StringPolicy> {};

struct StringToStringMap
    : olvex::MapShape<StringToStringMap, StringToStringMapNode, olvex::StringPolicy> {
    using MapShape::MapShape;
};

// The place of a key, borrowed, or null.
StringToStringMapNode *ovxIntlStringToStringMapGetNode(const StringToStringMap *map,
                                                       const char *key);

// Removes a place of this map and gives up what it holds.
void ovxIntlStringToStringMapRemNode(StringToStringMap *map, StringToStringMapNode *node);
