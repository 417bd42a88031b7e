// Points in time: those in records, and those that users give on the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tools::view {

// The length of a timestamp that the formatters write unless told otherwise:
// 2008-04-01 13:05:09.042+02:00.
inline constexpr std::size_t kStampLength = 29;

// True when a text begins with such a timestamp.
bool beginsWithStamp(std::string_view text);

// Milliseconds since 1970 of a timestamp for which that is true; nothing for a date that no
// calendar has.
std::optional<std::int64_t> readStamp(std::string_view text);

// The length of a console tracer's time, 08/04/01 13:05:09, which is local.
inline constexpr std::size_t kShortStampLength = 17;
bool beginsWithShortStamp(std::string_view text);
std::optional<std::int64_t> readShortStamp(std::string_view text);

// A time in a layout that strptime(3) takes, at the beginning of a text. Without a zone in it the
// time is local, without a date the day is the first of 1970.
struct FoundTime {
    std::size_t length = 0;
    std::optional<std::int64_t> millis; // nothing for a date that no calendar has
};
std::optional<FoundTime> readTimeAs(const std::string &layout, std::string_view text);

// A whole text in the forms of ISO 8601: a date, and behind "T" or a blank hours and minutes,
// seconds, a fraction and a zone, as far as given. Without a zone the time is local.
std::optional<std::int64_t> readIsoTime(std::string_view text);

// A time as the formatters write it, in UTC.
std::string writeStamp(std::int64_t millis);

} // namespace tools::view
