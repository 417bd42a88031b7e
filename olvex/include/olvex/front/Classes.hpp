// Handlers, filters and formatters written as C++ classes. Included by <olvex/olvex.hpp>.
//
//     struct Counter : olvex::HandlerClass {
//         void process(olvex::Self self, olvex::EventView event) override { ++count; }
//         int count = 0;
//     };
//     olvex::addHandlerClass<Counter>("counter");
//
// An object of the toolkit then has one Counter of its own. The functions run with the toolkit's
// lock held: they use `self` and `event`, and make no call that takes the lock. An exception ends
// the function, is reported to "olvex.errorLogger" and goes no further.
#pragma once

#include <olvex/Event.h>
#include <olvex/Message.h>
#include <olvex/class.h>
#include <olvex/front/Handles.hpp>

#include <cstring>
#include <exception>
#include <new>

namespace olvex {
inline namespace v0 {

namespace detail {

using EventGetters = Getters<OvxGetEventProp, OvxGetEventPropBool, OvxGetEventPropInt,
                             OvxGetEventPropLong, OvxGetEventPropFloat, OvxGetEventPropDouble>;
using OwnGetters = Getters<ovxIntlGetObjProp, ovxIntlGetObjPropBool, ovxIntlGetObjPropInt,
                           ovxIntlGetObjPropLong, ovxIntlGetObjPropFloat, ovxIntlGetObjPropDouble>;

} // namespace detail

/** An event, borrowed for the call that it was given to. */
class EventView : public WithProperties<EventView, detail::EventGetters> {
  public:
    /** Borrows the event. */
    explicit EventView(OvxEvent *event) noexcept : event_(event) {}

    /** The event, borrowed. */
    OvxEvent *get() const noexcept { return event_; }
    /** The level, a number. */
    int level() const noexcept { return OvxGetEventLevel(event_); }
    /** Milliseconds since 1970-01-01 00:00 UTC. */
    int64_t time() const noexcept { return OvxGetEventTime(event_); }
    /** Says whether it is a message rather than debugging text. */
    bool isMessage() const noexcept { return OvxGetEventIsMessage(event_); }
    /** The message, translated and with its parameters; empty when it cannot be printed. */
    std::string text() const
    {
        return detail::taken(OvxBindEventMsg(event_, ovxIntlBindI18Msg)).value_or("");
    }
    /** The identifier of the message, none when it has none or nothing has looked for it. */
    std::optional<std::string> messageId() const
    {
        return detail::taken(OvxGetEventMessageId(event_));
    }
    /** Sets a property, copied, which what follows in the event's way sees as well. */
    void setProperty(const char *name, const std::string &value)
    {
        OvxSetEventProp(event_, name, value.c_str());
    }

  private:
    OvxEvent *event_;
};

/** The object whose function runs, borrowed for that call. */
class Self : public WithProperties<Self, detail::OwnGetters> {
  public:
    /** Borrows the object. */
    explicit Self(OvxObject *object) noexcept : object_(object) {}

    /** The object, borrowed. */
    OvxObject *get() const noexcept { return object_; }
    /** The object's name; empty for none. */
    std::string name() const
    {
        const char *name = ovxIntlGetObjectName(object_);
        return name ? name : "";
    }
    /** Of a handler: the event as its formatter writes it, and what stands around all records. */
    std::string format(EventView event) const
    {
        return detail::taken(ovxIntlHandlerDoFmt(object_, event.get())).value_or("");
    }
    /** See format(). */
    std::string header() const
    {
        return detail::taken(ovxIntlHandlerGetFmtHeader(object_)).value_or("");
    }
    /** See format(). */
    std::string trailer() const
    {
        return detail::taken(ovxIntlHandlerGetFmtTrailer(object_)).value_or("");
    }
    /** Of a formatter: a time as its properties want it. */
    std::string date(int64_t milliseconds) const
    {
        return detail::taken(OvxBasicFormatterFormatDate(object_, milliseconds)).value_or("");
    }

  private:
    OvxObject *object_;
};

/** What the classes share. A class needs a constructor without arguments. */
class ObjectClass {
  public:
    virtual ~ObjectClass() = default;
    /** Told that a property was set; true when it is one of this class's own. */
    virtual bool configure(Self, const char *) { return false; }
};

/** A class of handlers. An event goes to process(), then to the handler's listeners. */
class HandlerClass : public ObjectClass {
  public:
    /** Does with the event what the handler is for. */
    virtual void process(Self self, EventView event) = 0;
    /** Before the first event, and before the first after close(). */
    virtual void open(Self) {}
    /** When the handler is released. When the toolkit closes, only the destructor runs. */
    virtual void close(Self) {}
};

/** A class of filters: what passes goes to the filter's listeners. */
class FilterClass : public ObjectClass {
  public:
    /** Whether the event passes. OvxIsLoggableByFilter() asks without the lock. */
    virtual bool passes(Self self, EventView event) = 0;
};

/** A class of formatters. Its header and trailer stand around all records; empty ones do not. */
class FormatterClass : public ObjectClass {
  public:
    /** The event as text, in UTF-8, with the end of its line. */
    virtual std::string format(Self self, EventView event) = 0;
    /** What stands before all records. */
    virtual std::string header(Self) { return {}; }
    /** What stands behind all records. */
    virtual std::string trailer(Self) { return {}; }
};

namespace detail {

inline void report(const char *what, const char *function, const char *object) noexcept
{
    ovxIntlLogVA(OVX_LEVEL_ERROR, 0, "An exception left the function %1$s of %2$s: %3$s",
                 OVX_PARM_STRING, function, OVX_PARM_STRING, object ? object : "an object",
                 OVX_PARM_STRING, what, 0);
}

// Runs `work`; false when it threw, and `report` was told why.
template <class Work, class Report>
bool attempt(Work &&work, Report &&report) noexcept
{
#ifdef __cpp_exceptions
    try {
        work();
        return true;
    } catch (const std::exception &error) {
        report(error.what());
    } catch (...) {
        report("of unknown type");
    }
    return false;
#else
    static_cast<void>(report);
    work();
    return true;
#endif
}

// The same, with the lock held: the toolkit reports it.
template <class Work>
bool guarded(const char *function, OvxObject *object, Work &&work) noexcept
{
    return attempt(std::forward<Work>(work),
                   [&](const char *what) { report(what, function, ovxIntlGetObjectName(object)); });
}

// A string of the toolkit; none for an empty text or when memory runs out.
inline char *given(const std::string &text) noexcept
{
    if (text.empty()) return nullptr;
    auto *copy = static_cast<char *>(BaxMemoryMalloc(text.size() + 1));
    if (copy) std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

// The C functions of a class `Own`. The private variables of an object are an Own and whether it is
// open; an object whose Own could not be made does nothing.
template <class Own>
class Functions {
  public:
    static void *allocVars()
    {
        Variables *variables = nullptr;
        guarded("constructor", nullptr, [&] { variables = new Variables; });
        return variables;
    }
    static void freeVars(void *variables) { delete static_cast<Variables *>(variables); }

    template <OvxFCfgChange Base>
    static void cfgChange(OvxObject *object, const char *name)
    {
        Variables *variables = of(object);
        bool isOwn = false;
        if (variables && name)
            guarded("configure", object,
                    [&] { isOwn = variables->own.configure(Self(object), name); });
        if (!isOwn) Base(object, name);
    }

    static void process(OvxObject *handler, OvxEvent *event)
    {
        if (!ovxIntlIsObjectEnabled(handler)) return;
        open(handler);
        if (Variables *variables = of(handler))
            guarded("process", handler,
                    [&] { variables->own.process(Self(handler), EventView(event)); });
        OvxBasicObjectFLog(handler, event);
    }
    static void open(OvxObject *handler)
    {
        Variables *variables = of(handler);
        if (!variables || variables->isOpen) return;
        variables->isOpen = true;
        guarded("open", handler, [&] { variables->own.open(Self(handler)); });
    }
    static void close(OvxObject *handler)
    {
        Variables *variables = of(handler);
        if (!variables || !variables->isOpen) return;
        variables->isOpen = false;
        guarded("close", handler, [&] { variables->own.close(Self(handler)); });
    }

    // An event is not lost to a filter that cannot decide.
    static void filter(OvxObject *filter, OvxEvent *event)
    {
        if (!ovxIntlIsObjectEnabled(filter)) return;
        bool passes = true;
        if (Variables *variables = of(filter))
            guarded("passes", filter,
                    [&] { passes = variables->own.passes(Self(filter), EventView(event)); });
        if (passes) OvxBasicObjectFLog(filter, event);
    }
    // May be called without the lock, so that nothing can be reported.
    static bool isLoggable(OvxObject *filter, OvxEvent *event)
    {
        Variables *variables = of(filter);
        bool passes = true;
        if (variables)
            attempt([&] { passes = variables->own.passes(Self(filter), EventView(event)); },
                    [](const char *) {});
        return passes;
    }

    // An event is not lost to a formatter that fails either.
    static char *format(OvxObject *formatter, OvxEvent *event)
    {
        char *text = nullptr;
        const bool isDone = ask("format", formatter, text, [&](Own &own) {
            return own.format(Self(formatter), EventView(event));
        });
        return isDone ? text : OvxBasicFormatterFFormat(formatter, event);
    }
    static char *header(OvxObject *formatter)
    {
        char *text = nullptr;
        ask("header", formatter, text, [&](Own &own) { return own.header(Self(formatter)); });
        return text;
    }
    static char *trailer(OvxObject *formatter)
    {
        char *text = nullptr;
        ask("trailer", formatter, text, [&](Own &own) { return own.trailer(Self(formatter)); });
        return text;
    }

  private:
    struct Variables {
        Own own;
        bool isOpen = false;
    };

    static Variables *of(OvxObject *object) noexcept
    {
        return static_cast<Variables *>(ovxIntlGetObjectVars(object));
    }

    template <class Question>
    static bool ask(const char *function, OvxObject *formatter, char *&answer, Question question)
    {
        Variables *variables = of(formatter);
        return variables &&
               guarded(function, formatter, [&] { answer = given(question(variables->own)); });
    }
};

// The description of a class as a message, freed with its scope.
struct FreeMessage {
    void operator()(OvxI18Msg *message) const noexcept { OvxFreeI18Msg(message); }
};
inline std::unique_ptr<OvxI18Msg, FreeMessage> describedBy(const char *description) noexcept
{
    return std::unique_ptr<OvxI18Msg, FreeMessage>(
        description ? OvxAllocI18Msg(nullptr, 0, 0, description) : nullptr);
}

} // namespace detail

/** Registers `Own` as the handler class `name`. A name that is taken stays as it is. */
template <class Own>
void addHandlerClass(const char *name, const char *description = nullptr)
{
    static_assert(std::is_base_of_v<HandlerClass, Own>, "olvex: derive from olvex::HandlerClass");
    using F = detail::Functions<Own>;
    OvxAddHandlerClass(name, detail::describedBy(description).get(), F::allocVars, F::freeVars,
                       F::template cfgChange<OvxBasicHandlerFCfgChange>, F::process, F::open,
                       F::close);
}

/** Registers `Own` as the filter class `name`. A name that is taken stays as it is. */
template <class Own>
void addFilterClass(const char *name, const char *description = nullptr)
{
    static_assert(std::is_base_of_v<FilterClass, Own>, "olvex: derive from olvex::FilterClass");
    using F = detail::Functions<Own>;
    OvxAddFilterClass(name, detail::describedBy(description).get(), F::allocVars, F::freeVars,
                      F::template cfgChange<OvxBasicObjectFCfgChange>, F::filter, F::isLoggable,
                      nullptr);
}

/** Registers `Own` as the formatter class `name`. A name that is taken stays as it is. */
template <class Own>
void addFormatterClass(const char *name, const char *description = nullptr)
{
    static_assert(std::is_base_of_v<FormatterClass, Own>,
                  "olvex: derive from olvex::FormatterClass");
    using F = detail::Functions<Own>;
    OvxAddFormatterClass(name, detail::describedBy(description).get(), F::allocVars, F::freeVars,
                         F::template cfgChange<OvxBasicFormatterFCfgChange>, F::format, F::header,
                         F::trailer, nullptr);
}

} // namespace v0
} // namespace olvex
