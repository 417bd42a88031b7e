// See Check.h: names of other objects.
#include <algorithm>
#include <map>
#include <set>

#include "config/Check.h"
#include "config/Graph.h"
#include "config/Names.h"

namespace tools::config {

namespace {

constexpr std::size_t kMostComparisons =
    1'000'000;                         // of names that lead nowhere with those there are
constexpr std::size_t kMostSteps = 20; // of a circle that are named

std::string quote(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

class Collector {
  public:
    Collector(const Model &model, Report &report) : model_(model), report_(report) {}

  protected:
    void addAt(const Reference &reference, Severity severity, const char *code, std::string text)
    {
        const Setting &setting = *reference.found.setting;
        report_.add({setting.file, severity, setting.pair->placeOf(reference.offset), code,
                     setting.property + ": " + std::move(text)});
    }

    void warnAt(const Setting &setting, const char *code, std::string text)
    {
        report_.add({setting.file, Severity::Warning, setting.pair->place, code, std::move(text)});
    }

    const Model &model_;
    Report &report_;
};

// Whether each name leads to an object that can do what is asked of it.
class TargetChecker : Collector {
  public:
    using Collector::Collector;

    void check()
    {
        for (const Configuration *configuration : model_.all())
            for (const Setting &setting : configuration->settings)
                checkTargets({configuration, &setting});
    }

  private:
    void checkTargets(const Found &found)
    {
        const Property *property = findProperty(found.setting->property);
        if (!property || !isKnown(*found.owner, property->name)) return;
        for (const Reference &reference : referencesIn(*property, found))
            checkTarget(reference);
    }

    void checkTarget(const Reference &reference)
    {
        const ObjectClass target = model_.classOf(reference.target);
        if (target.name.empty())
            addAt(reference, Severity::Error, "leads-nowhere", describeMissing(reference.target));
        else if (target.category != Category::None &&
                 !fits(reference.property->type, target.category))
            addAt(reference, Severity::Error, "wrong-category", describeMisfit(reference, target));
    }

    static bool fits(Type type, Category category)
    {
        if (type == Type::Formatter) return category == Category::Formatter;
        const bool isHandler = type == Type::Listeners && category == Category::Handler;
        return isHandler || category == Category::Filter;
    }

    std::string describeMissing(const std::string &name)
    {
        if (name.empty()) return "the name is empty";
        if (model_.find(name)) return "the object " + quote(name) + " has no class";
        NearestName nearest(name);
        if (model_.all().size() <= comparisonsLeft_) {
            comparisonsLeft_ -= model_.all().size();
            for (const Configuration *configuration : model_.all())
                nearest.offer(configuration->name);
        }
        return "there is no object " + quote(name) + nearest.hint();
    }

    static std::string describeMisfit(const Reference &reference, const ObjectClass &target)
    {
        const char *wanted = reference.property->type == Type::Formatter ? "a formatter"
                             : reference.property->type == Type::Filter  ? "a filter"
                                                                         : "a filter or handler";
        return quote(reference.target) + " is a " + nameOf(target.category) + " (" + target.name +
               "), not " + wanted;
    }

    std::size_t comparisonsLeft_ = kMostComparisons;
};

// Walks along the listeners, without recursion, and reports each step back onto the path.
class CircleFinder : Collector {
  public:
    using Collector::Collector;

    void check()
    {
        for (const Configuration *configuration : model_.all())
            walk(configuration->name);
    }

  private:
    struct Step {
        std::string name;
        std::vector<Reference> listeners;
        std::size_t next = 0;
    };

    void walk(const std::string &start)
    {
        enter(start);
        while (!path_.empty()) {
            Step &step = path_.back();
            if (step.next == step.listeners.size())
                leave();
            else
                follow(step.listeners[step.next++]);
        }
    }

    void enter(const std::string &name)
    {
        if (!seen_.insert(name).second) return;
        onPath_.try_emplace(name, path_.size());
        path_.push_back({name, listenersOf(model_, name)});
    }

    void leave()
    {
        onPath_.erase(path_.back().name);
        path_.pop_back();
    }

    // Entering changes the path, and with it where the reference lies.
    void follow(const Reference &reference)
    {
        const std::string target = reference.target;
        if (onPath_.contains(target))
            addAt(reference, Severity::Warning, "circle", describe(reference));
        enter(target);
    }

    std::string describe(const Reference &reference) const
    {
        std::string text = "events come back to " + quote(reference.target) + ": ";
        const std::size_t first = onPath_.at(reference.target);
        const std::size_t last = path_.size() - 1;
        for (std::size_t step = first; step < last && step < first + kMostSteps; ++step)
            text += path_[step].name + " -> ";
        if (last > first + kMostSteps) text += "... -> ";
        text += path_[last].name + " -> " + reference.target;
        if (reference.found.owner->name != path_.back().name)
            text += "; " + quote(path_.back().name) + " inherits its listeners";
        return text;
    }

    std::set<std::string> seen_;
    std::map<std::string, std::size_t> onPath_; // with the place there
    std::vector<Step> path_;
};

// Follows all names from what a program asks for, the loggers, and looks at what it meets.
class UseChecker : Collector {
  public:
    using Collector::Collector;

    void check()
    {
        collectParents();
        for (const Configuration *configuration : model_.all())
            if (isAskedFor(configuration->name)) use(configuration->name);
        for (const Configuration *configuration : model_.all())
            checkConfiguration(*configuration);
    }

  private:
    void collectParents()
    {
        for (const Configuration *configuration : model_.all())
            if (configuration->parent) parents_.insert(configuration->parent->name);
    }

    bool isAskedFor(const std::string &name) const
    {
        const Category category = model_.classOf(name).category;
        return category == Category::Logger || category == Category::None || isOfToolkit(name);
    }

    void use(const std::string &start)
    {
        std::vector<std::string> open{start};
        while (!open.empty()) {
            const std::string name = open.back();
            open.pop_back();
            if (!used_.insert(name).second) continue;
            for (const Reference &reference : referencesOf(model_, name)) {
                open.push_back(reference.target);
                if (reference.property->type == Type::Listeners)
                    listeners_.insert(reference.target);
            }
        }
    }

    // What others inherit from may be there for them alone.
    void checkConfiguration(const Configuration &configuration)
    {
        if (parents_.contains(configuration.name) || configuration.settings.empty()) return;
        const ObjectClass object = model_.classOf(configuration.name);
        if (!used_.contains(configuration.name))
            warnUnused(configuration, object);
        else if (object.info)
            checkUsed(configuration, *object.info);
    }

    void warnUnused(const Configuration &configuration, const ObjectClass &object)
    {
        warnAt(placeOf(configuration), "unused",
               std::string("no ") + userOf(object.category) + " uses the " +
                   nameOf(object.category) + ' ' + quote(configuration.name));
    }

    static const char *userOf(Category category)
    {
        return category == Category::Formatter ? "handler" : "object";
    }

    static const Setting &placeOf(const Configuration &configuration)
    {
        const Setting *className = configuration.find("className");
        return className ? *className : configuration.settings.front();
    }

    void checkUsed(const Configuration &configuration, const ClassInfo &info)
    {
        for (const Property *property : info.all())
            if (property->rules.isRequired && property->type != Type::Class &&
                !model_.inherit(configuration.name, property->name))
                warnAt(placeOf(configuration), "missing-property",
                       std::string(nameOf(info.category)) + ' ' + quote(configuration.name) +
                           " does nothing without " + property->name);
        if (isMute(configuration, info))
            warnAt(placeOf(configuration), "no-listeners",
                   std::string(nameOf(info.category)) + ' ' + quote(configuration.name) +
                       " has no listeners, so its events go nowhere");
    }

    // A filter may also be there to trigger an action.
    bool isMute(const Configuration &configuration, const ClassInfo &info) const
    {
        const bool passesOn =
            info.category == Category::Logger ||
            (info.category == Category::Filter && listeners_.contains(configuration.name));
        if (!passesOn || isOfToolkit(configuration.name)) return false;
        const Found listeners = model_.inherit(configuration.name, "listenerNames");
        return !listeners || splitNames(listeners.value()).empty();
    }

    std::set<std::string> parents_;
    std::set<std::string> used_;
    std::set<std::string> listeners_; // of those that are used
};

} // namespace

void checkReferences(const Model &model, Report &report)
{
    TargetChecker(model, report).check();
    CircleFinder(model, report).check();
    UseChecker(model, report).check();
}

} // namespace tools::config
