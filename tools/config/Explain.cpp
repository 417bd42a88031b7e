// See Explain.h: objects.
#include "config/Explain.h"

#include <algorithm>
#include <set>
#include <vector>

#include "Visible.h"
#include "config/Graph.h"

namespace tools::config {

namespace {

constexpr int kDeepest = 100; // listeners below each other

// As it is printed.
struct Row {
    std::string name, value, origin;
};

std::string classText(const ObjectClass &object)
{
    if (object.name.empty()) return "no class";
    return std::string(nameOf(object.category)) + " of class " + object.name +
           (object.isUnknown ? ", which is unknown" : "");
}

std::string originOf(const Report &report, const std::string &name, const Found &found)
{
    std::string text = placeText(report.pathOf(found.setting->file), found.setting->pair->place);
    if (found.owner->name != name) text += ", from " + found.owner->name;
    return text;
}

class Explainer {
  public:
    Explainer(const Model &model, const Report &report, std::string name)
        : model_(model), report_(report), name_(std::move(name)), class_(model.classOf(name_))
    {}

    std::vector<Row> rows(bool withDefaults)
    {
        if (class_.info)
            for (const Property *property : class_.info->all())
                addKnown(*property, withDefaults);
        addOthers();
        return std::move(rows_);
    }

  private:
    void addKnown(const Property &property, bool withDefaults)
    {
        if (const Found found = model_.inherit(name_, property.name))
            add(found, "");
        else if (withDefaults && *property.initial)
            rows_.push_back({property.name, property.initial, "default"});
    }

    // What the class has no use for, or might have if it is not built in.
    void addOthers()
    {
        const char *remark = class_.info ? ", no effect" : "";
        for (const Configuration *owner = model_.nearest(name_); owner; owner = owner->parent)
            for (const Setting &setting : owner->settings)
                if (!class_.info || !class_.info->find(setting.property))
                    add({owner, &setting}, remark);
    }

    void add(const Found &found, const char *remark)
    {
        if (!shown_.insert(found.setting->property).second) return;
        rows_.push_back({visible(found.setting->property), visible(found.value()),
                         visible(originOf(report_, name_, found) + remark)});
    }

    const Model &model_;
    const Report &report_;
    const std::string name_;
    const ObjectClass class_;
    std::set<std::string> shown_;
    std::vector<Row> rows_;
};

// Each object is drawn once with what is below it.
class Tree {
  public:
    Tree(FILE *stream, const Model &model, bool isUtf8)
        : stream_(stream), model_(model), lines_(isUtf8 ? kUtf8 : kAscii)
    {}

    void draw(const std::string &name)
    {
        print("", name, "");
        seen_.insert(name);
        drawBelow(name, "", 0);
    }

  private:
    struct Lines {
        const char *middle, *last, *beside;
    };
    static constexpr Lines kUtf8{"├─ ", "└─ ", "│  "};
    static constexpr Lines kAscii{"|- ", "`- ", "|  "};

    void drawBelow(const std::string &name, const std::string &indent, int depth)
    {
        const std::vector<std::string> listeners = listenersIn(name);
        for (std::size_t i = 0; i < listeners.size(); ++i)
            drawListener(listeners[i], indent, i + 1 == listeners.size(), depth);
    }

    void drawListener(const std::string &name, const std::string &indent, bool isLast, int depth)
    {
        const bool isNew = seen_.insert(name).second;
        const bool isCut = (!isNew || depth == kDeepest) && !listenersIn(name).empty();
        print(indent + (isLast ? lines_.last : lines_.middle), name, isCut ? " ..." : "");
        if (!isCut) drawBelow(name, indent + (isLast ? "   " : lines_.beside), depth + 1);
    }

    // With those that cannot be, since their absence is what people look for.
    std::vector<std::string> listenersIn(const std::string &name) const
    {
        std::vector<std::string> names;
        for (const Reference &reference : referencesOf(model_, name))
            if (reference.property->type == Type::Listeners) names.push_back(reference.target);
        return names;
    }

    void print(const std::string &lines, const std::string &name, const char *end)
    {
        std::fprintf(stream_, "%s%s (%s)%s\n", lines.c_str(), visible(name).c_str(),
                     visible(remarks(name)).c_str(), end);
    }

    std::string remarks(const std::string &name) const
    {
        const ObjectClass object = model_.classOf(name);
        if (object.name.empty()) return "no such object";
        std::string text = object.name;
        append(text, name, object, "level", "from ");
        append(text, name, object, "fileName", "");
        append(text, name, object, "formatterName", "formatter ");
        append(text, name, object, "triggerFilter", "trigger ");
        append(text, name, object, "logging", "logging ");
        return text;
    }

    void append(std::string &text, const std::string &name, const ObjectClass &object,
                const char *property, const char *before) const
    {
        const Found found = model_.inherit(name, property);
        if (found && object.info && object.info->find(property))
            text += std::string(", ") + before + found.value();
    }

    FILE *stream_;
    const Model &model_;
    const Lines lines_;
    std::set<std::string> seen_;
};

void printRows(FILE *stream, const std::vector<Row> &rows)
{
    std::size_t name = 0, value = 0;
    for (const Row &row : rows) {
        name = std::max(name, row.name.size());
        value = std::min(std::max(value, row.value.size()), std::size_t{40});
    }
    for (const Row &row : rows)
        std::fprintf(stream, "  %-*s  %-*s  %s\n", static_cast<int>(name), row.name.c_str(),
                     static_cast<int>(value), row.value.c_str(), row.origin.c_str());
}

} // namespace

void explain(FILE *stream, const Model &model, const Report &report, const std::string &name,
             bool withDefaults, bool isUtf8)
{
    const ObjectClass object = model.classOf(name);
    std::fprintf(stream, "%s: %s\n\n", visible(name).c_str(), visible(classText(object)).c_str());
    printRows(stream, Explainer(model, report, name).rows(withDefaults));
    if (object.category == Category::Formatter || referencesOf(model, name).empty()) return;
    std::fputc('\n', stream);
    Tree(stream, model, isUtf8).draw(name);
}

} // namespace tools::config
