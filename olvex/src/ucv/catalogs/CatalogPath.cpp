// See CatalogPath.h.
#include "ucv/catalogs/CatalogPath.h"

#include <olvex/Catalog.h>
#include <olvex/Ucv.h>

#include <algorithm>
#include <cstring>

namespace olvex::ucv {

namespace {

using std::string_view;

// Beginnings and ends of a text. (string_view's own functions would want to throw.)
string_view head(string_view text, std::size_t count)
{
    return {text.data(), std::min(text.size(), count)};
}
string_view tail(string_view text, std::size_t from)
{
    from = std::min(text.size(), from);
    return {text.data() + from, text.size() - from};
}

// What stands behind `opener` in a locale's name, up to one of `closers`.
string_view partBehind(string_view locale, char opener, const char *closers)
{
    const std::size_t at = locale.find(opener);
    if (at == string_view::npos) return {};
    const string_view rest = tail(locale, at + 1);
    return head(rest, rest.find_first_of(closers));
}

string_view expansionOf(char letter, string_view name, string_view locale)
{
    switch (letter) {
    case 'N': return name;
    case 'L': return locale;
    case 'l': return head(locale, locale.find_first_of("_."));
    case 't': return partBehind(locale, '_', ".");
    default: return partBehind(locale, '.', "");
    }
}

bool isExpanded(string_view rest)
{
    return rest.size() > 1 && rest[0] == '%' &&
           string_view("NLltc").find(rest[1]) != string_view::npos;
}

} // namespace

CatalogLocales::CatalogLocales(int flags, const char *locale)
{
    ucv_canonical_loc(locale, locale_, sizeof locale_);
    ucv_canonical_lang(locale, language_, sizeof language_);
    const string_view canonical = locale_;
    add(canonical);
    if (!(flags & UCV_CAT_NO_LETTERS) && canonical.size() > 2) add(head(canonical, 2));
    if (!(flags & UCV_CAT_NO_LANGUAGE) && canonical != language_) add(language_);
    if (!(flags & UCV_CAT_NO_C)) add("C");
}

// A name that would lead into another directory is no locale.
void CatalogLocales::add(string_view name)
{
    if (name.find('/') == string_view::npos) names_[count_++] = name;
}

string_view takeElement(string_view &path)
{
    std::size_t end = 0;
    while (end < path.size() && path[end] != ';' && (path[end] != ':' || end == 1))
        ++end;
    const string_view element = head(path, end);
    path = tail(path, end + 1);
    return element;
}

bool CatalogPath::append(string_view text)
{
    if (text.size() >= sizeof text_ - length_) return false;
    if (!text.empty()) std::memcpy(text_ + length_, text.data(), text.size());
    length_ += text.size();
    text_[length_] = '\0';
    return true;
}

bool CatalogPath::fill(string_view directory, string_view pattern, string_view name,
                       string_view locale)
{
    clear();
    bool fits = append(directory);
    while (fits && !pattern.empty()) {
        const bool expanded = isExpanded(pattern);
        fits = append(expanded ? expansionOf(pattern[1], name, locale) : head(pattern, 1));
        pattern = tail(pattern, expanded ? 2 : 1);
    }
    return fits;
}

} // namespace olvex::ucv
