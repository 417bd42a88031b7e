/* String groups: strings, each once, in the order in which they were added. */
#ifndef OLVEX_STRINGGROUP_H
#define OLVEX_STRINGGROUP_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes an empty group, yours to free with OvxFreeStringGroup; NULL when memory runs out. */
OVX_API StringGroup *OvxAllocStringGroup(void);

/** Frees a group and its strings. */
OVX_API void OvxFreeStringGroup(StringGroup *group);

/**
 * Appends a string (copied). False when an equal one is in the group already or memory runs out.
 */
OVX_API bool OvxStringGroupAdd(StringGroup *group, const char *element);

/** Removes the equal string; false when it is not there. */
OVX_API bool OvxStringGroupRem(StringGroup *group, const char *element);

/** The place of the equal string, borrowed, or NULL. Takes no lock. */
OVX_API StringGroupNode *OvxStringGroupGetLink(const StringGroup *group, const char *element);

/** The first place of a walk, borrowed; NULL for an empty group. */
OVX_API StringGroupNode *OvxStringGroupIterator(const StringGroup *group);

/** Says whether the walk has a place here: false at its end. */
OVX_API bool OvxStringGroupIterHasNext(const StringGroupNode *iterator);

/** The string at this place: a copy, yours. */
OVX_API char *OvxStringGroupIterGet(const StringGroupNode *iterator);

/** The following place, borrowed; NULL at the end. */
OVX_API StringGroupNode *OvxStringGroupIterNext(const StringGroupNode *iterator);

/** Removes what is at this place, which is gone then, and returns the following one, borrowed. */
OVX_API StringGroupNode *OvxStringGroupIterRem(StringGroupNode *iterator);

OVX_END_DECLS

#endif
