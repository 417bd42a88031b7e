// See Record.h.
#include "view/Record.h"

#include <olvex/MsgId.h>

namespace tools::view {

namespace {

constexpr std::string_view kLevelNames[kLevelCount] = {
    "", "OTHER", "DEBUG_MAX", "DEBUG_MID", "DEBUG_MIN", "INFO", "WARN", "ERROR", "FATAL",
};

constexpr std::string_view kFormatNames[kFormatCount] = {"text", "xml", "trace", "console"};

struct LevelWord {
    std::string_view word;
    Level level;
};

constexpr LevelWord kLevelWords[] = {
    {"INFO", Level::kInfo},    {"WARN", Level::kWarn},    {"ERROR", Level::kError},
    {"MAX", Level::kDebugMax}, {"MID", Level::kDebugMid}, {"MIN", Level::kDebugMin},
};

constexpr std::size_t kLongestId = 10;
constexpr std::size_t kFewestLetters = 3;
constexpr std::size_t kMostLetters = 6;

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

void Record::clear()
{
    level = Level::kNone;
    isCut = hasTime = false;
    millis = 0;
    time = kind = id = text = {};
    fields = {};
    attributes.clear();
    parameters.clear();
}

std::string_view nameOf(Level level)
{
    return kLevelNames[static_cast<std::size_t>(level)];
}

std::string_view nameOf(Format format)
{
    return kFormatNames[static_cast<std::size_t>(format)];
}

Level levelOfWord(std::string_view word)
{
    for (const LevelWord &entry : kLevelWords)
        if (entry.word == word) return entry.level;
    return Level::kOther;
}

Level levelOfId(std::string_view id)
{
    switch (id.empty() ? '\0' : id.back()) {
    case 'I': return Level::kInfo;
    case 'W': return Level::kWarn;
    case 'E': return Level::kError;
    default: return Level::kNone;
    }
}

// Most words are no identifiers and are told apart by their beginning.
std::size_t idLength(std::string_view text)
{
    const std::string_view begin = text.substr(0, kLongestId);
    std::size_t letters = 0;
    while (letters < begin.size() && isLetter(begin[letters]))
        ++letters;
    if (letters < kFewestLetters || letters > kMostLetters || letters == begin.size() ||
        !isDigit(begin[letters]))
        return 0;
    char word[kLongestId + 1] = {};
    begin.copy(word, kLongestId);
    return static_cast<std::size_t>(CxParseZMSID(word).length);
}

} // namespace tools::view
