// A number of the formatted-output engine in its pieces, and how they are put together: padding,
// grouping, the locale's decimal point. Integers and floating numbers both end here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "util/print/CxPrintUtil.h"

namespace olvex {

// The pieces in the order of output. What they view must live until the number is appended.
struct Number {
    char lead[3] = "";             // sign or prefix, or nothing
    std::int64_t leadingZeros = 0; // that a precision asks for
    std::string_view integer = {}; // digits
    std::int64_t integerZeros = 0; // behind them
    bool hasPoint = false;
    std::int64_t fractionZeros = 0; // before the digits of the fraction
    std::string_view fraction = {};
    std::int64_t trailingZeros = 0; // behind them
    std::string_view exponent = {};
    bool zeroPads = true; // the "0" flag counts
    bool groups = false;  // the "'" flag counts
};

// Appends a number, padded to the directive's width; false when memory runs out, and then nothing
// is appended.
bool appendNumber(const Directive &directive, const Number &number, CxStringBuff *buffer);

// The sign to print, as text: "-", "+", " " or nothing.
inline const char *signOf(const Directive &directive, bool negative)
{
    if (negative) return "-";
    return directive.has(kFlagPlus) ? "+" : directive.has(kFlagSpace) ? " " : "";
}

} // namespace olvex
