// How an event passes from an object to its listeners. Called with the API mutex held.
#pragma once

#include "OvxObject.h"
#include "util/EventPath.h"
#include "util/OvxListenerGroup.h"

namespace olvex {

// Hands the event to one listener, unless it is at work already: an event that comes back to an
// object in a circle, or a report of its own failure, ends here.
OVX_ONE_FRAME void deliver(OvxObject *listener, OvxEvent *event)
{
    if (listener->running || !(isFilter(listener) || isHandler(listener))) return;
    const OvxFProcess process = listener->cls->slots.process;
    if (!process) return;
    const ObjectRef reference = ObjectRef::to(listener);
    const Running running(listener);
    process(listener, event);
}

// False when there are no listeners.
OVX_ONE_FRAME bool passToListeners(OvxObject *object, OvxEvent *event)
{
    ListenerGroup *group = object->listeners;
    if (!group || !group->first()) return false;
    ListenerGroup::Walk walk(group);
    while (const ListenerGroupNode *node = walk.next())
        deliver(node->element(), event);
    return true;
}

} // namespace olvex
