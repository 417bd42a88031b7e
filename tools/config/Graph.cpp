// See Graph.h.
#include "config/Graph.h"

#include <algorithm>
#include <utility>

#include "config/Names.h"

namespace tools::config {

namespace {

bool isReference(Type type)
{
    return type == Type::Listeners || type == Type::Formatter || type == Type::Filter;
}

// What an object of a class that the program registers can be expected to have.
const ClassInfo *standInFor(const ObjectClass &objectClass)
{
    if (objectClass.info || objectClass.name.empty()) return objectClass.info;
    const auto found = std::ranges::find(classes(), objectClass.category, &ClassInfo::category);
    return found == classes().end() ? findClass("ovx_consolehandler") : &*found;
}

} // namespace

std::vector<Reference> referencesIn(const Property &property, const Found &found)
{
    std::vector<Reference> references;
    if (!isReference(property.type) || found.setting->pair->isBroken) return references;
    if (property.type != Type::Listeners)
        references.push_back({&property, found, 0, found.value()});
    else
        for (Word &word : splitNames(found.value()))
            references.push_back({&property, found, word.offset, std::move(word.text)});
    return references;
}

std::vector<Reference> referencesOf(const Model &model, const std::string &name)
{
    std::vector<Reference> references;
    const ClassInfo *info = standInFor(model.classOf(name));
    if (!info) return references;
    for (const Property *property : info->all())
        if (const Found found =
                isReference(property->type) ? model.inherit(name, property->name) : Found{})
            std::ranges::move(referencesIn(*property, found), std::back_inserter(references));
    return references;
}

std::vector<Reference> listenersOf(const Model &model, const std::string &name)
{
    std::vector<Reference> references = referencesOf(model, name);
    std::erase_if(references, [&](const Reference &reference) {
        const Category category = model.classOf(reference.target).category;
        return reference.property->type != Type::Listeners ||
               (category != Category::Filter && category != Category::Handler);
    });
    return references;
}

} // namespace tools::config
