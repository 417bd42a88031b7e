// The object model: classes as tables of functions, and objects as counted, named instances of
// them. Everything here runs with the API mutex held, except the gate and the threshold, which
// OvxIsLoggable and the level filter read at any time.
#pragma once

#include <olvex/Object.h>
#include <olvex/StringBuff.h>
#include <olvex/class.h>

#include <atomic>
#include <climits>
#include <cstddef>
#include <type_traits>

// The functions of a class; which of them count depends on its category.
struct ClassSlots {
    OvxFAllocVars allocVars = nullptr;
    OvxFFreeVars freeVars = nullptr;
    OvxFCfgChange cfgChange = nullptr;
    OvxFLog log = nullptr;               // loggers, filters
    OvxFProcess process = nullptr;       // filters, handlers
    OvxFIsLoggable isLoggable = nullptr; // filters
    OvxFOpen open = nullptr;             // handlers
    OvxFClose close = nullptr;           // handlers
    OvxFFormat format = nullptr;         // formatters
    OvxFGetHeader getHeader = nullptr;   // formatters
    OvxFGetTrailer getTrailer = nullptr; // formatters
    OvxFBindMsg bindMsg = nullptr;       // formatters
    // Formatters, if they can: what `format` does, at the end of a buffer. False when there is no
    // text.
    bool (*append)(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer) = nullptr;
    bool passesOnLast = false; // handlers: passing the event on is the last act of `process`
};

// The functions of the library's own classes, each defined in the class's source.
namespace olvex::slots {
#define OVX_CLASS(name, ...) extern const ClassSlots name;
#include "schema/classes.def"
#undef OVX_CLASS
} // namespace olvex::slots

struct OvxObjClass {
    int category = 0;
    char *name = nullptr;
    OvxI18Msg *description = nullptr;
    ClassSlots slots;
};

struct OvxObject {
    // The lowest level that passes; must stay first, since the inline test of <olvex/Log.h> reads
    // it there. kShut for whatever is disabled or not a logger.
    std::atomic<std::int64_t> gate;

    OvxObjClass *cls;
    std::uint32_t references;
    bool registered; // the registry's own reference is one of the count
    bool enabled;
    bool running; // its FProcess or FLog is on the stack: an event that comes back is not for it
    bool dying;   // being destroyed: counting references no longer ends anything
    char *name;
    std::atomic<std::int32_t> threshold; // loggers and filters
    ListenerGroup *listeners;            // loggers, filters, handlers
    OvxObject *formatter;                // handlers: a counted reference
    char *separator;                     // formatters, owned
    char *dateTimeFormat;                // formatters, owned
    const char *locale;                  // formatters, kept for the life of the process
    StringToStringMap *properties;
    void *variables;
    OvxObject *nextInTearDown; // links all objects while the toolkit closes
    OvxObject *nextPostponed;  // links those that are to be released when another one has ended

    static constexpr std::int64_t kShut = INT64_MAX;
};

static_assert(std::is_standard_layout_v<OvxObject> && offsetof(OvxObject, gate) == 0);

namespace olvex {

inline bool isCategory(const OvxObject *object, int category)
{
    return object && object->cls && object->cls->category == category;
}
inline bool isLogger(const OvxObject *object)
{
    return isCategory(object, OVX_CLASS_LOGGER);
}
inline bool isFilter(const OvxObject *object)
{
    return isCategory(object, OVX_CLASS_FILTER);
}
inline bool isHandler(const OvxObject *object)
{
    return isCategory(object, OVX_CLASS_HANDLER);
}
inline bool isFormatter(const OvxObject *object)
{
    return isCategory(object, OVX_CLASS_FORMATTER);
}

// Sets the threshold of a logger or filter.
void setThreshold(OvxObject *object, int level);

// A property's value, borrowed until the property is set again; null when absent or without value.
const char *peekProperty(const OvxObject *object, const char *name);

// What "level" means to loggers and level filters alike.
void applyLevelProperty(OvxObject *object);

// Marks an object as running for the length of a call into it.
class Running {
  public:
    explicit Running(OvxObject *object) : object_(object) { object_->running = true; }
    ~Running() { object_->running = false; }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

  private:
    OvxObject *object_;
};

// A counted reference, given back at the end of its scope.
class ObjectRef {
  public:
    explicit ObjectRef(OvxObject *owned = nullptr) : object_(owned) {}
    ~ObjectRef()
    {
        if (!object_) return;
        if (object_->references > kMostThatMayEnd)
            --object_->references;
        else
            ovxIntlReleaseObject(object_);
    }
    ObjectRef(const ObjectRef &) = delete;
    ObjectRef &operator=(const ObjectRef &) = delete;

    // A further reference.
    static ObjectRef to(OvxObject *object)
    {
        if (object) ++object->references;
        return ObjectRef(object);
    }

    OvxObject *get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

  private:
    // Beyond these, the last but the registry's, giving one back only counts.
    static constexpr std::uint32_t kMostThatMayEnd = 2;

    OvxObject *object_;
};

} // namespace olvex

// Makes a class record from copies of name and description; none, silently, when the name is none
// or taken, and with a report when memory runs out.
OvxObjClass *ovxInitObjectClass(const char *name, int category, const OvxI18Msg *description,
                                const ClassSlots &slots);
// Fills the slots that the category has a default for, and registers the class.
void ovxIntlAddClass(const char *name, int category, const OvxI18Msg *description,
                     const ClassSlots &slots);
void ovxFreeObjClass(OvxObjClass *cls);

// The toolkit closes: frees the private variables, then formatter and listeners, then the object
// itself or, when the host still holds it, all but an empty shell.
void ovxFreeObjectVars(OvxObject *object);
void ovxFreeObjectLinks(OvxObject *object);
void ovxRetireObject(OvxObject *object);
