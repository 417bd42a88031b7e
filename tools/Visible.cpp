// See Visible.h.
#include "Visible.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdio>
#include <iterator>

#include <langinfo.h>

#include "view/Utf8.h"

namespace tools {

namespace {

struct Range {
    char32_t first, last;
};

// Controls, separators of lines and paragraphs, interlinear annotation, and the characters to which
// Unicode gives the property Default_Ignorable_Code_Point.
constexpr Range kInvisible[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F},   {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};
static_assert(std::ranges::is_sorted(kInvisible, {}, &Range::first));

// What the environment's locale, whatever the program has set for itself, says about the terminal.
// Plain ASCII is what a locale that is not set says; such a terminal is taken to show UTF-8, as
// nearly all do.
struct Terminal {
    locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    bool takesUtf8 = true;

    Terminal()
    {
        if (!locale) return;
        const std::string_view codeSet = nl_langinfo_l(CODESET, locale);
        takesUtf8 = codeSet == "UTF-8" || codeSet == "ANSI_X3.4-1968";
    }

    // Whether a byte that is no UTF-8 is a character there. Those below 0xA0 are controls to some.
    bool shows(unsigned char byte) const
    {
        return !takesUtf8 && byte >= 0xA0 && isprint_l(byte, locale) != 0;
    }
};

const Terminal &terminal()
{
    static const Terminal it; // its locale is kept until the end
    return it;
}

void spell(std::string &out, const char *format, unsigned value)
{
    char text[16];
    out.append(text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, value)));
}

void spellAscii(std::string &out, char byte)
{
    switch (byte) {
    case '\n': out += "\\n"; return;
    case '\t': out += "\\t"; return;
    case '\r': out += "\\r"; return;
    default: spell(out, "\\x%02x", static_cast<unsigned char>(byte));
    }
}

// Appends the character or stray byte at the front of a text; returns its length.
std::size_t append(std::string &out, std::string_view text, LineEnds lineEnds)
{
    const std::size_t length = view::characterLength(text);
    const char32_t character = length > 0 ? view::decode(text.substr(0, length)) : 0;
    const auto first = static_cast<unsigned char>(text.front());
    const bool isKept = lineEnds == LineEnds::kKept && (character == '\n' || character == '\t');
    if (length == 0 && terminal().shows(first))
        out += text.front();
    else if (length == 0)
        spell(out, "\\x%02x", first);
    else if (isKept || isVisible(character))
        out += text.substr(0, length);
    else if (character < 0x80)
        spellAscii(out, text.front());
    else
        spell(out, character > 0xFFFF ? "\\U%08x" : "\\u%04x", character);
    return std::max(length, std::size_t{1});
}

} // namespace

bool isVisible(char32_t character)
{
    if (character >= 0x80 && !terminal().takesUtf8) return false;
    const auto *above = std::ranges::upper_bound(kInvisible, character, {}, &Range::first);
    return above == std::begin(kInvisible) || character > std::prev(above)->last;
}

std::string visible(std::string_view text, LineEnds lineEnds)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty())
        text.remove_prefix(append(out, text, lineEnds));
    return out;
}

void complain(std::string_view line)
{
    const std::string shown = visible(line) + '\n';
    std::fwrite(shown.data(), 1, shown.size(), stderr);
}

} // namespace tools
