// Reads a properties file as the library does, but goes on after a mistake and knows where
// everything stands. A test compares it with the library's reader.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools::config {

// Both count from 1, columns in bytes.
struct Place {
    int line = 1;
    int column = 1;
};

enum class Severity { Advice, Warning, Error };

struct Finding {
    Severity severity;
    Place place;
    const char *code; // for programs: "bad-escape"
    std::string text;
};

struct Pair {
    std::string key;
    std::string value;
    Place place;               // of the key
    std::vector<Place> places; // of each byte of the value, and of its end
    bool isBroken = false;     // there is a mistake in it, so the value says nothing
    bool endsInBlank = false;  // one that is not escaped, so that it can be an oversight

    Place placeOf(std::size_t offset) const
    {
        return offset < places.size() ? places[offset] : places.back();
    }
};

struct Scan {
    std::vector<Pair> pairs;
    std::vector<Finding> findings;
    bool hasError = false;
    std::size_t pairsBeforeError = 0; // that the library has stored when it gives up
};

Scan scanProperties(std::string_view bytes);

} // namespace tools::config
