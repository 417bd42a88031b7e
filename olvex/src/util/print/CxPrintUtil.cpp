// The formatted-output engine: gathering of arguments, emission item by item, and the functions
// that do both for a caller's list or array.
#include "util/print/CxPrintUtil.h"

#include <olvex/Chars.h>

#include "util/CxStringBuff.h"

#include <sys/types.h>

using namespace olvex;

namespace {

// Takes one argument from the list as its type says; false for an argument that no directive names.
bool gather(CxPrintfArg &slot, va_list &list)
{
    const auto type = static_cast<ArgType>(slot.type);
    switch (type) {
    case kInt:
    case kShort:
    case kSignedChar: setInt(slot, type, va_arg(list, int)); return true;
    case kLong: setInt(slot, type, va_arg(list, long)); return true;
    case kLongLong: setInt(slot, type, va_arg(list, long long)); return true;
    case kIntMax: setInt(slot, type, va_arg(list, std::intmax_t)); return true;
    case kUnsignedInt:
    case kUnsignedShort:
    case kUnsignedChar:
    case kWideChar: setInt(slot, type, va_arg(list, unsigned)); return true;
    case kUnsignedLong:
        setSlot(slot, type, std::uint64_t{va_arg(list, unsigned long)});
        return true;
    case kUnsignedLongLong:
        setSlot(slot, type, std::uint64_t{va_arg(list, unsigned long long)});
        return true;
    case kUintMax: setSlot(slot, type, std::uint64_t{va_arg(list, std::uintmax_t)}); return true;
    case kDouble: setDouble(slot, static_cast<long double>(va_arg(list, double))); return true;
    case kLongDouble: setFloating(slot, type, va_arg(list, long double)); return true;
    case kSignedSize: setInt(slot, type, va_arg(list, ssize_t)); return true;
    case kSize: setSlot(slot, type, std::uint64_t{va_arg(list, std::size_t)}); return true;
    case kPtrDiff: setInt(slot, type, va_arg(list, std::ptrdiff_t)); return true;
    case kPointer:
    case kIntPointer:
    case kShortPointer:
    case kLongPointer:
    case kLongLongPointer:
    case kString:
    case kWideString: {
        const auto bits = reinterpret_cast<std::uintptr_t>(va_arg(list, void *));
        setSlot(slot, type, std::uint64_t{bits});
        return true;
    }
    case kUnset: break;
    }
    return false;
}

// A copy of a variable argument list, to be passed on by address.
struct ArgumentList {
    explicit ArgumentList(va_list given) { va_copy(list, given); }
    ~ArgumentList() { va_end(list); }
    ArgumentList(const ArgumentList &) = delete;
    ArgumentList &operator=(const ArgumentList &) = delete;

    va_list list;
};

bool gatherAll(CxPrintfArgs &arguments, ArgumentList *given)
{
    for (std::int32_t i = 0; i < arguments.count; ++i)
        if (!gather(arguments.items[i], given->list)) return false;
    return true;
}

bool gatherAll(CxPrintfArgs &arguments, const CxPrintfValue *values)
{
    if (!values) return arguments.count == 0;
    for (std::int32_t i = 0; i < arguments.count; ++i) {
        if (arguments.items[i].type == kUnset) return false;
        arguments.items[i].value = values[i];
    }
    return true;
}

// A width or precision that an argument supplies; false when that cannot serve.
bool takeSize(const CxPrintfArgs &arguments, std::int32_t index, std::int32_t &size)
{
    if (index < 0) return true;
    if (index >= arguments.count || !holdsInteger(arguments.items[index].type)) return false;
    size = static_cast<std::int32_t>(integerOf(arguments.items[index]));
    return true;
}

bool emitConversion(uc_ch_t *codeSet, CxStringBuff *buffer, const CxPrintfFmt &item,
                    const CxPrintfArgs &arguments, FillBudget &budget)
{
    std::int32_t width = item.width;
    std::int32_t precision = item.precision;
    if (item.from.argIndex >= arguments.count || !takeSize(arguments, item.widthArg, width) ||
        !takeSize(arguments, item.precisionArg, precision))
        return false;
    const Directive directive{item, arguments.items[item.from.argIndex], width > 0 ? width : 0,
                              precision < 0 ? -1 : precision};
    if (!budget.take(directive)) return false;
    switch (item.conversion) {
    case 's':
    case 'c':
        return item.lengthMod == kModLong ? printWide(directive, buffer, codeSet)
                                          : printNarrow(directive, buffer);
    case 'S':
    case 'C': return printWide(directive, buffer, codeSet);
    case 'd':
    case 'o':
    case 'u':
    case 'x':
    case 'X':
    case 'p': return printInteger(directive, buffer);
    case 'n': return false; // the engine never stores a count
    default: return printFloating(directive, buffer);
    }
}

// Parses, gathers from whatever the arguments come in, and emits.
template <class Source>
int print(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format, Source source)
{
    if (!buffer || !format) return 0;
    CxPrintfFmts formats = {};
    CxPrintfArgs arguments = {};
    int count = 0;
    if (CxPrintfProcessFmts(format, &formats, &arguments) == 0 && gatherAll(arguments, source)) {
        char error = 0;
        count = cxPrintfEmitAll(codeSet, buffer, &formats, &arguments, &error);
    }
    cxPrintfDiscard(&formats, &arguments);
    return count;
}

} // namespace

void cxPrintfDiscard(CxPrintfFmts *formats, CxPrintfArgs *arguments)
{
    void *items = formats->items;
    CxListDiscard(&items, &formats->capacity, &formats->count);
    formats->items = nullptr;
    items = arguments->items;
    CxListDiscard(&items, &arguments->capacity, &arguments->count);
    arguments->items = nullptr;
}

bool cxPrintfEmit(uc_ch_t *codeSet, CxStringBuff *buffer, const CxPrintfFmt &item,
                  const CxPrintfArgs &arguments, FillBudget &budget)
{
    if (item.kind == 0) return emitConversion(codeSet, buffer, item, arguments, budget);
    const char *text = item.from.textStart;
    return appendBytes(buffer, text, static_cast<std::size_t>(item.to.textEnd - text) + 1);
}

int cxPrintfEmitAll(uc_ch_t *codeSet, CxStringBuff *buffer, const CxPrintfFmts *formats,
                    const CxPrintfArgs *arguments, char *error)
{
    *error = 0;
    const std::uint32_t before = buffer->length;
    FillBudget budget;
    for (std::int32_t i = 0; !*error && i < formats->count; ++i)
        if (!cxPrintfEmit(codeSet, buffer, formats->items[i], *arguments, budget)) *error = 1;
    return static_cast<int>(buffer->length - before);
}

int CxStringBuffPrintf(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format, ...)
{
    va_list list;
    va_start(list, format);
    const int count = CxStringBuffPrintfV(codeSet, buffer, format, list);
    va_end(list);
    return count;
}

int CxStringBuffPrintfV(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format,
                        va_list arguments)
{
    if (!buffer || !format) return 0;
    ArgumentList list(arguments);
    return print(codeSet, buffer, format, &list);
}

int CxStringBuffPrintfA(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format,
                        const CxPrintfValue *values)
{
    return print(codeSet, buffer, format, values);
}
