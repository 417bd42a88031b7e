// Floating-point numbers of the formatted-output engine. At most 19 significant digits are
// produced, correctly rounded by the C library; everything else is arranging them.
#include "util/CxPrintUtil.h"

#include <olvex/Memory.h>

#include <algorithm>

#include "util/CxStringBuff.h"

#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace olvex {

namespace {

constexpr int kMostDigits = 19;

// The decimal digits of a magnitude: 0.D1D2D3... times ten to the power of `point`.
struct Decimal {
    char digits[kMostDigits + 1];
    int count;
    int point;

    bool roundsUpAt(int index) const { return index < count && digits[index] >= '5'; }

    // Rounds to the first `kept` digits; true when a carry leaves the first one, all kept digits
    // being zero then.
    bool roundTo(int kept)
    {
        const bool up = roundsUpAt(kept);
        count = std::min(count, kept);
        if (!up) return false;
        for (int i = kept - 1; i >= 0; --i) {
            if (digits[i] != '9') {
                ++digits[i];
                return false;
            }
            digits[i] = '0';
        }
        return true;
    }

    void prependOne()
    {
        std::memmove(digits + 1, digits, static_cast<std::size_t>(count));
        digits[0] = '1';
        ++count;
    }
};

Decimal decimalOf(long double magnitude, int digits)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*Le", digits - 1, magnitude);
    Decimal decimal = {{}, 0, 1};
    const char *at = text;
    for (; *at && *at != 'e'; ++at) // the locale's decimal point stands between the digits
        if (*at >= '0' && *at <= '9') decimal.digits[decimal.count++] = *at;
    if (*at == 'e') decimal.point = std::atoi(at + 1) + 1;
    return decimal;
}

// What a number is made of, in the order of output, padding aside.
struct Pieces {
    char sign = '\0';
    const char *integer = "";
    int integerCount = 0;
    int integerZeros = 0;
    bool point = false;
    int fractionLeadingZeros = 0;
    const char *fraction = "";
    int fractionCount = 0;
    int fractionTrailingZeros = 0;
    char exponent[16] = "";

    // Leaves out trailing zeros of the fraction, and the point of one that becomes empty.
    void trimFraction()
    {
        fractionTrailingZeros = 0;
        while (fractionCount > 0 && fraction[fractionCount - 1] == '0')
            --fractionCount;
        if (fractionCount == 0) fractionLeadingZeros = 0;
        point = fractionLeadingZeros + fractionCount > 0;
    }
};

std::size_t sizeOf(int count)
{
    return static_cast<std::size_t>(count);
}

char signOf(const Directive &directive, long double value)
{
    const bool negative = value < 0 || (std::isnan(value) && std::signbit(value));
    return negative ? '-' : directive.has(kFlagPlus) ? '+' : directive.has(kFlagSpace) ? ' ' : '\0';
}

// The integer part with the zeros behind its digits, grouped if wanted.
bool appendInteger(const Directive &directive, const Pieces &pieces, CxStringBuff *target)
{
    CxStringBuff plain = {};
    bool written = appendBytes(&plain, pieces.integer, sizeOf(pieces.integerCount)) &&
                   appendFill(&plain, '0', sizeOf(pieces.integerZeros));
    const char conversion = directive.item.conversion;
    const bool groups = directive.has(kFlagGroup) && conversion != 'e' && conversion != 'E' &&
                        pieces.exponent[0] == '\0';
    written = written && (groups ? appendGrouped(target, plain.str, plain.length)
                                 : appendBytes(target, plain.str, plain.length));
    CxStringBuffDiscard(&plain);
    return written;
}

bool appendNumber(const Directive &directive, const Pieces &pieces, CxStringBuff *text)
{
    return appendInteger(directive, pieces, text) &&
           (!pieces.point || CxStringBuffAppendStr(text, localeconv()->decimal_point)) &&
           appendFill(text, '0', sizeOf(pieces.fractionLeadingZeros)) &&
           appendBytes(text, pieces.fraction, sizeOf(pieces.fractionCount)) &&
           appendFill(text, '0', sizeOf(pieces.fractionTrailingZeros)) &&
           CxStringBuffAppendStr(text, pieces.exponent);
}

bool appendPadded(const Directive &directive, char sign, const CxStringBuff &text, bool mayZeroPad,
                  CxStringBuff *buffer)
{
    const std::size_t used = text.length + (sign ? 1 : 0);
    const auto width = static_cast<std::size_t>(directive.width);
    const std::size_t padding = width > used ? width - used : 0;
    const bool left = directive.has(kFlagLeft);
    const bool zeros = mayZeroPad && !left && directive.has(kFlagZero);
    return (left || zeros || appendFill(buffer, ' ', padding)) &&
           (!sign || CxStringBuffAppendChar(buffer, sign)) &&
           (!zeros || appendFill(buffer, '0', padding)) &&
           appendBytes(buffer, text.str ? text.str : "", text.length) &&
           (!left || appendFill(buffer, ' ', padding));
}

void setExponent(Pieces &pieces, char letter, int exponent)
{
    std::snprintf(pieces.exponent, sizeof pieces.exponent, "%c%c%02d", letter,
                  exponent < 0 ? '-' : '+', std::abs(exponent));
}

// One digit, the point, the others; zeros for the digits beyond those that there are.
void arrangeExponent(const Directive &directive, const Decimal &decimal, int precision, char letter,
                     Pieces &pieces)
{
    pieces.integer = decimal.digits;
    pieces.integerCount = 1;
    pieces.point = precision > 0 || directive.has(kFlagAlternate);
    pieces.fraction = decimal.digits + 1;
    pieces.fractionCount = std::min(decimal.count - 1, precision);
    pieces.fractionTrailingZeros = precision - pieces.fractionCount;
    setExponent(pieces, letter, decimal.point - 1);
}

// A value below 1: leading zeros, then digits. A carry out of them takes the place of a leading
// zero and reaches the integer part only when there is none.
void arrangeSmall(Decimal &decimal, int precision, Pieces &pieces)
{
    const int zeros = std::min(-decimal.point, precision);
    pieces.integer = "0";
    pieces.integerCount = 1;
    pieces.fractionLeadingZeros = zeros;
    const bool carried = -decimal.point <= precision && decimal.roundTo(precision - zeros);
    if (carried && zeros > 0) {
        decimal.prependOne();
        --pieces.fractionLeadingZeros;
    } else if (carried) {
        pieces.integer = "1";
    }
    pieces.fraction = decimal.digits;
    pieces.fractionCount = std::min(decimal.count, precision - pieces.fractionLeadingZeros);
    if (-decimal.point > precision) pieces.fractionCount = 0;
}

void arrangeLarge(Decimal &decimal, int precision, Pieces &pieces)
{
    int integers = decimal.point;
    if (precision < kMostDigits && decimal.roundTo(integers + precision)) {
        decimal.prependOne();
        ++integers;
    }
    pieces.integer = decimal.digits;
    pieces.integerCount = std::min(integers, decimal.count);
    pieces.integerZeros = integers - pieces.integerCount;
    pieces.fraction = decimal.digits + pieces.integerCount;
    pieces.fractionCount = std::min(decimal.count - pieces.integerCount, precision);
}

void arrangeFixed(const Directive &directive, Decimal &decimal, int precision, Pieces &pieces)
{
    if (decimal.point <= 0)
        arrangeSmall(decimal, precision, pieces);
    else
        arrangeLarge(decimal, precision, pieces);
    pieces.point = precision > 0 || directive.has(kFlagAlternate);
    pieces.fractionTrailingZeros = precision - pieces.fractionLeadingZeros - pieces.fractionCount;
}

void arrangeGeneral(const Directive &directive, Decimal &decimal, int precision, Pieces &pieces)
{
    const int exponent = decimal.point - 1;
    if (exponent >= precision || exponent < -4)
        arrangeExponent(directive, decimal, precision - 1,
                        directive.item.conversion == 'g' ? 'e' : 'E', pieces);
    else
        arrangeFixed(directive, decimal, precision - decimal.point, pieces);
    if (!directive.has(kFlagAlternate)) pieces.trimFraction();
}

bool isUpper(char conversion)
{
    return conversion >= 'A' && conversion <= 'Z';
}

const char *textOfNonFinite(char conversion, long double value)
{
    if (std::isnan(value)) return isUpper(conversion) ? "NAN" : "nan";
    return isUpper(conversion) ? "INF" : "inf";
}

// "%a" with its flags, width and precision as the system prints it.
bool printHexadecimal(const Directive &directive, long double value, CxStringBuff *buffer)
{
    char format[16] = "%";
    char *at = format + 1;
    constexpr struct {
        FormatFlag flag;
        char character;
    } kFlags[] = {{kFlagLeft, '-'},
                  {kFlagZero, '0'},
                  {kFlagPlus, '+'},
                  {kFlagSpace, ' '},
                  {kFlagAlternate, '#'}};
    for (const auto &entry : kFlags)
        if (directive.has(entry.flag)) *at++ = entry.character;
    const bool isLong = directive.slot.type == kLongDouble;
    std::strcpy(at, isLong ? "*.*L" : "*.*");
    const char conversion[] = {directive.item.conversion, '\0'};
    std::strcat(at, conversion);
    const auto width = static_cast<int>(directive.width);
    const auto print = [&](char *target, std::size_t size) {
        return isLong ? std::snprintf(target, size, format, width, directive.precision, value)
                      : std::snprintf(target, size, format, width, directive.precision,
                                      static_cast<double>(value));
    };
    const int count = print(nullptr, 0);
    if (count < 0 || !cxStringBuffHasCapacity(buffer, sizeOf(count))) return false;
    print(buffer->str + buffer->length, sizeOf(count) + 1);
    buffer->length += static_cast<std::uint32_t>(count);
    return true;
}

void arrange(const Directive &directive, Decimal &decimal, int precision, Pieces &pieces)
{
    switch (directive.item.conversion) {
    case 'e':
    case 'E':
        return arrangeExponent(directive, decimal, precision, directive.item.conversion, pieces);
    case 'f':
    case 'F': return arrangeFixed(directive, decimal, precision, pieces);
    default: return arrangeGeneral(directive, decimal, precision, pieces);
    }
}

// How many digits to ask for, and the precision that counts.
int digitsWanted(char conversion, int &precision)
{
    if (precision < 0) precision = 6;
    switch (conversion) {
    case 'e':
    case 'E': return precision < kMostDigits ? precision + 1 : kMostDigits;
    case 'g':
    case 'G': precision = std::max(precision, 1); return std::min(precision, kMostDigits);
    default: return kMostDigits;
    }
}

} // namespace

bool printFloating(const Directive &directive, CxStringBuff *buffer)
{
    if (!holdsFloating(directive.slot.type)) return false;
    const long double value = extendedOf(directive.slot);
    const char conversion = directive.item.conversion;
    const bool finite = std::isfinite(value);
    if (finite && (conversion == 'a' || conversion == 'A'))
        return printHexadecimal(directive, value, buffer);
    Pieces pieces;
    pieces.sign = signOf(directive, value);
    CxStringBuff text = {};
    bool written = false;
    if (finite) {
        int precision = directive.precision;
        Decimal decimal = decimalOf(std::fabs(value), digitsWanted(conversion, precision));
        arrange(directive, decimal, precision, pieces);
        written = appendNumber(directive, pieces, &text);
    } else {
        written = CxStringBuffAppendStr(&text, textOfNonFinite(conversion, value)) == 1;
    }
    written = written && appendPadded(directive, pieces.sign, text, finite, buffer);
    CxStringBuffDiscard(&text);
    return written;
}

} // namespace olvex
