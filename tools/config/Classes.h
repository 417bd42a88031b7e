// The one table of the built-in classes and what can be said about their properties. `olvex config`
// prints it and checks files by it, docs/configuration.md is made from it, and a test compares it
// with the library.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tools::config {

// What a value must be, and therefore how it is checked.
enum class Type {
    Text,
    Class,
    Boolean,   // true or false
    Switch,    // on, true, off or false
    Level,     // a level's name or a number
    Integer,   // 32 bits
    Long,      // 64 bits
    Fraction,  // between 0 and 1, both excluded
    Number,    // with or without a fraction
    Mode,      // up to four octal digits
    Choice,    // one of the words in `choices`
    AnyCase,   // the same in any case
    Path,      // at most 255 bytes
    LogFile,   // a path whose name gets a number when the file is rolled over
    Program,   // a path without characters that a shell would take for its own
    CodeSet,   // the name of a code set
    Listeners, // names of filters and handlers
    Formatter, // the name of a formatter
    Filter,    // the name of a filter
    Key,       // the key of a semaphore
};

// "integer", "level": what users call the type.
const char *nameOf(Type type);

// What more there is to say about a property.
struct Rules {
    std::int64_t least = INT64_MIN;
    const char *choices = nullptr; // words between blanks
    const char *fallback =
        nullptr; // taken for a value without use; nullptr: what held before stays
    bool isRequired = false;
};

struct Property {
    const char *name;
    Type type;
    const char *initial; // what holds while nothing is set
    const char *help;    // one sentence
    Rules rules = {};
};

enum class Category { None, Logger, Filter, Handler, Formatter };

const char *nameOf(Category category);

struct ClassInfo {
    const char *name;
    Category category;
    const char *description;                 // the library's; nullptr when it has none
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
