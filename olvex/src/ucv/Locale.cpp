// Locale names, and the environment variables that say where catalogs and tables are.
#include <olvex/Ucv.h>

#include <olvex/Memory.h>

#include "ucv/Handle.h"
#include "ucv/tables/Locales.h"
#include "util/CxProcess.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

using namespace olvex::ucv;

namespace {

using std::string_view;

constexpr std::size_t kLocaleSize = 32;
constexpr std::size_t kHeadSize = 6;

// The beginning of a text, up to `count` characters.
string_view head(string_view text, std::size_t count)
{
    return {text.data(), text.size() < count ? text.size() : count};
}

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isLetterOrDigit(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9');
}
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}
char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c & ~0x20) : c;
}

// Always 0, which is what these functions return.
int copyCut(string_view text, char *buffer, std::size_t size)
{
    if (!buffer || size == 0) return 0;
    const std::size_t count = text.size() < size ? text.size() : size - 1;
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return 0;
}

template <std::size_t Size>
const char *lookUp(const NamePair (&pairs)[Size], string_view name)
{
    for (const NamePair &pair : pairs)
        if (pair.name == name) return pair.target;
    return nullptr;
}

// The first six characters of a name, zeros behind its end.
struct Head {
    char at[kHeadSize + 1] = {};

    explicit Head(const char *name)
    {
        std::strncpy(at, name, kHeadSize);
        if (at[2] == '-') at[2] = '_';
    }

    bool isLanguage() const
    {
        return isLetter(at[0]) && isLetter(at[1]) && at[2] != '_' && !isLetterOrDigit(at[2]);
    }
    bool isLanguageAndTerritory() const
    {
        return isLetter(at[0]) && isLetter(at[1]) && at[2] == '_' && isLetter(at[3]) &&
               isLetter(at[4]) && !isLetterOrDigit(at[5]);
    }
};

// The entries of the table of platform locales for one language.
struct Group {
    const NamePair *first = nullptr;
    const NamePair *last = nullptr; // behind the group

    explicit Group(string_view locale)
    {
        const string_view language = head(locale, 2);
        for (const NamePair &pair : kPlatformLocales) {
            if (head(pair.name, 2) != language) continue;
            if (!first) first = &pair;
            last = &pair + 1;
        }
        // A group at the table's end is tried with its first name only.
        if (first && last == std::end(kPlatformLocales))
            fallbackEnd = first + 1;
        else
            fallbackEnd = last;
    }

    const NamePair *fallbackEnd = nullptr;
};

const char *tryLocales(int category, const NamePair *from, const NamePair *to,
                       const char *canonical)
{
    for (const NamePair *pair = from; pair != to; ++pair)
        if ((!canonical || pair->name == canonical) && std::setlocale(category, pair->target))
            return pair->target;
    return nullptr;
}

int setVariable(const char *name, const char *value)
{
    return value && setenv(name, value, 1) == 0 ? 0 : -1;
}

const char *orEmpty(const char *text)
{
    return text ? text : "";
}

} // namespace

int ucv_os_cs_name(char *buffer, size_t size)
{
    char name[kTableNameSize];
    return copyCut(makeTableName("OS", name) ? name : "", buffer, size);
}

int ucv_set_nlspath(const char *path)
{
    return setVariable("NLSPATH", path);
}

int ucv_prepend_nlspath(const char *path)
{
    if (!path) return -1;
    const char *old = ucv_get_nlspath();
    const std::size_t size = std::strlen(path) + std::strlen(old) + 2;
    auto *joined = static_cast<char *>(BaxMemoryMalloc(size));
    if (!joined) return -1;
    std::snprintf(joined, size, "%s:%s", path, old);
    const int result = ucv_set_nlspath(joined);
    BaxMemoryFree(joined);
    return result;
}

const char *ucv_get_nlspath(void)
{
    return orEmpty(cxTrustedEnv("NLSPATH"));
}

int ucv_set_dir(const char *directory)
{
    return setVariable("UCVDIR", directory);
}

const char *ucv_get_dir(void)
{
    return orEmpty(cxTrustedEnv("UCVDIR"));
}

int ucv_os_lang_name(char *buffer, size_t size)
{
    const char *language = CxProcessGetEnv("LANG");
    return copyCut(language ? language : "C", buffer, size);
}

int ucv_canonical_loc(const char *name, char *buffer, size_t size)
{
    if (!name) return copyCut("", buffer, size);
    if (const char *target = lookUp(kLocaleAliases, name)) return copyCut(target, buffer, size);
    Head first(name);
    if (first.isLanguage()) {
        const char language[] = {lower(first.at[0]), lower(first.at[1])};
        return copyCut({language, sizeof language}, buffer, size);
    }
    if (first.isLanguageAndTerritory()) {
        const char locale[] = {lower(first.at[0]), lower(first.at[1]), '_', upper(first.at[3]),
                               upper(first.at[4])};
        return copyCut({locale, sizeof locale}, buffer, size);
    }
    return copyCut(name, buffer, size);
}

int ucv_canonical_lang(const char *name, char *buffer, size_t size)
{
    char locale[kHeadSize];
    ucv_canonical_loc(name, locale, sizeof locale);
    const string_view language = head(locale, string_view(locale).find('_'));
    if (const char *target = lookUp(kLanguages, locale)) return copyCut(target, buffer, size);
    if (const char *target = lookUp(kLanguages, language)) return copyCut(target, buffer, size);
    return copyCut(language, buffer, size);
}

const char *ucv_setlocale(int category, const char *locale)
{
    if (!locale) return std::setlocale(category, nullptr);
    if (std::setlocale(category, locale)) return locale;
    char canonical[kHeadSize];
    ucv_canonical_loc(locale, canonical, sizeof canonical);
    const Group group(canonical);
    const char *name = tryLocales(category, group.first, group.last, canonical);
    if (!name) name = tryLocales(category, group.first, group.fallbackEnd, nullptr);
    if (name) return name;
    std::setlocale(category, "C");
    return "C";
}

char *ucv_loc_new(const char *name)
{
    auto *locale = static_cast<char *>(BaxMemoryCalloc(1, kLocaleSize));
    if (locale) ucv_canonical_loc(name, locale, kLocaleSize);
    return locale;
}

void ucv_loc_free(char *locale)
{
    BaxMemoryFree(locale);
}
