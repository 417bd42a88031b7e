/* String lists: strings in a row, repeats allowed. */
#ifndef OLVEX_STRINGLIST_H
#define OLVEX_STRINGLIST_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty list, yours to free with OvxFreeStringList; NULL when memory runs out. */
OVX_API StringList *OvxAllocStringList(void);

/** Frees a list and its strings. */
OVX_API void OvxFreeStringList(StringList *list);

/** A new list with a copy of each string, yours; NULL when memory runs out. */
OVX_API StringList *OvxCopyStringList(const StringList *list);

/** Appends a string (copied); false when memory runs out. */
OVX_API bool OvxStringListAppend(StringList *list, const char *element);

/**
 * Sorts the list; `compare` gets pointers to two pointers to strings and runs with the lock held.
 * Places stay what they are and hold other strings then.
 */
OVX_API void OvxSortStringList(StringList *list, int (*compare)(const void *, const void *));

/** The first place with a string that is equal (case counts), borrowed, or NULL. Takes no lock. */
OVX_API StringListNode *OvxStringListGetLink(const StringList *list, const char *element);

/**
 * The string at a position counted from 0, borrowed while it is in the list; NULL when there is
 * none. Takes no lock.
 */
OVX_API const char *OvxStringListGetIndex(const StringList *list, int index);

/** Removes a place of this list and frees its string. Takes no lock. */
OVX_API void OvxStringListRemLink(StringList *list, StringListNode *node);

/** The first place of a walk, borrowed; NULL for an empty list. */
OVX_API StringListNode *OvxStringListIterator(const StringList *list);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringListIterHasNext(const StringListNode *iterator);

/** The string at this place: a copy, yours. */
OVX_API char *OvxStringListIterGet(const StringListNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringListNode *OvxStringListIterNext(const StringListNode *iterator);

/** Removes this place, which is gone then, and returns the following one, borrowed. */
OVX_API StringListNode *OvxStringListIterRem(StringListNode *iterator);

OVX_END_DECLS

#endif
