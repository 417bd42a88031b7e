// Maps from names to classes. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "toolkit/collections/OvxStringToObjClassMap.h"

#include "util/shapes/Define.h"

OVX_DEFINE_MAP(StringToObjClassMap, OvxObjClass *, OvxObjClass *)
