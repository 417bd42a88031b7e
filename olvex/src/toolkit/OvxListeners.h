// How an event passes from an object to its listeners. Called with the API mutex held.
#pragma once

#include "toolkit/OvxObject.h"
#include "toolkit/collections/OvxListenerGroup.h"
#include "util/HotPath.h"

namespace olvex {

// The depth of nested deliveries. From kMostNested on, an event is passed on by deliverDeep, which
// does not recurse.
inline unsigned nestedDeliveries = 0;
inline constexpr unsigned kMostNested = 8;

inline bool mayDeliver(const OvxObject *listener)
{
    return !listener->running && (isFilter(listener) || isHandler(listener)) &&
           listener->cls->slots.process;
}

// Hands the event to a listener, and along the chains behind it, without recursion. The caller has
// checked mayDeliver().
void deliverDeep(OvxObject *listener, OvxEvent *event);

// Hands the event to one listener, unless its function is running already: an event that comes back
// to an object in a circle, or a report of its own failure, ends here.
OVX_ALWAYS_INLINE void deliver(OvxObject *listener, OvxEvent *event)
{
    if (!mayDeliver(listener)) return;
    if (nestedDeliveries >= kMostNested) [[unlikely]]
        return deliverDeep(listener, event);
    const ObjectRef reference = ObjectRef::to(listener);
    const Running running(listener);
    ++nestedDeliveries;
    listener->cls->slots.process(listener, event);
    --nestedDeliveries;
}

// False when there are no listeners.
OVX_ALWAYS_INLINE bool passToListeners(OvxObject *object, OvxEvent *event)
{
    ListenerGroup *group = object->listeners;
    if (!group || !group->first()) return false;
    ListenerGroup::Walk walk(group);
    while (const ListenerGroupNode *node = walk.next())
        deliver(node->element(), event);
    return true;
}

} // namespace olvex
