// Lines of the console tracers: time, level, component, method, thread, and a message, an entry or
// an exit behind an indent.
#include "view/Formats.h"
#include "view/Times.h"

#include <algorithm>

namespace tools::view {

namespace {

// 08/04/01 13:05:09 I [Vpd     ] method, 30 bytes             [0007] text
constexpr std::size_t kLevelPlace = 18;
constexpr std::size_t kComponentPlace = 21;
constexpr std::size_t kComponentLength = 8;
constexpr std::size_t kHeadLength = 31;
constexpr std::size_t kMethodLength = 30;

constexpr std::string_view kLevelLetters = "FEWI ";
constexpr Level kLevels[] = {Level::kFatal, Level::kError, Level::kWarn, Level::kInfo,
                             Level::kOther};

constexpr std::string_view kEntry = "--> ENTRY";
constexpr std::string_view kExitBegin = "<--";
constexpr std::string_view kExitEnd = " EXIT";

std::string_view withoutBlanksBehind(std::string_view text)
{
    const std::size_t last = text.find_last_not_of(' ');
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool isDashes(std::string_view text)
{
    return text.find_first_not_of('-') == std::string_view::npos;
}

bool isPrintable(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= 0x20; });
}

// What the line says, without its indent.
std::string_view saidBy(std::string_view body)
{
    if (body.ends_with(kEntry) && isDashes(body.substr(0, body.size() - kEntry.size())))
        return "ENTRY";
    if (body.starts_with(kExitBegin) && body.ends_with(kExitEnd) &&
        body.size() >= kExitBegin.size() + kExitEnd.size() &&
        isDashes(body.substr(kExitBegin.size(), body.size() - kExitBegin.size() - kExitEnd.size())))
        return "EXIT";
    const std::size_t first = body.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : body.substr(first);
}

} // namespace

Begins consoleBegins(std::string_view bytes, bool isLast)
{
    const bool isShort = bytes.size() < kHeadLength && !isLast;
    if (isShort && bytes.find('\n') == std::string_view::npos) return Begins::kUnclear;
    const std::string_view head = bytes.substr(0, kHeadLength);
    const bool begins = head.size() == kHeadLength && beginsWithShortStamp(head) &&
                        kLevelLetters.find(head[kLevelPlace]) != std::string_view::npos &&
                        head[kComponentPlace - 1] == '[' &&
                        head.substr(kComponentPlace + kComponentLength) == "] " &&
                        isPrintable(head);
    return begins ? Begins::kYes : Begins::kNo;
}

void parseConsole(Record &record)
{
    const std::string_view raw = record.raw;
    record.time = raw.substr(0, kShortStampLength);
    const auto millis = readShortStamp(raw);
    record.hasTime = millis.has_value();
    record.millis = millis.value_or(0);
    record.level = kLevels[kLevelLetters.find(raw[kLevelPlace])];
    record[Field::kComponent] = withoutBlanksBehind(raw.substr(kComponentPlace, kComponentLength));
    record[Field::kFunction] = withoutBlanksBehind(raw.substr(kHeadLength, kMethodLength));
    if (raw.size() < kHeadLength + kMethodLength) return;
    const std::string_view rest = raw.substr(kHeadLength + kMethodLength);
    const std::size_t close = rest.find("] ");
    if (!rest.starts_with(" [") || close == std::string_view::npos) {
        record.text = rest;
        return;
    }
    record[Field::kThread] = rest.substr(2, close - 2);
    record.text = saidBy(rest.substr(close + 2));
    record.id = record.text.substr(0, idLength(record.text));
}

} // namespace tools::view
