// Integers of the formatted-output engine.
#include "util/CxPrintNumber.h"

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

} // namespace

bool printInteger(const Directive &directive, CxStringBuff *buffer)
{
    const char conversion = directive.item.conversion;
    if (!canServe(conversion, directive.slot.type)) return false;
    auto value = slotAs<std::uint64_t>(directive.slot);
    if (conversion == 'p') value = static_cast<std::uintptr_t>(value);
    if (directive.precision == 0 && value == 0) return true;
    const bool isSigned = conversion == 'd';
    if (isSigned && isPlain(directive)) // as most numbers in messages are
        return CxStringBuffAppendInt64(buffer, static_cast<std::int64_t>(value)) == 1;
    const bool negative = isSigned && static_cast<std::int64_t>(value) < 0;
    const Digits digits(negative ? 0 - value : value, conversion);
    Number number;
    number.integer = digits.view();
    const std::int64_t wanted = directive.precision < 0 ? 1 : directive.precision;
    number.leadingZeros = std::max<std::int64_t>(wanted - std::ssize(number.integer), 0);
    if (isSigned) std::strcpy(number.lead, signOf(directive, negative));
    if (directive.has(kFlagAlternate) && value != 0) addAlternateForm(conversion, number);
    number.zeroPads = directive.precision < 0;
    number.groups = directive.has(kFlagGroup) && (isSigned || conversion == 'u');
    return appendNumber(directive, number, buffer);
}

} // namespace olvex
