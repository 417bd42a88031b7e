/*
 * Maps from names to object classes, which stay the property of the toolkit, in the order in which
 * the names were first put.
 */
#ifndef OLVEX_STRINGTOOBJCLASSMAP_H
#define OLVEX_STRINGTOOBJCLASSMAP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty map, yours to free with OvxFreeStringToObjClassMap; NULL when memory runs out. */
OVX_API StringToObjClassMap *OvxAllocStringToObjClassMap(void);

/** Frees a map and its keys; the classes stay. */
OVX_API void OvxFreeStringToObjClassMap(StringToObjClassMap *map);

/**
 * A new map with the same keys in the same order and the same classes, yours; NULL when memory
 * runs out.
 */
OVX_API StringToObjClassMap *OvxCopyStringToObjClassMap(const StringToObjClassMap *map);

/**
 * Stores a class (borrowed as long as it is in the map; may be NULL) under a key (copied). A key
 * that exists keeps its place, and the old one is left as it is. False for no key or when memory
 * runs out.
 */
OVX_API bool OvxStringToObjClassMapPut(StringToObjClassMap *map, const char *key,
                                       OvxObjClass *value);

/** The class of that key, borrowed; NULL when the key is not there. */
OVX_API OvxObjClass *OvxStringToObjClassMapGet(const StringToObjClassMap *map, const char *key);

/** Removes a key. */
OVX_API void OvxStringToObjClassMapRem(StringToObjClassMap *map, const char *key);

/** Says whether the key is there. */
OVX_API bool OvxStringToObjClassMapHasKey(const StringToObjClassMap *map, const char *key);

/** The first place of a walk, borrowed; NULL for an empty map. */
OVX_API StringToObjClassMapNode *OvxStringToObjClassMapIterator(const StringToObjClassMap *map);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringToObjClassMapIterHasNext(const StringToObjClassMapNode *iterator);

/** A copy of the key at this place, yours. */
OVX_API char *OvxStringToObjClassMapIterGetKey(const StringToObjClassMapNode *iterator);

/** The class at this place: borrowed. */
OVX_API OvxObjClass *OvxStringToObjClassMapIterGetVal(const StringToObjClassMapNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringToObjClassMapNode *
OvxStringToObjClassMapIterNext(const StringToObjClassMapNode *iterator);

OVX_END_DECLS

#endif
