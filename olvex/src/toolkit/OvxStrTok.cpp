// The tokenizer for lists of names: an iterator is a place in the string and nothing more.
#include "toolkit/OvxStrTok.h"

#include "util/Memory.h"

#include <cstring>

using namespace olvex;

namespace {

bool atEnd(const OvxStrTokIter &iterator)
{
    return !iterator.position || !*iterator.position;
}

bool hasDelimiters(const OvxStrTokIter &iterator)
{
    return iterator.delimiters && *iterator.delimiters;
}

// The token at the iterator's place, leading delimiters skipped.
std::string_view tokenAt(const OvxStrTokIter &iterator)
{
    if (!hasDelimiters(iterator)) return {iterator.position, 1};
    const char *start = iterator.position + std::strspn(iterator.position, iterator.delimiters);
    return {start, std::strcspn(start, iterator.delimiters)};
}

} // namespace

OvxStrTokIter OvxStrTokIterator(const char *string, const char *delimiters)
{
    return {string, delimiters};
}

bool OvxStrTokIterHasNext(OvxStrTokIter iterator)
{
    return !atEnd(iterator) && !tokenAt(iterator).empty();
}

char *OvxStrTokIterGet(OvxStrTokIter iterator)
{
    return OvxStrTokIterHasNext(iterator) ? Memory().duplicate(tokenAt(iterator)) : nullptr;
}

OvxStrTokIter OvxStrTokIterNext(OvxStrTokIter iterator)
{
    if (atEnd(iterator)) return iterator;
    const std::string_view token = tokenAt(iterator);
    return {token.data() + token.size(), iterator.delimiters};
}
