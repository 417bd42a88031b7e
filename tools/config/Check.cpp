// See Check.h: classes, properties and values.
#include "config/Check.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "config/Names.h"
#include "config/Values.h"

namespace tools::config {

namespace {

std::string quote(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

class SettingsChecker {
  public:
    SettingsChecker(const Model &model, Report &report) : model_(model), report_(report) {}

    void check()
    {
        for (const Configuration *configuration : model_.all()) {
            for (const Setting &setting : configuration->settings)
                checkSetting(*configuration, setting);
            checkClassIsFound(*configuration);
            checkCombinations(*configuration);
            adviseOnSharedLog(*configuration);
        }
    }

  private:
    void checkSetting(const Configuration &configuration, const Setting &setting)
    {
        if (setting.property == "className") return checkClass(configuration, setting);
        if (isKnown(configuration, setting.property)) return checkValue(setting);
        warnAt(setting, "unknown-property", describeUnknown(configuration, setting.property));
    }

    std::string describeUnknown(const Configuration &configuration, const std::string &property)
    {
        const ClassInfo *info = classFor(configuration);
        if (!info) return "no class has a property " + quote(property) + hintAt(nullptr, property);
        std::string text =
            std::string("class ") + info->name + " has no property " + quote(property);
        const ClassInfo *other = classWith(property);
        return text +
               (other ? std::string("; it is one of ") + other->name : hintAt(info, property));
    }

    // The class of the object itself, or one below that stands for all.
    const ClassInfo *classFor(const Configuration &configuration) const
    {
        if (const ClassInfo *own = model_.classOf(configuration.name).info) return own;
        return configuration.usedBy
                   ? &classes()[static_cast<std::size_t>(std::countr_zero(configuration.usedBy))]
                   : nullptr;
    }

    static std::string hintAt(const ClassInfo *only, std::string_view property)
    {
        NearestName nearest(property);
        for (const ClassInfo &info : classes())
            if (!only || only == &info)
                for (const Property *known : info.all())
                    nearest.offer(known->name);
        return nearest.hint();
    }

    void checkClass(const Configuration &configuration, const Setting &setting)
    {
        const std::string &name = setting.pair->value;
        if (isOfToolkit(configuration.name) && name != model_.classOf(configuration.name).name)
            warnAt(setting, "fixed-class",
                   quote(configuration.name) + " is always of class " +
                       model_.classOf(configuration.name).name);
        else if (!setting.pair->isBroken && !findClass(name) &&
                 !model_.hostClasses().contains(name))
            addAt(setting, setting.pair->placeOf(0), Severity::Error, "unknown-class",
                  describeUnknownClass(name));
    }

    std::string describeUnknownClass(const std::string &name) const
    {
        NearestName nearest(name);
        for (const ClassInfo &info : classes())
            nearest.offer(info.name);
        for (const auto &[hostClass, category] : model_.hostClasses())
            nearest.offer(hostClass);
        return "there is no class " + quote(name) + nearest.hint();
    }

    void checkValue(const Setting &setting)
    {
        const Property *property = findProperty(setting.property);
        if (!property || setting.pair->isBroken) return;
        if (const auto complaint = complainAbout(*property, *setting.pair))
            addAt(setting, setting.pair->placeOf(0), Severity::Warning, complaint->code,
                  setting.property + ": " + complaint->text);
    }

    void checkClassIsFound(const Configuration &configuration)
    {
        if (model_.breakOfClass(configuration.name) != &configuration) return;
        const Found found = model_.inherit(configuration.name, "className");
        failAt(configuration.settings.front(), "class-not-inherited",
               quote(configuration.name) + " stands before " + quote(found.owner->name) +
                   " and does not inherit its class; let it follow");
    }

    // Settings that say nothing without, or beside, another one.
    void checkCombinations(const Configuration &configuration)
    {
        const Setting *bytes = configuration.find("maxFileBytes");
        const Found files = model_.inherit(configuration.name, "maxFiles");
        // NOLINTNEXTLINE(cert-err34-c): what is no number is reported elsewhere
        if (bytes && files && std::atoi(files.value().c_str()) == 1)
            warnAt(*bytes, "no-effect", "a file is never rolled over while maxFiles is 1");
        checkPartner(configuration, "zipFileName", "zipCmdPath", "nothing is copied");
        checkPartner(configuration, "zipCmdPath", "zipFileName", "files are copied one by one");
    }

    // What is described as the default loses records, so it should be meant.
    void adviseOnSharedLog(const Configuration &configuration)
    {
        const Setting *className = configuration.find("className");
        if (!className || className->pair->value != "ovx_multiproc_filehandler") return;
        const Found files = model_.inherit(configuration.name, "maxFiles");
        // NOLINTNEXTLINE(cert-err34-c): what is no number is reported elsewhere
        const bool isRolled = !files || std::atoi(files.value().c_str()) != 1;
        if (isRolled && !model_.inherit(configuration.name, "emptyUncopied"))
            addAt(*className, className->pair->place, Severity::Advice, "may-lose",
                  "a rollover empties the log even when its copy failed; emptyUncopied=false "
                  "keeps the records");
    }

    void checkPartner(const Configuration &configuration, const char *property, const char *partner,
                      const char *consequence)
    {
        const Setting *setting = configuration.find(property);
        if (!setting || setting->pair->value.empty()) return;
        if (!isKnown(configuration, property) || model_.inherit(configuration.name, partner))
            return;
        warnAt(*setting, "no-effect",
               std::string(property) + " needs " + partner + ": without it " + consequence);
    }

    void warnAt(const Setting &setting, const char *code, std::string text)
    {
        addAt(setting, setting.pair->place, Severity::Warning, code, std::move(text));
    }

    void failAt(const Setting &setting, const char *code, std::string text)
    {
        addAt(setting, setting.pair->place, Severity::Error, code, std::move(text));
    }

    void addAt(const Setting &setting, Place place, Severity severity, const char *code,
               std::string text)
    {
        report_.add({setting.file, severity, place, code, std::move(text)});
    }

    const Model &model_;
    Report &report_;
};

} // namespace

void checkSettings(const Model &model, Report &report)
{
    SettingsChecker(model, report).check();
}

} // namespace tools::config
