// The reader of properties files.
#pragma once

#include <olvex/PropList.h>

// Reads a file into `list`, or for none into the log manager, which needs the API mutex held. True
// when the whole file was read; what stood before an error stays stored.
bool ovxDoReadProps(const char *path, CxPropList *list);
