/*
 * What the headers need that `olvex catalog header` makes: a call that logs a message and records
 * where, and parameters that take no argument of another type. For C11 and C++17.
 */
#ifndef OLVEX_FRONT_CATALOGCALLS_H
#define OLVEX_FRONT_CATALOGCALLS_H

#include <olvex/LogMacros.h>

/* Calls `function` with logger, level and what follows when the logger takes the level. */
#define OVX_CATALOG_CALL(logger, level, function, ...)                                             \
    do {                                                                                           \
        OvxObject *const ovxLogger = OVX_OBJECT_OF(logger);                                        \
        const int ovxLevel = OVX_LEVEL_OF(level);                                                  \
        if (OvxWouldLog(ovxLogger, ovxLevel)) function(ovxLogger, ovxLevel, __VA_ARGS__);          \
    } while (0)

/* The end of a parameter list: the level, then where the call stands. */
#define OVX_CATALOG_END(level, file, line, function)                                               \
    level, OVX_PROP, "ovx_prop_srcfile", OVX_PARM_STRING, file, OVX_PROP, "ovx_prop_srcline",      \
        OVX_PARM_INT, line, OVX_PROP, "ovx_prop_srcfunction", OVX_PARM_STRING, function, 0

#ifdef __cplusplus

namespace olvex {
inline namespace v0 {
namespace detail {

// True for integers of which every value fits the target: int or long.
template <class Type, class Target>
constexpr bool isWithin = std::is_integral_v<Type> &&
                          (sizeof(Type) < sizeof(Target) ||
                           (std::is_signed_v<Type> && sizeof(Type) == sizeof(Target)));

template <class Type>
constexpr int asInt(Type value) noexcept
{
    static_assert(isWithin<Type, int>, "olvex: this parameter of the message is an int");
    return static_cast<int>(value);
}
template <class Type>
constexpr long asLong(Type value) noexcept
{
    static_assert(isWithin<Type, long>, "olvex: this parameter of the message is a long");
    return static_cast<long>(value);
}
template <class Type>
constexpr long asWord(Type value) noexcept
{
    static_assert(std::is_integral_v<Type> && sizeof(Type) <= sizeof(long),
                  "olvex: this parameter of the message is an integer up to unsigned long");
    return static_cast<long>(value);
}
template <class Type>
constexpr double asDouble(Type value) noexcept
{
    static_assert(std::is_same_v<Type, double> || std::is_same_v<Type, float>,
                  "olvex: this parameter of the message is a double");
    return static_cast<double>(value);
}
template <class Type>
constexpr int asChar(Type value) noexcept
{
    static_assert(std::is_same_v<Type, char>, "olvex: this parameter of the message is a char");
    return value;
}
template <class Type>
long asPointer(Type value) noexcept
{
    static_assert(isVoidPointer<Type>, "olvex: this parameter of the message is a void pointer");
    return reinterpret_cast<long>(value);
}

// The text lives as long as what asText returns: to the end of the call.
template <class Type>
ParmOf<Type> asText(const Type &value) noexcept
{
    static_assert(ParmOf<Type>::kind == Kind::text,
                  "olvex: this parameter of the message is a string");
    return ParmOf<Type>(value);
}
template <class Held>
const char *textOf(const Held &held) noexcept
{
    return held.template part<1>();
}

} // namespace detail
} // namespace v0
} // namespace olvex

#define OVX_LEVEL_OF(level) static_cast<int>(level)
#define OVX_AS_INT(x) ::olvex::detail::asInt(x)
#define OVX_AS_LONG(x) ::olvex::detail::asLong(x)
#define OVX_AS_WORD(x) ::olvex::detail::asWord(x)
#define OVX_AS_DOUBLE(x) ::olvex::detail::asDouble(x)
#define OVX_AS_CHAR(x) ::olvex::detail::asChar(x)
#define OVX_AS_POINTER(x) ::olvex::detail::asPointer(x)
#define OVX_AS_TEXT(x) ::olvex::detail::textOf(::olvex::detail::asText(x))

#else

#if __LONG_MAX__ > __INT_MAX__
#define OVX_EACH_WITHIN_LONG(to) unsigned : to, long : to, long long : to
#else
#define OVX_EACH_WITHIN_LONG(to) long : to
#endif

/* A character constant is an int in C. */
#define OVX_LEVEL_OF(level) (level)
#define OVX_AS_INT(x)                                                                              \
    _Generic((x), OVX_EACH_INT(ovxIntParm), bool : ovxIntParm, char : ovxIntParm)(x)
#define OVX_AS_LONG(x)                                                                             \
    _Generic((x), OVX_EACH_INT(ovxLongParm), bool                                                  \
             : ovxLongParm, char                                                                   \
             : ovxLongParm, OVX_EACH_WITHIN_LONG(ovxLongParm))(x)
#define OVX_AS_WORD(x)                                                                             \
    _Generic((x), OVX_EACH_INT(ovxLongParm), bool                                                  \
             : ovxLongParm, char                                                                   \
             : ovxLongParm, OVX_EACH_LONG(ovxLongParm, ovxWordParm))(x)
#define OVX_AS_DOUBLE(x) _Generic((x), float : ovxDoubleParm, double : ovxDoubleParm)(x)
#define OVX_AS_CHAR(x) _Generic((x), char : ovxIntParm, int : ovxIntParm)(x)
#define OVX_AS_POINTER(x) _Generic((x), void * : ovxPointerParm, const void * : ovxPointerParm)(x)
#define OVX_AS_TEXT(x) _Generic((x), OVX_EACH_TEXT(ovxTextParm))(x)

#endif

#endif
