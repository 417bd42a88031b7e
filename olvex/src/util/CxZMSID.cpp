// Recognising message identifiers at the start of a text.
#include <olvex/MsgId.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

struct Format {
    const char *name;
    std::int32_t number;
    int letters;
    int digits;

    int length() const { return letters + digits + 1; }
};

// More letters first; among those of a number of letters in the order in which they are tried. A
// severity letter must follow the digits, so at most one of them fits a text.
constexpr Format kFormats[] = {
    {"KEL6.3.1", 631, 6, 3}, {"KEL5.2.1", 521, 5, 2}, {"KEL5.4.1", 541, 5, 4},
    {"KEL5.3.1", 531, 5, 3}, {"KEL4.4.1", 441, 4, 4}, {"KEL4.3.1", 431, 4, 3},
    {"KEL4.5.1", 451, 4, 5}, {"KEL3.4.1", 341, 3, 4}, {"KEL3.3.1", 331, 3, 3},
    {"KEL3.5.1", 351, 3, 5}, {"KEL3.6.1", 361, 3, 6},
};

constexpr int kMostLetters = 6;
constexpr int kFewestLetters = 3;

// As CxIsASCIIAlpha and CxIsASCIIDigit, without the call, since this is the path of each event.
constexpr bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool isSeverity(char c)
{
    return c == 'I' || c == 'W' || c == 'E';
}

int countLetters(const char *text)
{
    int count = 0;
    while (count < kMostLetters && isLetter(text[count]))
        ++count;
    return count;
}

bool hasDigits(const char *text, int count)
{
    for (int i = 0; i < count; ++i)
        if (!isDigit(text[i])) return false;
    return true;
}

bool fits(const Format &format, const char *text)
{
    return hasDigits(text + format.letters, format.digits) &&
           isSeverity(text[format.letters + format.digits]);
}

} // namespace

CxZMSIDInfo CxParseZMSID(const char *text)
{
    CxZMSIDInfo info = {"", 0, 0, "", '\0'};
    const int letters = text ? countLetters(text) : 0;
    if (letters < kFewestLetters) return info;
    for (const Format &format : kFormats) {
        if (format.letters != letters || !fits(format, text)) continue;
        info.formatName = format.name;
        info.formatNumber = format.number;
        info.length = format.length();
        std::memcpy(info.id, text, static_cast<std::size_t>(info.length));
        info.severity = info.id[info.length - 1];
        break;
    }
    return info;
}
