// The tokenizer: words between delimiters; double quotes may keep delimiters inside a word.
#include <olvex/Chars.h>
#include <olvex/Memory.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::int32_t kNoToken = -9;
constexpr std::int32_t kBeforeFirst = -1;

bool isDelimiter(const CxStringTokIter &iterator, std::int32_t at)
{
    return iterator.delims && std::strchr(iterator.delims, iterator.str[at]);
}

std::int32_t skipDelimiters(const CxStringTokIter &iterator, std::int32_t at)
{
    while (at < iterator.length && isDelimiter(iterator, at))
        ++at;
    return at;
}

std::int32_t skipToken(const CxStringTokIter &iterator, std::int32_t at)
{
    bool quoted = false;
    for (; at < iterator.length; ++at) {
        if (iterator.quotes && iterator.str[at] == '"')
            quoted = !quoted;
        else if (!quoted && isDelimiter(iterator, at))
            break;
    }
    return at;
}

} // namespace

CxStringTokIter CxStringTokIterator(const char *string, const char *delimiters, int quotes)
{
    CxStringTokIter iterator = {
        string ? string : "", static_cast<std::int32_t>(BaxStringLen(string)),
        delimiters,           quotes == 1,
        kBeforeFirst,         kBeforeFirst};
    CxStringTokIterNext(&iterator);
    return iterator;
}

int CxStringTokIterHasNext(const CxStringTokIter *iterator)
{
    return iterator && iterator->tokStart >= 0;
}

char *CxStringTokIterGet(const CxStringTokIter *iterator)
{
    if (!CxStringTokIterHasNext(iterator)) return nullptr;
    const auto size = static_cast<std::size_t>(iterator->tokEnd - iterator->tokStart);
    auto *token = static_cast<char *>(BaxMemoryMalloc(size + 1));
    if (!token) return nullptr;
    char *to = token;
    for (std::int32_t at = iterator->tokStart; at < iterator->tokEnd; ++at)
        if (!iterator->quotes || iterator->str[at] != '"') *to++ = iterator->str[at];
    *to = '\0';
    return token;
}

void CxStringTokIterNext(CxStringTokIter *iterator)
{
    if (!iterator || !iterator->str || iterator->tokStart == kNoToken) return;
    const std::int32_t from = iterator->tokEnd == kBeforeFirst ? 0 : iterator->tokEnd;
    const std::int32_t start = skipDelimiters(*iterator, from);
    const bool found = start < iterator->length;
    iterator->tokStart = found ? start : kNoToken;
    iterator->tokEnd = found ? skipToken(*iterator, start) : kNoToken;
}
