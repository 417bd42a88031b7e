// How the value area of an argument holds a floating-point number: as an extended value of ten
// bytes, the same on every processor. First the significand, 64 bits of which the highest stands
// before the point, then the exponent, biased by 16383, with the sign above it; of both the lowest
// byte first.
//
// Where `long double` is that format it is copied. Elsewhere it is taken apart: a `double` is held
// exactly; a `long double` with more than 64 bits is rounded to the nearest extended value, of two
// equally near ones to the even one, as an assignment to the narrower format would. So a number
// prints the same digits everywhere, and no more of them than an extended value has.
#pragma once

#include <olvex/Printf.h>

#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>

namespace olvex {

inline constexpr std::size_t kExtendedSize = 10;

inline constexpr bool kLongDoubleIsExtended =
    std::endian::native == std::endian::little && std::numeric_limits<long double>::is_iec559 &&
    std::numeric_limits<long double>::digits == 64 &&
    std::numeric_limits<long double>::max_exponent == 16384;

// The conversions for every other format.
void encodeExtended(CxPrintfValue &area, long double value);
long double decodeExtended(const CxPrintfValue &area);

inline void storeExtended(CxPrintfValue &area, long double value)
{
    if constexpr (kLongDoubleIsExtended)
        std::memcpy(area.bytes, &value, kExtendedSize);
    else
        encodeExtended(area, value);
}

inline long double loadExtended(const CxPrintfValue &area)
{
    if constexpr (kLongDoubleIsExtended) {
        long double value = 0;
        std::memcpy(&value, area.bytes, kExtendedSize);
        return value;
    } else {
        return decodeExtended(area);
    }
}

} // namespace olvex
