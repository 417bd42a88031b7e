// Counts what becomes of events, by handlers of the command's own that listen in the right places.
// The toolkit must be open; used from one thread.
#pragma once

#include <olvex/olvex.h>

namespace tools {

// Counts from now on what is reported to the toolkit's error logger.
void watchReports();

// How many reports came so far.
long reportCount();

// Counts from now on the events that a handler at or below `logger` was given to write. Filters
// that stop an event, disabled handlers and handlers without a formatter do not count.
void watchRecords(OvxObject *logger);

// How many times a handler was given an event: one event can reach several.
long recordCount();

} // namespace tools
