// Texts that are too long for their place, cut at a character's boundary: what follows a part of a
// character would be taken for the rest of it.
#ifndef OLVEX_TRACE_CUTTEXT_H
#define OLVEX_TRACE_CUTTEXT_H

#include <cstddef>

namespace olvex {

// The bytes of a character of UTF-8 by its first one.
inline std::size_t characterSize(char first)
{
    const auto lead = static_cast<unsigned char>(first);
    return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/**
 * How many of a text's first `limit` bytes are whole characters, given that it goes on behind them.
 * What is no UTF-8 is cut anywhere.
 */
inline std::size_t wholeCharacters(const char *text, std::size_t limit)
{
    constexpr std::size_t kMostFollowing = 3;
    std::size_t first = limit;
    do {
        if (first == 0 || limit - first > kMostFollowing) return limit;
        --first;
    } while ((text[first] & 0xC0) == 0x80);
    return characterSize(text[first]) > limit - first ? first : limit;
}

} // namespace olvex

#endif
