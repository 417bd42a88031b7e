/*
 * The collections: groups (each element once), maps (keys are strings) and lists (repeats allowed),
 * all in order of insertion. A place in one, a node, is also the iterator: a walk starts with the
 * iterator of the collection and ends at a null place. The lock is taken for one call at a time, so
 * do not walk a collection that another thread changes.
 */
#ifndef OLVEX_COLLECTIONS_H
#define OLVEX_COLLECTIONS_H

#include <olvex/ListenerGroup.h>
#include <olvex/ParmList.h>
#include <olvex/StringGroup.h>
#include <olvex/StringList.h>
#include <olvex/StringToObjCfgMap.h>
#include <olvex/StringToObjClassMap.h>
#include <olvex/StringToObjMap.h>
#include <olvex/StringToStringMap.h>

#endif
