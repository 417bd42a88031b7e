// Groups of strings: what the C++ of the library sees of them. The functions are those of
// <olvex/StringGroup.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/Group.h"

#include <olvex/StringGroup.h>

struct StringGroupNode : olvex::GroupNode<StringGroup, StringGroupNode, olvex::StringPolicy> {};

struct StringGroup : olvex::GroupShape<StringGroup, StringGroupNode, olvex::StringPolicy> {
    using GroupShape::GroupShape;
};
