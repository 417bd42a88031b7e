// Which records are shown: those that fit everything that was asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "view/Record.h"

namespace tools::view {

struct Filter {
    std::optional<std::int64_t> since; // first millisecond that is shown
    std::optional<std::int64_t> until; // first one that is not any more
    Level least = Level::kNone;
    std::vector<std::string> ids;        // patterns with "*"
    std::vector<std::string> components; // patterns with "*"
    std::vector<std::string> threads;
    std::vector<std::string> texts; // parts of the text

    // True when the head of a record is not enough to decide.
    bool needsAll() const;

    bool accepts(const Record &record) const;
};

} // namespace tools::view
