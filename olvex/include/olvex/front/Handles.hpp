// The toolkit, its objects and configurations as values that release what they hold. Included by
// <olvex/olvex.hpp>.
#pragma once

#include <olvex/Config.h>
#include <olvex/Handler.h>
#include <olvex/ListenerGroup.h>
#include <olvex/Memory.h>
#include <olvex/Object.h>
#include <olvex/Toolkit.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace olvex {
inline namespace v0 {

namespace detail {

struct FreeText {
    void operator()(char *text) const noexcept { BaxMemoryFree(text); }
};

// A string of the toolkit as one of the standard library's; none for NULL.
inline std::optional<std::string> taken(char *text)
{
    const std::unique_ptr<char, FreeText> owner(text);
    if (!text) return std::nullopt;
    return std::string(text);
}

// Calls a getter that says by its last argument whether there is a value.
template <class Value, class Holder, class Getter>
std::optional<Value> found(Getter getter, Holder *holder, const char *name)
{
    bool isFound = false;
    const auto value = getter(holder, name, &isFound);
    if (!isFound) return std::nullopt;
    return static_cast<Value>(value);
}

// The getters of objects, configurations or events.
template <auto Text, auto Boolean, auto Integer, auto Long, auto Float, auto Double>
struct Getters {
    static constexpr auto text = Text;

    template <class Value>
    static constexpr auto of() noexcept
    {
        static_assert(std::is_arithmetic_v<Value>,
                      "olvex: properties are numbers, booleans and text");
        if constexpr (std::is_same_v<Value, bool>)
            return Boolean;
        else if constexpr (std::is_same_v<Value, float>)
            return Float;
        else if constexpr (std::is_floating_point_v<Value>)
            return Double;
        else if constexpr (sizeof(Value) > sizeof(int32_t))
            return Long;
        else
            return Integer;
    }
};

using ObjectGetters = Getters<OvxGetObjProp, OvxGetObjPropBool, OvxGetObjPropInt, OvxGetObjPropLong,
                              OvxGetObjPropFloat, OvxGetObjPropDouble>;
using CfgGetters = Getters<OvxGetObjCfgProp, OvxGetObjCfgPropBool, OvxGetObjCfgPropInt,
                           OvxGetObjCfgPropLong, OvxGetObjCfgPropFloat, OvxGetObjCfgPropDouble>;

} // namespace detail

/** The properties of what `Holder` refers to: an object, a configuration or an event. */
template <class Holder, class Getters>
class WithProperties {
  public:
    /** A property as text; none when it is not set. */
    std::optional<std::string> property(const char *name) const
    {
        return detail::taken(Getters::text(held(), name, nullptr));
    }
    /** A property as a number or bool; none when it is not set or does not convert. */
    template <class Value>
    std::optional<Value> property(const char *name) const
    {
        return detail::found<Value>(Getters::template of<Value>(), held(), name);
    }

  private:
    auto *held() const noexcept { return static_cast<const Holder *>(this)->get(); }
};

/** Opens the toolkit, and closes it at the end of its scope when it was this that opened it. */
class Toolkit {
  public:
    /** Opens the toolkit with a properties file, or none. */
    explicit Toolkit(const char *propertiesFile = nullptr)
        : closes_(!OvxIsToolkitOpen()), isOpen_(OvxOpenToolkit(propertiesFile))
    {}
    ~Toolkit()
    {
        if (closes_ && isOpen_) OvxCloseToolkit();
    }
    Toolkit(const Toolkit &) = delete;
    Toolkit &operator=(const Toolkit &) = delete;

    /** Says whether opening succeeded; standard error says why when it did not. */
    explicit operator bool() const noexcept { return isOpen_; }
    /** Reads one more properties file; false when it cannot be read or is malformed. */
    bool load(const char *propertiesFile) { return OvxLoadAdditionalProperties(propertiesFile); }

  private:
    bool closes_;
    bool isOpen_;
};

/** A counted reference to a logger, filter, handler or formatter; or to none. */
class Object : public WithProperties<Object, detail::ObjectGetters> {
  public:
    Object() = default;
    /** The object called `name`, made when there is none; its class from its configuration. */
    explicit Object(const char *name, const char *className = nullptr)
        : object_(OvxGetObject(name, className))
    {}
    /** Adds a reference. */
    Object(const Object &other) noexcept : object_(OvxAcquireObject(other.object_)) {}
    /** Takes the reference over. */
    Object(Object &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    /** Gives the reference up and takes that of `other`. */
    Object &operator=(Object other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Object() { OvxReleaseObject(object_); }

    /** Takes over a reference that the caller has. */
    static Object adopt(OvxObject *object) noexcept
    {
        Object adopted;
        adopted.object_ = object;
        return adopted;
    }

    /** The object, borrowed; NULL for none. */
    OvxObject *get() const noexcept { return object_; }
    /** Says whether there is an object. */
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /** Says whether both are the same object. */
    friend bool operator==(const Object &a, const Object &b) noexcept
    {
        return a.object_ == b.object_;
    }
    /** Says whether they are two objects. */
    friend bool operator!=(const Object &a, const Object &b) noexcept { return !(a == b); }

    /** The object's name; empty for none. */
    std::string name() const { return detail::taken(OvxGetObjectName(object_)).value_or(""); }
    /** The description of the object's class; empty for none. */
    std::string description() const
    {
        return detail::taken(OvxGetObjectDesc(object_)).value_or("");
    }
    /** Says whether the object is at work; a disabled one passes nothing on. */
    bool isEnabled() const noexcept { return OvxIsObjectEnabled(object_); }
    /** Puts the object to work, or to rest. */
    void setEnabled(bool enabled) noexcept { OvxSetObjectEnabled(object_, enabled); }

    /** Sets a property to a text, which is copied. */
    void setProperty(const char *name, const char *value) { OvxSetObjProp(object_, name, value); }
    /** Sets a property to a text, which is copied. */
    void setProperty(const char *name, const std::string &value)
    {
        OvxSetObjProp(object_, name, value.c_str());
    }
    /** Sets a property to a number or bool. */
    template <class Value, class = std::enable_if_t<std::is_arithmetic_v<Value>>>
    void setProperty(const char *name, Value value)
    {
        if constexpr (std::is_same_v<Value, bool>)
            OvxSetObjPropBool(object_, name, value);
        else if constexpr (std::is_floating_point_v<Value>)
            OvxSetObjPropDouble(object_, name, static_cast<double>(value));
        else
            OvxSetObjPropLong(object_, name, static_cast<int64_t>(value));
    }

    /** Lets a filter or handler have this object's events, after those that have them already. */
    void addListener(const Object &listener) { OvxAddListener(object_, listener.get()); }
    /** Takes a listener away. */
    void removeListener(const Object &listener) { OvxRemListener(object_, listener.get()); }
    /** The listeners, in their order. */
    std::vector<Object> listeners() const
    {
        std::vector<Object> all;
        for (ListenerGroupNode *at = OvxGetListeners(object_); OvxListenerGroupIterHasNext(at);
             at = OvxListenerGroupIterNext(at))
            all.push_back(adopt(OvxListenerGroupIterGet(at)));
        return all;
    }

  private:
    OvxObject *object_ = nullptr;
};

/** A handler. */
class Handler : public Object {
  public:
    /** Those of an object. */
    using Object::Object;
    Handler() = default;
    /** An object that is known to be a handler. */
    explicit Handler(const Object &object) : Object(object) {}

    /** The formatter; or none. */
    Object formatter() const noexcept { return adopt(OvxHandlerGetFormatter(get())); }
    /** Has the handler's records made by another formatter. */
    void setFormatter(const Object &formatter) { OvxHandlerSetFormatter(get(), formatter.get()); }
};

/** A counted reference to a configuration; or to none. Properties are its own or inherited. */
class Configuration : public WithProperties<Configuration, detail::CfgGetters> {
  public:
    Configuration() = default;
    /** The configuration of that name; an empty one is made when there is none. */
    explicit Configuration(const char *name) : cfg_(OvxLogMgrGetCfg(name)) {}
    /** Adds a reference. */
    Configuration(const Configuration &other) noexcept : cfg_(OvxAcquireObjCfg(other.cfg_)) {}
    /** Takes the reference over. */
    Configuration(Configuration &&other) noexcept : cfg_(std::exchange(other.cfg_, nullptr)) {}
    /** Gives the reference up and takes that of `other`. */
    Configuration &operator=(Configuration other) noexcept
    {
        std::swap(cfg_, other.cfg_);
        return *this;
    }
    ~Configuration() { OvxReleaseObjCfg(cfg_); }

    /** Says whether there is a configuration of that name; makes none. */
    static bool exists(const char *name) noexcept { return OvxLogMgrHasCfg(name); }

    /** The configuration, borrowed; NULL for none. */
    OvxObjCfg *get() const noexcept { return cfg_; }
    /** Says whether there is a configuration. */
    explicit operator bool() const noexcept { return cfg_ != nullptr; }
    /** The configuration's name; empty for none. */
    std::string name() const { return detail::taken(OvxObjCfgGetName(cfg_)).value_or(""); }

    /** Sets a property here; objects that exist take it over by applyTo(). */
    void setProperty(const char *name, const char *value) { OvxSetObjCfgProp(cfg_, name, value); }
    /** The same. */
    void setProperty(const char *name, const std::string &value)
    {
        OvxSetObjCfgProp(cfg_, name, value.c_str());
    }
    /** Sets these properties, the inherited ones included, on an object. */
    bool applyTo(const Object &object) const
    {
        return OvxLogMgrApplyCfg(object.get(), name().c_str());
    }

  private:
    OvxObjCfg *cfg_ = nullptr;
};

} // namespace v0
} // namespace olvex
