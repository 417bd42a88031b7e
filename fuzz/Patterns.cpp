// Patterns, message identifiers and the tokenizers. The first line of an input is a pattern and a
// set of delimiters, the rest the text.
#include <olvex/olvex.h>

#include <cstring>

#include "Input.h"

namespace {

void check(bool holds)
{
    if (!holds) __builtin_trap();
}

// Tokens never add up to more than the text.
void walkTokens(const char *text, const char *delimiters)
{
    std::size_t total = 0;
    OvxStrTokIter at = OvxStrTokIterator(text, delimiters);
    for (; OvxStrTokIterHasNext(at); at = OvxStrTokIterNext(at)) {
        char *token = OvxStrTokIterGet(at);
        total += std::strlen(token);
        BaxMemoryFree(token);
    }
    check(total <= std::strlen(text));
}

void walkQuotedTokens(const char *text, const char *delimiters, int quotes)
{
    std::size_t total = 0;
    CxStringTokIter at = CxStringTokIterator(text, delimiters, quotes);
    for (; CxStringTokIterHasNext(&at); CxStringTokIterNext(&at)) {
        char *token = CxStringTokIterGet(&at);
        total += token ? std::strlen(token) : 0;
        BaxMemoryFree(token);
    }
    check(total <= std::strlen(text));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    const fuzz::Text pattern = input.takeLine(), text(input.rest());
    OvxPatternMatch(pattern.get(), text.get());
    check(OvxPatternMatch("*", text.get()) || *text.get() == '\0');
    const CxZMSIDInfo id = CxParseZMSID(text.get());
    check(id.length >= 0 && id.length < static_cast<int>(sizeof id.id));
    OvxFreeStringList(OvxMsgIdFilterGetStringList(text.get()));
    walkTokens(text.get(), pattern.get());
    for (const int quotes : {0, 1})
        walkQuotedTokens(text.get(), pattern.get(), quotes);
    return 0;
}
