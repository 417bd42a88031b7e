// Characters and strings of the formatted-output engine, narrow and wide.
#include "util/print/CxPrintUtil.h"

#include <olvex/UcvWide.h>

#include "util/CxStringBuff.h"

namespace olvex {

namespace {

std::size_t paddingFor(const Directive &directive, std::size_t used)
{
    const auto width = static_cast<std::size_t>(directive.width);
    return width > used ? width - used : 0;
}

// Text between its padding.
bool appendPadded(const Directive &directive, CxStringBuff *buffer, const char *text,
                  std::size_t size)
{
    const std::size_t padding = paddingFor(directive, size);
    const bool left = directive.has(kFlagLeft);
    const char fill = directive.has(kFlagZero) && !left ? '0' : ' ';
    return (left || padding == 0 || appendFill(buffer, fill, padding)) &&
           appendBytes(buffer, text, size) &&
           (!left || padding == 0 || appendFill(buffer, ' ', padding));
}

// Converts units to multibyte text until the terminator, or before the first character whose bytes
// would exceed the precision; false for a unit that cannot be converted. No unit is looked at once
// the precision is reached: there need be no more.
bool convertWide(const char16_t *units, std::int32_t precision, uc_ch_t *codeSet,
                 CxStringBuff *text)
{
    ucv_wctomb(codeSet, nullptr, 0);
    for (; static_cast<std::int64_t>(text->length) != precision && *units; ++units) {
        char character[8];
        const int size = ucv_wctomb(codeSet, character, *units);
        if (size < 0) return false;
        if (precision >= 0 && static_cast<std::int64_t>(text->length) + size > precision) break;
        if (!appendBytes(text, character, static_cast<std::size_t>(size))) return false;
    }
    return true;
}

} // namespace

bool printNarrow(const Directive &directive, CxStringBuff *buffer)
{
    const CxPrintfArg &slot = directive.slot;
    if (directive.item.conversion == 'c') {
        if (!holdsInteger(slot.type)) return false;
        const char byte = static_cast<char>(integerOf(slot));
        return appendPadded(directive, buffer, &byte, 1);
    }
    const char *text = slot.type == kString ? pointerOf<const char *>(slot) : nullptr;
    if (!text) return false;
    const std::size_t size = directive.precision < 0
                                 ? std::strlen(text)
                                 : strnlen(text, static_cast<std::size_t>(directive.precision));
    return appendPadded(directive, buffer, text, size);
}

bool printWide(const Directive &directive, CxStringBuff *buffer, uc_ch_t *codeSet)
{
    const CxPrintfArg &slot = directive.slot;
    const bool isChar = directive.item.conversion == 'c' || directive.item.conversion == 'C';
    if (isChar ? !holdsInteger(slot.type) : slot.type != kWideString) return false;
    CxStringBuff text = {};
    bool converted = false;
    if (isChar) {
        char character[8];
        ucv_wctomb(codeSet, nullptr, 0);
        const int size = ucv_wctomb(codeSet, character, static_cast<char16_t>(integerOf(slot)));
        converted = size >= 0 && appendBytes(&text, character, static_cast<std::size_t>(size));
    } else if (const auto *units = pointerOf<const char16_t *>(slot)) {
        converted = convertWide(units, directive.precision, codeSet, &text);
    }
    const bool written =
        converted && appendPadded(directive, buffer, text.str ? text.str : "", text.length);
    CxStringBuffDiscard(&text);
    return written;
}

} // namespace olvex
