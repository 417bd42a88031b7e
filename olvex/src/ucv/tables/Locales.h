// What the services know of locale names: aliases, the language that stands for others, and the
// platform's names for canonical ones.
#pragma once

#include <string_view>

namespace olvex::ucv {

struct NamePair {
    std::string_view name;
    const char *target;
};

// Old and other names, matched exactly.
inline constexpr NamePair kLocaleAliases[] = {
    {"C", "C"},   {"american", "C"},     {"ar_AA", "ar"},    {"Ar_AA", "ar"},
    {"cz", "cs"}, {"japanese", "ja_JP"}, {"Jp_JP", "ja_JP"}, {"su", "fi"},
};

// The locale in which a language's texts are found.
inline constexpr NamePair kLanguages[] = {
    {"C", "C"},      {"en", "C"},        {"fr", "fr_FR"}, {"ja", "ja_JP"},
    {"pt", "pt_BR"}, {"pt_BR", "pt_BR"}, {"zh", "zh_CN"}, {"zh_TW", "zh_TW"},
};

// Canonical name to the platform's, sorted by canonical name.
inline constexpr NamePair kPlatformLocales[] = {
    {"cs", "cz"},
    {"da", "da"},
    {"de", "de"},
    {"de_AT", "de_AT"},
    {"de_CH", "de_CH"},
    {"el", "el"},
    {"en", "C"},
    {"en_AU", "en_AU"},
    {"en_CA", "en_CA"},
    {"en_IE", "en_IE"},
    {"en_NZ", "en_NZ"},
    {"en_UK", "en_UK"},
    {"en_US", "en_US"},
    {"en_US", "en_US.UTF-8"},
    {"es", "es"},
    {"es_AR", "es_AR"},
    {"es_BO", "es_BO"},
    {"es_CL", "es_CL"},
    {"es_CO", "es_CO"},
    {"es_CR", "es_CR"},
    {"es_EC", "es_EC"},
    {"es_GT", "es_GT"},
    {"es_MX", "es_MX"},
    {"es_NI", "es_NI"},
    {"es_PA", "es_PA"},
    {"es_PE", "es_PE"},
    {"es_PY", "es_PY"},
    {"es_SV", "es_SV"},
    {"es_UY", "es_UY"},
    {"es_VE", "es_VE"},
    {"et", "et"},
    {"fi", "su"},
    {"fr", "fr"},
    {"fr_BE", "fr_BE"},
    {"fr_CA", "fr_CA"},
    {"fr_CH", "fr_CH"},
    {"hu", "hu"},
    {"it", "it"},
    {"ja", "ja"},
    {"ja", "ja_JP.PCK"},
    {"ja", "ja_JP.SJIS"},
    {"ko", "ko"},
    {"ko", "ko.UTF-8"},
    {"lt", "lt"},
    {"lv", "lv"},
    {"nl", "nl"},
    {"nl_BE", "nl_BE"},
    {"no", "no"},
    {"pl", "pl"},
    {"pt", "pt"},
    {"pt_BR", "pt_BR"},
    {"ru", "ru"},
    {"sv", "sv"},
    {"tr", "tr"},
    {"zh", "zh"},
    {"zh", "zh_CN"},
    {"zh_TW", "zh_TW"},
    {"zh_TW", "zh_TW.big5"},
    {"zh_TW", "zh_TW.BIG5"},
};

template <std::size_t Size>
constexpr bool isSorted(const NamePair (&pairs)[Size])
{
    for (std::size_t i = 1; i < Size; ++i)
        if (pairs[i].name < pairs[i - 1].name) return false;
    return true;
}
static_assert(isSorted(kPlatformLocales));

} // namespace olvex::ucv
