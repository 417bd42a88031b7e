// The configurations of one or more files: who inherits from whom, and of which class each object
// is then made. Pairs are borrowed from the scans.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "config/Classes.h"
#include "config/Report.h"
#include "config/Scanner.h"

namespace tools::config {

struct Setting {
    std::string property;
    const Pair *pair;
    std::size_t file;
};

struct Configuration {
    std::string name;
    std::vector<Setting> settings;
    const Configuration *parent = nullptr; // the nearest of the configurations above
    // It was read before all that are above it. Its values come from them nevertheless, but the
    // library does not look there for its class.
    bool isLate = false;
    std::uint32_t usedBy = 0; // a bit for each class of the objects here and below

    // Where each property is in `settings`; the names lie in the keys of pairs.
    std::unordered_map<std::string_view, std::size_t> places = {};

    const Setting *find(std::string_view property) const;
};

// A value, and the configuration that has it.
struct Found {
    const Configuration *owner = nullptr;
    const Setting *setting = nullptr;

    explicit operator bool() const { return setting != nullptr; }
    const std::string &value() const { return setting->pair->value; }
};

struct ObjectClass {
    std::string name;                // empty when there is none
    const ClassInfo *info = nullptr; // nullptr for classes that are not built in
    Category category = Category::None;
    bool isUnknown = false;
};

// Classes that the program registers.
using HostClasses = std::map<std::string, Category, std::less<>>;

// Whether the toolkit itself makes an object of that name.
bool isOfToolkit(std::string_view name);

class Model {
  public:
    explicit Model(HostClasses hostClasses) : hostClasses_(std::move(hostClasses)) {}

    // Takes over the pairs of a file; reports keys without use and values that are replaced.
    void add(std::size_t file, const Scan &scan, Report &report);

    // To be called when all files are in.
    void finish();

    const Configuration *find(std::string_view name) const;
    // The one of that name or else the nearest above it.
    const Configuration *nearest(std::string_view name) const;
    // Valid once all files are in.
    const std::vector<const Configuration *> &all() const { return all_; }

    // The value that an object of that name has, its own or the nearest above.
    Found inherit(std::string_view name, std::string_view property) const;

    ObjectClass classOf(std::string_view name) const;

    // The configuration at which the search for the class ends too early; nullptr when it does not.
    const Configuration *breakOfClass(std::string_view name) const;

    const HostClasses &hostClasses() const { return hostClasses_; }

  private:
    // By length first, so that looking for all ancestors of a long name is quick.
    struct BySize {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const
        {
            return a.size() != b.size() ? a.size() < b.size() : a < b;
        }
    };

    void addPair(std::size_t file, const Pair &pair, Report &report);
    void store(const std::string &name, Setting setting, Report &report);
    Configuration &fetch(const std::string &name);
    const Configuration *ancestorOf(std::string_view name) const;

    std::map<std::string, Configuration, BySize> configurations_;
    std::vector<const Configuration *> all_;
    HostClasses hostClasses_;
};

// Whether an object here or below can have use for the property; without any object, whether any
// class has. Classes that are not built in may have every property.
bool isKnown(const Configuration &configuration, std::string_view property);

} // namespace tools::config
