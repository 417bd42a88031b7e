// The conversions of each family. Handles of any type may be passed: a family that is not known is
// treated as plain bytes. No locks; a handle is used by one thread at a time.
#pragma once

#include "ucv/ConversionLoop.h"
#include "ucv/Handle.h"

namespace olvex::ucv {

template <class In, class Out>
using Conversion = Result (*)(uc_ch_t &handle, Span<const In> &in, Span<Out> &out);

struct Conversions {
    Conversion<char, char> toUtf8;
    Conversion<char, char> fromUtf8;
    Conversion<char, char16_t> toUcs2;
    Conversion<char16_t, char> fromUcs2;
    Result (*end)(uc_ch_t &handle, Span<char> &out); // none: the family has no shifts
};

const Conversions &conversionsOf(const uc_ch_t &handle);

// Whether UTF-8, or whatever bytes there are, goes into the handle's code set as it is.
bool copiesUtf8(const uc_ch_t &handle);

// Whether the handle's table maps each character below 0x80 to its own byte, so that runs of them
// can be copied.
bool mapsAsciiToItself(uc_ch_t &handle);

} // namespace olvex::ucv
