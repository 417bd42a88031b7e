// Cuts the bytes of a log into records, product information and what is neither. A stateless step:
// it is asked again with more bytes when those it had were too few.
#pragma once

#include <string_view>

#include "view/Formats.h"

namespace tools::view {

// Longer records are cut, so that memory has a bound.
inline constexpr std::size_t kLongestRecord = 8 * 1024 * 1024;

enum class FrameKind : std::uint8_t {
    kNeedsMore,
    kRecord,
    kProduct, // product information that stands once before the records of a stream
    kDamage,
};

struct Frame {
    FrameKind kind = FrameKind::kNeedsMore;
    std::size_t length = 0;
    Format format = Format::kText;
    bool isCut = false; // a record without its end
};

// The frame at the front of `bytes`. `isLast`: nothing follows them, and then only no bytes at all
// need more.
Frame nextFrame(std::string_view bytes, bool isLast, const LogOptions &options);

} // namespace tools::view
