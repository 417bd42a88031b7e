// A string buffer that is reused from event to event, so that a steady state allocates nothing. It
// is freed when it has grown above 64 KiB. While it is in use, an event that is logged inside the
// first one gets a buffer of its own. Called with the API mutex held.
#pragma once

#include "util/CxStringBuff.h"

namespace olvex {

class ReusedBuffer {
  public:
    // Holds the buffer, empty at first, for one scope.
    class Use {
      public:
        explicit Use(ReusedBuffer &shared) : shared_(shared), isShared_(!shared.inUse_)
        {
            if (!isShared_) return;
            shared_.inUse_ = true;
            CxStringBuffRestart(&shared_.buffer_);
        }
        ~Use()
        {
            CxStringBuff *buffer = get();
            if (!isShared_ || buffer->capacity > kLargestKept) CxStringBuffDiscard(buffer);
            if (isShared_) shared_.inUse_ = false;
        }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

        CxStringBuff *get() { return isShared_ ? &shared_.buffer_ : &own_; }
        const char *text() { return get()->str ? get()->str : ""; }
        std::size_t size() { return get()->length; }

      private:
        ReusedBuffer &shared_;
        CxStringBuff own_ = {};
        bool isShared_;
    };

    // Frees the buffer, between events; static buffers have no destructor.
    void discard() { CxStringBuffDiscard(&buffer_); }

  private:
    static constexpr std::uint32_t kLargestKept = 64 * 1024;

    CxStringBuff buffer_ = {};
    bool inUse_ = false;
};

} // namespace olvex
