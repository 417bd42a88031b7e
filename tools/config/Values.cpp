// See Values.h. A check for each type of value; they convert as the library does.
#include "config/Values.h"

#include <olvex/Level.h>
#include <olvex/Ucv.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace tools::config {

namespace {

constexpr std::size_t kLongestPath = 255;

using Answer = std::optional<Complaint>;

std::string quote(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

// What becomes of a value that cannot be used.
std::string consequence(const Property &property)
{
    if (!property.rules.fallback) return "it is ignored";
    return std::string(property.rules.fallback) + " is taken instead";
}

Answer refuse(const Property &property, std::string_view value)
{
    return Complaint{"bad-value",
                     quote(value) + " is not " + valuesOf(property) + "; " + consequence(property)};
}

Answer takePart(std::string_view value, const std::string &part)
{
    return Complaint{"cut-value", "only the beginning of " + quote(value) + " is read, as " + part};
}

bool isBlankText(const char *text)
{
    return text[std::strspn(text, " \t\r\n\f\v")] == '\0';
}

Answer acceptAll(const Property &, const Pair &)
{
    return std::nullopt;
}

Answer checkBoolean(const Property &property, const Pair &pair)
{
    const char *value = pair.value.c_str();
    if (strcasecmp(value, "true") == 0 || strcasecmp(value, "false") == 0) return std::nullopt;
    return refuse(property, value);
}

Answer checkSwitch(const Property &property, const Pair &pair)
{
    const char *value = pair.value.c_str();
    if (strcasecmp(value, "on") == 0 || strcasecmp(value, "off") == 0) return std::nullopt;
    return checkBoolean(property, pair);
}

// A number, or a name of which the value is a longer form ("warning").
Answer checkLevel(const Property &, const Pair &pair)
{
    const char *value = pair.value.c_str();
    if (!*value) return Complaint{"bad-value", "the level is empty; INFO is taken instead"};
    char *end = nullptr;
    const long number = std::strtol(value, &end, 10);
    if (end != value)
        return isBlankText(end) ? std::nullopt : takePart(value, std::to_string(number));
    if (!isBlankText(value) && OvxGetLevelFromString(value) != OVX_LEVEL_NONE) return std::nullopt;
    return Complaint{"bad-value", "there is no level " + quote(value) + "; everything passes"};
}

Answer checkWhole(const Property &property, const Pair &pair, long long least, long long most)
{
    const char *value = pair.value.c_str();
    char *end = nullptr;
    errno = 0;
    const long long number = std::strtoll(value, &end, 10);
    if (end == value) return refuse(property, value);
    if (number < property.rules.least) return refuse(property, value);
    if (!isBlankText(end)) return takePart(value, std::to_string(number));
    const long long taken = std::clamp(number, least, most);
    if (errno == 0 && taken == number) return std::nullopt;
    return Complaint{"out-of-range",
                     quote(value) + " is out of range; " + std::to_string(taken) + " is taken"};
}

Answer checkInteger(const Property &property, const Pair &pair)
{
    return checkWhole(property, pair, INT32_MIN, INT32_MAX);
}

// A number in hexadecimal must be the whole text, or its 0 alone is read.
Answer checkKey(const Property &property, const Pair &pair)
{
    const char *value = pair.value.c_str();
    const char *digits = value + std::strspn(value, " \t\r\n\f\v") + 2;
    char *end = nullptr;
    const bool isHexadecimal = strncasecmp(digits - 2, "0x", 2) == 0 && std::isxdigit(*digits);
    if (isHexadecimal) {
        errno = 0;
        const unsigned long long key = std::strtoull(digits, &end, 16);
        if (key > 0 && key <= UINT32_MAX && isBlankText(end)) return std::nullopt;
    }
    if (std::strtoll(value, &end, 10) == 0) return refuse(property, value);
    return checkInteger(property, pair);
}

Answer checkLong(const Property &property, const Pair &pair)
{
    return checkWhole(property, pair, INT64_MIN, INT64_MAX);
}

// As the library scans: it refuses the beginnings of numbers of which strtod takes a part.
// NOLINTBEGIN(cert-err34-c)
bool scanNumber(const char *text, double &number, int &length)
{
    return std::sscanf(text, "%lf%n", &number, &length) == 1;
}
// NOLINTEND(cert-err34-c)

Answer checkNumber(const Property &property, const Pair &pair)
{
    const char *value = pair.value.c_str();
    double number = 0;
    int length = 0;
    if (!scanNumber(value, number, length)) return refuse(property, value);
    if (isBlankText(value + length)) return std::nullopt;
    return takePart(value, std::string(value, static_cast<std::size_t>(length)));
}

Answer checkFraction(const Property &property, const Pair &pair)
{
    double number = 0;
    int length = 0;
    const bool isNumber = scanNumber(pair.value.c_str(), number, length);
    if (!isNumber || !(number > 0 && number < 1)) return refuse(property, pair.value);
    return checkNumber(property, pair);
}

Answer checkMode(const Property &property, const Pair &pair)
{
    const char *value = pair.value.c_str();
    unsigned mode = 0;
    int length = 0;
    // Four digits are within range. NOLINTNEXTLINE(cert-err34-c)
    if (std::sscanf(value, "%4o%n", &mode, &length) != 1) return refuse(property, value);
    if (isBlankText(value + length)) return std::nullopt;
    char text[16];
    std::snprintf(text, sizeof text, "0%o", mode & 07777);
    return takePart(value, text);
}

bool isAmong(const char *choices, std::string_view value, bool isAnyCase)
{
    const std::string all = std::string(" ") + choices + ' ';
    const std::string word = ' ' + std::string(value) + ' ';
    if (value.empty() || value.find(' ') != std::string_view::npos) return false;
    return isAnyCase ? strcasestr(all.c_str(), word.c_str()) != nullptr
                     : all.find(word) != std::string::npos;
}

Answer checkChoice(const Property &property, const Pair &pair)
{
    const bool isAnyCase = property.type == Type::AnyCase;
    if (isAmong(property.rules.choices, pair.value, isAnyCase)) return std::nullopt;
    return refuse(property, pair.value);
}

Answer checkPath(const Property &property, const Pair &pair)
{
    if (pair.value.empty())
        return Complaint{"bad-value", "the path is empty; " + consequence(property)};
    if (pair.value.size() > kLongestPath)
        return Complaint{"bad-value", "the path has more than 255 bytes and cannot be used"};
    if (pair.endsInBlank)
        return Complaint{"trailing-blank", "the blanks at the end of the line belong to the path"};
    return std::nullopt;
}

// The number of an older file goes between the base name and the last dot.
Answer checkLogFile(const Property &property, const Pair &pair)
{
    if (Answer answer = checkPath(property, pair)) return answer;
    const std::string &path = pair.value;
    const std::size_t dot = path.rfind('.'), slash = path.find_last_of("/\\");
    if (dot != std::string::npos && slash != std::string::npos && dot < slash)
        return Complaint{"odd-name", "what follows the last dot, " + quote(path.substr(dot + 1)) +
                                         ", is taken for the extension, though it holds a '/'"};
    const std::string base = path.substr(0, dot);
    if (base.empty() || !std::isdigit(static_cast<unsigned char>(base.back()))) return std::nullopt;
    return Complaint{"odd-name", "a '_' is put behind the digit, since numbers mark older files: " +
                                     base + '_' + path.substr(base.size())};
}

bool isSafe(char byte)
{
    return std::isalnum(static_cast<unsigned char>(byte)) || std::strchr("_ \"'%+,-./:=@\\~", byte);
}

Answer checkProgram(const Property &property, const Pair &pair)
{
    const bool isSafePath = std::ranges::all_of(pair.value, isSafe);
    return pair.value.empty() || isSafePath ? checkPath(property, pair)
                                            : refuse(property, pair.value);
}

Answer checkCodeSet(const Property &property, const Pair &pair)
{
    uc_ch_t *handle = ucv_cs_new(pair.value.c_str());
    if (!handle) return refuse(property, pair.value);
    ucv_cs_free(handle);
    return std::nullopt;
}

using Check = Answer (*)(const Property &, const Pair &);

// In the order of Type.
constexpr Check kChecks[] = {
    acceptAll,     acceptAll,    checkBoolean, checkSwitch, checkLevel,  checkInteger, checkLong,
    checkFraction, checkNumber,  checkMode,    checkChoice, checkChoice, checkPath,    checkLogFile,
    checkProgram,  checkCodeSet, acceptAll,    acceptAll,   acceptAll,   checkKey,
};

} // namespace

std::optional<Complaint> complainAbout(const Property &property, const Pair &pair)
{
    return kChecks[static_cast<std::size_t>(property.type)](property, pair);
}

} // namespace tools::config
