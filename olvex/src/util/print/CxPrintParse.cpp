// Parsing of formats: a walk over the format that leaves a list of items and the types of the
// arguments they need. Nothing is copied: literal items point into the format.
#include "util/print/CxPrintUtil.h"

#include <olvex/Chars.h>

#include <cstring>

using namespace olvex;

namespace {

constexpr std::int32_t kHighestIndex = 32767;

// The flag that a character stands for, 0 for none.
constexpr std::uint32_t flagOf(char character)
{
    switch (character) {
    case '-': return kFlagLeft;
    case '0': return kFlagZero;
    case '+': return kFlagPlus;
    case ' ': return kFlagSpace;
    case '#': return kFlagAlternate;
    case '\'': return kFlagGroup;
    default: return 0;
    }
}

struct Modifier {
    LengthMod code;
    int size; // bytes
};

// The length modifier at the start of `text`.
constexpr Modifier modifierAt(const char *text)
{
    switch (*text) {
    case 'h': return text[1] == 'h' ? Modifier{kModChar, 2} : Modifier{kModShort, 1};
    case 'l': return text[1] == 'l' ? Modifier{kModLongLong, 2} : Modifier{kModLong, 1};
    case 'L': return {kModLongDouble, 1};
    case 'I':
        return text[1] == '6' && text[2] == '4' ? Modifier{kModI64, 3} : Modifier{kModNone, 0};
    case 'j': return {kModMax, 1};
    case 'q': return {kModQuad, 1};
    case 't': return {kModPtrDiff, 1};
    case 'z':
    case 'Z': return {kModSize, 1};
    default: return {kModNone, 0};
    }
}

struct TypeRow {
    LengthMod modifier;
    ArgType type;
};

constexpr TypeRow kSignedTypes[] = {
    {kModNone, kInt},        {kModShort, kShort},     {kModLong, kLong},  {kModLongLong, kLongLong},
    {kModI64, kLongLong},    {kModQuad, kLongLong},   {kModMax, kIntMax}, {kModChar, kSignedChar},
    {kModSize, kSignedSize}, {kModPtrDiff, kPtrDiff},
};
constexpr TypeRow kUnsignedTypes[] = {
    {kModNone, kUnsignedInt},
    {kModShort, kUnsignedShort},
    {kModLong, kUnsignedLong},
    {kModLongLong, kUnsignedLongLong},
    {kModI64, kUnsignedLongLong},
    {kModQuad, kUnsignedLongLong},
    {kModMax, kUintMax},
    {kModChar, kUnsignedChar},
    {kModSize, kSize},
    {kModPtrDiff, kPtrDiff},
};
constexpr TypeRow kCountTypes[] = {
    {kModNone, kIntPointer},  {kModShort, kShortPointer},       {kModLong, kLongPointer},
    {kModQuad, kLongPointer}, {kModLongLong, kLongLongPointer}, {kModI64, kLongLongPointer},
    {kModChar, kString},
};

template <std::size_t Size>
ArgType lookUp(const TypeRow (&rows)[Size], std::int32_t modifier)
{
    for (const TypeRow &row : rows)
        if (row.modifier == modifier) return row.type;
    return kUnset;
}

// The type of a conversion's argument; kUnset for what is no conversion.
ArgType typeOf(char conversion, std::int32_t modifier)
{
    switch (conversion) {
    case 'd': return lookUp(kSignedTypes, modifier);
    case 'o':
    case 'u':
    case 'x':
    case 'X': return lookUp(kUnsignedTypes, modifier);
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A': return modifier == kModLongDouble ? kLongDouble : kDouble;
    case 'c': return modifier == kModLong ? kWideChar : kInt;
    case 'C': return kWideChar;
    case 's': return modifier == kModLong ? kWideString : kString;
    case 'S': return kWideString;
    case 'p': return kPointer;
    case 'n': return lookUp(kCountTypes, modifier);
    default: return kUnset;
    }
}

class Parser {
  public:
    Parser(const char *format, CxPrintfFmts &formats, CxPrintfArgs &arguments)
        : at_(format), formats_(formats), arguments_(arguments)
    {}

    bool run()
    {
        while (*at_)
            if (!(*at_ == '%' ? parsePercent() : addText(textSize()))) return false;
        return true;
    }

  private:
    std::size_t textSize() const { return static_cast<std::size_t>(strchrnul(at_, '%') - at_); }

    CxPrintfFmt *addItem()
    {
        if (formats_.count == formats_.capacity && !growItems()) return nullptr;
        return &formats_.items[formats_.count++];
    }

    bool growItems()
    {
        void *items = formats_.items;
        const bool room = CxListEnsureCapacity(&items, &formats_.capacity, &formats_.count,
                                               formats_.count + 1, sizeof(CxPrintfFmt)) == 1;
        formats_.items = static_cast<CxPrintfFmt *>(items);
        return room;
    }

    bool addText(std::size_t count)
    {
        CxPrintfFmt *item = addItem();
        if (!item) return false;
        item->kind = 1;
        item->from.textStart = at_;
        item->to.textEnd = at_ + count - 1;
        at_ += count;
        return true;
    }

    bool parsePercent()
    {
        ++at_;
        if (*at_ == '%') return addText(1);
        CxPrintfFmt *item = addItem();
        if (!item) return false;
        *item = {0, {-1}, {kUnset}, 0, -1, -1, -1, -1, kModNone, '?'};
        return parseDirective(*item);
    }

    bool parseDirective(CxPrintfFmt &item)
    {
        std::int32_t position = -1;
        if (!parsePosition(position)) return false;
        parseFlags(item);
        if (!parseSize(item.widthArg, item.width)) return false;
        if (*at_ == '.') {
            ++at_;
            if (!parsePrecision(item)) return false;
        }
        parseModifier(item);
        if (!parseConversion(item)) return false;
        item.from.argIndex = position >= 0 ? position : formats_.nextArg++;
        return noteArguments(item);
    }

    // A decimal number without a leading zero; saturates. Leaves the place alone without one.
    bool parseNumber(std::int32_t &number)
    {
        if (*at_ < '1' || *at_ > '9') return false;
        number = parseDigits();
        return true;
    }

    std::int32_t parseDigits()
    {
        std::int64_t value = 0;
        for (; CxIsASCIIDigit(*at_); ++at_)
            if (value <= INT32_MAX) value = value * 10 + (*at_ - '0');
        return static_cast<std::int32_t>(value > INT32_MAX ? INT32_MAX : value);
    }

    // "N$": the index is N - 1. Without the "$" nothing is consumed. False for a place too high.
    bool parsePosition(std::int32_t &index)
    {
        const char *start = at_;
        std::int32_t number = 0;
        if (!parseNumber(number) || *at_ != '$') {
            at_ = start;
            return true;
        }
        ++at_;
        index = number - 1;
        formats_.positional = 1;
        return number <= kHighestIndex;
    }

    void parseFlags(CxPrintfFmt &item)
    {
        while (const std::uint32_t flag = flagOf(*at_)) {
            item.flags |= flag;
            ++at_;
        }
    }

    // A number, "*" with a position, or a bare "*".
    bool parseSize(std::int32_t &argument, std::int32_t &size)
    {
        if (*at_ != '*') {
            parseNumber(size);
            return true;
        }
        ++at_;
        if (!parsePosition(argument)) return false;
        if (argument < 0) argument = formats_.nextArg++;
        return true;
    }

    bool parsePrecision(CxPrintfFmt &item)
    {
        if (*at_ == '*') return parseSize(item.precisionArg, item.precision);
        if (CxIsASCIIDigit(*at_)) item.precision = parseDigits();
        return true;
    }

    void parseModifier(CxPrintfFmt &item)
    {
        const Modifier modifier = modifierAt(at_);
        item.lengthMod = modifier.code;
        at_ += modifier.size;
    }

    bool parseConversion(CxPrintfFmt &item)
    {
        item.conversion = *at_ == 'i' ? 'd' : *at_;
        item.to.argType = typeOf(item.conversion, item.lengthMod);
        if (item.to.argType == kUnset) return false;
        ++at_;
        return true;
    }

    bool noteArguments(const CxPrintfFmt &item)
    {
        return noteArgument(item.from.argIndex, item.to.argType) &&
               (item.widthArg < 0 || noteArgument(item.widthArg, kInt)) &&
               (item.precisionArg < 0 || noteArgument(item.precisionArg, kInt));
    }

    bool noteArgument(std::int32_t index, unsigned char type)
    {
        if (index >= kHighestIndex) return false;
        if (index >= arguments_.count && !growTable(index + 1)) return false;
        arguments_.items[index].type = type;
        return true;
    }

    bool growTable(std::int32_t count)
    {
        if (count > arguments_.capacity && !growArguments(count)) return false;
        for (std::int32_t i = arguments_.count; i < count; ++i)
            arguments_.items[i] = {}; // so that an argument that is never filled is null
        arguments_.count = count;
        return true;
    }

    bool growArguments(std::int32_t count)
    {
        void *items = arguments_.items;
        std::int32_t used = arguments_.count;
        const bool room = CxListEnsureCapacity(&items, &arguments_.capacity, &used, count,
                                               sizeof(CxPrintfArg)) == 1;
        arguments_.items = static_cast<CxPrintfArg *>(items);
        return room;
    }

    const char *at_;
    CxPrintfFmts &formats_;
    CxPrintfArgs &arguments_;
};

} // namespace

int CxPrintfProcessFmts(const char *format, CxPrintfFmts *formats, CxPrintfArgs *arguments)
{
    if (!format || !formats || !arguments) return 0;
    return Parser(format, *formats, *arguments).run() ? 0 : 1;
}
