// Extended values of ten bytes, built and read by arithmetic alone. See CxPrintExtended.h.
#include "util/print/CxPrintExtended.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace olvex {

namespace {

constexpr int kSignificandBits = 64;
constexpr int kBias = 16383;
constexpr unsigned kLargestExponent = 0x7FFF; // infinity and NaN
constexpr unsigned kSign = 0x8000;
constexpr std::uint64_t kOne = std::uint64_t{1} << 63; // a significand of 1.0
constexpr std::uint64_t kQuiet = kOne | kOne >> 1;     // that of a NaN
constexpr std::size_t kExponentAt = 8;

struct Extended {
    std::uint64_t significand;
    unsigned exponent; // biased, without the sign
};

// The nearest integer, of two the even one, whatever rounding the host has chosen; below 2 to the
// power of 64, to which it may round up: 0 then.
std::uint64_t roundToInteger(long double value)
{
    const auto whole = static_cast<std::uint64_t>(value);
    const long double rest = value - static_cast<long double>(whole);
    return whole + (rest > 0.5L || (rest == 0.5L && (whole & 1)) ? 1 : 0);
}

Extended encodeFinite(long double magnitude)
{
    int power = 0;
    const long double fraction = std::frexp(magnitude, &power); // from 0.5 to below 1
    if (fraction == 0) return {0, 0};
    // Below the normal range the exponent stays at its least and the significand gets shorter.
    const int exponent = std::max(power - 1 + kBias, 1);
    const int bits = kSignificandBits - (exponent - (power - 1 + kBias));
    std::uint64_t significand = roundToInteger(std::ldexp(fraction, bits));
    if (significand == 0 && bits == kSignificandBits) {
        significand = kOne;
        return {significand, static_cast<unsigned>(exponent) + 1};
    }
    return {significand, significand & kOne ? static_cast<unsigned>(exponent) : 0};
}

Extended encodeMagnitude(long double magnitude)
{
    if (std::isnan(magnitude)) return {kQuiet, kLargestExponent};
    if (std::isinf(magnitude)) return {kOne, kLargestExponent};
    return encodeFinite(magnitude);
}

long double decodeMagnitude(const Extended &value)
{
    using Limits = std::numeric_limits<long double>;
    if (value.exponent == kLargestExponent)
        return value.significand << 1 ? Limits::quiet_NaN() : Limits::infinity();
    const int exponent = std::max(static_cast<int>(value.exponent), 1);
    return std::ldexp(static_cast<long double>(value.significand),
                      exponent - kBias - (kSignificandBits - 1));
}

} // namespace

void encodeExtended(CxPrintfValue &area, long double value)
{
    const Extended extended = encodeMagnitude(std::fabs(value));
    for (std::size_t i = 0; i < kExponentAt; ++i)
        area.bytes[i] = static_cast<unsigned char>(extended.significand >> 8 * i);
    const unsigned high = extended.exponent | (std::signbit(value) ? kSign : 0);
    area.bytes[kExponentAt] = static_cast<unsigned char>(high);
    area.bytes[kExponentAt + 1] = static_cast<unsigned char>(high >> 8);
}

long double decodeExtended(const CxPrintfValue &area)
{
    Extended extended = {0, 0};
    for (std::size_t i = kExponentAt; i-- > 0;)
        extended.significand = extended.significand << 8 | area.bytes[i];
    const unsigned high = area.bytes[kExponentAt] | unsigned{area.bytes[kExponentAt + 1]} << 8;
    extended.exponent = high & kLargestExponent;
    const long double magnitude = decodeMagnitude(extended);
    return high & kSign ? -magnitude : magnitude;
}

} // namespace olvex
