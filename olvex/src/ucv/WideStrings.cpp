// Strings of 16-bit units: the standard library's functions over char16_t. No state, no locks.
#include <olvex/UcvWide.h>

#include <algorithm>

#include <cstring>

namespace {

// The strings' functions take their strings const and give a place in them back, as in C.
char16_t *placeIn(const char16_t *string)
{
    return const_cast<char16_t *>(string);
}

bool isIn(const char16_t *set, char16_t unit)
{
    return unit && ucv_wcschr(set, unit);
}

// How many units at the start are in the set, or are not.
std::size_t span(const char16_t *string, const char16_t *set, bool inside)
{
    if (!string) return 0;
    std::size_t count = 0;
    while (string[count] && (set && isIn(set, string[count])) == inside)
        ++count;
    return count;
}

char16_t *copy(char16_t *target, const char16_t *source, std::size_t count)
{
    std::memcpy(target, source, count * sizeof *source);
    return target;
}

} // namespace

size_t ucv_wcslen(const char16_t *string)
{
    return ucv_wcsnlen(string, SIZE_MAX);
}

size_t ucv_wcsnlen(const char16_t *string, size_t count)
{
    std::size_t length = 0;
    while (string && length < count && string[length])
        ++length;
    return length;
}

char16_t *ucv_wcscat(char16_t *target, const char16_t *source)
{
    return ucv_wcsncat(target, source, SIZE_MAX);
}

char16_t *ucv_wcsncat(char16_t *target, const char16_t *source, size_t count)
{
    if (!target || !source) return target;
    char16_t *end = target + ucv_wcslen(target);
    const std::size_t length = ucv_wcsnlen(source, count);
    copy(end, source, length)[length] = 0;
    return target;
}

char16_t *ucv_wcscpy(char16_t *target, const char16_t *source)
{
    return target && source ? copy(target, source, ucv_wcslen(source) + 1) : target;
}

char16_t *ucv_wcsncpy(char16_t *target, const char16_t *source, size_t count)
{
    if (!target || !source) return target;
    const std::size_t length = ucv_wcsnlen(source, count);
    std::fill(copy(target, source, length) + length, target + count, char16_t{0});
    return target;
}

int ucv_wcsncmp(const char16_t *left, const char16_t *right, size_t count)
{
    if (!left || !right) return 0;
    for (; count > 0; --count, ++left, ++right)
        if (*left != *right || *left == 0) return *left - *right;
    return 0;
}

char16_t *ucv_wcschr(const char16_t *string, char16_t unit)
{
    if (!string) return nullptr;
    while (*string && *string != unit)
        ++string;
    return *string == unit ? placeIn(string) : nullptr;
}

char16_t *ucv_wcsrchr(const char16_t *string, char16_t unit)
{
    if (!string) return nullptr;
    for (std::size_t at = ucv_wcslen(string) + 1; at-- > 0;)
        if (string[at] == unit) return placeIn(string + at);
    return nullptr;
}

size_t ucv_wcsspn(const char16_t *string, const char16_t *set)
{
    return span(string, set, true);
}

size_t ucv_wcscspn(const char16_t *string, const char16_t *set)
{
    return span(string, set, false);
}

char16_t *ucv_wcspbrk(const char16_t *string, const char16_t *set)
{
    if (!string) return nullptr;
    string += ucv_wcscspn(string, set);
    return *string ? placeIn(string) : nullptr;
}

char16_t *ucv_wcswcs(const char16_t *string, const char16_t *part)
{
    if (!string || !part) return nullptr;
    const std::size_t length = ucv_wcslen(part);
    for (; ucv_wcsncmp(string, part, length) != 0; ++string)
        if (!*string) return nullptr;
    return placeIn(string);
}

char16_t *ucv_wcstok(char16_t *string, const char16_t *delimiters, char16_t **next)
{
    if (!next || !delimiters) return nullptr;
    char16_t *token = string ? string : *next;
    if (!token) return nullptr;
    token += ucv_wcsspn(token, delimiters);
    char16_t *end = token + ucv_wcscspn(token, delimiters);
    *next = *end ? end + 1 : end;
    *end = 0;
    return *token ? token : nullptr;
}
