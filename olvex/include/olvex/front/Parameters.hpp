// Ordinary values as entries of a typed parameter list: which marker each type has, what follows
// the marker, and which conversions of a text can print it. Included by <olvex/olvex.hpp>.
#pragma once

#include <olvex/Log.h>
#include <olvex/Memory.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

namespace olvex {

// Keeps these names apart from others in the namespace when programs and libraries are linked.
inline namespace v0 {

/** How many entries a parameter list may have; the three that say where a call stands count. */
constexpr std::size_t kMostEntries = 62;
constexpr std::size_t kPlaceEntries = 3;

/** A named property of an event, in the place of a parameter: log.warn("text", prop("a", 1)). */
template <class Value>
struct Prop {
    const char *name;   /**< borrowed */
    const Value &value; /**< borrowed */
};

/** A property for one logging call. Name and value are borrowed for that call. */
template <class Value>
constexpr Prop<Value> prop(const char *name, const Value &value) noexcept
{
    return {name, value};
}

namespace detail {

// What a parameter is to a conversion.
enum class Kind { property, boolean, character, integer, wholeWord, floating, text, pointer };

template <class Type>
using Decayed = std::decay_t<const Type &>;

// The three ways in which a type can be text, the first that holds: a pointer, std::string and its
// like, a view.
template <class Type>
constexpr bool isPointerText =
    std::is_convertible_v<const Type &, const char *> && !std::is_integral_v<Type>;
template <class Type, class = void>
inline constexpr bool isStringText = false;
template <class Type>
inline constexpr bool
    isStringText<Type, std::enable_if_t<std::is_convertible_v<
                           decltype(std::declval<const Type &>().c_str()), const char *>>> =
        !isPointerText<Type>;
template <class Type>
constexpr bool isViewText = std::is_convertible_v<const Type &, std::string_view> &&
                            !isPointerText<Type> && !isStringText<Type>;

template <class Type, class = void>
inline constexpr bool isPlainEnum = false;
template <class Type>
inline constexpr bool isPlainEnum<Type, std::enable_if_t<std::is_enum_v<Type>>> =
    std::is_convertible_v<Type, std::underlying_type_t<Type>>;

// Integers of which every value is an int.
template <class Type>
constexpr bool fitsInt = std::is_signed_v<Type> ? sizeof(Type) <= sizeof(int)
                                                : sizeof(Type) < sizeof(int);

template <class Type>
constexpr bool isVoidPointer =
    std::is_pointer_v<Type> &&std::is_void_v<std::remove_pointer_t<Type>>;

// One entry: how it is described, and the parts that stand for it in a C call, a marker first. Made
// from a reference to the value, it lives for the call; it does not throw.
template <class Type, class = void>
struct Parm {
    static_assert(sizeof(Type) == 0,
                  "olvex: a logging call takes bool, char, integers, float, double, strings and "
                  "void pointers; convert this argument first");
    // So that this is the only error.
    static constexpr Kind kind = Kind::integer;
    static constexpr std::size_t kParts = 0;
    explicit Parm(const Type &) noexcept {}
};

template <Kind TheKind, int Marker, class Passed>
struct Simple {
    static constexpr Kind kind = TheKind;
    Passed passed;

    static constexpr std::size_t kParts = 2;
    template <std::size_t Part>
    auto part() const noexcept
    {
        if constexpr (Part == 0)
            return Marker;
        else
            return passed;
    }
};

template <>
struct Parm<bool> : Simple<Kind::boolean, OVX_PARM_BOOL, int> {
    explicit Parm(bool value) noexcept : Simple{value ? 1 : 0} {}
};

template <>
struct Parm<char> : Simple<Kind::character, OVX_PARM_CHAR, int> {
    explicit Parm(char value) noexcept : Simple{value} {}
};

template <class Type>
struct Parm<Type, std::enable_if_t<std::is_integral_v<Type> && fitsInt<Type>>>
    : Simple<Kind::integer, OVX_PARM_INT, int> {
    explicit Parm(Type value) noexcept : Simple<Kind::integer, OVX_PARM_INT, int>{value} {}
};

// The widest integers. One that has no sign goes as the bits of a long, which the conversions "u",
// "x" and "o" print right; a check of the text refuses "d" for it.
template <class Type>
struct Parm<Type, std::enable_if_t<std::is_integral_v<Type> && !fitsInt<Type>>>
    : Simple<std::is_signed_v<Type> || sizeof(Type) < sizeof(long) ? Kind::integer
                                                                   : Kind::wholeWord,
             OVX_PARM_LONG, long> {
    static_assert(sizeof(Type) <= sizeof(long),
                  "olvex: this integer is wider than a long, the widest parameter there is");
    using Base = Simple<std::is_signed_v<Type> || sizeof(Type) < sizeof(long) ? Kind::integer
                                                                              : Kind::wholeWord,
                        OVX_PARM_LONG, long>;
    explicit Parm(Type value) noexcept : Base{static_cast<long>(value)} {}
};

template <class Type>
struct Parm<Type, std::enable_if_t<isPlainEnum<Type>>> : Parm<std::underlying_type_t<Type>> {
    explicit Parm(Type value) noexcept
        : Parm<std::underlying_type_t<Type>>(static_cast<std::underlying_type_t<Type>>(value))
    {}
};

template <>
struct Parm<float> : Simple<Kind::floating, OVX_PARM_FLOAT, double> {
    explicit Parm(float value) noexcept : Simple{static_cast<double>(value)} {}
};

template <>
struct Parm<double> : Simple<Kind::floating, OVX_PARM_DOUBLE, double> {
    explicit Parm(double value) noexcept : Simple{value} {}
};

// Printed by "%p".
template <class Type>
struct Parm<Type, std::enable_if_t<isVoidPointer<Type>>>
    : Simple<Kind::pointer, OVX_PARM_LONG, long> {
    explicit Parm(Type value) noexcept
        : Simple<Kind::pointer, OVX_PARM_LONG, long>{reinterpret_cast<long>(value)}
    {}
};

using TextParm = Simple<Kind::text, OVX_PARM_STRING, const char *>;

// A missing text is shown as such: as a parameter it would end the message where it stands.
template <class Type>
struct Parm<Type, std::enable_if_t<isPointerText<Type>>> : TextParm {
    explicit Parm(const char *value) noexcept : TextParm{value ? value : "(null)"} {}
};

template <class Type>
struct Parm<Type, std::enable_if_t<isStringText<Type>>> : TextParm {
    explicit Parm(const Type &value) noexcept : TextParm{value.c_str()} {}
};

// A text without a terminator is copied: into a block of its own when it is long, and cut to what
// fits here when there is no memory.
class Terminated {
  public:
    explicit Terminated(std::string_view text) noexcept
    {
        if (text.size() >= sizeof short_)
            long_ = static_cast<char *>(BaxMemoryMalloc(text.size() + 1));
        const std::size_t size = long_ ? text.size() : text.substr(0, sizeof short_ - 1).size();
        char *target = long_ ? long_ : short_;
        if (size > 0) std::memcpy(target, text.data(), size);
        target[size] = '\0';
    }
    ~Terminated() { BaxMemoryFree(long_); }
    Terminated(const Terminated &) = delete;
    Terminated &operator=(const Terminated &) = delete;

    const char *get() const noexcept { return long_ ? long_ : short_; }

  private:
    char short_[64];
    char *long_ = nullptr;
};

template <class Type>
struct Parm<Type, std::enable_if_t<isViewText<Type>>> {
    static constexpr Kind kind = Kind::text;
    Terminated text;

    explicit Parm(std::string_view value) noexcept : text(value) {}
    static constexpr std::size_t kParts = 2;
    template <std::size_t Part>
    auto part() const noexcept
    {
        return TextParm{text.get()}.template part<Part>();
    }
};

template <class Type>
using ParmOf = Parm<Decayed<Type>>;

template <class Value>
struct Parm<Prop<Value>> {
    static constexpr Kind kind = Kind::property;
    const char *name;
    ParmOf<Value> value;

    explicit Parm(const Prop<Value> &prop) noexcept : name(prop.name), value(prop.value) {}
    static constexpr std::size_t kParts = 2 + ParmOf<Value>::kParts;
    template <std::size_t Part>
    auto part() const noexcept
    {
        if constexpr (Part == 0)
            return OVX_PROP;
        else if constexpr (Part == 1)
            return name;
        else
            return value.template part<Part - 2>();
    }
};

// Parameters that are found by their number.
template <std::size_t Number, class TheParm>
struct Numbered {
    const TheParm &parm;
};
template <std::size_t Number, class TheParm>
const TheParm &parmOf(const Numbered<Number, TheParm> &numbered) noexcept
{
    return numbered.parm;
}

// All parts of a list, in the order of the C call. No tuple: compilers take seconds to join sixty.
template <class Numbers, class... Parms>
struct PartsOf;
template <std::size_t... Number, class... Parms>
struct PartsOf<std::index_sequence<Number...>, Parms...> : Numbered<Number, Parms>... {
    struct Place {
        std::size_t parm;
        std::size_t part;
    };
    static constexpr std::size_t kCount = (std::size_t(0) + ... + Parms::kParts);
    static constexpr auto kPlaces = [] {
        std::array<Place, kCount> places{};
        std::size_t at = 0;
        [[maybe_unused]] const auto add = [&](std::size_t parm, std::size_t parts) {
            for (std::size_t part = 0; part < parts; ++part)
                places[at++] = {parm, part};
        };
        (add(Number, Parms::kParts), ...);
        return places;
    }();
};

template <class Call, class Parts, std::size_t... At>
void callWithParts(Call &call, [[maybe_unused]] const Parts &parts,
                   std::index_sequence<At...>) noexcept
{
    call(parmOf<Parts::kPlaces[At].parm>(parts).template part<Parts::kPlaces[At].part>()...);
}

// Makes the call with the parts of all parameters as its arguments.
template <class Call, class... Parms>
void withParts(Call call, const Parms &...parms) noexcept
{
    using Parts = PartsOf<std::index_sequence_for<Parms...>, Parms...>;
    callWithParts(call, Parts{{parms}...}, std::make_index_sequence<Parts::kCount>());
}

} // namespace detail
} // namespace v0
} // namespace olvex
