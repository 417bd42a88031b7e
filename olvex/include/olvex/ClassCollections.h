/*
 * The collections as class functions use them: with the toolkit's lock held, which these functions
 * neither take nor check. Each does what its public twin in <olvex/Collections.h> does.
 */
#ifndef OLVEX_CLASSCOLLECTIONS_H
#define OLVEX_CLASSCOLLECTIONS_H

#include <olvex/Parm.h>
#include <olvex/Types.h>

OVX_BEGIN_DECLS

/*
 * ListenerGroup
 */

/** Makes an empty one, as OvxAllocListenerGroup. */
OVX_API ListenerGroup *ovxIntlAllocListenerGroup(void);
/** As OvxFreeListenerGroup. */
OVX_API void ovxIntlFreeListenerGroup(ListenerGroup *group);
/** As OvxListenerGroupAdd. */
OVX_API bool ovxIntlListenerGroupAdd(ListenerGroup *group, OvxObject *element);
/** As OvxListenerGroupRem. */
OVX_API bool ovxIntlListenerGroupRem(ListenerGroup *group, OvxObject *element);
/** As OvxListenerGroupIterator. */
OVX_API ListenerGroupNode *ovxIntlListenerGroupIterator(const ListenerGroup *group);
/** As OvxListenerGroupIterHasNext. */
OVX_API bool ovxIntlListenerGroupIterHasNext(const ListenerGroupNode *iterator);
/** As OvxListenerGroupIterGet. */
OVX_API OvxObject *ovxIntlListenerGroupIterGet(const ListenerGroupNode *iterator);
/** As OvxListenerGroupIterNext. */
OVX_API ListenerGroupNode *ovxIntlListenerGroupIterNext(const ListenerGroupNode *iterator);
/** As OvxListenerGroupIterRem. */
OVX_API ListenerGroupNode *ovxIntlListenerGroupIterRem(ListenerGroupNode *iterator);

/*
 * StringGroup
 */

/** Makes an empty one, as OvxAllocStringGroup. */
OVX_API StringGroup *ovxIntlAllocStringGroup(void);
/** As OvxFreeStringGroup. */
OVX_API void ovxIntlFreeStringGroup(StringGroup *group);
/** As OvxStringGroupAdd. */
OVX_API bool ovxIntlStringGroupAdd(StringGroup *group, const char *element);
/** As OvxStringGroupRem. */
OVX_API bool ovxIntlStringGroupRem(StringGroup *group, const char *element);
/** As OvxStringGroupIterator. */
OVX_API StringGroupNode *ovxIntlStringGroupIterator(const StringGroup *group);
/** As OvxStringGroupIterHasNext. */
OVX_API bool ovxIntlStringGroupIterHasNext(const StringGroupNode *iterator);
/** As OvxStringGroupIterGet. */
OVX_API char *ovxIntlStringGroupIterGet(const StringGroupNode *iterator);
/** As OvxStringGroupIterNext. */
OVX_API StringGroupNode *ovxIntlStringGroupIterNext(const StringGroupNode *iterator);
/** As OvxStringGroupIterRem. */
OVX_API StringGroupNode *ovxIntlStringGroupIterRem(StringGroupNode *iterator);

/*
 * StringToObjCfgMap
 */

/** Makes an empty one, as OvxAllocStringToObjCfgMap. */
OVX_API StringToObjCfgMap *ovxIntlAllocStringToObjCfgMap(void);
/** As OvxFreeStringToObjCfgMap. */
OVX_API void ovxIntlFreeStringToObjCfgMap(StringToObjCfgMap *map);
/** As OvxCopyStringToObjCfgMap. */
OVX_API StringToObjCfgMap *ovxIntlCopyStringToObjCfgMap(const StringToObjCfgMap *map);
/** As OvxStringToObjCfgMapPut. */
OVX_API bool ovxIntlStringToObjCfgMapPut(StringToObjCfgMap *map, const char *key, OvxObjCfg *value);
/** As OvxStringToObjCfgMapGet. */
OVX_API OvxObjCfg *ovxIntlStringToObjCfgMapGet(const StringToObjCfgMap *map, const char *key);
/** As OvxStringToObjCfgMapRem. */
OVX_API void ovxIntlStringToObjCfgMapRem(StringToObjCfgMap *map, const char *key);
/** As OvxStringToObjCfgMapHasKey. */
OVX_API bool ovxIntlStringToObjCfgMapHasKey(const StringToObjCfgMap *map, const char *key);
/** As OvxStringToObjCfgMapIterator. */
OVX_API StringToObjCfgMapNode *ovxIntlStringToObjCfgMapIterator(const StringToObjCfgMap *map);
/** As OvxStringToObjCfgMapIterHasNext. */
OVX_API bool ovxIntlStringToObjCfgMapIterHasNext(const StringToObjCfgMapNode *iterator);
/** As OvxStringToObjCfgMapIterGetKey. */
OVX_API char *ovxIntlStringToObjCfgMapIterGetKey(const StringToObjCfgMapNode *iterator);
/** As OvxStringToObjCfgMapIterGetVal. */
OVX_API OvxObjCfg *ovxIntlStringToObjCfgMapIterGetVal(const StringToObjCfgMapNode *iterator);
/** As OvxStringToObjCfgMapIterNext. */
OVX_API StringToObjCfgMapNode *
ovxIntlStringToObjCfgMapIterNext(const StringToObjCfgMapNode *iterator);

/*
 * StringToObjClassMap
 */

/** Makes an empty one, as OvxAllocStringToObjClassMap. */
OVX_API StringToObjClassMap *ovxIntlAllocStringToObjClassMap(void);
/** As OvxFreeStringToObjClassMap. */
OVX_API void ovxIntlFreeStringToObjClassMap(StringToObjClassMap *map);
/** As OvxCopyStringToObjClassMap. */
OVX_API StringToObjClassMap *ovxIntlCopyStringToObjClassMap(const StringToObjClassMap *map);
/** As OvxStringToObjClassMapPut. */
OVX_API bool ovxIntlStringToObjClassMapPut(StringToObjClassMap *map, const char *key,
                                           OvxObjClass *value);
/** As OvxStringToObjClassMapGet. */
OVX_API OvxObjClass *ovxIntlStringToObjClassMapGet(const StringToObjClassMap *map, const char *key);
/** As OvxStringToObjClassMapRem. */
OVX_API void ovxIntlStringToObjClassMapRem(StringToObjClassMap *map, const char *key);
/** As OvxStringToObjClassMapHasKey. */
OVX_API bool ovxIntlStringToObjClassMapHasKey(const StringToObjClassMap *map, const char *key);
/** As OvxStringToObjClassMapIterator. */
OVX_API StringToObjClassMapNode *ovxIntlStringToObjClassMapIterator(const StringToObjClassMap *map);
/** As OvxStringToObjClassMapIterHasNext. */
OVX_API bool ovxIntlStringToObjClassMapIterHasNext(const StringToObjClassMapNode *iterator);
/** As OvxStringToObjClassMapIterGetKey. */
OVX_API char *ovxIntlStringToObjClassMapIterGetKey(const StringToObjClassMapNode *iterator);
/** As OvxStringToObjClassMapIterGetVal. */
OVX_API OvxObjClass *ovxIntlStringToObjClassMapIterGetVal(const StringToObjClassMapNode *iterator);
/** As OvxStringToObjClassMapIterNext. */
OVX_API StringToObjClassMapNode *
ovxIntlStringToObjClassMapIterNext(const StringToObjClassMapNode *iterator);

/*
 * StringToObjMap
 */

/** Makes an empty one, as OvxAllocStringToObjMap. */
OVX_API StringToObjMap *ovxIntlAllocStringToObjMap(void);
/** As OvxFreeStringToObjMap. */
OVX_API void ovxIntlFreeStringToObjMap(StringToObjMap *map);
/** As OvxCopyStringToObjMap. */
OVX_API StringToObjMap *ovxIntlCopyStringToObjMap(const StringToObjMap *map);
/** As OvxStringToObjMapPut. */
OVX_API bool ovxIntlStringToObjMapPut(StringToObjMap *map, const char *key, OvxObject *value);
/** As OvxStringToObjMapGet. */
OVX_API OvxObject *ovxIntlStringToObjMapGet(const StringToObjMap *map, const char *key);
/** As OvxStringToObjMapRem. */
OVX_API void ovxIntlStringToObjMapRem(StringToObjMap *map, const char *key);
/** As OvxStringToObjMapHasKey. */
OVX_API bool ovxIntlStringToObjMapHasKey(const StringToObjMap *map, const char *key);
/** As OvxStringToObjMapIterator. */
OVX_API StringToObjMapNode *ovxIntlStringToObjMapIterator(const StringToObjMap *map);
/** As OvxStringToObjMapIterHasNext. */
OVX_API bool ovxIntlStringToObjMapIterHasNext(const StringToObjMapNode *iterator);
/** As OvxStringToObjMapIterGetKey. */
OVX_API char *ovxIntlStringToObjMapIterGetKey(const StringToObjMapNode *iterator);
/** As OvxStringToObjMapIterGetVal. */
OVX_API OvxObject *ovxIntlStringToObjMapIterGetVal(const StringToObjMapNode *iterator);
/** As OvxStringToObjMapIterNext. */
OVX_API StringToObjMapNode *ovxIntlStringToObjMapIterNext(const StringToObjMapNode *iterator);

/*
 * StringToStringMap
 */

/** Makes an empty one, as OvxAllocStringToStringMap. */
OVX_API StringToStringMap *ovxIntlAllocStringToStringMap(void);
/** As OvxFreeStringToStringMap. */
OVX_API void ovxIntlFreeStringToStringMap(StringToStringMap *map);
/** As OvxCopyStringToStringMap. */
OVX_API StringToStringMap *ovxIntlCopyStringToStringMap(const StringToStringMap *map);
/** As OvxStringToStringMapPut. */
OVX_API bool ovxIntlStringToStringMapPut(StringToStringMap *map, const char *key,
                                         const char *value);
/** As OvxStringToStringMapGet. */
OVX_API char *ovxIntlStringToStringMapGet(const StringToStringMap *map, const char *key);
/** As OvxStringToStringMapRem. */
OVX_API void ovxIntlStringToStringMapRem(StringToStringMap *map, const char *key);
/** As OvxStringToStringMapHasKey. */
OVX_API bool ovxIntlStringToStringMapHasKey(const StringToStringMap *map, const char *key);
/** As OvxStringToStringMapIterator. */
OVX_API StringToStringMapNode *ovxIntlStringToStringMapIterator(const StringToStringMap *map);
/** As OvxStringToStringMapIterHasNext. */
OVX_API bool ovxIntlStringToStringMapIterHasNext(const StringToStringMapNode *iterator);
/** As OvxStringToStringMapIterGetKey. */
OVX_API char *ovxIntlStringToStringMapIterGetKey(const StringToStringMapNode *iterator);
/** As OvxStringToStringMapIterGetVal. */
OVX_API char *ovxIntlStringToStringMapIterGetVal(const StringToStringMapNode *iterator);
/** As OvxStringToStringMapIterNext. */
OVX_API StringToStringMapNode *
ovxIntlStringToStringMapIterNext(const StringToStringMapNode *iterator);

/*
 * ParmList
 */

/** Makes an empty one, as OvxAllocParmList. */
OVX_API ParmList *ovxIntlAllocParmList(void);
/** As OvxFreeParmList. */
OVX_API void ovxIntlFreeParmList(ParmList *list);
/** As OvxCopyParmList. */
OVX_API ParmList *ovxIntlCopyParmList(const ParmList *list);
/** As OvxParmListAppend. */
OVX_API bool ovxIntlParmListAppend(ParmList *list, const OvxParm *element);
/** As OvxParmListIterator. */
OVX_API ParmListNode *ovxIntlParmListIterator(const ParmList *list);
/** As OvxParmListIterHasNext. */
OVX_API bool ovxIntlParmListIterHasNext(const ParmListNode *iterator);
/** As OvxParmListIterGet. */
OVX_API OvxParm *ovxIntlParmListIterGet(const ParmListNode *iterator);
/** As OvxParmListIterNext. */
OVX_API ParmListNode *ovxIntlParmListIterNext(const ParmListNode *iterator);
/** As OvxParmListIterRem. */
OVX_API ParmListNode *ovxIntlParmListIterRem(ParmListNode *iterator);

/*
 * StringList
 */

/** Makes an empty one, as OvxAllocStringList. */
OVX_API StringList *ovxIntlAllocStringList(void);
/** As OvxFreeStringList. */
OVX_API void ovxIntlFreeStringList(StringList *list);
/** As OvxCopyStringList. */
OVX_API StringList *ovxIntlCopyStringList(const StringList *list);
/** As OvxStringListAppend. */
OVX_API bool ovxIntlStringListAppend(StringList *list, const char *element);
/** As OvxStringListIterator. */
OVX_API StringListNode *ovxIntlStringListIterator(const StringList *list);
/** As OvxStringListIterHasNext. */
OVX_API bool ovxIntlStringListIterHasNext(const StringListNode *iterator);
/** As OvxStringListIterGet. */
OVX_API char *ovxIntlStringListIterGet(const StringListNode *iterator);
/** As OvxStringListIterNext. */
OVX_API StringListNode *ovxIntlStringListIterNext(const StringListNode *iterator);
/** As OvxStringListIterRem. */
OVX_API StringListNode *ovxIntlStringListIterRem(StringListNode *iterator);

OVX_END_DECLS

#endif
