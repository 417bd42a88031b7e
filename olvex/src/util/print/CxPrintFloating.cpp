// Floating-point numbers of the formatted-output engine. At most 19 significant digits are
// produced, correctly rounded by the C library; everything else is arranging them.
#include "util/print/CxPrintNumber.h"

#include <algorithm>
#include <utility>

#include "util/CxStringBuff.h"

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
    char exponent[16];

    // Rounds half up to the first `kept` digits; true when a carry leaves the first one, all kept
    // digits being zero then.
    bool roundTo(std::int64_t kept)
    {
        if (kept >= count) return false;
        count = static_cast<int>(kept);
        if (digits[count] < '5') return false;
        for (int i = count - 1; i >= 0; --i) {
            if (digits[i] != '9') {
                ++digits[i];
                return false;
            }
            digits[i] = '0';
        }
        return true;
    }

    // The exponent of a number with one digit before the point, in at least two digits.
    std::string_view writeExponent(char letter)
    {
        const int value = point - 1;
        const int size = std::snprintf(exponent, sizeof exponent, "%c%c%02d", letter,
                                       value < 0 ? '-' : '+', std::abs(value));
        return {exponent, static_cast<std::size_t>(size)};
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
    Decimal decimal = {{}, 0, 1, {}};
    const char *at = text;
    for (; *at && *at != 'e'; ++at) // the locale's decimal point stands between the digits
        if (*at >= '0' && *at <= '9') decimal.digits[decimal.count++] = *at;
    // NOLINTNEXTLINE(cert-err34-c): what was just printed is a number
    if (*at == 'e') decimal.point = std::atoi(at + 1) + 1;
    return decimal;
}

// Digits of a decimal from one place to another, as far as there are any.
std::string_view digitsOf(const Decimal &decimal, std::int64_t from, std::int64_t count)
{
    count = std::clamp<std::int64_t>(decimal.count - from, 0, count);
    return {decimal.digits + from, static_cast<std::size_t>(count)};
}

// One digit, the point, the others; zeros for the digits beyond those that there are.
void arrangeExponent(const Decimal &decimal, std::int64_t precision, Number &number)
{
    number.integer = digitsOf(decimal, 0, 1);
    number.fraction = digitsOf(decimal, 1, precision);
}

// A value below 1: leading zeros, then digits. A carry out of them takes the place of a leading
// zero and reaches the integer part only when there is none. Nothing is rounded up when more
// leading zeros than the precision come first.
void arrangeSmall(Decimal &decimal, std::int64_t precision, Number &number)
{
    number.integer = "0";
    number.fractionZeros = std::min<std::int64_t>(-decimal.point, precision);
    if (-decimal.point > precision) return;
    if (decimal.roundTo(precision - number.fractionZeros)) {
        if (number.fractionZeros == 0) {
            number.integer = "1";
        } else {
            decimal.prependOne();
            --number.fractionZeros;
        }
    }
    number.fraction = digitsOf(decimal, 0, precision - number.fractionZeros);
}

void arrangeLarge(Decimal &decimal, std::int64_t precision, Number &number)
{
    std::int64_t integers = decimal.point;
    if (decimal.roundTo(integers + precision)) {
        decimal.prependOne();
        ++integers;
    }
    number.integer = digitsOf(decimal, 0, integers);
    number.integerZeros = integers - std::ssize(number.integer);
    number.fraction = digitsOf(decimal, std::ssize(number.integer), precision);
}

void arrangeFixed(Decimal &decimal, std::int64_t precision, Number &number)
{
    if (decimal.point <= 0)
        arrangeSmall(decimal, precision, number);
    else
        arrangeLarge(decimal, precision, number);
}

// Leaves out trailing zeros of the fraction.
void trimFraction(Number &number)
{
    number.fraction = number.fraction.substr(0, number.fraction.find_last_not_of('0') + 1);
    if (number.fraction.empty()) number.fractionZeros = 0;
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

// "%a" with the directive's flags, for the system's printf; width and precision are arguments.
struct SystemFormat {
    char text[16] = "%";

    explicit SystemFormat(const Directive &directive)
    {
        constexpr std::pair<FormatFlag, char> kFlags[] = {{kFlagLeft, '-'},
                                                          {kFlagZero, '0'},
                                                          {kFlagPlus, '+'},
                                                          {kFlagSpace, ' '},
                                                          {kFlagAlternate, '#'}};
        char *at = text + 1;
        for (const auto &[flag, character] : kFlags)
            if (directive.has(flag)) *at++ = character;
        at = stpcpy(at, directive.slot.type == kLongDouble ? "*.*L" : "*.*");
        *at = directive.item.conversion;
    }
};

bool printHexadecimal(const Directive &directive, long double value, CxStringBuff *buffer)
{
    const SystemFormat format(directive);
    const auto width = static_cast<int>(directive.width);
    const int precision = directive.precision;
    const auto print = [&](char *to, std::size_t size) {
        return directive.slot.type == kLongDouble
                   ? std::snprintf(to, size, format.text, width, precision, value)
                   : std::snprintf(to, size, format.text, width, precision,
                                   static_cast<double>(value));
    };
    const int count = print(nullptr, 0);
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    if (count < 0 || !cxStringBuffHasCapacity(buffer, size)) return false;
    print(buffer->str + buffer->length, size + 1);
    extend(buffer, size);
    return true;
}

bool isLowered(char conversion, char lower)
{
    return (conversion | ('a' - 'A')) == lower;
}

bool isGeneral(char conversion)
{
    return isLowered(conversion, 'g');
}

std::int64_t precisionOf(const Directive &directive)
{
    if (directive.precision < 0) return 6;
    return directive.precision == 0 && isGeneral(directive.item.conversion) ? 1
                                                                            : directive.precision;
}

// How many digits to ask for.
int digitsWanted(char conversion, std::int64_t precision)
{
    if (isLowered(conversion, 'f')) return kMostDigits;
    const std::int64_t wanted = isGeneral(conversion) ? precision : precision + 1;
    return static_cast<int>(std::min<std::int64_t>(wanted, kMostDigits));
}

bool hasExponent(char conversion, const Decimal &decimal, std::int64_t precision)
{
    const int exponent = decimal.point - 1;
    return isGeneral(conversion) ? exponent >= precision || exponent < -4
                                 : isLowered(conversion, 'e');
}

// Fills the fraction up to its precision, or leaves out its trailing zeros, and decides on the
// point.
void finishFraction(const Directive &directive, std::int64_t precision, Number &number)
{
    const bool alternate = directive.has(kFlagAlternate);
    if (isGeneral(directive.item.conversion) && !alternate)
        trimFraction(number);
    else
        number.trailingZeros = precision - number.fractionZeros - std::ssize(number.fraction);
    const std::int64_t size =
        number.fractionZeros + std::ssize(number.fraction) + number.trailingZeros;
    number.hasPoint = alternate || size > 0;
}

// Arranges a decimal as its conversion wants it.
void arrange(const Directive &directive, Decimal &decimal, std::int64_t precision, Number &number)
{
    const char conversion = directive.item.conversion;
    const bool withExponent = hasExponent(conversion, decimal, precision);
    if (isGeneral(conversion)) precision -= withExponent ? 1 : decimal.point;
    if (withExponent) {
        arrangeExponent(decimal, precision, number);
        number.exponent = decimal.writeExponent(isUpper(conversion) ? 'E' : 'e');
    } else {
        arrangeFixed(decimal, precision, number);
    }
    finishFraction(directive, precision, number);
}

bool printFinite(const Directive &directive, long double value, Number &number,
                 CxStringBuff *buffer)
{
    const char conversion = directive.item.conversion;
    const std::int64_t precision = precisionOf(directive);
    Decimal decimal = decimalOf(std::fabs(value), digitsWanted(conversion, precision));
    arrange(directive, decimal, precision, number);
    number.groups = directive.has(kFlagGroup) && conversion != 'F';
    return appendNumber(directive, number, buffer);
}

} // namespace

bool printFloating(const Directive &directive, CxStringBuff *buffer)
{
    if (!holdsFloating(directive.slot.type)) return false;
    const long double value = extendedOf(directive.slot);
    const char conversion = directive.item.conversion;
    const bool finite = std::isfinite(value);
    if (finite && isLowered(conversion, 'a')) return printHexadecimal(directive, value, buffer);
    const bool negative = value < 0 || (std::isnan(value) && std::signbit(value));
    Number number;
    std::strcpy(number.lead, signOf(directive, negative));
    if (finite) return printFinite(directive, value, number, buffer);
    number.integer = textOfNonFinite(conversion, value);
    number.zeroPads = false;
    return appendNumber(directive, number, buffer);
}

} // namespace olvex
