// The shared bodies of the logging calls. Called with the API mutex held.
#pragma once

#include <olvex/Log.h>
#include <olvex/class.h>

void ovxLogMessageEntry(OvxObject *logger, int level, const char *catalog, int set, int key,
                        const char *text, va_list parameters);
void ovxLogDebugEntry(OvxObject *logger, int level, const char *srcFile, const char *srcFunction,
                      int srcLine, const char *text, va_list parameters);

// Gives back the memory that events are built in, between events.
void ovxDiscardEventMemory();

// No logger in particular is asked for: always false.
bool ovxIntlIsLoggable();
