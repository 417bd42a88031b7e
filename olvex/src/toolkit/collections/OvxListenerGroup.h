// Groups of listeners: what the C++ of the library sees of them. The functions are those of
// <olvex/ListenerGroup.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Group.h"

#include <olvex/ListenerGroup.h>

struct ListenerGroupNode : olvex::GroupNode<ListenerGroup, ListenerGroupNode, olvex::ObjectPolicy> {
};

struct ListenerGroup : olvex::GroupShape<ListenerGroup, ListenerGroupNode, olvex::ObjectPolicy> {
    using GroupShape::GroupShape;
};
