/*
 * A flat table of string keys and values. The header is the caller's and begins as zeros; keys are
 * unique, compared with case, and stay whole, dots included. No function here takes a lock, but
 * CxPropListRead to report a failure: a list belongs to its caller.
 */
#ifndef OLVEX_PROPLIST_H
#define OLVEX_PROPLIST_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** One key and its value. */
typedef struct CxPropEntry {
    char *key;   /**< owned by the list */
    char *value; /**< owned by the list */
} CxPropEntry;

/** The list; begins as zeros. */
typedef struct CxPropList {
    int32_t count;        /**< entries in use */
    int32_t capacity;     /**< entries allocated */
    CxPropEntry *entries; /**< block of BaxMemoryMalloc */
} CxPropList;

/** A place in a list; a value that the caller holds. */
typedef struct CxPropListIter {
    CxPropList *list; /**< borrowed; NULL once the walk is over */
    int32_t index;    /**< of the current entry */
} CxPropListIter;

/**
 * Reads a properties file into the list; false when it cannot be opened or read, which is reported,
 * or at the first line that is malformed. The pairs before that stay in the list.
 */
OVX_API bool CxPropListRead(const char *path, CxPropList *list);
/** Stores a pair, copied; an existing key keeps its place. False when memory runs out. */
OVX_API bool CxPropListPutStr(CxPropList *list, const char *key, const char *value);
/** The value of a key, borrowed until it changes; `found` (optional) says if it is there. */
OVX_API const char *CxPropListPeekStr(const CxPropList *list, const char *key, bool *found);
/** The value of a key, yours; `found` (optional) says whether it is there. */
OVX_API char *CxPropListCopyStr(const CxPropList *list, const char *key, bool *found);
/** Says whether the key is there. */
OVX_API bool CxPropListHasKey(const CxPropList *list, const char *key);
/** Removes a key, whose place the last entry takes. True when it was there. */
OVX_API bool CxPropListRemove(CxPropList *list, const char *key);
/** Frees all entries; the header can be used again. */
OVX_API void CxPropListDiscard(CxPropList *list);

/** An iterator on the first entry; the list is borrowed for the walk. */
OVX_API CxPropListIter CxPropListIterator(CxPropList *list);
/** Says whether an entry follows the current one. */
OVX_API bool CxPropListIterHasNext(const CxPropListIter *iterator);
/** Moves to the next entry; behind the last one the walk is over. */
OVX_API void CxPropListIterNext(CxPropListIter *iterator);
/** The current key, borrowed; NULL when the walk is over. */
OVX_API const char *CxPropListIterPeekKey(const CxPropListIter *iterator);
/** The current value, borrowed; NULL when the walk is over. */
OVX_API const char *CxPropListIterPeekVal(const CxPropListIter *iterator);
/** The current key, yours; NULL when the walk is over. */
OVX_API char *CxPropListIterCopyKey(const CxPropListIter *iterator);
/** The current value, yours; NULL when the walk is over. */
OVX_API char *CxPropListIterCopyVal(const CxPropListIter *iterator);

OVX_END_DECLS

#endif
