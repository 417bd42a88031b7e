// The candidates of a catalog search: which locales are tried, how a search path is split, and how
// its templates are filled in. Called by CatalogSearch.
#pragma once

#include <climits>
#include <cstddef>
#include <string_view>

namespace olvex::ucv {

// The locales that a search tries, in its order.
class CatalogLocales {
  public:
    static constexpr std::size_t kSize = 256; // of a locale's name; longer ones are cut

    CatalogLocales(int flags, const char *locale);
    CatalogLocales(const CatalogLocales &) = delete; // the names point into it
    CatalogLocales &operator=(const CatalogLocales &) = delete;

    const std::string_view *begin() const { return names_; }
    const std::string_view *end() const { return names_ + count_; }

  private:
    void add(std::string_view name);

    char locale_[kSize];
    char language_[kSize];
    std::string_view names_[4];
    std::size_t count_ = 0;
};

// Takes the first element off a search path. Elements end at ":" or ";", but not at a ":" that is
// their second character, as behind a drive letter.
std::string_view takeElement(std::string_view &path);

// A directory taken as it is, and behind it a template with "%N", "%L", "%l", "%t" and "%c" filled
// in.
class CatalogPath {
  public:
    // False when the path is too long.
    bool fill(std::string_view directory, std::string_view pattern, std::string_view name,
              std::string_view locale);

    void clear() { text_[length_ = 0] = '\0'; }
    const char *text() const { return text_; }
    bool operator==(const CatalogPath &other) const
    {
        return std::string_view(text_) == std::string_view(other.text_);
    }

  private:
    bool append(std::string_view text);

    char text_[PATH_MAX] = "";
    std::size_t length_ = 0;
};

} // namespace olvex::ucv
