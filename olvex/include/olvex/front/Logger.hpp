// Loggers: calls that take ordinary arguments. Included by <olvex/olvex.hpp>.
#pragma once

#include <olvex/front/Format.hpp>
#include <olvex/front/Handles.hpp>

namespace olvex {
inline namespace v0 {

/** The levels of logging calls. */
enum class Level : int {
    debugMax = OVX_LEVEL_DEBUG_MAX,
    debugMid = OVX_LEVEL_DEBUG_MID,
    debugMin = OVX_LEVEL_DEBUG_MIN,
    info = OVX_LEVEL_INFO,
    warn = OVX_LEVEL_WARN,
    error = OVX_LEVEL_ERROR,
    fatal = OVX_LEVEL_FATAL
};

/** Where a message's translations are: message `key` of set `set` of a catalog (borrowed). */
struct MessageId {
    const char *catalog = nullptr; /**< its name, borrowed; none for no translation */
    int set = 0;                   /**< number of the set */
    int key = 0;                   /**< number of the message in the set */
};

namespace detail {

using MessageCall = void (*)(OvxObject *, const char *, int, int, const char *, ...);
using DebugCall = void (*)(OvxObject *, const char *, const char *, int, const char *, ...);

constexpr MessageCall messageCallOf(int level) noexcept
{
    return level >= OVX_LEVEL_FATAL   ? OvxLogFatal
           : level >= OVX_LEVEL_ERROR ? OvxLogError
           : level >= OVX_LEVEL_WARN  ? OvxLogWarn
                                      : OvxLogInfo;
}

constexpr DebugCall debugCallOf(int level) noexcept
{
    return level >= OVX_LEVEL_DEBUG_MIN   ? OvxLogDebugMin
           : level >= OVX_LEVEL_DEBUG_MID ? OvxLogDebugMid
                                          : OvxLogDebugMax;
}

// The list of a message ends with the place of the call, or before it when there is none: the 0 in
// the place of the first marker ends the list.
template <class... Parts>
void callMessage(MessageCall call, OvxObject *logger, const MessageId &id, const char *text,
                 const Location &place, Parts... parts) noexcept
{
    call(logger, id.catalog, id.set, id.key, text, parts..., place.file ? OVX_PROP : 0,
         "ovx_prop_srcfile", OVX_PARM_STRING, place.file, OVX_PROP, "ovx_prop_srcline",
         OVX_PARM_INT, place.line, place.function ? OVX_PROP : 0, "ovx_prop_srcfunction",
         OVX_PARM_STRING, place.function, 0);
}

template <class... Parms>
void sendMessage(MessageCall call, OvxObject *logger, const MessageId &id, const char *text,
                 const Location &place, const Parms &...parms) noexcept
{
    requireRoom<sizeof...(Parms) + kPlaceEntries>();
    withParts([&](auto... parts) { callMessage(call, logger, id, text, place, parts...); },
              parms...);
}

template <class... Parms>
void sendDebug(DebugCall call, OvxObject *logger, const char *text, const Location &place,
               const Parms &...parms) noexcept
{
    requireRoom<sizeof...(Parms)>();
    withParts(
        [&](auto... parts) {
            call(logger, place.file, place.function, place.line, text, parts..., 0);
        },
        parms...);
}

template <class... Parms>
void sendText(OvxObject *logger, const char *text, const Parms &...parms) noexcept
{
    requireRoom<sizeof...(Parms)>();
    withParts([&](auto... parts) { OvxLogText(logger, text, parts..., 0); }, parms...);
}

// What the macros expand to, once the logger took the level. `literal` gives the text again, so
// that it can be checked; the arguments were evaluated for this call.
template <int TheLevel, class Literal, class... Args>
void sendChecked(OvxObject *logger, const MessageId &id, const Location &place, Literal literal,
                 const char *text, const Args &...args) noexcept
{
    constexpr Problem problem = checkText<Args...>(literal());
    requireNone<problem>();
    if constexpr (TheLevel >= OVX_LEVEL_INFO)
        sendMessage(messageCallOf(TheLevel), logger, id, text, place, ParmOf<Args>(args)...);
    else
        sendDebug(debugCallOf(TheLevel), logger, text, place, ParmOf<Args>(args)...);
}

template <class Literal, class... Args>
void sendCheckedText(OvxObject *logger, Literal literal, const char *text,
                     const Args &...args) noexcept
{
    constexpr Problem problem = checkText<Args...>(literal());
    requireNone<problem>();
    sendText(logger, text, ParmOf<Args>(args)...);
}

inline OvxObject *objectOf(OvxObject *object) noexcept
{
    return object;
}
inline OvxObject *objectOf(const Object &object) noexcept
{
    return object.get();
}

// Keeps a parameter from being deduced from a function's argument.
template <class Type>
struct NotDeduced {
    using type = Type;
};
template <class... Args>
using FormatFor = Format<typename NotDeduced<Args>::type...>;

} // namespace detail

/**
 * A logger. Its calls take a text, in which "%1$s" is the first argument, and arguments of ordinary
 * types: bool, char, integers, float, double, strings, void pointers, and properties made by
 * prop(). Integers go as int or long, whichever holds them all, and those without a sign that are
 * as wide as a long as the bits of one. A null string prints "(null)"; a null byte ends a string.
 * Nothing is converted when the logger does not take the level. No call throws.
 */
class Logger : public Object {
  public:
    Logger() = default;
    /** The logger called `name`; its class is "ovx_basiclogger", or what its configuration says. */
    explicit Logger(const char *name, const char *className = nullptr) : Object(name, className) {}
    /** An object that is known to be a logger. */
    explicit Logger(const Object &object) : Object(object) {}

    /** Says whether the logger would take an event of the level. Takes no lock. */
    bool takes(Level level) const noexcept { return OvxWouldLog(get(), static_cast<int>(level)); }

    /** Whether messages record where they were logged, as debugging text always does. At first so.
     */
    void recordPlaces(bool record) noexcept { places_ = record; }

    /** Logs at a level that is known only when the program runs. */
    template <class... Args>
    void log(Level level, detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        if (level >= Level::info)
            message(level, {}, format, args...);
        else
            debug(level, format, args...);
    }

    /** Logs a message of level INFO. */
    template <class... Args>
    void info(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        message(Level::info, {}, format, args...);
    }
    /** Logs a message of level WARN. */
    template <class... Args>
    void warn(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        message(Level::warn, {}, format, args...);
    }
    /** Logs a message of level ERROR. */
    template <class... Args>
    void error(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        message(Level::error, {}, format, args...);
    }
    /** Logs a message of level FATAL. */
    template <class... Args>
    void fatal(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        message(Level::fatal, {}, format, args...);
    }

    /** Logs a message that has translations; the text is what is shown without one. */
    template <class... Args>
    void message(Level level, const MessageId &id, detail::FormatFor<Args...> format,
                 const Args &...args) const noexcept
    {
        if (!takes(level)) return;
        detail::sendMessage(detail::messageCallOf(static_cast<int>(level)), get(), id,
                            format.text(), places_ ? format.location() : Location(),
                            detail::ParmOf<Args>(args)...);
    }

    /** Logs debugging text of level DEBUG_MIN. */
    template <class... Args>
    void debugMin(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        debug(Level::debugMin, format, args...);
    }
    /** Logs debugging text of level DEBUG_MID. */
    template <class... Args>
    void debugMid(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        debug(Level::debugMid, format, args...);
    }
    /** Logs debugging text of level DEBUG_MAX. */
    template <class... Args>
    void debugMax(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        debug(Level::debugMax, format, args...);
    }

    /** Logs plain text without level and place. */
    template <class... Args>
    void text(detail::FormatFor<Args...> format, const Args &...args) const noexcept
    {
        if (OvxWouldLog(get(), OVX_LEVEL_NONE))
            detail::sendText(get(), format.text(), detail::ParmOf<Args>(args)...);
    }

    /** Calls `work(logger)` when the logger takes the level: what only logging needs stands there.
     */
    template <class Work>
    void when(Level level, Work &&work) const
    {
        if (takes(level)) std::forward<Work>(work)(*this);
    }

  private:
    template <class... Args>
    void debug(Level level, const Format<Args...> &format, const Args &...args) const noexcept
    {
        if (!takes(level)) return;
        detail::sendDebug(detail::debugCallOf(static_cast<int>(level)), get(), format.text(),
                          format.location(), detail::ParmOf<Args>(args)...);
    }

    bool places_ = true;
};

} // namespace v0
} // namespace olvex
