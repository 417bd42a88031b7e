// The event record and the ways to make one: on the heap for whoever calls OvxVaAllocEvent, in the
// logging calls' arena for the length of one call. An event belongs to its maker; no lock.
#pragma once

#include <olvex/Event.h>
#include <olvex/class.h>

#include "util/Memory.h"

struct OvxEvent {
    bool isMessage;
    std::int64_t time; // milliseconds since 1970-01-01 UTC
    std::int32_t level;
    OvxI18Msg *message;
    char *messageId;
    const char *locale; // borrowed
    StringToStringMap *properties;
    olvex::Memory memory;
};

namespace olvex {

// Makes an event in `memory`; the parameter list is read to its end. Null when memory runs out. An
// event in an arena borrows catalog and text.
OvxEvent *makeEvent(Memory memory, int level, const char *catalog, int set, int key,
                    const char *text, va_list parameters);

// A property's value, borrowed, or null.
const char *peekProperty(const OvxEvent *event, const char *name);

} // namespace olvex
