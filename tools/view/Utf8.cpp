// See Utf8.h.
#include "view/Utf8.h"

#include <cstdint>
#include <cstring>

namespace tools::view {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080;

std::size_t countAscii(std::string_view text)
{
    std::size_t count = 0;
    for (; count + sizeof(std::uint64_t) <= text.size(); count += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + count, sizeof word);
        if (word & kHighBits) break;
    }
    while (count < text.size() && static_cast<unsigned char>(text[count]) < 0x80)
        ++count;
    return count;
}

// What the second byte must lie between; it excludes long forms, surrogates and what is too large.
struct Range {
    unsigned char low;
    unsigned char high;
};

Range secondAfter(unsigned char lead)
{
    switch (lead) {
    case 0xE0: return {0xA0, 0xBF};
    case 0xED: return {0x80, 0x9F};
    case 0xF0: return {0x90, 0xBF};
    case 0xF4: return {0x80, 0x8F};
    default: return {0x80, 0xBF};
    }
}

std::size_t lengthFor(unsigned char lead)
{
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

} // namespace

std::size_t characterLength(std::string_view text)
{
    if (text.empty()) return 0;
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lengthFor(lead);
    if (length > text.size()) return 0;
    Range range = secondAfter(lead);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < range.low || byte > range.high) return 0;
        range = {0x80, 0xBF};
    }
    return length;
}

char32_t decode(std::string_view character)
{
    const auto lead = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) return lead;
    char32_t value = lead & (0x7Fu >> character.size());
    for (const char following : character.substr(1))
        value = value << 6 | (static_cast<unsigned char>(following) & 0x3F);
    return value;
}

bool isUtf8(std::string_view text)
{
    for (;;) {
        text.remove_prefix(countAscii(text));
        if (text.empty()) return true;
        const std::size_t length = characterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
}

} // namespace tools::view
