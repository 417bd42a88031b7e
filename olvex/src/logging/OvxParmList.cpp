// Lists of parameters. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "logging/OvxParmList.h"

#include "util/shapes/Define.h"

OVX_DEFINE_LIST(ParmList, const OvxParm *, OvxParm *)
