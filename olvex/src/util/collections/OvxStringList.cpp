// Lists of strings. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "util/collections/OvxStringList.h"

#include "util/shapes/Define.h"

OVX_DEFINE_LIST(StringList, const char *, char *)
