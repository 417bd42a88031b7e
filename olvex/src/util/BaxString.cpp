// The standard string functions, safe to call with null pointers.
#include <olvex/Memory.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

// What a comparison gives when a side is missing; 0 when both are there.
int compareMissing(const char *a, const char *b)
{
    return !a ? 1 : !b ? -1 : 0;
}

int lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? c | 0x20 : static_cast<unsigned char>(c);
}

// Whatever the locale says: in a Turkish one "i" is no lower case of "I", and words such as "info"
// would not be known.
int compareLowered(const char *a, const char *b, std::size_t count)
{
    for (; count > 0; --count, ++a, ++b)
        if (lowered(*a) != lowered(*b) || *a == '\0') return lowered(*a) - lowered(*b);
    return 0;
}

} // namespace

int BaxStringCmp(const char *a, const char *b)
{
    return a && b ? std::strcmp(a, b) : compareMissing(a, b);
}

int BaxStringNCmp(const char *a, const char *b, size_t count)
{
    return a && b ? std::strncmp(a, b, count) : compareMissing(a, b);
}

int BaxStringICmp(const char *a, const char *b)
{
    return a && b ? compareLowered(a, b, SIZE_MAX) : compareMissing(a, b);
}

int BaxStringNICmp(const char *a, const char *b, size_t count)
{
    return a && b ? compareLowered(a, b, count) : compareMissing(a, b);
}

char *BaxStringCat(char *target, const char *source)
{
    return target && source ? std::strcat(target, source) : target;
}

char *BaxStringNCat(char *target, const char *source, size_t count)
{
    return target && source ? std::strncat(target, source, count) : target;
}

char *BaxStringCpy(char *target, const char *source)
{
    return target ? std::strcpy(target, source ? source : "") : nullptr;
}

char *BaxStringNCpy(char *target, const char *source, size_t count)
{
    if (target && !source) *target = '\0';
    return target && source ? std::strncpy(target, source, count) : target;
}

char *BaxStringDup(const char *string)
{
    if (!string) return nullptr;
    const std::size_t size = std::strlen(string) + 1;
    auto *copy = static_cast<char *>(BaxMemoryMalloc(size));
    return copy ? static_cast<char *>(std::memcpy(copy, string, size)) : nullptr;
}

size_t BaxStringLen(const char *string)
{
    return string ? std::strlen(string) : 0;
}

char *BaxStringChr(const char *string, int ch)
{
    return string ? const_cast<char *>(std::strchr(string, ch)) : nullptr;
}

char *BaxStringRChr(const char *string, int ch)
{
    return string ? const_cast<char *>(std::strrchr(string, ch)) : nullptr;
}

char *BaxStringStr(const char *string, const char *part)
{
    return string && part ? const_cast<char *>(std::strstr(string, part)) : nullptr;
}

char *BaxStringStrpbrk(const char *string, const char *set)
{
    return string && set ? const_cast<char *>(std::strpbrk(string, set)) : nullptr;
}

int BaxStringStrcspn(const char *string, const char *set)
{
    return string ? static_cast<int>(std::strcspn(string, set ? set : "")) : -1;
}

int BaxStringStrspn(const char *string, const char *set)
{
    return string ? static_cast<int>(std::strspn(string, set ? set : "")) : -1;
}

int BaxStringSprintf(char *target, const char *format, ...)
{
    if (!target || !format) return -1;
    std::va_list list;
    va_start(list, format);
    const int count = std::vsprintf(target, format, list);
    va_end(list);
    return count;
}
