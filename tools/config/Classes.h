// The library's classes and their properties, as `olvex config` prints them and checks files by
// them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "schema/Property.h"

namespace tools::config {

using olvex::schema::Category;
using olvex::schema::Property;
using olvex::schema::Type;

// "integer", "level": what users call the type.
const char *nameOf(Type type);

const char *nameOf(Category category);

struct ClassInfo {
    const char *name;
    Category category;
    const char *help;                        // one sentence
    std::span<const Property> properties[6]; // of its own, and shared with other classes

    const Property *find(std::string_view property) const;
    std::vector<const Property *> all() const;
};

// In the library's order.
std::span<const ClassInfo> classes();

const ClassInfo *findClass(std::string_view name);

// The property of that name in whichever class has one.
const Property *findProperty(std::string_view name);

// The first class that has the property.
const ClassInfo *classWith(std::string_view property);

// "true, false", "1 or more", or what else the value must be, for people.
std::string valuesOf(const Property &property);

} // namespace tools::config
