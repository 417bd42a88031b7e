// See Times.h.
#include "view/Times.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace tools::view {

namespace {

constexpr std::int64_t kMillisPerSecond = 1000;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerDay = 86400;

struct Moment {
    int year = 0;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int milli = 0;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// A shape has 'd' for a digit and '+' for a sign; anything else stands for itself.
bool hasShape(std::string_view text, std::string_view shape)
{
    if (text.size() < shape.size()) return false;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const char c = text[i];
        const bool fits = shape[i] == 'd'   ? isDigit(c)
                          : shape[i] == '+' ? c == '+' || c == '-'
                                            : c == shape[i];
        if (!fits) return false;
    }
    return true;
}

int twoDigits(const char *text)
{
    return 10 * (text[0] - '0') + (text[1] - '0');
}

std::chrono::year_month_day dateOf(int year, int month, int day)
{
    return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
            std::chrono::day(static_cast<unsigned>(day))};
}

bool isInCalendar(const Moment &moment)
{
    return dateOf(moment.year, moment.month, moment.day).ok() && moment.hour < 24 &&
           moment.minute < 60 && moment.second <= 60;
}

std::int64_t secondsOf(const Moment &moment)
{
    const std::chrono::sys_days days = dateOf(moment.year, moment.month, moment.day);
    return std::int64_t{days.time_since_epoch().count()} * kSecondsPerDay +
           moment.hour * kSecondsPerHour + moment.minute * kSecondsPerMinute + moment.second;
}

// What strptime(3) lets through. A layout may have no year: then any day of a leap year is one.
bool isInCalendar(const std::tm &parts, int yearWhenNone)
{
    const int year = parts.tm_year == yearWhenNone ? 2000 : parts.tm_year + 1900;
    return dateOf(year, parts.tm_mon + 1, parts.tm_mday).ok();
}

// Local time; the rules of the zone are asked for once a minute of records only.
std::int64_t localSecondsOf(const Moment &moment)
{
    static thread_local std::int64_t lastMinute = -1;
    static thread_local std::int64_t lastAnswer = 0;
    Moment minute = moment;
    minute.second = 0;
    const std::int64_t asked = secondsOf(minute);
    if (asked != lastMinute) {
        std::tm local{};
        local.tm_year = moment.year - 1900;
        local.tm_mon = moment.month - 1;
        local.tm_mday = moment.day;
        local.tm_hour = moment.hour;
        local.tm_min = moment.minute;
        local.tm_isdst = -1;
        lastAnswer = std::mktime(&local);
        lastMinute = asked;
    }
    return lastAnswer + moment.second;
}

Moment readDate(const char *text)
{
    Moment moment;
    moment.year = 100 * twoDigits(text) + twoDigits(text + 2);
    moment.month = twoDigits(text + 5);
    moment.day = twoDigits(text + 8);
    return moment;
}

void readClock(const char *text, Moment &moment)
{
    moment.hour = twoDigits(text);
    moment.minute = twoDigits(text + 3);
    moment.second = twoDigits(text + 6);
}

// What is left of a text that is read from its front.
class Rest {
  public:
    explicit Rest(std::string_view text) : text_(text) {}

    bool take(std::string_view shape)
    {
        if (!hasShape(text_, shape)) return false;
        taken_ = text_.data();
        text_.remove_prefix(shape.size());
        return true;
    }
    const char *taken() const { return taken_; }
    bool isEmpty() const { return text_.empty(); }

    // The digits at the front as thousandths; more than three are cut.
    int takeThousandths()
    {
        int value = 0;
        for (int place = 100; !text_.empty() && isDigit(text_.front()); place /= 10) {
            value += place * (text_.front() - '0');
            text_.remove_prefix(1);
        }
        return value;
    }

  private:
    std::string_view text_;
    const char *taken_ = nullptr;
};

// Takes the zone at the front as seconds east of UTC.
bool takeZone(Rest &rest, std::int64_t &seconds)
{
    if (rest.take("Z") || rest.take("z")) return true;
    int minutes = 0;
    if (rest.take("+dd:dd"))
        minutes = twoDigits(rest.taken() + 4);
    else if (rest.take("+dddd"))
        minutes = twoDigits(rest.taken() + 3);
    else if (!rest.take("+dd"))
        return false;
    const std::int64_t size =
        twoDigits(rest.taken() + 1) * kSecondsPerHour + minutes * kSecondsPerMinute;
    seconds = *rest.taken() == '-' ? -size : size;
    return true;
}

// Takes the time of day behind a date; nothing is midnight.
bool takeClock(Rest &rest, Moment &moment)
{
    if (rest.isEmpty()) return true;
    if (!rest.take("T") && !rest.take("t") && !rest.take(" ")) return false;
    if (!rest.take("dd:dd")) return false;
    moment.hour = twoDigits(rest.taken());
    moment.minute = twoDigits(rest.taken() + 3);
    if (!rest.take(":dd")) return true;
    moment.second = twoDigits(rest.taken() + 1);
    if (rest.take(".") || rest.take(",")) moment.milli = rest.takeThousandths();
    return true;
}

} // namespace

bool beginsWithStamp(std::string_view text)
{
    return hasShape(text, "dddd-dd-dd dd:dd:dd.ddd+dd:dd");
}

std::optional<std::int64_t> readStamp(std::string_view text)
{
    const char *stamp = text.data();
    Moment moment = readDate(stamp);
    readClock(stamp + 11, moment);
    if (!isInCalendar(moment)) return std::nullopt;
    const std::int64_t zone =
        twoDigits(stamp + 24) * kSecondsPerHour + twoDigits(stamp + 27) * kSecondsPerMinute;
    const std::int64_t seconds = secondsOf(moment) - (stamp[23] == '-' ? -zone : zone);
    return seconds * kMillisPerSecond + 100 * (stamp[20] - '0') + twoDigits(stamp + 21);
}

bool beginsWithShortStamp(std::string_view text)
{
    return hasShape(text, "dd/dd/dd dd:dd:dd");
}

std::optional<std::int64_t> readShortStamp(std::string_view text)
{
    const char *stamp = text.data();
    Moment moment;
    moment.year = 2000 + twoDigits(stamp);
    moment.month = twoDigits(stamp + 3);
    moment.day = twoDigits(stamp + 6);
    readClock(stamp + 9, moment);
    if (!isInCalendar(moment)) return std::nullopt;
    return localSecondsOf(moment) * kMillisPerSecond;
}

std::optional<FoundTime> readTimeAs(const std::string &layout, std::string_view text)
{
    constexpr std::size_t kLongest = 128; // what a formatter writes at most
    char head[kLongest + 1] = {};
    text.substr(0, text.find('\n')).copy(head, kLongest);
    std::tm parts{};
    constexpr int kNoYear = 70;
    parts.tm_year = kNoYear;
    parts.tm_mday = 1;
    parts.tm_isdst = -1;
    constexpr long kNoZone = 1L << 30;
    parts.tm_gmtoff = kNoZone;
    const char *end = ::strptime(head, layout.c_str(), &parts);
    if (!end || end == head) return std::nullopt;
    FoundTime found{static_cast<std::size_t>(end - head), {}};
    if (!isInCalendar(parts, kNoYear)) return found;
    const long zone = parts.tm_gmtoff;
    const std::int64_t seconds = zone == kNoZone ? std::mktime(&parts) : ::timegm(&parts) - zone;
    found.millis = seconds * kMillisPerSecond;
    return found;
}

std::optional<std::int64_t> readIsoTime(std::string_view text)
{
    Rest rest(text);
    if (!rest.take("dddd-dd-dd")) return std::nullopt;
    Moment moment = readDate(rest.taken());
    if (!takeClock(rest, moment) || !isInCalendar(moment)) return std::nullopt;
    const bool isLocal = rest.isEmpty();
    std::int64_t zone = 0;
    if (!isLocal && !takeZone(rest, zone)) return std::nullopt;
    if (!rest.isEmpty()) return std::nullopt;
    const std::int64_t seconds = isLocal ? localSecondsOf(moment) : secondsOf(moment) - zone;
    return seconds * kMillisPerSecond + moment.milli;
}

std::string writeStamp(std::int64_t millis)
{
    const std::int64_t rest = millis % kMillisPerSecond;
    const std::int64_t milli = rest < 0 ? rest + kMillisPerSecond : rest;
    const std::time_t seconds = millis / kMillisPerSecond - (rest < 0);
    std::tm parts{};
    if (!::gmtime_r(&seconds, &parts)) return {};
    char date[64];
    const std::size_t length = std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &parts);
    char tail[16];
    std::snprintf(tail, sizeof tail, ".%03d+00:00", static_cast<int>(milli));
    return std::string(date, length) + tail;
}

} // namespace tools::view
