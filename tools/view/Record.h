// One record of a log, whatever formatter wrote it. All texts are views into the buffer of the
// source that delivered the record, and hold until that source is asked for the next one.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tools::view {

enum class Format : std::uint8_t { kText, kXml, kTrace, kConsole };
inline constexpr std::size_t kFormatCount = 4;

// In the order of severity. kOther is a level that the formatter had no word for.
enum class Level : std::uint8_t {
    kNone,
    kOther,
    kDebugMax,
    kDebugMid,
    kDebugMin,
    kInfo,
    kWarn,
    kError,
    kFatal,
};
inline constexpr std::size_t kLevelCount = 9;

// What a record may say beside time, level, identifier and text.
enum class Field : std::uint8_t {
    kSourceFile,
    kFunction,
    kLine,
    kOrganization,
    kProduct,
    kComponent,
    kProductInstance,
    kClient,
    kServer,
    kServerFormat,
    kProcess,
    kThread,
    kCorrelation,
    kCatalog,
    kMessageSet,
    kMessageKey,
    kPrefix, // what stands between the time and the message of a text record, not taken apart
};
inline constexpr std::size_t kFieldCount = 17;

struct Pair {
    std::string_view key;
    std::string_view value;
};

struct Record {
    std::string_view raw; // as it stands in the file, without its last line end
    const std::string *file = nullptr;
    std::uint64_t offset = 0; // of its first byte in the file

    Format format = Format::kText;
    Level level = Level::kNone;
    bool isCut = false; // its end is missing
    bool hasTime = false;
    std::int64_t millis = 0; // since 1970 in UTC
    std::string_view time;   // as written
    std::string_view kind;   // "Message" or "Trace" for XML
    std::string_view id;     // empty for none
    std::string_view text;

    std::array<std::string_view, kFieldCount> fields; // those that are not there have no data
    std::vector<Pair> attributes;
    std::vector<std::string_view> parameters;

    std::string_view &operator[](Field field) { return fields[static_cast<std::size_t>(field)]; }
    std::string_view operator[](Field field) const
    {
        return fields[static_cast<std::size_t>(field)];
    }
    bool has(Field field) const { return (*this)[field].data() != nullptr; }

    // Forgets what the record said; the vectors keep their memory.
    void clear();
};

// The name that users read and write: "DEBUG_MIN" and so on, empty for none.
std::string_view nameOf(Level level);
std::string_view nameOf(Format format);

// The level for a word of a formatter, such as "MIN" or "ERROR".
Level levelOfWord(std::string_view word);

// The level that the last letter of an identifier stands for, I, W or E.
Level levelOfId(std::string_view id);

// The length of the message identifier at the beginning of a text, 0 for none.
std::size_t idLength(std::string_view text);

} // namespace tools::view
