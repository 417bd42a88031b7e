// See Model.h.
#include "config/Model.h"

#include <algorithm>
#include <utility>

namespace tools::config {

namespace {

struct ToolkitObject {
    std::string_view name;
    const char *className;
};

// What the toolkit makes for itself, of a class that no file changes.
constexpr ToolkitObject kToolkitObjects[] = {
    {"olvex.errorLogger", "ovx_basiclogger"},
    {"olvex.stderrHandler", "ovx_stderrhandler"},
    {"olvex.defaultFormatter", "ovx_basicformatter"},
    {"olvex.pdMsgIdFormatter", "ovx_xmlformatter"},
    {"msgFormatter", "ovx_xmlformatter"},
};

const ToolkitObject *findToolkitObject(std::string_view name)
{
    const auto found = std::ranges::find(kToolkitObjects, name, &ToolkitObject::name);
    return found == std::end(kToolkitObjects) ? nullptr : found;
}

Problem problemAt(const Setting &setting, Severity severity, const char *code, std::string text)
{
    return {setting.file, severity, setting.pair->place, code, std::move(text)};
}

// Why the library gives up at a key; empty when it does not.
std::string faultOf(const std::string &key, std::size_t dot)
{
    if (dot == std::string::npos) return "has no dot between an object and a property";
    if (dot == 0) return "names no object before its last dot";
    if (dot + 1 == key.size()) return "names no property behind its last dot";
    return dot == 1 && key[0] == '/' ? "names '/', which is no object" : "";
}

constexpr std::uint32_t kOtherClass = 1u << 31;

std::uint32_t bitOf(const ObjectClass &objectClass)
{
    if (objectClass.name.empty()) return 0;
    if (!objectClass.info) return kOtherClass;
    return 1u << (objectClass.info - classes().data());
}

} // namespace

bool isOfToolkit(std::string_view name)
{
    return findToolkitObject(name) != nullptr;
}

bool isKnown(const Configuration &configuration, std::string_view property)
{
    if (configuration.usedBy & kOtherClass) return true;
    if (configuration.usedBy == 0) return classWith(property) != nullptr;
    for (std::size_t i = 0; i < classes().size(); ++i)
        if ((configuration.usedBy >> i & 1) && classes()[i].find(property)) return true;
    return false;
}

const Setting *Configuration::find(std::string_view property) const
{
    const auto found = places.find(property);
    return found == places.end() ? nullptr : &settings[found->second];
}

void Model::add(std::size_t file, const Scan &scan, Report &report)
{
    for (const Pair &pair : scan.pairs)
        addPair(file, pair, report);
}

void Model::addPair(std::size_t file, const Pair &pair, Report &report)
{
    const std::size_t dot = pair.key.rfind('.');
    const std::string fault = faultOf(pair.key, dot);
    if (fault.empty())
        store(pair.key.substr(0, dot), {pair.key.substr(dot + 1), &pair, file}, report);
    else
        report.add(
            {file, Severity::Error, pair.place, "bad-key", "the key '" + pair.key + "' " + fault});
}

// The last value counts; the place of the first stays.
void Model::store(const std::string &name, Setting setting, Report &report)
{
    Configuration &configuration = fetch(name);
    const std::string_view property =
        std::string_view(setting.pair->key).substr(setting.pair->key.rfind('.') + 1);
    const auto [place, isNew] =
        configuration.places.try_emplace(property, configuration.settings.size());
    if (isNew) {
        configuration.settings.push_back(std::move(setting));
        return;
    }
    Setting &known = configuration.settings[place->second];
    const bool isSameFile = known.file == setting.file;
    report.add(problemAt(known, Severity::Warning, isSameFile ? "set-twice" : "shadowed",
                         "'" + known.pair->key + "' is set again in " +
                             placeText(report.pathOf(setting.file), setting.pair->place) +
                             ", and that value counts"));
    known = std::move(setting);
}

Configuration &Model::fetch(const std::string &name)
{
    const auto [place, isNew] = configurations_.try_emplace(name);
    if (isNew) {
        place->second.name = name;
        place->second.isLate = !ancestorOf(name);
    }
    return place->second;
}

void Model::finish()
{
    for (auto &[name, configuration] : configurations_) {
        configuration.parent = ancestorOf(name);
        configuration.isLate = configuration.isLate && configuration.parent;
        all_.push_back(&configuration);
    }
    for (auto place = configurations_.rbegin(); place != configurations_.rend(); ++place) {
        Configuration &configuration = place->second;
        configuration.usedBy |= bitOf(classOf(configuration.name));
        if (configuration.parent)
            configurations_.find(configuration.parent->name)->second.usedBy |= configuration.usedBy;
    }
}

const Configuration *Model::find(std::string_view name) const
{
    const auto found = configurations_.find(name);
    return found == configurations_.end() ? nullptr : &found->second;
}

const Configuration *Model::ancestorOf(std::string_view name) const
{
    for (auto dot = name.rfind('.'); dot != std::string_view::npos; dot = name.rfind('.')) {
        name = name.substr(0, dot);
        if (const Configuration *ancestor = find(name)) return ancestor;
    }
    return nullptr;
}

const Configuration *Model::nearest(std::string_view name) const
{
    const Configuration *own = find(name);
    return own ? own : ancestorOf(name);
}

Found Model::inherit(std::string_view name, std::string_view property) const
{
    for (const Configuration *owner = nearest(name); owner; owner = owner->parent)
        if (const Setting *setting = owner->find(property)) return {owner, setting};
    return {};
}

ObjectClass Model::classOf(std::string_view name) const
{
    ObjectClass result;
    if (const ToolkitObject *object = findToolkitObject(name))
        result.name = object->className;
    else if (const Found found = inherit(name, "className"))
        result.name = found.value();
    result.info = findClass(result.name);
    const auto host = hostClasses_.find(result.name);
    if (result.info)
        result.category = result.info->category;
    else if (host != hostClasses_.end())
        result.category = host->second;
    else
        result.isUnknown = !result.name.empty();
    return result;
}

const Configuration *Model::breakOfClass(std::string_view name) const
{
    if (isOfToolkit(name)) return nullptr;
    const Configuration *late = nullptr;
    for (const Configuration *owner = nearest(name); owner; owner = owner->parent) {
        if (owner->find("className")) return late;
        if (!late && owner->isLate) late = owner;
    }
    return nullptr;
}

} // namespace tools::config
