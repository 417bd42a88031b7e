/*
 * Logging calls that need no markers, no closing 0 and no place in the source, for C11 and C++17:
 *
 *     OVX_LOG_WARN(log, "Disk %1$s is %2$d percent full", path, 93);
 *
 * A macro evaluates its logger once, and its other arguments only when the logger takes the level.
 * Arguments are bool, char, integers up to a long, float, double, strings and void pointers; one of
 * another type does not compile. Integers without a sign that are as wide as a long go as its bits,
 * which "%lu" and "%lx" print right. A null string prints "(null)". Each macro but OVX_LOG_TEXT
 * records file, line and function. A message takes 59 arguments, since its place takes 3 of the 62
 * entries of a list; more do not compile. In C++ the text must be a literal and is checked against
 * the arguments.
 *
 * Define OVX_LOG_NO_PLACES before including this header to leave the place out of messages.
 */
#ifndef OLVEX_LOGMACROS_H
#define OLVEX_LOGMACROS_H

#include <olvex/Log.h>

#ifdef __cplusplus
#include <olvex/front/Logger.hpp>
#else
#include <olvex/front/MacroLists.h>
#endif

/** Logs a message at OVX_LEVEL_INFO: logger, text, arguments. */
#define OVX_LOG_INFO(logger, ...) OVX_LOG_MESSAGE(INFO, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_WARN: logger, text, arguments. */
#define OVX_LOG_WARN(logger, ...) OVX_LOG_MESSAGE(WARN, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_ERROR: logger, text, arguments. */
#define OVX_LOG_ERROR(logger, ...) OVX_LOG_MESSAGE(ERROR, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_FATAL: logger, text, arguments. */
#define OVX_LOG_FATAL(logger, ...) OVX_LOG_MESSAGE(FATAL, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MIN: logger, text, arguments. */
#define OVX_LOG_DEBUG_MIN(logger, ...) OVX_LOG_DEBUG_AT(Min, MIN, logger, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MID: logger, text, arguments. */
#define OVX_LOG_DEBUG_MID(logger, ...) OVX_LOG_DEBUG_AT(Mid, MID, logger, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MAX: logger, text, arguments. */
#define OVX_LOG_DEBUG_MAX(logger, ...) OVX_LOG_DEBUG_AT(Max, MAX, logger, __VA_ARGS__)

/*
 * OVX_LOG_MESSAGE(LEVEL, logger, catalog, set, key, text, arguments...) logs a message that has
 * translations; LEVEL is INFO, WARN, ERROR or FATAL.
 *
 * OVX_LOG_WITH(LEVEL, logger, (properties...), text, arguments...) logs a message with properties
 * of the event, each of them OVX_NAMED(name, value), at least one.
 *
 * OVX_LOG_TEXT(logger, text, arguments...) logs plain text without level and place.
 */

/* The function of each level. */
#define OVX_CALL_INFO OvxLogInfo
#define OVX_CALL_WARN OvxLogWarn
#define OVX_CALL_ERROR OvxLogError
#define OVX_CALL_FATAL OvxLogFatal

#define OVX_JOIN(a, b) OVX_JOIN_OF(a, b)
#define OVX_JOIN_OF(a, b) a##b
#define OVX_FIRST(...) OVX_FIRST_OF(__VA_ARGS__, ~)
#define OVX_FIRST_OF(first, ...) first
#define OVX_BARE(...) __VA_ARGS__

/* Runs the statement that comes last when the logger takes the level; `ovxLogger` is the logger. */
#define OVX_LOG_IF_TAKEN(logger, level, ...)                                                       \
    do {                                                                                           \
        OvxObject *const ovxLogger = OVX_OBJECT_OF(logger);                                        \
        if (OvxWouldLog(ovxLogger, (level))) __VA_ARGS__;                                          \
    } while (0)

#ifdef __cplusplus

#define OVX_OBJECT_OF(logger) ::olvex::detail::objectOf(logger)
#define OVX_NAMED(name, value) ::olvex::prop((name), (value))

#ifdef OVX_LOG_NO_PLACES
#define OVX_PLACE ::olvex::Location()
#else
#define OVX_PLACE                                                                                  \
    ::olvex::Location                                                                              \
    {                                                                                              \
        __FILE__, __LINE__, __func__                                                               \
    }
#endif

/* The text a second time, as what a constant expression can call. */
#define OVX_LITERAL(...) [] { return OVX_FIRST(__VA_ARGS__); }

#define OVX_LOG_MESSAGE(LEVEL, logger, catalog, set, key, ...)                                     \
    OVX_LOG_IF_TAKEN(                                                                              \
        logger, OVX_LEVEL_##LEVEL,                                                                 \
        ::olvex::detail::sendChecked<OVX_LEVEL_##LEVEL>(ovxLogger, {catalog, set, key}, OVX_PLACE, \
                                                        OVX_LITERAL(__VA_ARGS__), __VA_ARGS__))
#define OVX_LOG_DEBUG_AT(Name, NAME, logger, ...)                                                  \
    OVX_LOG_IF_TAKEN(logger, OVX_LEVEL_DEBUG_##NAME,                                               \
                     ::olvex::detail::sendChecked<OVX_LEVEL_DEBUG_##NAME>(                         \
                         ovxLogger, {}, ::olvex::Location{__FILE__, __LINE__, __func__},           \
                         OVX_LITERAL(__VA_ARGS__), __VA_ARGS__))
#define OVX_LOG_WITH(LEVEL, logger, properties, ...)                                               \
    OVX_LOG_MESSAGE(LEVEL, logger, NULL, 0, 0, __VA_ARGS__, OVX_BARE properties)
#define OVX_LOG_TEXT(logger, ...)                                                                  \
    OVX_LOG_IF_TAKEN(                                                                              \
        logger, OVX_LEVEL_NONE,                                                                    \
        ::olvex::detail::sendCheckedText(ovxLogger, OVX_LITERAL(__VA_ARGS__), __VA_ARGS__))

#else

#define OVX_OBJECT_OF(logger) (logger)

/* The marker of a value, and the value as it is passed: no value of another type gets through. */
#define OVX_MARKER(x)                                                                              \
    _Generic((x), OVX_EACH_TEXT(OVX_PARM_STRING), OVX_EACH_INT(OVX_PARM_INT),                      \
        OVX_EACH_LONG(OVX_PARM_LONG, OVX_PARM_LONG), bool: OVX_PARM_BOOL, char: OVX_PARM_CHAR,     \
        float: OVX_PARM_FLOAT, double: OVX_PARM_DOUBLE, void *: OVX_PARM_LONG,                     \
        const void *: OVX_PARM_LONG)
#define OVX_VALUE(x)                                                                               \
    _Generic((x), OVX_EACH_TEXT(ovxTextParm), OVX_EACH_INT(ovxIntParm),                            \
        OVX_EACH_LONG(ovxLongParm, ovxWordParm), bool: ovxIntParm, char: ovxIntParm,               \
        float: ovxDoubleParm, double: ovxDoubleParm, void *: ovxPointerParm,                       \
        const void *: ovxPointerParm)(x)

#define OVX_EACH_TEXT(to) char * : to, const char * : to
#define OVX_EACH_INT(to)                                                                           \
    signed char : to, unsigned char : to, short : to, unsigned short : to, int : to
#if __LONG_MAX__ == __LONG_LONG_MAX__
#define OVX_EACH_LONG(to, word)                                                                    \
    unsigned : word, long : to, unsigned long : word, long long : to, unsigned long long : word
#else
#define OVX_EACH_LONG(to, word) unsigned : word, long : to, unsigned long : word
#endif

#define OVX_ENTRY(x) OVX_MARKER(x), OVX_VALUE(x),
#define OVX_NAMED(name, value) OVX_PROP, (name), OVX_MARKER(value), OVX_VALUE(value)

/* Text and arguments as text, markers and values, with a comma behind the last. */
#define OVX_TEXT_AND_LIST(...)                                                                     \
    OVX_TEXT_AND_LIST_OF(OVX_JOIN(OVX_LIST_, OVX_COUNT(__VA_ARGS__)), __VA_ARGS__, ~)
#define OVX_TEXT_AND_LIST_OF(list, text, ...) (text), list(__VA_ARGS__)

#ifdef OVX_LOG_NO_PLACES
#define OVX_PLACE 0
#else
#define OVX_PLACE                                                                                  \
    OVX_PROP, "ovx_prop_srcfile", OVX_PARM_STRING, __FILE__, OVX_PROP, "ovx_prop_srcline",         \
        OVX_PARM_INT, __LINE__, OVX_PROP, "ovx_prop_srcfunction", OVX_PARM_STRING, __func__, 0
#endif

#define OVX_LOG_MESSAGE(LEVEL, logger, catalog, set, key, ...)                                     \
    OVX_LOG_IF_TAKEN(logger, OVX_LEVEL_##LEVEL,                                                    \
                     OVX_CALL_##LEVEL(ovxLogger, (catalog), (set), (key),                          \
                                      OVX_TEXT_AND_LIST(__VA_ARGS__) OVX_PLACE))
#define OVX_LOG_DEBUG_AT(Name, NAME, logger, ...)                                                  \
    OVX_LOG_IF_TAKEN(logger, OVX_LEVEL_DEBUG_##NAME,                                               \
                     OvxLogDebug##Name(ovxLogger, __FILE__, __func__, __LINE__,                    \
                                       OVX_TEXT_AND_LIST(__VA_ARGS__) 0))
/* A property is one entry of the list, but four arguments here. */
#define OVX_LOG_WITH(LEVEL, logger, properties, ...)                                               \
    do {                                                                                           \
        _Static_assert(OVX_COUNT(__VA_ARGS__) - 1 + (OVX_COUNT properties) / 4 <= 59,              \
                       "olvex: a parameter list has at most 62 entries; where a message stands "   \
                       "in the source takes 3 of them");                                           \
        OVX_LOG_IF_TAKEN(logger, OVX_LEVEL_##LEVEL,                                                \
                         OVX_CALL_##LEVEL(ovxLogger, NULL, 0, 0,                                   \
                                          OVX_TEXT_AND_LIST(__VA_ARGS__) OVX_BARE properties,      \
                                          OVX_PLACE));                                             \
    } while (0)
#define OVX_LOG_TEXT(logger, ...)                                                                  \
    OVX_LOG_IF_TAKEN(logger, OVX_LEVEL_NONE,                                                       \
                     OvxLogText(ovxLogger, OVX_TEXT_AND_LIST(__VA_ARGS__) 0))

/** What OVX_VALUE passes for each type. */
static inline int ovxIntParm(int value)
{
    return value;
}
/** See ovxIntParm. */
static inline long ovxLongParm(long value)
{
    return value;
}
/** See ovxIntParm: the bits of an integer without a sign. */
static inline long ovxWordParm(unsigned long value)
{
    return (long)value;
}
/** See ovxIntParm. */
static inline double ovxDoubleParm(double value)
{
    return value;
}
/** See ovxIntParm: a missing text, which would end the message where it stands, is shown. */
static inline const char *ovxTextParm(const char *value)
{
    return value ? value : "(null)";
}
/** See ovxIntParm. */
static inline long ovxPointerParm(const void *value)
{
    return (long)value;
}

#endif

#endif
