// The basic formatter: one line for each event. Called with the API mutex held.
#pragma once

#include <olvex/StringBuff.h>

#include "toolkit/OvxObject.h"

namespace olvex {

// Appends the event's line to `buffer`; false when the formatter cannot format.
bool appendBasicFormat(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer);

// Appends a time in milliseconds since 1970 as the formatter's timestamp.
bool appendDate(const OvxObject *formatter, std::int64_t milliseconds, CxStringBuff *buffer);

// Frees what the timestamps keep, between events.
void discardTimestamp();

} // namespace olvex
