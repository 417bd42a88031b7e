// Names that are nearly right, and lists of names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools::config {

struct Word {
    std::size_t offset;
    std::string text;
};

// The names in a list, which stand between blanks.
std::vector<Word> splitNames(std::string_view list);

// Collects candidates and keeps the one that is nearest to a name.
class NearestName {
  public:
    explicit NearestName(std::string_view name);

    void offer(std::string_view candidate);

    // "; did you mean 'x'?", or nothing when no candidate is near.
    std::string hint() const;

  private:
    std::string name_;
    std::string best_;
    std::size_t distance_;
};

} // namespace tools::config
