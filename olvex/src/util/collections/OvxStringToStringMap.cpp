// Maps from names to strings. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "util/collections/OvxStringToStringMap.h"

#include "util/shapes/Define.h"

OVX_DEFINE_MAP(StringToStringMap, const char *, char *)
