// Lists of parameters: what the C++ of the library sees of them. The functions are those of
// <olvex/ParmList.h> and <olvex/ClassCollections.h>.
#pragma once

#include "util/shapes/List.h"

#include <olvex/ParmList.h>

struct ParmListNode : olvex::ListNode<ParmList, ParmListNode, olvex::ParmPolicy> {};

struct ParmList : olvex::ListShape<ParmList, ParmListNode, olvex::ParmPolicy> {
    using ListShape::ListShape;
};
