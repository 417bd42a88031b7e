// What all handlers share: their formatter and the text that it makes of an event. Called with the
// API mutex held.
#pragma once

#include <olvex/Handler.h>
#include <olvex/StringBuff.h>

#include "toolkit/OvxObject.h"
#include "util/Memory.h"
#include "util/ReusedBuffer.h"

namespace olvex {

// The text of one event: in a buffer that is reused from event to event, or in the block that a
// formatter of a host's own returned. Lives for one scope; texts of nested events do not disturb
// it.
class EventText {
  public:
    EventText(OvxObject *handler, OvxEvent *event);

    // Null when the handler has no formatter or the formatter no text.
    const char *get() const { return text_; }
    std::size_t size() const { return size_; }

  private:
    const char *text_ = nullptr;
    std::size_t size_ = 0;
    Text owned_;
    ReusedBuffer::Use buffer_;
};

} // namespace olvex
