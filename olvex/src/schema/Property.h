// What can be said about a property of a class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace olvex::schema {

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

// What more there is to say about a property.
struct Rules {
    std::int64_t least = INT64_MIN;
    const char *choices = nullptr;  // words between blanks
    const char *fallback = nullptr; // replaces an unusable value; null: the former value stays
    bool isRequired = false;
};

struct Property {
    const char *name;
    Type type;
    const char *initial; // what holds while nothing is set
    const char *help;    // one sentence
    Rules rules = {};
};

// The number that replaces an unusable value of that property.
template <std::size_t count>
consteval std::int32_t fallbackOf(const Property (&group)[count], std::string_view name)
{
    const Property *property = group;
    while (property->name != name)
        ++property; // an unknown name does not compile
    std::int32_t number = 0;
    for (const char digit : std::string_view(property->rules.fallback))
        number = number * 10 + (digit - '0');
    return number;
}

enum class Category { None, Logger, Filter, Handler, Formatter };

// A property's name as a template argument.
struct Name {
    char text[32] = {};

    // NOLINTNEXTLINE(google-explicit-constructor): written as a string literal
    consteval Name(const char *name)
    {
        for (int i = 0; name[i]; ++i) // a name that does not fit does not compile
            text[i] = name[i];
    }
};

// A value for each name, by which functions are told apart.
template <Name name>
struct Tag {};

template <const auto &group, std::size_t index>
inline constexpr Tag<Name(group[index].name)> tagOf;

} // namespace olvex::schema
