// Lists of strings: what the C++ of the library sees of them. The functions are those of
// <olvex/StringList.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/List.h"

#include <olvex/StringList.h>

struct StringListNode : olvex::ListNode<StringList, StringListNode, olvex::StringPolicy> {};

struct StringList : olvex::ListShape<StringList, StringListNode, olvex::StringPolicy> {
    using ListShape::ListShape;
};
