// Texts in code sets, and files as a whole.
#pragma once

#include <olvex/Ucv.h>

#include <memory>
#include <string>
#include <string_view>

namespace tools::catalog {

// A code set by name; "" is UTF-8.
class CodeSet {
  public:
    // Throws std::runtime_error when there is no code set of that name.
    explicit CodeSet(const std::string &name);

    std::string toUtf8(const std::string &bytes) const;

  private:
    struct Free {
        void operator()(uc_ch_t *handle) const { ucv_cs_free(handle); }
    };
    std::unique_ptr<uc_ch_t, Free> handle_; // none for UTF-8
};

// How many bytes the first character of a text has; 0 when it is not UTF-8.
std::size_t utf8Length(std::string_view text);

// Throws std::runtime_error with a sentence for the user.
std::string readFile(const std::string &path);

} // namespace tools::catalog
