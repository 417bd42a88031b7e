// Which objects name which others.
#pragma once

#include <string>
#include <vector>

#include "config/Model.h"

namespace tools::config {

struct Reference {
    const Property *property;
    Found found;        // where it is set
    std::size_t offset; // in the value
    std::string target;
};

// The names of other objects in one setting.
std::vector<Reference> referencesIn(const Property &property, const Found &found);

// Those that an object of that name acts on, in the order of its class's properties.
std::vector<Reference> referencesOf(const Model &model, const std::string &name);

// Its listeners that are filters or handlers: those that get its events.
std::vector<Reference> listenersOf(const Model &model, const std::string &name);

} // namespace tools::config
