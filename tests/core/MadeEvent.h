// Events of a time of one's own choosing, for what depends on time and must not wait for it.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <memory>

#include "logging/OvxEvent.h"

namespace olvex::test {

struct FreeEvent {
    void operator()(OvxEvent *event) const { OvxFreeEvent(event); }
};
using MadeEvent = std::unique_ptr<OvxEvent, FreeEvent>;

// An event with a typed parameter list; a message when there is a catalog, else a trace event.
inline MadeEvent eventAt(std::int64_t time, int level, const char *catalog, int key,
                         const char *text, ...)
{
    va_list list;
    va_start(list, text);
    MadeEvent event(OvxVaAllocEvent(level, catalog, 1, key, text, list));
    va_end(list);
    event->time = time;
    return event;
}

} // namespace olvex::test
