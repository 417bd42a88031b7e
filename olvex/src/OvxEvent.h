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

// The properties of a source location.
inline constexpr char kPropSourceFile[] = "ovx_prop_srcfile";
inline constexpr char kPropSourceFunction[] = "ovx_prop_srcfunction";
inline constexpr char kPropSourceLine[] = "ovx_prop_srcline";

// Makes an event in `memory`; the parameter list is read to its end. Null when memory runs out. An
// event in an arena lives no longer than the call that it serves, so it borrows that call's texts.
OvxEvent *makeEvent(Memory memory, int level, const char *catalog, int set, int key,
                    const char *text, va_list parameters);

// Sets the properties of a source location; a line without a file is none. The texts are borrowed.
void setSourceLocation(OvxEvent *event, const char *file, const char *function, int line);

// A property's value, borrowed, or null.
const char *peekProperty(const OvxEvent *event, const char *name);

} // namespace olvex
