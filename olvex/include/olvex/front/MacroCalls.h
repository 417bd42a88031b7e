/*
 * What the macros of <olvex/LogMacros.h> expand to, in C++ and in C. Not for programs.
 */
#ifndef OLVEX_FRONT_MACROCALLS_H
#define OLVEX_FRONT_MACROCALLS_H

#include <olvex/Log.h>

#ifdef __cplusplus
#include <olvex/front/Logger.hpp>
#else
#include <olvex/front/MacroLists.h>
#endif

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
#define OVX_IF_TAKEN(logger, level, ...)                                                           \
    do {                                                                                           \
        OvxObject *const ovxLogger = OVX_OBJECT_OF(logger);                                        \
        if (OvxWouldLog(ovxLogger, (level))) __VA_ARGS__;                                          \
    } while (0)

#ifdef __cplusplus

#define OVX_OBJECT_OF(logger) ::olvex::detail::objectOf(logger)
#define OVX_NAMED_ENTRY(name, value) ::olvex::prop((name), (value))

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

#define OVX_MESSAGE_CALL(level, function, logger, catalog, set, key, ...)                          \
    OVX_IF_TAKEN(logger, level,                                                                    \
                 ::olvex::detail::sendChecked<level>(ovxLogger, {catalog, set, key}, OVX_PLACE,    \
                                                     OVX_LITERAL(__VA_ARGS__), __VA_ARGS__))
#define OVX_DEBUG_CALL(Name, NAME, logger, ...)                                                    \
    OVX_IF_TAKEN(logger, OVX_LEVEL_DEBUG_##NAME,                                                   \
                 ::olvex::detail::sendChecked<OVX_LEVEL_DEBUG_##NAME>(                             \
                     ovxLogger, {}, ::olvex::Location{__FILE__, __LINE__, __func__},               \
                     OVX_LITERAL(__VA_ARGS__), __VA_ARGS__))
#define OVX_WITH_CALL(level, function, logger, properties, ...)                                    \
    OVX_MESSAGE_CALL(level, function, logger, NULL, 0, 0, __VA_ARGS__, OVX_BARE properties)
#define OVX_TEXT_CALL(logger, ...)                                                                 \
    OVX_IF_TAKEN(                                                                                  \
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
#define OVX_NAMED_ENTRY(name, value) OVX_PROP, (name), OVX_MARKER(value), OVX_VALUE(value)

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

#define OVX_MESSAGE_CALL(level, function, logger, catalog, set, key, ...)                          \
    OVX_IF_TAKEN(                                                                                  \
        logger, level,                                                                             \
        function(ovxLogger, (catalog), (set), (key), OVX_TEXT_AND_LIST(__VA_ARGS__) OVX_PLACE))
#define OVX_DEBUG_CALL(Name, NAME, logger, ...)                                                    \
    OVX_IF_TAKEN(logger, OVX_LEVEL_DEBUG_##NAME,                                                   \
                 OvxLogDebug##Name(ovxLogger, __FILE__, __func__, __LINE__,                        \
                                   OVX_TEXT_AND_LIST(__VA_ARGS__) 0))
/* A property is one entry of the list, but four arguments here. */
#define OVX_WITH_CALL(level, function, logger, properties, ...)                                    \
    do {                                                                                           \
        _Static_assert(OVX_COUNT(__VA_ARGS__) - 1 + (OVX_COUNT properties) / 4 <= 59,              \
                       "olvex: a parameter list has at most 62 entries; where a message stands "   \
                       "in the source takes 3 of them");                                           \
        OVX_IF_TAKEN(logger, level,                                                                \
                     function(ovxLogger, NULL, 0, 0,                                               \
                              OVX_TEXT_AND_LIST(__VA_ARGS__) OVX_BARE properties, OVX_PLACE));     \
    } while (0)
#define OVX_TEXT_CALL(logger, ...)                                                                 \
    OVX_IF_TAKEN(logger, OVX_LEVEL_NONE, OvxLogText(ovxLogger, OVX_TEXT_AND_LIST(__VA_ARGS__) 0))

/* What OVX_VALUE passes for each type. */
static inline int ovxIntParm(int value)
{
    return value;
}
static inline long ovxLongParm(long value)
{
    return value;
}
/* The bits of an integer without a sign. */
static inline long ovxWordParm(unsigned long value)
{
    return (long)value;
}
static inline double ovxDoubleParm(double value)
{
    return value;
}
/* A missing text, which would end the message where it stands, is shown. */
static inline const char *ovxTextParm(const char *value)
{
    return value ? value : "(null)";
}
static inline long ovxPointerParm(const void *value)
{
    return (long)value;
}

#endif

#endif
