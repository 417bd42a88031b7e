// See Check.h.
#include "catalog/Check.h"

#include <algorithm>

namespace tools::catalog {

namespace {

using std::string_view;

constexpr string_view kFlags = "-+ #0'";
constexpr string_view kLengths = "hlLqjzt";
constexpr string_view kConversions = "diouxXeEfFgGaAcCsSp";
constexpr int kMostArguments = 32767;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads the directives of one text, each of which stands at the beginning of `rest_` in turn.
class DirectiveReader {
  public:
    explicit DirectiveReader(string_view text) : rest_(text) {}

    Placeholders read()
    {
        while (found_.problem.empty()) {
            const std::size_t percent = rest_.find('%');
            found_.words += rest_.substr(0, percent);
            if (percent == string_view::npos) break;
            rest_.remove_prefix(percent + 1);
            if (rest_.starts_with('%'))
                rest_.remove_prefix(1);
            else
                readDirective();
        }
        if (hasNumbers_ && hasNone_)
            found_.problem = "mixes placeholders with and without a number";
        return std::move(found_);
    }

  private:
    void readDirective()
    {
        const int position = readPosition();
        skip(kFlags);
        readField();
        if (rest_.starts_with('.')) {
            rest_.remove_prefix(1);
            readField();
        }
        const std::size_t length = std::min(rest_.find_first_not_of(kLengths), rest_.size());
        if (length == rest_.size() || kConversions.find(rest_[length]) == string_view::npos) {
            found_.problem = "has a '%' that begins no placeholder";
            return;
        }
        addArgument(position, std::string(rest_.substr(0, length + 1)));
        rest_.remove_prefix(length + 1);
    }

    // The number before "$", or 0 when there is none: then digits are a width.
    int readPosition()
    {
        std::size_t digits = 0;
        int number = 0;
        for (; digits < rest_.size() && isDigit(rest_[digits]) && number <= kMostArguments;
             ++digits)
            number = number * 10 + (rest_[digits] - '0');
        if (digits == 0 || digits == rest_.size() || rest_[digits] != '$') return 0;
        rest_.remove_prefix(digits + 1);
        return number;
    }

    // A width or a precision: digits, or "*" for an argument of its own.
    void readField()
    {
        if (!rest_.starts_with('*')) return skip("0123456789");
        rest_.remove_prefix(1);
        addArgument(readPosition(), "*");
    }

    void skip(string_view characters)
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(characters), rest_.size()));
    }

    void addArgument(int position, const std::string &conversion)
    {
        (position ? hasNumbers_ : hasNone_) = true;
        if (position == 0) position = ++last_;
        const auto [known, isNew] = found_.arguments.insert({position, conversion});
        if (!isNew && known->second != conversion)
            found_.problem = "uses argument " + std::to_string(position) + " in two ways";
    }

    string_view rest_;
    Placeholders found_;
    int last_ = 0;
    bool hasNumbers_ = false;
    bool hasNone_ = false;
};

std::string nameOf(const Key &key)
{
    return "message " + std::to_string(key.second) + " of set " + std::to_string(key.first);
}

bool hasLetters(string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c & 0x80) != 0;
    });
}

// What is the matter with an argument of the base, or with one that only the translation has.
std::string differenceAt(int argument, const Placeholders &base, const Placeholders &translation)
{
    const auto wanted = base.arguments.find(argument);
    const auto given = translation.arguments.find(argument);
    const std::string name = "argument " + std::to_string(argument);
    if (given == translation.arguments.end()) return "lacks " + name + " (%" + wanted->second + ")";
    if (wanted == base.arguments.end()) return "has " + name + ", which the base does not use";
    if (wanted->second == given->second) return "";
    return "prints " + name + " as %" + given->second + " instead of %" + wanted->second;
}

std::string compareTexts(const std::string &base, const std::string &translation, bool allowSame)
{
    const Placeholders wanted = readPlaceholders(base);
    const Placeholders given = readPlaceholders(translation);
    if (!given.problem.empty()) return given.problem;
    for (const Placeholders *side : {&wanted, &given})
        for (const auto &[argument, conversion] : side->arguments)
            if (std::string difference = differenceAt(argument, wanted, given); !difference.empty())
                return difference;
    return !allowSame && base == translation && hasLetters(wanted.words) ? "is not translated" : "";
}

} // namespace

Placeholders readPlaceholders(std::string_view text)
{
    return DirectiveReader(text).read();
}

std::vector<std::string> checkTranslation(const Source &base, const Source &translation,
                                          bool allowSame)
{
    std::vector<std::string> problems;
    for (const auto &[key, message] : base.messages)
        if (!translation.messages.contains(key))
            problems.push_back(problemAt(translation.file, {},
                                         nameOf(key) + " is missing (" + base.file + ":" +
                                             std::to_string(message.place.line) + ")"));
    for (const auto &[key, message] : translation.messages) {
        const auto wanted = base.messages.find(key);
        const std::string problem =
            wanted == base.messages.end()
                ? "is not in the base"
                : compareTexts(wanted->second.text, message.text, allowSame);
        if (!problem.empty())
            problems.push_back(
                problemAt(translation.file, message.place, nameOf(key) + " " + problem));
    }
    return problems;
}

} // namespace tools::catalog
