// The messages of a catalog: what a source says and a catalog file holds.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace tools::catalog {

// Where something stands in a source; both count from 1, columns in characters.
struct Place {
    int line = 1;
    int column = 1;
};

struct Message {
    std::string text; // UTF-8
    Place place;
};

// Set and number.
using Key = std::pair<std::uint32_t, std::uint32_t>;
using Messages = std::map<Key, Message>;

} // namespace tools::catalog
