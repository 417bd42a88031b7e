// How collections hold their elements. A policy says what callers give and what a node stores, and
//   room(given)         the bytes of a block that the stored form takes (0 for a reference),
//   keep(given, place)  makes the stored form, in those bytes or by counting a reference,
//   handOut(stored)     what getters return: a copy on the heap or a counted reference,
//   drop(stored)        gives back what keep() took besides memory,
//   same(stored, given) whether two elements are equal.
// The counting functions belong to the toolkit's objects and configurations.
#pragma once

#include "util/Memory.h"
#include "util/shapes/Chain.h"
#include "util/shapes/SafeWalks.h"

#include <olvex/Parm.h>
#include <olvex/class.h>

#include <cstddef>
#include <cstring>

OvxObjCfg *ovxIntlAcquireObjCfg(OvxObjCfg *cfg);
void ovxIntlReleaseObjCfg(OvxObjCfg *cfg);

namespace olvex {

struct StringPolicy {
    using Given = const char *;
    using Stored = char *;
    template <class Node>
    using Walks = PlainWalks<Node>;

    static std::size_t room(Given text) { return text ? std::strlen(text) + 1 : 0; }
    static Stored keep(Given text, void *place)
    {
        return text ? static_cast<char *>(std::memcpy(place, text, room(text))) : nullptr;
    }
    static char *handOut(Given text) { return Memory().duplicate(text); }
    static void drop(Stored) {}
    static bool same(Given one, Given other) { return std::strcmp(one, other) == 0; }
};

template <class Element, Element *(*Acquire)(Element *), void (*Release)(Element *)>
struct ReferencePolicy {
    using Given = Element *;
    using Stored = Element *;
    template <class Node>
    using Walks = SafeWalks<Node>;

    static std::size_t room(Given) { return 0; }
    static Stored keep(Given element, void *) { return Acquire(element); }
    static Element *handOut(Stored element) { return Acquire(element); }
    static void drop(Stored element) { Release(element); }
    static bool same(Stored one, Given other) { return one == other; }
};

// Classes are the toolkit's; a map of them only points.
inline OvxObjClass *lookAtClass(OvxObjClass *objClass)
{
    return objClass;
}
inline void leaveClass(OvxObjClass *) {}

using ObjectPolicy = ReferencePolicy<OvxObject, ovxIntlAcquireObject, ovxIntlReleaseObject>;
using ObjCfgPolicy = ReferencePolicy<OvxObjCfg, ovxIntlAcquireObjCfg, ovxIntlReleaseObjCfg>;
using ObjClassPolicy = ReferencePolicy<OvxObjClass, lookAtClass, leaveClass>;

// A parameter with its text behind it, in one block.
struct ParmPolicy {
    using Given = const OvxParm *;
    using Stored = OvxParm *;

    static std::size_t room(Given parm) { return sizeof(OvxParm) + StringPolicy::room(text(parm)); }
    static Stored keep(Given parm, void *place)
    {
        auto *copy = ::new (place) OvxParm();
        copy->type = parm->type;
        if (parm->type == OVX_PARM_STRING)
            copy->value.string = StringPolicy::keep(text(parm), copy + 1);
        else if (parm->type >= OVX_PARM_BOOL && parm->type < OVX_PARM_STRING)
            copy->value = parm->value;
        return copy;
    }
    static OvxParm *handOut(Given parm) { return OvxCopyParm(parm); }
    static bool same(Given one, Given other) { return OvxCmpParms(one, other); }

  private:
    static const char *text(Given parm)
    {
        return parm->type == OVX_PARM_STRING ? parm->value.string : nullptr;
    }
};

} // namespace olvex
