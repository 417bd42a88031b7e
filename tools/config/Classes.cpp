// See Classes.h.
#include "config/Classes.h"

#include <algorithm>

#include "schema/Properties.h"

namespace tools::config {

namespace {

using namespace olvex::schema;

constexpr ClassInfo kClasses[] = {
#define OVX_CLASS(name, category, description, help, ...)                                          \
    {#name, Category::category, help, {__VA_ARGS__}},
#include "schema/classes.def"
#undef OVX_CLASS
};

constexpr const char *kTypeNames[] = {
    "text",     "class",    "boolean", "switch", "level",  "integer", "integer",
    "fraction", "number",   "mode",    "choice", "choice", "path",    "path",
    "program",  "code set", "names",   "name",   "name",   "key",
};

constexpr const char *kCategoryNames[] = {"object", "logger", "filter", "handler", "formatter"};

// What a value must be, in the order of Type; nullptr where more is to be said or nothing.
constexpr const char *kValues[] = {
    nullptr,
    "the name of a class",
    "true or false",
    "on, true, off or false",
    "FATAL, ERROR, WARN, INFO, DEBUG_MIN, DEBUG_MID, DEBUG_MAX, ALL, OFF or a number",
    "a 32-bit integer",
    "a 64-bit integer",
    "between 0 and 1",
    "a number",
    "up to four octal digits",
    nullptr,
    nullptr,
    "at most 255 bytes",
    "at most 255 bytes",
    "a path without characters that a shell takes for its own",
    "the name of a code set",
    "filters and handlers",
    "a formatter",
    "a filter",
    "a 32-bit integer other than 0, also in hexadecimal",
};

std::string choicesOf(const Property &property)
{
    std::string text = property.rules.choices;
    for (std::size_t blank = text.rfind(' '); blank != std::string::npos && blank > 0;
         blank = text.rfind(' ', blank - 1))
        text.replace(blank, 1, text.find(" or ") == std::string::npos ? " or " : ", ");
    return text;
}

} // namespace

const char *nameOf(Type type)
{
    return kTypeNames[static_cast<std::size_t>(type)];
}

const char *nameOf(Category category)
{
    return kCategoryNames[static_cast<std::size_t>(category)];
}

const Property *ClassInfo::find(std::string_view property) const
{
    for (const auto &rows : properties)
        for (const Property &row : rows)
            if (row.name == property) return &row;
    return nullptr;
}

std::vector<const Property *> ClassInfo::all() const
{
    std::vector<const Property *> every;
    for (const auto &rows : properties)
        for (const Property &row : rows)
            every.push_back(&row);
    return every;
}

std::span<const ClassInfo> classes()
{
    return kClasses;
}

const ClassInfo *findClass(std::string_view name)
{
    const auto found = std::ranges::find(kClasses, name, &ClassInfo::name);
    return found == std::end(kClasses) ? nullptr : found;
}

const ClassInfo *classWith(std::string_view property)
{
    for (const ClassInfo &info : kClasses)
        if (info.find(property)) return &info;
    return nullptr;
}

const Property *findProperty(std::string_view name)
{
    const ClassInfo *info = classWith(name);
    return info ? info->find(name) : nullptr;
}

std::string valuesOf(const Property &property)
{
    if (property.rules.choices) return choicesOf(property);
    if (property.rules.least != INT64_MIN) return std::to_string(property.rules.least) + " or more";
    const char *values = kValues[static_cast<std::size_t>(property.type)];
    return values ? values : "";
}

} // namespace tools::config
