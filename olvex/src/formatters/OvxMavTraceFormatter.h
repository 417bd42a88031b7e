// The trace formatter: one line of fixed fields for each event. Called with the API mutex held.
#pragma once

#include <olvex/StringBuff.h>

#include "toolkit/OvxObject.h"

char *OvxMavTraceFormatterFFormat(OvxObject *formatter, OvxEvent *event);

namespace olvex {

// Appends the event's line; false when an argument is missing.
bool appendTraceLine(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer);

} // namespace olvex
