// The basic formatter: timestamp, source location, problem data and message in one line.
#include "formatters/OvxBasicFormatter.h"

#include <olvex/Props.h>
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#include <iterator>
#include <string_view>
#include <utility>

#include "logging/OvxEvent.h"
#include "logging/OvxI18Msg.h"
#include "toolkit/OvxPropertyTable.h"
#include "toolkit/OvxProps.h"
#include "util/CxStringBuff.h"
#include "util/EnvironmentWatch.h"
#include "util/HotPath.h"
#include "util/Memory.h"
#include "util/collections/OvxStringToStringMap.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace olvex;

namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::size_t kDateSize = 128;

// Two zones may have the same offset and differ in their summers only, which the system's variables
// do not tell.
EnvironmentWatch zoneWatch("TZ=");

// The timestamp last printed. Most events share their second with the one before, so that only the
// milliseconds are new; another time zone makes all of it new.
struct Timestamp {
    std::time_t second;
    long zone; // the system's offset west of UTC that was in force
    int daylight;
    bool valid;
    std::uint8_t millisecondsAt;
    std::uint8_t length;
    char text[kDateSize + 32];

    bool isOf(std::time_t wanted) const
    {
        return valid && second == wanted && zone == ::timezone && daylight == ::daylight &&
               zoneWatch.isUnchanged();
    }
} lastTimestamp = {};

struct LineProperty {
    const char *name;
    bool isNumber;
};

// What a line shows of an event's properties, in its order.
constexpr LineProperty kLineProperties[] = {
    {kPropSourceFile, false}, {kPropSourceFunction, false},
    {kPropSourceLine, true},  {"organization", false},
    {"product", false},       {"component", false},
    {"client", false},        {"server", false},
};
constexpr std::size_t kLinePropertyCount = std::size(kLineProperties);

// Milliseconds in three places and the zone: the system's standard offset, one hour more in summer,
// with the sign at its hours.
int printRest(char *place, std::size_t room, const std::tm &local)
{
    const long hours = -timezone / 3600 + (local.tm_isdst > 0 ? 1 : 0);
    const long minutes = timezone / 60 % 60;
    return std::snprintf(place, room, "000%+03ld:%02ld", hours, minutes < 0 ? -minutes : minutes);
}

[[gnu::cold]] void printSecond(Timestamp &stamp, std::time_t second)
{
    // Within its second a change is not accepted yet: the host may be about to call tzset().
    if (stamp.second != second && !zoneWatch.isUnchanged()) zoneWatch.take();
    std::tm local = {};
    localtime_r(&second, &local);
    stamp.second = second;
    stamp.zone = timezone;
    stamp.daylight = daylight;
    const std::size_t date = std::strftime(stamp.text, kDateSize, "%Y-%m-%d %H:%M:%S.", &local);
    const int rest = printRest(stamp.text + date, sizeof stamp.text - date, local);
    stamp.millisecondsAt = static_cast<std::uint8_t>(date);
    stamp.length = static_cast<std::uint8_t>(date + static_cast<std::size_t>(rest));
    stamp.valid = zoneWatch.isUnchanged();
}

void putMilliseconds(char *place, int milliseconds)
{
    place[0] = static_cast<char>('0' + milliseconds / 100);
    place[1] = static_cast<char>('0' + milliseconds / 10 % 10);
    place[2] = static_cast<char>('0' + milliseconds % 10);
}

// A time as the formatter shows it.
class DateText {
  public:
    DateText(const char *format, std::int64_t milliseconds)
    {
        if (format)
            printCustom(format, milliseconds);
        else
            printBuiltIn(milliseconds);
    }

    std::string_view get() const { return text_; }

  private:
    // Times before 1970 count backwards: their milliseconds carry a sign.
    void printBuiltIn(std::int64_t time)
    {
        Timestamp &stamp = lastTimestamp;
        const auto second = static_cast<std::time_t>(time / kMillisecondsPerSecond);
        if (!stamp.isOf(second)) printSecond(stamp, second);
        const auto milliseconds = static_cast<int>(time % kMillisecondsPerSecond);
        putMilliseconds(stamp.text + stamp.millisecondsAt, std::abs(milliseconds));
        text_ = {stamp.text, stamp.length};
        if (milliseconds < 0) insertSign(stamp.millisecondsAt);
    }

    [[gnu::cold]] void insertSign(std::size_t place)
    {
        const int size = std::snprintf(own_, sizeof own_, "%.*s-%s", static_cast<int>(place),
                                       text_.data(), text_.data() + place);
        text_ = {own_, static_cast<std::size_t>(size)};
    }

    [[gnu::cold]] void printCustom(const char *format, std::int64_t milliseconds)
    {
        const auto second = static_cast<std::time_t>(milliseconds / kMillisecondsPerSecond);
        std::tm local = {};
        localtime_r(&second, &local);
        char text[kDateSize] = "";
        if (ucv_strftime(nullptr, nullptr, text, sizeof text, format, &local) == 0) return;
        own_[0] = '\0';
        ucv_to_utf8(nullptr, text, -1, own_, kDateSize);
        text_ = own_;
    }

    std::string_view text_ = "";
    char own_[sizeof Timestamp::text + 1];
};

// The place of a property in the line, or that of its end. The toolkit's own names are the same
// text here and in the event, which is quicker to see.
std::size_t placeOf(const StringToStringMapNode &property)
{
    for (std::size_t place = 0; place < kLinePropertyCount; ++place)
        if (property.key() == kLineProperties[place].name) return place;
    std::size_t place = 0;
    while (place < kLinePropertyCount && !property.matches(kLineProperties[place].name))
        ++place;
    return place;
}

// Whether printing the number that a text holds would give the same text again.
bool isPlainNumber(const char *text)
{
    constexpr int kSafeDigits = 9;
    if (*text < '1') return false;
    int digits = 0;
    while (digits <= kSafeDigits && text[digits] >= '0' && text[digits] <= '9')
        ++digits;
    return digits <= kSafeDigits && text[digits] == '\0';
}

// Appends what the line shows of a value; false when it shows nothing.
bool putValue(Appender &line, const char *value, bool isNumber)
{
    if (!isNumber || isPlainNumber(value)) return line.put(value);
    bool converts = false;
    const std::int32_t number = ovxPropStrToInt32(value, &converts);
    return converts && line.putInteger(number);
}

void putProperties(Appender &line, const StringToStringMap &properties, std::string_view separator)
{
    const char *values[kLinePropertyCount + 1] = {};
    for (const auto *node = properties.first(); node; node = node->next())
        values[placeOf(*node)] = node->value();
    for (std::size_t i = 0; i < kLinePropertyCount; ++i)
        if (values[i] && putValue(line, values[i], kLineProperties[i].isNumber))
            line.put(separator);
}

// A source location that is not yet among the properties, as these would show it.
void putSource(Appender &line, const SourceLocation &source, std::string_view separator)
{
    if (source.file && line.put(source.file)) line.put(separator);
    if (source.function && line.put(source.function)) line.put(separator);
    if (source.file && line.putInteger(source.line)) line.put(separator);
}

// The toolkit's own binding prints straight into the line; a formatter class's own returns a text.
void appendMessage(const OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    const OvxFBindMsg bind = formatter->cls->slots.bindMsg;
    if (bind == ovxIntlBindI18Msg) {
        if (event->locale) ovxSetI18MsgLocale(event->message, event->locale);
        bindMessage(event->message, buffer);
        return;
    }
    const Text text(OvxBindEventMsg(event, bind));
    CxStringBuffAppendStr(buffer, text.get());
}

void replace(char *&text, const char *value)
{
    BaxMemoryFree(std::exchange(text, BaxStringDup(value)));
}

template <schema::Name>
void apply(OvxObject *formatter, const char *value) = delete;

template <>
void apply<"separator">(OvxObject *formatter, const char *value)
{
    replace(formatter->separator, value);
}

template <>
void apply<"dateTimeFormat">(OvxObject *formatter, const char *value)
{
    replace(formatter->dateTimeFormat, value);
}

template <>
void apply<"locale">(OvxObject *formatter, const char *value)
{
    formatter->locale = keepLocaleName(value);
}

constexpr auto kProperties = rowsOf<schema::kBasicFormatter>(
    []<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

} // namespace

namespace olvex {

void discardTimestamp()
{
    zoneWatch.forget();
    lastTimestamp = {};
}

bool appendDate(const OvxObject *formatter, std::int64_t milliseconds, CxStringBuff *buffer)
{
    const DateText date(formatter ? formatter->dateTimeFormat : nullptr, milliseconds);
    return appendBytes(buffer, date.get().data(), date.get().size());
}

OVX_HOT bool appendBasicFormat(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    if (!event || !isFormatter(formatter) || !formatter->cls->slots.bindMsg) return false;
    const std::string_view separator = formatter->separator ? formatter->separator : " ";
    Appender line(buffer);
    line.put(DateText(formatter->dateTimeFormat, event->time).get());
    line.put(separator);
    putSource(line, event->source, separator);
    if (event->properties) putProperties(line, *event->properties, separator);
    line.suspend();
    if (formatter->locale) ovxSetEventLocale(event, formatter->locale);
    appendMessage(formatter, event, buffer);
    line.resume();
    line.put("\n", 1);
    return buffer->str != nullptr;
}

} // namespace olvex

char *OvxBasicFormatterFFormat(OvxObject *formatter, OvxEvent *event)
{
    CxStringBuff buffer = {};
    appendBasicFormat(formatter, event, &buffer);
    return CxStringBuffTakeStr(&buffer);
}

char *OvxBasicFormatterFormatDate(OvxObject *formatter, int64_t milliseconds)
{
    CxStringBuff buffer = {};
    appendDate(formatter, milliseconds, &buffer);
    char *text = CxStringBuffTakeStr(&buffer);
    return text ? text : BaxStringDup("");
}

char *OvxBasicFormatterFGetHeader(OvxObject *)
{
    return nullptr;
}
char *OvxBasicFormatterFGetTrailer(OvxObject *)
{
    return nullptr;
}

void OvxBasicFormatterFCfgChange(OvxObject *formatter, const char *name)
{
    if (isFormatter(formatter) && name && applyProperty(kProperties, formatter, name)) return;
    OvxBasicObjectFCfgChange(formatter, name);
}

constinit const ClassSlots olvex::slots::ovx_basicformatter = {
    .cfgChange = OvxBasicFormatterFCfgChange,
    .format = OvxBasicFormatterFFormat,
    .getHeader = OvxBasicFormatterFGetHeader,
    .getTrailer = OvxBasicFormatterFGetTrailer,
    .bindMsg = ovxIntlBindI18Msg,
    .append = appendBasicFormat,
};
