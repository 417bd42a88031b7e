/* Maps from names to objects, in the order in which the names were first put. */
#ifndef OLVEX_STRINGTOOBJMAP_H
#define OLVEX_STRINGTOOBJMAP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty map, yours to free with OvxFreeStringToObjMap; NULL when memory runs out. */
OVX_API StringToObjMap *OvxAllocStringToObjMap(void);

/** Frees a map, releasing each object in order. */
OVX_API void OvxFreeStringToObjMap(StringToObjMap *map);

/**
 * A new map with the same keys in the same order and a reference to each object, yours; NULL when
 * memory runs out.
 */
OVX_API StringToObjMap *OvxCopyStringToObjMap(const StringToObjMap *map);

/**
 * Stores a object (kept; may be NULL) under a key (copied). A key that exists keeps its place, and
 * the old one is released. False for no key or when memory runs out.
 */
OVX_API bool OvxStringToObjMapPut(StringToObjMap *map, const char *key, OvxObject *value);

/**
 * The object of that key, a new reference, yours to release with OvxReleaseObject; NULL when the
 * key is not there.
 */
OVX_API OvxObject *OvxStringToObjMapGet(const StringToObjMap *map, const char *key);

/** Removes a key and gives up what it led to. */
OVX_API void OvxStringToObjMapRem(StringToObjMap *map, const char *key);

/** Says whether the key is there. */
OVX_API bool OvxStringToObjMapHasKey(const StringToObjMap *map, const char *key);

/** The first place of a walk, borrowed; NULL for an empty map. */
OVX_API StringToObjMapNode *OvxStringToObjMapIterator(const StringToObjMap *map);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringToObjMapIterHasNext(const StringToObjMapNode *iterator);

/** A copy of the key at this place, yours. */
OVX_API char *OvxStringToObjMapIterGetKey(const StringToObjMapNode *iterator);

/** The object at this place: a new reference, yours to release with OvxReleaseObject. */
OVX_API OvxObject *OvxStringToObjMapIterGetVal(const StringToObjMapNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringToObjMapNode *OvxStringToObjMapIterNext(const StringToObjMapNode *iterator);

OVX_END_DECLS

#endif
