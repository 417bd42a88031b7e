// Message parameters: copying, freeing and comparing typed values. No lock, no shared state.
#include <olvex/Parm.h>

#include "util/Memory.h"

using namespace olvex;

namespace {

bool isKnown(int type)
{
    return type >= OVX_PARM_BOOL && type <= OVX_PARM_STRING;
}

} // namespace

// What an unknown type's value would mean is not known either, so it is not copied.
OvxParm *OvxCopyParm(const OvxParm *parm)
{
    if (!parm) return nullptr;
    auto *copy = Memory().make<OvxParm>(isKnown(parm->type) ? *parm : OvxParm());
    if (copy) copy->type = parm->type;
    if (!copy || parm->type != OVX_PARM_STRING) return copy;
    copy->value.string = Memory().duplicate(parm->value.string);
    if (copy->value.string || !parm->value.string) return copy;
    BaxMemoryFree(copy);
    return nullptr;
}

void OvxFreeParm(OvxParm *parm)
{
    if (!parm) return;
    if (parm->type == OVX_PARM_STRING) BaxMemoryFree(parm->value.string);
    BaxMemoryFree(parm);
}

bool OvxCmpParms(const OvxParm *a, const OvxParm *b)
{
    if (!a || !b) return a == b;
    if (a->type != b->type) return false;
    switch (a->type) {
    case OVX_PARM_BOOL: return a->value.boolean == b->value.boolean;
    case OVX_PARM_INT: return a->value.integer == b->value.integer;
    case OVX_PARM_LONG: return a->value.longInteger == b->value.longInteger;
    case OVX_PARM_FLOAT: return a->value.floating == b->value.floating;
    case OVX_PARM_DOUBLE: return a->value.doubleFloating == b->value.doubleFloating;
    case OVX_PARM_CHAR: return a->value.character == b->value.character;
    case OVX_PARM_STRING: return BaxStringCmp(a->value.string, b->value.string) == 0;
    default: return false;
    }
}
