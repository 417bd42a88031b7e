// Comparing a translation with the source that it translates.
#pragma once

#include "catalog/Source.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tools::catalog {

// What the placeholders of a text take: the conversion ("s", "ld") by argument, counted from 1.
struct Placeholders {
    std::map<int, std::string> arguments;
    std::string words;   // the text without them
    std::string problem; // empty when all is well
};

Placeholders readPlaceholders(std::string_view text);

// What is wrong with a translation, each with file, line and column. `allowSame` accepts texts that
// are those of the base.
std::vector<std::string> checkTranslation(const Source &base, const Source &translation,
                                          bool allowSame);

} // namespace tools::catalog
