/* Maps from names to configurations, in the order in which the names were first put. */
#ifndef OLVEX_STRINGTOOBJCFGMAP_H
#define OLVEX_STRINGTOOBJCFGMAP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty map, yours to free with OvxFreeStringToObjCfgMap; NULL when memory runs out. */
OVX_API StringToObjCfgMap *OvxAllocStringToObjCfgMap(void);

/** Frees a map, releasing each configuration in order. */
OVX_API void OvxFreeStringToObjCfgMap(StringToObjCfgMap *map);

/**
 * A new map with the same keys in the same order and a reference to each configuration, yours;
 * NULL when memory runs out.
 */
OVX_API StringToObjCfgMap *OvxCopyStringToObjCfgMap(const StringToObjCfgMap *map);

/**
 * Stores a configuration (kept; may be NULL) under a key (copied). A key that exists keeps its
 * place, and the old one is released. False for no key or when memory runs out.
 */
OVX_API bool OvxStringToObjCfgMapPut(StringToObjCfgMap *map, const char *key, OvxObjCfg *value);

/**
 * The configuration of that key, a new reference, yours to release with OvxReleaseObjCfg; NULL
 * when the key is not there.
 */
OVX_API OvxObjCfg *OvxStringToObjCfgMapGet(const StringToObjCfgMap *map, const char *key);

/** Removes a key and gives up what it led to. */
OVX_API void OvxStringToObjCfgMapRem(StringToObjCfgMap *map, const char *key);

/** Says whether the key is there. */
OVX_API bool OvxStringToObjCfgMapHasKey(const StringToObjCfgMap *map, const char *key);

/** The first place of a walk, borrowed; NULL for an empty map. */
OVX_API StringToObjCfgMapNode *OvxStringToObjCfgMapIterator(const StringToObjCfgMap *map);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringToObjCfgMapIterHasNext(const StringToObjCfgMapNode *iterator);

/** A copy of the key at this place, yours. */
OVX_API char *OvxStringToObjCfgMapIterGetKey(const StringToObjCfgMapNode *iterator);

/** The configuration at this place: a new reference, yours to release with OvxReleaseObjCfg. */
OVX_API OvxObjCfg *OvxStringToObjCfgMapIterGetVal(const StringToObjCfgMapNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringToObjCfgMapNode *OvxStringToObjCfgMapIterNext(const StringToObjCfgMapNode *iterator);

OVX_END_DECLS

#endif
