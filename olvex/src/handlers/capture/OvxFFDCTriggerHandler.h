// What all handlers of first failure data capture share: the trigger, the directory of the event's
// date, the quota. The class "ovx_ffdc_trigger_handler" only holds these settings; the file copy
// handler adds its own and acts. Called with the API mutex held.
#pragma once

#include <olvex/Ffdc.h>

#include "toolkit/OvxObject.h"
#include "util/Memory.h"

struct OvxFileCopySettings;

namespace olvex {

enum class QuotaPolicy { kIgnore, kAutoDelete, kSuspend };

} // namespace olvex

struct OvxFFDCHandlerVars {
    bool isOpen = false;
    olvex::Text baseDir;
    std::int64_t maxDiskSpace = 10485760; // bytes
    olvex::Text filterName;
    OvxObject *filter = nullptr;     // a counted reference
    std::int64_t repeatTime = 0;     // milliseconds
    std::int64_t lastActionTime = 0; // the event's, milliseconds since 1970; 0 for none
    olvex::QuotaPolicy quotaPolicy = olvex::QuotaPolicy::kAutoDelete;
    double firstWarning = 0.75; // fractions of maxDiskSpace
    double secondWarning = 0.9;
    OvxFileCopySettings *copySettings = nullptr; // the file copy handler's, which owns them
    bool warnOnDiskSpace = false;
};

namespace olvex {

// Null for anything but a live handler of one of the two classes.
OvxFFDCHandlerVars *ffdcVarsOf(const OvxObject *handler);

// Whether there is a base directory. The root of the file system is none: everything below the base
// directory counts, and may be deleted.
bool hasBaseDirectory(const OvxFFDCHandlerVars &vars);

// A path with slashes for backslashes; null when it is null or longer than 255 bytes.
Text nativePath(const char *path);

} // namespace olvex

void *OvxFFDCTriggerHandlerFAllocVars();
void OvxFFDCTriggerHandlerFFreeVars(void *variables);
void OvxFFDCTriggerHandlerFCfgChange(OvxObject *handler, const char *name);
void OvxFFDCTriggerHandlerFOpen(OvxObject *handler);
void OvxFFDCTriggerHandlerFClose(OvxObject *handler);

// Whether the event is one to act on; if so, it is noted as the last one.
bool ovxShouldFFDCActionOccur(OvxObject *handler, OvxEvent *event);
bool ovxIntlIsTriggerLoggable(OvxObject *filter, OvxEvent *event);
// Makes the directory of the event's date, ending in a slash; yours. Handlers that act on the same
// event share it.
char *ovxMakeFFDCDir(OvxObject *handler, OvxEvent *event);

// The setters of <olvex/Ffdc.h>.
void ovxIntlFFDCTriggerHandlerSetBaseDir(OvxObject *handler, const char *dir);
void ovxIntlFFDCTriggerHandlerSetMaxDisk(OvxObject *handler, std::int64_t bytes);
void ovxIntlFFDCTriggerHandlerSetFilter(OvxObject *handler, OvxObject *filter);
void ovxIntlFFDCTriggerHandlerSetFilterName(OvxObject *handler, const char *name);
void ovxIntlFFDCTriggerHandlerSetInterval(OvxObject *handler, std::int64_t milliseconds);
void ovxIntlFFDCTriggerHandlerSetQuotaPolicy(OvxObject *handler, const char *policy);
void ovxIntlFFDCTriggerHandlerSetFirstWarning(OvxObject *handler, double fraction);
void ovxIntlFFDCTriggerHandlerSetSecondWarning(OvxObject *handler, double fraction);
