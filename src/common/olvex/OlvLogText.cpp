// The front end's work on texts. Without locks and independent of the locale.
#include <olvex/Memory.h>
#include <olvex/trace/OlvLogWrapper.h>

#include <cstring>

namespace {

constexpr const char *kXmlSpecials = "\"&'<>";
constexpr int kLongestCleaned = 1024;

const char *entityOf(char ch)
{
    switch (ch) {
    case '"': return "&quot;";
    case '&': return "&amp;";
    case '\'': return "&apos;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    default: return nullptr;
    }
}

std::size_t escapedLength(const char *text)
{
    std::size_t length = 0;
    for (; *text; ++text) {
        const char *entity = entityOf(*text);
        length += entity ? std::strlen(entity) : 1;
    }
    return length;
}

bool isValidInXml(char ch)
{
    return ch == '\t' || ch == '\n' || ch == '\r' || static_cast<unsigned char>(ch) >= 32;
}

bool isSpace(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

// Two texts as one, yours.
char *joined(const char *first, const char *second)
{
    const std::size_t size = std::strlen(first) + std::strlen(second) + 1;
    char *text = static_cast<char *>(BaxMemoryMalloc(size));
    if (text) std::strcpy(stpcpy(text, first), second);
    return text;
}

} // namespace

inline namespace olvex_trace {

int replaceInvalidXMLChars(char replacement, char *text)
{
    if (!isValidInXml(replacement)) replacement = ' ';
    int replaced = 0;
    for (int i = 0; text && i < kLongestCleaned && text[i]; ++i) {
        if (isValidInXml(text[i])) continue;
        text[i] = replacement;
        ++replaced;
    }
    return replaced;
}

char *createMethodName(const char *prefix, const char *method)
{
    if (!prefix) return nullptr;
    char *name = joined(prefix, method ? method : "");
    if (!name || !std::strpbrk(name, kXmlSpecials)) return name;
    char *escaped = escapeXmlString(name);
    BaxMemoryFree(name);
    return escaped;
}

char *escapeXmlString(const char *text)
{
    if (!text) return nullptr;
    char *escaped = static_cast<char *>(BaxMemoryMalloc(escapedLength(text) + 1));
    if (!escaped) return nullptr;
    char *target = escaped;
    for (; *text; ++text) {
        const char *entity = entityOf(*text);
        if (entity)
            target = stpcpy(target, entity);
        else
            *target++ = *text;
    }
    *target = '\0';
    return escaped;
}

char *convertSlashes(char *text)
{
    for (char *place = text; place && *place; ++place)
        if (*place == '\\') *place = '/';
    return text;
}

char *trim(char *text)
{
    if (!text) return nullptr;
    const char *start = text;
    while (isSpace(*start))
        ++start;
    std::size_t length = std::strlen(start);
    while (length > 0 && isSpace(start[length - 1]))
        --length;
    std::memmove(text, start, length);
    text[length] = '\0';
    return text;
}

} // namespace olvex_trace
