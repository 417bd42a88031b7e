// The formatted-output engine inside the library: type codes, argument slots, and the steps that a
// caller takes who fills the argument table itself.
#pragma once

#include <olvex/Printf.h>

#include "util/print/CxPrintExtended.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace olvex {

// How an argument is taken from a list, and what its slot holds.
enum ArgType : unsigned char {
    kUnset = 0,
    kInt = 10,
    kShort = 11,
    kLong = 12,
    kLongLong = 13,
    kIntMax = 14,
    kUnsignedInt = 20,
    kUnsignedShort = 21,
    kUnsignedLong = 22,
    kUnsignedLongLong = 23,
    kUintMax = 24,
    kDouble = 30,
    kLongDouble = 31,
    kSignedChar = 40,
    kUnsignedChar = 41,
    kWideChar = 42,
    kPointer = 50,
    kIntPointer = 60,
    kShortPointer = 61,
    kLongPointer = 62,
    kLongLongPointer = 63,
    kString = 70,
    kWideString = 71,
    kSignedSize = 80,
    kSize = 81,
    kPtrDiff = 90,
};

enum LengthMod : std::int32_t {
    kModNone = 0,
    kModLong = 10,
    kModLongLong = 11,
    kModLongDouble = 12,
    kModShort = 20,
    kModChar = 21,
    kModI64 = 30,
    kModMax = 40,
    kModQuad = 50,
    kModPtrDiff = 60,
    kModSize = 70,
};

enum FormatFlag : std::uint32_t {
    kFlagLeft = 0x01,
    kFlagZero = 0x02,
    kFlagPlus = 0x04,
    kFlagSpace = 0x08,
    kFlagAlternate = 0x10,
    kFlagGroup = 0x20,
};

template <class Value>
void setSlot(CxPrintfArg &slot, ArgType type, const Value &value)
{
    static_assert(sizeof value <= sizeof slot.value.bytes);
    slot.type = type;
    std::memcpy(slot.value.bytes, &value, sizeof value);
}

inline void setInt(CxPrintfArg &slot, ArgType type, std::int64_t value)
{
    setSlot(slot, type, value);
}
inline void setFloating(CxPrintfArg &slot, ArgType type, long double value)
{
    slot.type = type;
    storeExtended(slot.value, value);
}
inline void setDouble(CxPrintfArg &slot, long double value)
{
    setFloating(slot, kDouble, value);
}
inline void setString(CxPrintfArg &slot, const char *value)
{
    setSlot(slot, kString, value);
}

// What a slot's first bytes hold: an integer of 64 bits, of which narrower ones are the low part,
// or a pointer.
inline std::uint64_t integerOf(const CxPrintfArg &slot)
{
    std::uint64_t value;
    std::memcpy(&value, slot.value.bytes, sizeof value);
    return value;
}
template <class Pointer>
Pointer pointerOf(const CxPrintfArg &slot)
{
    Pointer value;
    std::memcpy(&value, slot.value.bytes, sizeof value);
    return value;
}
inline long double extendedOf(const CxPrintfArg &slot)
{
    return loadExtended(slot.value);
}

// The kinds of value that a slot may hold.
constexpr bool holdsInteger(unsigned char type)
{
    return (type >= kInt && type <= kIntMax) || (type >= kUnsignedInt && type <= kUintMax) ||
           (type >= kSignedChar && type <= kWideChar) || type == kSignedSize || type == kSize ||
           type == kPtrDiff;
}
constexpr bool holdsFloating(unsigned char type)
{
    return type == kDouble || type == kLongDouble;
}

// An item with its width and precision as they count in the end, and its argument.
struct Directive {
    const CxPrintfFmt &item;
    const CxPrintfArg &slot;
    std::int64_t width;     // 0 for none
    std::int32_t precision; // -1 for none

    bool has(FormatFlag flag) const { return item.flags & flag; }
};

// What the widths and precisions of one print may add to its text. They may come from a catalog or
// an argument, and a large one would fill the memory, or hold a lock for seconds.
class FillBudget {
  public:
    static constexpr std::int64_t kMost = 16 * 1024 * 1024; // bytes

    // Takes what a directive may add, before it is printed; false when that is too much.
    bool take(const Directive &directive)
    {
        std::int64_t fill = directive.width;
        if (directive.precision > fill && precisionAdds(directive)) fill = directive.precision;
        if (fill > left_) return false;
        left_ -= fill;
        return true;
    }

  private:
    // A text's precision only shortens it, and "%g" leaves out what a number does not have.
    static bool precisionAdds(const Directive &directive)
    {
        switch (directive.item.conversion) {
        case 's':
        case 'S':
        case 'c':
        case 'C': return false;
        case 'g':
        case 'G': return directive.has(kFlagAlternate);
        default: return true;
        }
    }

    std::int64_t left_ = kMost;
};

// Each prints one conversion; false when its argument cannot serve or memory runs out.
bool printInteger(const Directive &directive, CxStringBuff *buffer);
bool printFloating(const Directive &directive, CxStringBuff *buffer);
bool printNarrow(const Directive &directive, CxStringBuff *buffer);
bool printWide(const Directive &directive, CxStringBuff *buffer, uc_ch_t *codeSet);

} // namespace olvex

// Makes both lists ready for another format; their memory is kept.
inline void cxPrintfReset(CxPrintfFmts *formats, CxPrintfArgs *arguments)
{
    formats->nextArg = formats->positional = formats->count = 0;
    arguments->count = 0;
}

void cxPrintfDiscard(CxPrintfFmts *formats, CxPrintfArgs *arguments);

// Prints one item with the values of the table, within the budget of the whole print; false when it
// cannot be printed.
bool cxPrintfEmit(uc_ch_t *codeSet, CxStringBuff *buffer, const CxPrintfFmt &item,
                  const CxPrintfArgs &arguments, olvex::FillBudget &budget);

// Prints all items with the values of the table; sets the error byte to 0 or 1 and returns the
// number of bytes appended.
int cxPrintfEmitAll(uc_ch_t *codeSet, CxStringBuff *buffer, const CxPrintfFmts *formats,
                    const CxPrintfArgs *arguments, char *error);
