/*
 * First failure data capture: handlers that act when a selected event arrives. A trigger, which is
 * a filter object, selects the events; the file copy handler ("ovx_ffdc_filecopy_handler") then
 * copies files into a directory of the event's date, one by one or into a zip archive.
 *
 * All of that lies below a base directory with a quota. What is below it belongs to these handlers:
 * under the policy QUOTA_AUTODELETE the oldest files there are deleted to make room. Symbolic links
 * are never followed in that.
 *
 * These functions read and change what the properties named with them set. The ones that begin with
 * OvxFFDCTriggerHandler accept handlers of the classes "ovx_ffdc_trigger_handler" and
 * "ovx_ffdc_filecopy_handler", the others only the latter. For anything else, and when the lock
 * cannot be had, getters return 0 or NULL and setters do nothing. All of them take the lock.
 */
#ifndef OLVEX_FFDC_H
#define OLVEX_FFDC_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The base directory, yours; NULL when there is none: no action takes place then. */
OVX_API char *OvxFFDCTriggerHandlerGetBaseDir(OvxObject *handler);
/**
 * Sets the base directory (copied; slashes for backslashes); one of more than 255 bytes leaves
 * none. NULL is ignored. Property "baseDir".
 */
OVX_API void OvxFFDCTriggerHandlerSetBaseDir(OvxObject *handler, const char *dir);

/** The quota of the base directory in bytes; 10485760 at first. */
OVX_API int64_t OvxFFDCTriggerHandlerGetMaxDisk(OvxObject *handler);
/** Sets the quota in bytes, when greater than 0. Property "maxDiskSpace". */
OVX_API void OvxFFDCTriggerHandlerSetMaxDisk(OvxObject *handler, int64_t bytes);

/** The trigger filter, yours to release; NULL until the handler's first event finds it by name. */
OVX_API OvxObject *OvxFFDCTriggerHandlerGetFilter(OvxObject *handler);
/** Sets the trigger filter (kept). NULL is ignored. */
OVX_API void OvxFFDCTriggerHandlerSetFilter(OvxObject *handler, OvxObject *filter);

/** The trigger filter's name, yours; NULL when there is none. */
OVX_API char *OvxFFDCTriggerHandlerGetFilterName(OvxObject *handler);
/**
 * Sets the trigger filter's name (copied), by which it is looked up when the handler opens. NULL is
 * ignored. Property "triggerFilter".
 */
OVX_API void OvxFFDCTriggerHandlerSetFilterName(OvxObject *handler, const char *name);

/** The shortest time between two actions in milliseconds; 0 at first. */
OVX_API int64_t OvxFFDCTriggerHandlerGetInterval(OvxObject *handler);
/**
 * Sets the shortest time between two actions in milliseconds, when greater than 0. An event at
 * exactly that time after an action does not act. Property "triggerRepeatTime".
 */
OVX_API void OvxFFDCTriggerHandlerSetInterval(OvxObject *handler, int64_t milliseconds);

/** What is done when an action would exceed the quota, yours; "QUOTA_AUTODELETE" at first. */
OVX_API char *OvxFFDCTriggerHandlerGetQuotaPolicy(OvxObject *handler);
/**
 * Sets what is done when an action would exceed the quota: "QUOTA_IGNORE" acts all the same,
 * "QUOTA_AUTODELETE" deletes the oldest files down to the first warning limit, "QUOTA_SUSPEND" does
 * not act. Other texts are ignored. Property "quotaPolicy".
 */
OVX_API void OvxFFDCTriggerHandlerSetQuotaPolicy(OvxObject *handler, const char *policy);

/** The first warning limit as a fraction of the quota; 0.75 at first. */
OVX_API double OvxFFDCTriggerHandlerGetFirstWarning(OvxObject *handler);
/** Sets the first warning limit, when between 0 and 1 exclusive. Property "firstWarning". */
OVX_API void OvxFFDCTriggerHandlerSetFirstWarning(OvxObject *handler, double fraction);

/** The second warning limit as a fraction of the quota; 0.9 at first. */
OVX_API double OvxFFDCTriggerHandlerGetSecondWarning(OvxObject *handler);
/** Sets the second warning limit, when between 0 and 1 exclusive. Property "secondWarning". */
OVX_API void OvxFFDCTriggerHandlerSetSecondWarning(OvxObject *handler, double fraction);

/** The list of files to copy, yours; NULL when there is none. */
OVX_API char *OvxFileCopyHandlerGetFiles(OvxObject *handler);
/**
 * Sets the files to copy (copied): paths separated by blanks; double quotes keep the blanks in a
 * path. NULL is ignored. Property "filesToCopy". Only regular files are captured, no links, and of
 * a file that grows meanwhile what it had at first. A file without a size, as below /proc, is
 * copied as far as the quota goes; a cut is reported.
 */
OVX_API void OvxFileCopyHandlerSetFiles(OvxObject *handler, const char *files);

/** The zip archive's name, yours; NULL when files are copied one by one. */
OVX_API char *OvxFileCopyHandlerGetZipFile(OvxObject *handler);
/**
 * Sets the zip archive's name (copied), with ".zip" behind it if it has not got that; an empty one
 * stands for none. NULL is ignored. Property "zipFileName".
 */
OVX_API void OvxFileCopyHandlerSetZipFile(OvxObject *handler, const char *name);

/** The path of the zip program, yours; NULL when there is none. */
OVX_API char *OvxFileCopyHandlerGetZipCmdPath(OvxObject *handler);
/**
 * Sets the path of the zip program (copied), which must exist and have none but harmless characters
 * in its name; else that is reported and nothing changes. NULL is ignored. Property "zipCmdPath".
 * It is called as zip -q -j ARCHIVE FILE... with the standard three descriptors, and the logging
 * call waits for it; it is killed, with what it started, when it has not ended after five minutes.
 */
OVX_API void OvxFileCopyHandlerSetZipCmdPath(OvxObject *handler, const char *path);

OVX_END_DECLS

#endif
