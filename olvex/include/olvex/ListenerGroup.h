/*
 * Listener groups: objects that listen to another one, each once, in the order in which they were
 * added.
 */
#ifndef OLVEX_LISTENERGROUP_H
#define OLVEX_LISTENERGROUP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty group, yours to free with OvxFreeListenerGroup; NULL when memory runs out. */
OVX_API ListenerGroup *OvxAllocListenerGroup(void);

/** Frees a group, releasing its listeners. */
OVX_API void OvxFreeListenerGroup(ListenerGroup *group);

/** Appends a listener (kept). False when it is in the group already or memory runs out. */
OVX_API bool OvxListenerGroupAdd(ListenerGroup *group, OvxObject *element);

/** Removes a listener and releases it; false when it is not there. */
OVX_API bool OvxListenerGroupRem(ListenerGroup *group, OvxObject *element);

/** The place of a listener, borrowed, or NULL. Takes no lock. */
OVX_API ListenerGroupNode *OvxListenerGroupGetLink(const ListenerGroup *group, OvxObject *element);

/** The first place of a walk, borrowed; NULL for an empty group. */
OVX_API ListenerGroupNode *OvxListenerGroupIterator(const ListenerGroup *group);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxListenerGroupIterHasNext(const ListenerGroupNode *iterator);

/** The listener at this place: a new reference, yours to release with OvxReleaseObject. */
OVX_API OvxObject *OvxListenerGroupIterGet(const ListenerGroupNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API ListenerGroupNode *OvxListenerGroupIterNext(const ListenerGroupNode *iterator);

/** Removes what is at this place, which is gone then, and returns the following one, borrowed. */
OVX_API ListenerGroupNode *OvxListenerGroupIterRem(ListenerGroupNode *iterator);

OVX_END_DECLS

#endif
