// Maps from names to objects. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "toolkit/collections/OvxStringToObjMap.h"

#include "util/shapes/Define.h"

OVX_DEFINE_MAP(StringToObjMap, OvxObject *, OvxObject *)
