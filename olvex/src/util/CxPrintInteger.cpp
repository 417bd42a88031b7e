// Integers of the formatted-output engine, and the grouping of digits by the locale.
#include "util/CxPrintUtil.h"

#include "util/CxStringBuff.h"

#include <climits>
#include <clocale>

namespace olvex {

namespace {

constexpr char kLower[] = "0123456789abcdef";
constexpr char kUpper[] = "0123456789ABCDEF";

// 64 bits in base 8 need 22 digits.
struct Digits {
    char bytes[24];
    char *first = bytes + sizeof bytes;

    std::size_t size() const { return static_cast<std::size_t>(bytes + sizeof bytes - first); }

    void produce(std::uint64_t value, unsigned base, const char *set)
    {
        for (; value; value /= base)
            *--first = set[value % base];
    }
};

unsigned baseOf(char conversion)
{
    switch (conversion) {
    case 'o': return 8;
    case 'x':
    case 'X':
    case 'p': return 16;
    default: return 10;
    }
}

char signOf(const Directive &directive, bool negative)
{
    if (negative) return '-';
    return directive.has(kFlagPlus) ? '+' : directive.has(kFlagSpace) ? ' ' : '\0';
}

// What a number is made of, from left to right, padding aside.
struct Pieces {
    char lead[3]; // sign or prefix
    std::size_t leadSize = 0;
    std::size_t zeros = 0;
    const char *digits = nullptr;
    std::size_t digitCount = 0;

    std::size_t size() const { return leadSize + zeros + digitCount; }
    void addLead(char c) { lead[leadSize++] = c; }
};

// "#" gives octal numbers a zero and hexadecimal ones a prefix.
void addAlternateForm(char conversion, Pieces &pieces)
{
    if (conversion == 'o' && pieces.zeros == 0) pieces.zeros = 1;
    if (conversion == 'o') return;
    if (baseOf(conversion) != 16) return;
    pieces.addLead('0');
    pieces.addLead(conversion == 'X' ? 'X' : 'x');
}

bool appendPieces(const Directive &directive, const Pieces &pieces, CxStringBuff *buffer)
{
    const auto width = static_cast<std::size_t>(directive.width);
    const std::size_t padding = width > pieces.size() ? width - pieces.size() : 0;
    const bool left = directive.has(kFlagLeft);
    const bool zeroPadded = !left && directive.has(kFlagZero) && directive.precision < 0;
    return (left || zeroPadded || appendFill(buffer, ' ', padding)) &&
           appendBytes(buffer, pieces.lead, pieces.leadSize) &&
           appendFill(buffer, '0', pieces.zeros + (zeroPadded ? padding : 0)) &&
           appendBytes(buffer, pieces.digits, pieces.digitCount) &&
           (!left || appendFill(buffer, ' ', padding));
}

bool appendGroupedPieces(const Directive &directive, Pieces pieces, CxStringBuff *buffer)
{
    CxStringBuff grouped = {};
    bool written = appendGrouped(&grouped, pieces.digits, pieces.digitCount);
    pieces.digits = grouped.str;
    pieces.digitCount = grouped.length;
    written = written && appendPieces(directive, pieces, buffer);
    CxStringBuffDiscard(&grouped);
    return written;
}

// A grouping string read from its beginning: the sizes of the groups from the right.
class Grouping {
  public:
    explicit Grouping(const char *sizes) : at_(sizes) {}

    // The size of the next group, 0 when the rest is one.
    std::size_t next()
    {
        const char size = *at_;
        if (size == CHAR_MAX || size < 0) return 0;
        if (at_[1] != '\0') ++at_;
        return static_cast<std::size_t>(size);
    }

  private:
    const char *at_;
};

} // namespace

bool appendGrouped(CxStringBuff *buffer, const char *digits, std::size_t count)
{
    const lconv *locale = localeconv();
    const char *separator = locale->thousands_sep;
    if (!separator || !*separator || !locale->grouping || !*locale->grouping)
        return appendBytes(buffer, digits, count);
    // Groups are counted from the right: collect where they begin, then write from the left.
    CxStringBuff marks = {};
    if (!appendFill(&marks, 0, count + 1)) return false;
    Grouping grouping(locale->grouping);
    std::size_t at = count;
    for (std::size_t size = grouping.next(); size > 0 && at > size; size = grouping.next())
        marks.str[at -= size] = 1;
    bool written = true;
    for (std::size_t i = 0; written && i < count; ++i) {
        if (marks.str[i]) written = CxStringBuffAppendStr(buffer, separator) == 1;
        written = written && appendBytes(buffer, digits + i, 1);
    }
    CxStringBuffDiscard(&marks);
    return written;
}

bool printInteger(const Directive &directive, CxStringBuff *buffer)
{
    const char conversion = directive.item.conversion;
    const unsigned char type = directive.slot.type;
    if (!holdsInteger(type) && !(conversion == 'p' && type == kPointer)) return false;
    const auto value = slotAs<std::uint64_t>(directive.slot);
    if (directive.precision == 0 && value == 0) return true;
    const bool negative = conversion == 'd' && static_cast<std::int64_t>(value) < 0;
    Digits digits;
    digits.produce(negative ? 0 - value : value, baseOf(conversion),
                   conversion == 'X' ? kUpper : kLower);
    const std::size_t wanted =
        directive.precision < 0 ? 1 : static_cast<std::size_t>(directive.precision);
    Pieces pieces;
    pieces.digits = digits.first;
    pieces.digitCount = digits.size();
    pieces.zeros = wanted > pieces.digitCount ? wanted - pieces.digitCount : 0;
    const char sign = conversion == 'd' ? signOf(directive, negative) : '\0';
    if (sign) pieces.addLead(sign);
    if (directive.has(kFlagAlternate) && pieces.digitCount > 0)
        addAlternateForm(conversion, pieces);
    const bool groups = directive.has(kFlagGroup) && (conversion == 'd' || conversion == 'u');
    return groups ? appendGroupedPieces(directive, pieces, buffer)
                  : appendPieces(directive, pieces, buffer);
}

} // namespace olvex
