// Groups of strings. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "util/collections/OvxStringGroup.h"

#include "util/shapes/Define.h"

OVX_DEFINE_GROUP(StringGroup, const char *, char *)
