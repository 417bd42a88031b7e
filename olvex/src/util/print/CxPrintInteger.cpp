// Integers of the formatted-output engine.
#include "util/print/CxPrintNumber.h"

#include <algorithm>

#include "util/CxStringBuff.h"

namespace olvex {

namespace {

constexpr char kLower[] = "0123456789abcdef";
constexpr char kUpper[] = "0123456789ABCDEF";

// The digits of a number as a conversion wants them; none for zero.
class Digits {
  public:
    Digits(std::uint64_t value, char conversion)
    {
        switch (conversion) {
        case 'o': produce<8>(value, kLower); break;
        case 'x':
        case 'p': produce<16>(value, kLower); break;
        case 'X': produce<16>(value, kUpper); break;
        default: produce<10>(value, kLower); break;
        }
    }

    std::string_view view() const
    {
        return {first_, static_cast<std::size_t>(bytes_ + sizeof bytes_ - first_)};
    }

  private:
    template <unsigned Base>
    void produce(std::uint64_t value, const char *set)
    {
        for (; value; value /= Base)
            *--first_ = set[value % Base];
    }

    char bytes_[24]; // 64 bits in base 8 need 22
    char *first_ = bytes_ + sizeof bytes_;
};

// "#" gives an octal number a zero and a hexadecimal one a prefix.
void addAlternateForm(char conversion, Number &number)
{
    switch (conversion) {
    case 'o': number.leadingZeros = std::max<std::int64_t>(number.leadingZeros, 1); return;
    case 'x':
    case 'p': std::strcpy(number.lead, "0x"); return;
    case 'X': std::strcpy(number.lead, "0X"); return;
    default: return;
    }
}

bool canServe(char conversion, unsigned char type)
{
    return holdsInteger(type) || (conversion == 'p' && type == kPointer);
}

bool isPlain(const Directive &directive)
{
    return directive.item.flags == 0 && directive.width == 0 && directive.precision < 0;
}

bool appendDigits(const Directive &directive, std::uint64_t magnitude, const char *sign,
                  CxStringBuff *buffer)
{
    const char conversion = directive.item.conversion;
    const Digits digits(magnitude, conversion);
    const std::int64_t wanted = directive.precision < 0 ? 1 : directive.precision;
    Number number;
    std::strcpy(number.lead, sign);
    number.integer = digits.view();
    number.leadingZeros = std::max<std::int64_t>(wanted - std::ssize(number.integer), 0);
    if (directive.has(kFlagAlternate) && magnitude != 0) addAlternateForm(conversion, number);
    number.zeroPads = directive.precision < 0;
    number.groups = directive.has(kFlagGroup) && (conversion == 'd' || conversion == 'u');
    return appendNumber(directive, number, buffer);
}

bool printSigned(const Directive &directive, std::int64_t value, CxStringBuff *buffer)
{
    if (isPlain(directive)) return CxStringBuffAppendInt64(buffer, value) == 1; // most are
    const auto bits = static_cast<std::uint64_t>(value);
    return appendDigits(directive, value < 0 ? 0 - bits : bits, signOf(directive, value < 0),
                        buffer);
}

} // namespace

bool printInteger(const Directive &directive, CxStringBuff *buffer)
{
    const char conversion = directive.item.conversion;
    if (!canServe(conversion, directive.slot.type)) return false;
    const std::uint64_t value = integerOf(directive.slot);
    if (directive.precision == 0 && value == 0) return true;
    if (conversion == 'd') return printSigned(directive, static_cast<std::int64_t>(value), buffer);
    const bool isPointer = conversion == 'p';
    return appendDigits(directive, isPointer ? static_cast<std::uintptr_t>(value) : value, "",
                        buffer);
}

} // namespace olvex
