// The file copy handler: copies files when its trigger selects an event. Called with the API mutex
// held.
#pragma once

#include "handlers/capture/OvxFFDCTriggerHandler.h"

struct OvxFileCopySettings {
    olvex::Text filesToCopy;
    olvex::Text zipFile;
    olvex::Text zipCmdPath;
};

void *OvxFileCopyHandlerFAllocVars();
void OvxFileCopyHandlerFFreeVars(void *variables);
void OvxFileCopyHandlerFCfgChange(OvxObject *handler, const char *name);
void OvxFileCopyHandlerFProcess(OvxObject *handler, OvxEvent *event);

// The setters of <olvex/Ffdc.h>.
void ovxIntlFileCopyHandlerSetFiles(OvxObject *handler, const char *files);
void ovxIntlFileCopyHandlerSetZipFile(OvxObject *handler, const char *name);
void ovxIntlFileCopyHandlerSetZipCmdPath(OvxObject *handler, const char *path);
