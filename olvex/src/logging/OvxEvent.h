// The event record and the ways to make one: on the heap for whoever calls OvxVaAllocEvent, on the
// stack for the length of one logging call. An event belongs to its maker; no lock.
#pragma once

#include <olvex/Event.h>
#include <olvex/class.h>

#include "logging/OvxI18Msg.h"
#include "util/Memory.h"
#include "util/ReusedBuffer.h"

namespace olvex {

struct SourceLocation {
    const char *file = nullptr; // a line without a file is none
    const char *function = nullptr;
    int line = 0;

    explicit operator bool() const { return file || function; }
};

} // namespace olvex

struct OvxEvent {
    bool isMessage = false;
    std::int64_t time = 0; // milliseconds since 1970-01-01 UTC
    std::int32_t level = OVX_LEVEL_NONE;
    OvxI18Msg *message = nullptr;
    char *messageId = nullptr;
    const char *locale = nullptr;            // borrowed
    olvex::SourceLocation source = {};       // instead of its properties, until these are asked for
    StringToStringMap *properties = nullptr; // null while there are none besides; see propertiesOf
    olvex::Memory memory = {};
};

namespace olvex {

// The properties of a source location.
inline constexpr char kPropSourceFile[] = "ovx_prop_srcfile";
inline constexpr char kPropSourceFunction[] = "ovx_prop_srcfunction";
inline constexpr char kPropSourceLine[] = "ovx_prop_srcline";

// At most so many entries of a typed parameter list are read; one that has more lacks its end.
inline constexpr std::size_t kMostEntries = 63;

// The event of one logging call. It lives no longer than the call and borrows its texts; what it
// needs besides its own room comes from the arena and goes back there with it.
class CallEvent {
  public:
    CallEvent(Arena *arena, int level, const char *catalog, int set, int key, const char *text,
              va_list parameters);
    ~CallEvent() { arena_->release(mark_); }
    CallEvent(const CallEvent &) = delete;
    CallEvent &operator=(const CallEvent &) = delete;

    OvxEvent *get() { return &event_; }

  private:
    Arena *arena_;
    Arena::Mark mark_;
    OvxEvent event_;
    OvxI18Msg message_;
    OvxParm parameters_[kMostEntries];
};

// Sets the properties of a source location, whose texts are borrowed.
void setSourceLocation(OvxEvent *event, const SourceLocation &source);

// All properties, borrowed, or null when there are none.
StringToStringMap *propertiesOf(const OvxEvent *event);

// A property's value, borrowed, or null.
const char *peekProperty(const OvxEvent *event, const char *name);

// The text of an event, bound in its locale into a buffer that is reused from event to event. Lives
// for one scope, with the API mutex held.
class BoundText {
  public:
    explicit BoundText(const OvxEvent *event);

    const char *text() { return buffer_.text(); }
    std::size_t size() { return buffer_.size(); }

  private:
    ReusedBuffer::Use buffer_;
};

// Gives back that buffer, between events.
void discardBoundText();

} // namespace olvex

// Gives an event that has no identifier the one its bound text begins with, or the empty one.
// Called with the API mutex held; the formatter is not used.
void ovxPDXMLFormatterCacheMessageID(OvxObject *formatter, OvxEvent *event);
