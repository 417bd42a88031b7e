// Maps from names to configurations. Callers of the internal functions hold the API mutex or own
// the collection alone.
#include "toolkit/collections/OvxStringToObjCfgMap.h"

#include "util/shapes/Define.h"

OVX_DEFINE_MAP(StringToObjCfgMap, OvxObjCfg *, OvxObjCfg *)
