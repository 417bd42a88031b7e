// UTF-8 into a code set in several steps, one behind the other in one area.
#pragma once

#include "ucv/Convert.h"

namespace olvex::ucv {

class Encoder {
  public:
    Encoder(uc_ch_t &handle, char *target, std::size_t room)
        : handle_(handle), out_{target, target + room}
    {
        resetShifts();
    }

    // Returns the place that it came to: where the room or the last whole character ends.
    const char *convert(const char *from, const char *to)
    {
        Span<const char> in{from, to};
        conversionsOf(handle_).fromUtf8(handle_, in, out_);
        return in.at;
    }

    char *place() const { return out_.at; }
    bool isShifted() const { return handle_.outShift; }

    // Returns the place behind all that was written.
    char *finish()
    {
        if (const auto end = conversionsOf(handle_).end) end(handle_, out_);
        resetShifts();
        return out_.at;
    }

  private:
    void resetShifts() { handle_.inShift = handle_.outShift = false; }

    uc_ch_t &handle_;
    Span<char> out_;
};

} // namespace olvex::ucv
