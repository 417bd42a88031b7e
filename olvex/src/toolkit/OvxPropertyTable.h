// How a class takes the change of a property. The names are those of a group of
// schema/Properties.h; what each change does is the class's `apply<"NAME">`:
//
//     template <schema::Name>
//     void apply(OvxObject *filter, const char *value, FilterVars &vars) = delete;
//     template <>
//     void apply<"mode">(OvxObject *filter, const char *value, FilterVars &vars) { ... }
//     constexpr auto kProperties = rowsOf<schema::kIdFilter>(
//         []<schema::Name name>(schema::Tag<name>) { return &apply<name>; });
//
// A property without such a function does not compile. Called with the API mutex held.
#pragma once

#include <array>
#include <utility>

#include "schema/Properties.h"
#include "toolkit/OvxObject.h"
#include "util/Memory.h"

namespace olvex {

template <class... Vars>
struct PropertyRow {
    const char *name;
    // `value` is null when the property has none or is absent.
    void (*apply)(OvxObject *object, const char *value, Vars &...vars);
};

template <const auto &properties, class FunctionOf>
constexpr auto rowsOf(FunctionOf functionOf)
{
    return [&]<std::size_t... I>(std::index_sequence<I...>)
    {
        return std::array{
            PropertyRow{properties[I].name, functionOf(schema::tagOf<properties, I>)}...};
    }
    (std::make_index_sequence<std::size(properties)>());
}

// Calls the function of that property; false when no row names it. The value is copied first, since
// the function can run code that sets the property again.
template <std::size_t count, class... Vars>
bool applyProperty(const std::array<PropertyRow<Vars...>, count> &rows, OvxObject *object,
                   const char *name, Vars &...vars)
{
    for (const PropertyRow<Vars...> &row : rows) {
        if (BaxStringCmp(name, row.name) != 0) continue;
        const Text value(BaxStringDup(peekProperty(object, name)));
        row.apply(object, value.get(), vars...);
        return true;
    }
    return false;
}

} // namespace olvex
