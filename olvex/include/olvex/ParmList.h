/* Parameter lists: message parameters in a row, repeats allowed. */
#ifndef OLVEX_PARMLIST_H
#define OLVEX_PARMLIST_H

#include <olvex/Parm.h>
#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty list, yours to free with OvxFreeParmList; NULL when memory runs out. */
OVX_API ParmList *OvxAllocParmList(void);

/** Frees a list and its parameters. */
OVX_API void OvxFreeParmList(ParmList *list);

/** A new list with a copy of each parameter, yours; NULL when memory runs out. */
OVX_API ParmList *OvxCopyParmList(const ParmList *list);

/** Appends a parameter (copied); false when memory runs out. */
OVX_API bool OvxParmListAppend(ParmList *list, const OvxParm *element);

/**
 * Sorts the list; `compare` gets pointers to two pointers to parameters and runs with the lock
 * held. Places stay what they are and hold other parameters then.
 */
OVX_API void OvxSortParmList(ParmList *list, int (*compare)(const void *, const void *));

/**
 * The first place with a parameter that OvxCmpParms calls equal, borrowed, or NULL. Takes no lock.
 */
OVX_API ParmListNode *OvxParmListGetLink(const ParmList *list, const OvxParm *element);

/**
 * The parameter at a position counted from 0, borrowed while it is in the list; NULL when there is
 * none. Takes no lock.
 */
OVX_API const OvxParm *OvxParmListGetIndex(const ParmList *list, int index);

/** Removes a place of this list and frees its parameter. Takes no lock. */
OVX_API void OvxParmListRemLink(ParmList *list, ParmListNode *node);

/** The first place of a walk, borrowed; NULL for an empty list. */
OVX_API ParmListNode *OvxParmListIterator(const ParmList *list);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxParmListIterHasNext(const ParmListNode *iterator);

/** The parameter at this place: a copy, yours to free with OvxFreeParm. */
OVX_API OvxParm *OvxParmListIterGet(const ParmListNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API ParmListNode *OvxParmListIterNext(const ParmListNode *iterator);

/** Removes this place, which is gone then, and returns the following one, borrowed. */
OVX_API ParmListNode *OvxParmListIterRem(ParmListNode *iterator);

OVX_END_DECLS

#endif
