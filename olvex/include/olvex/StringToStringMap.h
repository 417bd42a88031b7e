/* Maps from names to strings, in the order in which the names were first put. */
#ifndef OLVEX_STRINGTOSTRINGMAP_H
#define OLVEX_STRINGTOSTRINGMAP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty map, yours to free with OvxFreeStringToStringMap; NULL when memory runs out. */
OVX_API StringToStringMap *OvxAllocStringToStringMap(void);

/** Frees a map with its keys and strings. */
OVX_API void OvxFreeStringToStringMap(StringToStringMap *map);

/**
 * A new map with the same keys in the same order and a copy of each string, yours; NULL when
 * memory runs out.
 */
OVX_API StringToStringMap *OvxCopyStringToStringMap(const StringToStringMap *map);

/**
 * Stores a string (copied; may be NULL) under a key (copied). A key that exists keeps its place,
 * and the old one is freed. False for no key or when memory runs out.
 */
OVX_API bool OvxStringToStringMapPut(StringToStringMap *map, const char *key, const char *value);

/** The string of that key, a copy, yours; NULL when the key is not there. */
OVX_API char *OvxStringToStringMapGet(const StringToStringMap *map, const char *key);

/** Removes a key and gives up what it led to. */
OVX_API void OvxStringToStringMapRem(StringToStringMap *map, const char *key);

/** Says whether the key is there. */
OVX_API bool OvxStringToStringMapHasKey(const StringToStringMap *map, const char *key);

/** The first place of a walk, borrowed; NULL for an empty map. */
OVX_API StringToStringMapNode *OvxStringToStringMapIterator(const StringToStringMap *map);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringToStringMapIterHasNext(const StringToStringMapNode *iterator);

/** A copy of the key at this place, yours. */
OVX_API char *OvxStringToStringMapIterGetKey(const StringToStringMapNode *iterator);

/** The string at this place: a copy, yours. */
OVX_API char *OvxStringToStringMapIterGetVal(const StringToStringMapNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringToStringMapNode *OvxStringToStringMapIterNext(const StringToStringMapNode *iterator);

OVX_END_DECLS

#endif
