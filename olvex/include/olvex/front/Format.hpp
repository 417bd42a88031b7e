// Texts with conversions, checked against the parameters of a call while the program is compiled:
// always by the macros of <olvex/LogMacros.h>, from C++20 on by the methods of Logger too.
#pragma once

#include <olvex/front/Parameters.hpp>

#if defined(__cpp_consteval) && __cpp_consteval >= 201811L
#define OVX_CONSTEVAL consteval
#else
#define OVX_CONSTEVAL constexpr
#endif

namespace olvex {
inline namespace v0 {

/** Where a call stands in the source; without a file it is not recorded. */
struct Location {
    const char *file = nullptr;     /**< borrowed */
    int line = 0;                   /**< from 1 on */
    const char *function = nullptr; /**< borrowed; may be none */
};

namespace detail {

enum class Problem {
    none,
    unknownConversion,
    missingParameter,
    unusedParameter,
    wrongConversion,
    mixedPositions
};

// Reads a text as the toolkit will when it prints it. `Count` is that of all entries; properties
// among them are no parameters.
template <std::size_t Count>
class TextReader {
  public:
    constexpr TextReader(const char *text, const Kind (&kinds)[Count]) noexcept : at_(text)
    {
        for (const Kind kind : kinds)
            if (kind != Kind::property) kinds_[given_++] = kind;
        --given_; // the one behind the last
    }

    /** The first problem of the text. */
    constexpr Problem run() noexcept
    {
        while (*at_ && problem_ == Problem::none)
            if (*at_++ == '%') readPercent();
        for (std::size_t i = 0; i < given_ && problem_ == Problem::none; ++i)
            if (!used_[i]) problem_ = Problem::unusedParameter;
        return problem_;
    }

  private:
    static constexpr bool isIn(char character, const char *set) noexcept
    {
        for (; *set; ++set)
            if (*set == character) return true;
        return false;
    }
    static constexpr bool isDigit(char character) noexcept
    {
        return character >= '0' && character <= '9';
    }

    constexpr void readPercent() noexcept
    {
        if (*at_ == '%') {
            ++at_;
            return;
        }
        const std::size_t position = readPosition();
        while (*at_ && isIn(*at_, "-+ #0'"))
            ++at_;
        readSize();
        if (*at_ == '.') {
            ++at_;
            readSize();
        }
        const char modifier = readModifier();
        use(position, *at_, modifier);
        if (*at_) ++at_;
    }

    constexpr std::size_t readNumber() noexcept
    {
        std::size_t number = 0;
        for (; isDigit(*at_); ++at_)
            if (number < 100000) number = number * 10 + static_cast<std::size_t>(*at_ - '0');
        return number;
    }

    // The number before "$", 0 when there is none.
    constexpr std::size_t readPosition() noexcept
    {
        const char *start = at_;
        const std::size_t number = *at_ == '0' ? 0 : readNumber();
        if (number > 0 && *at_ == '$') {
            ++at_;
            return number;
        }
        at_ = start;
        return 0;
    }

    // A width or a precision, which may be a parameter of its own.
    constexpr void readSize() noexcept
    {
        if (*at_ != '*') {
            readNumber();
            return;
        }
        ++at_;
        use(readPosition(), '*', '\0');
    }

    // The first character of what stands before the conversion.
    constexpr char readModifier() noexcept
    {
        const char modifier = *at_;
        if (modifier == 'I' && at_[1] == '6' && at_[2] == '4') {
            at_ += 3;
        } else if (modifier && isIn(modifier, "hlLjqtzZ")) {
            ++at_;
            if ((modifier == 'h' || modifier == 'l') && *at_ == modifier) ++at_;
        } else {
            return '\0';
        }
        return modifier;
    }

    constexpr void use(std::size_t position, char conversion, char modifier) noexcept
    {
        if (!conversion || !isIn(conversion, "*diouxXcCsSpeEfFgGaA") ||
            (modifier == 'L' && isIn(conversion, "diouxX"))) {
            problem_ = Problem::unknownConversion;
            return;
        }
        (position > 0 ? hasPositions_ : hasNone_) = true;
        if (hasPositions_ && hasNone_) {
            problem_ = Problem::mixedPositions; // "%1$d % of", which prints octal
            return;
        }
        const std::size_t index = position > 0 ? position - 1 : next_++;
        if (index >= given_) {
            problem_ = Problem::missingParameter;
            return;
        }
        used_[index] = true;
        if (!serves(kinds_[index], conversion, modifier)) problem_ = Problem::wrongConversion;
    }

    static constexpr bool serves(Kind kind, char conversion, char modifier) noexcept
    {
        switch (kind) {
        case Kind::boolean: return isIn(conversion, "*diouxX");
        case Kind::character:
        case Kind::integer: return isIn(conversion, "*diouxXcC");
        case Kind::wholeWord: return isIn(conversion, "ouxX");
        case Kind::floating: return isIn(conversion, "eEfFgGaA");
        case Kind::text: return conversion == 's' && modifier != 'l';
        case Kind::pointer: return conversion == 'p';
        case Kind::property: break;
        }
        return false;
    }

    const char *at_;
    Kind kinds_[Count] = {};
    bool used_[Count] = {};
    std::size_t given_ = 0;
    std::size_t next_ = 0;
    bool hasPositions_ = false;
    bool hasNone_ = false;
    Problem problem_ = Problem::none;
};

template <class... Args>
constexpr Problem checkText(const char *text) noexcept
{
    constexpr Kind kinds[] = {ParmOf<Args>::kind..., Kind::integer};
    return TextReader<sizeof...(Args) + 1>(text, kinds).run();
}

template <std::size_t Entries>
constexpr void requireRoom() noexcept
{
    static_assert(Entries <= kMostEntries,
                  "olvex: a parameter list has at most 62 entries; where a message stands in the "
                  "source takes 3 of them");
}

// Not constant expressions: a compiler that meets one of these while it checks a text names it.
void THE_TEXT_HAS_A_PERCENT_SIGN_THAT_BEGINS_NO_CONVERSION();
void THE_TEXT_USES_A_PARAMETER_THAT_IS_NOT_GIVEN();
void A_PARAMETER_IS_NOT_USED_BY_THE_TEXT();
void A_CONVERSION_DOES_NOT_FIT_ITS_PARAMETER();
void THE_TEXT_MIXES_CONVERSIONS_WITH_AND_WITHOUT_A_POSITION();

constexpr void require(Problem problem)
{
    switch (problem) {
    case Problem::none: break;
    case Problem::unknownConversion: return THE_TEXT_HAS_A_PERCENT_SIGN_THAT_BEGINS_NO_CONVERSION();
    case Problem::missingParameter: return THE_TEXT_USES_A_PARAMETER_THAT_IS_NOT_GIVEN();
    case Problem::unusedParameter: return A_PARAMETER_IS_NOT_USED_BY_THE_TEXT();
    case Problem::wrongConversion: return A_CONVERSION_DOES_NOT_FIT_ITS_PARAMETER();
    case Problem::mixedPositions: return THE_TEXT_MIXES_CONVERSIONS_WITH_AND_WITHOUT_A_POSITION();
    }
}

template <Problem Found>
constexpr void requireNone() noexcept
{
    static_assert(Found != Problem::unknownConversion,
                  "olvex: the text has a '%' that begins no conversion");
    static_assert(Found != Problem::missingParameter,
                  "olvex: the text uses a parameter that is not given");
    static_assert(Found != Problem::unusedParameter, "olvex: a parameter is not used by the text");
    static_assert(Found != Problem::wrongConversion,
                  "olvex: a conversion of the text does not fit its parameter");
    static_assert(Found != Problem::mixedPositions,
                  "olvex: the text mixes conversions with and without a position");
}

} // namespace detail

/** A text that is not checked, for texts that are known only when the program runs. */
struct Unchecked {
    const char *text;  /**< borrowed */
    Location location; /**< of the call of unchecked() */
};

/** Marks a text (borrowed for the call) as not to be checked: log.info(unchecked(text), ...). */
inline Unchecked unchecked(const char *text, const char *file = __builtin_FILE(),
                           int line = __builtin_LINE(),
                           const char *function = __builtin_FUNCTION()) noexcept
{
    return {text, {file, line, function}};
}

/**
 * The text of a logging call together with the place of that call. Made of a literal, which is
 * checked against the arguments from C++20 on, or of unchecked().
 */
template <class... Args>
class Format {
  public:
    /** Of a literal. */
    template <std::size_t Size>
    OVX_CONSTEVAL Format(const char (&text)[Size], const char *file = __builtin_FILE(),
                         int line = __builtin_LINE(), const char *function = __builtin_FUNCTION())
        : text_(text), location_{file, line, function}
    {
#if defined(__cpp_consteval) && __cpp_consteval >= 201811L
        detail::require(detail::checkText<Args...>(text));
#endif
    }
    /** Of a text that is not checked. */
    Format(const Unchecked &text) noexcept : text_(text.text), location_(text.location) {}

    /** The text, borrowed. */
    constexpr const char *text() const noexcept
    {
        return text_;
    }
    /** Where the call stands. */
    constexpr const Location &location() const noexcept
    {
        return location_;
    }

  private:
    const char *text_;
    Location location_;
};

} // namespace v0
} // namespace olvex
