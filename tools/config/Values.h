// Says what the classes would make of a value that is not what its property needs.
#pragma once

#include <optional>
#include <string>

#include "config/Classes.h"
#include "config/Scanner.h"

namespace tools::config {

struct Complaint {
    const char *code;
    std::string text;
};

// Nothing for a value that is taken as it stands. Names of objects and classes are not looked at.
std::optional<Complaint> complainAbout(const Property &property, const Pair &pair);

} // namespace tools::config
