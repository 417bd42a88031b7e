// See Names.h.
#include "config/Names.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace tools::config {

namespace {

constexpr const char *kBlanks = " \t\r\n\f\v";
constexpr std::size_t kLongestName = 100; // comparing longer ones would take too long

char lower(char byte)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
}

// How many bytes are to be added, dropped or changed, whatever their case.
std::size_t distanceOf(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (lower(a[i]) != lower(b[j]));
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::vector<Word> splitNames(std::string_view list)
{
    std::vector<Word> words;
    std::size_t end = 0;
    for (;;) {
        const std::size_t begin = list.find_first_not_of(kBlanks, end);
        if (begin == std::string_view::npos) return words;
        end = std::min(list.find_first_of(kBlanks, begin), list.size());
        words.push_back({begin, std::string(list.substr(begin, end - begin))});
    }
}

NearestName::NearestName(std::string_view name) : name_(name), distance_(name.size() / 3 + 1) {}

void NearestName::offer(std::string_view candidate)
{
    const std::size_t longer = std::max(candidate.size(), name_.size());
    const std::size_t shorter = std::min(candidate.size(), name_.size());
    if (longer > kLongestName || longer - shorter >= distance_ || candidate == name_) return;
    const std::size_t distance = distanceOf(name_, candidate);
    if (distance >= distance_) return;
    distance_ = distance;
    best_ = candidate;
}

std::string NearestName::hint() const
{
    return best_.empty() ? "" : "; did you mean '" + best_ + "'?";
}

} // namespace tools::config
