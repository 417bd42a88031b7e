// Groups of listeners. Callers of the internal functions hold the API mutex or own the
// collection alone.
#include "toolkit/collections/OvxListenerGroup.h"

#include "util/shapes/Define.h"

OVX_DEFINE_GROUP(ListenerGroup, OvxObject *, OvxObject *)
