// The basic formatter: timestamp, source location, problem data and message in one line.
#include "OvxBasicFormatter.h"

#include <olvex/Props.h>
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#include <iterator>
#include <string_view>
#include <utility>

#include "OvxEvent.h"
#include "OvxI18Msg.h"
#include "OvxProps.h"
#include "util/CxStringBuff.h"
#include "util/Memory.h"
#include "util/OvxStringToStringMap.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace olvex;

namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::size_t kDateSize = 128;

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
        return valid && second == wanted && zone == ::timezone && daylight == ::daylight;
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

bool append(CxStringBuff *buffer, const char *text)
{
    return CxStringBuffAppendStr(buffer, text) == 1;
}

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
    std::tm local = {};
    localtime_r(&second, &local);
    stamp.second = second;
    stamp.zone = timezone;
    stamp.daylight = daylight;
    const std::size_t date = std::strftime(stamp.text, kDateSize, "%Y-%m-%d %H:%M:%S.", &local);
    const int rest = printRest(stamp.text + date, sizeof stamp.text - date, local);
    stamp.millisecondsAt = static_cast<std::uint8_t>(date);
    stamp.length = static_cast<std::uint8_t>(date + static_cast<std::size_t>(rest));
    stamp.valid = true;
}

void putMilliseconds(char *place, int milliseconds)
{
    place[0] = static_cast<char>('0' + milliseconds / 100);
    place[1] = static_cast<char>('0' + milliseconds / 10 % 10);
    place[2] = static_cast<char>('0' + milliseconds % 10);
}

// Times before 1970 count backwards: their milliseconds carry a sign.
bool appendBuiltInDate(CxStringBuff *buffer, std::int64_t time)
{
    Timestamp &stamp = lastTimestamp;
    const auto second = static_cast<std::time_t>(time / kMillisecondsPerSecond);
    if (!stamp.isOf(second)) printSecond(stamp, second);
    const auto milliseconds = static_cast<int>(time % kMillisecondsPerSecond);
    putMilliseconds(stamp.text + stamp.millisecondsAt, std::abs(milliseconds));
    if (milliseconds >= 0) return appendBytes(buffer, stamp.text, stamp.length);
    const std::size_t date = stamp.millisecondsAt;
    return appendBytes(buffer, stamp.text, date) && appendBytes(buffer, "-", 1) &&
           appendBytes(buffer, stamp.text + date, stamp.length - date);
}

bool appendCustomDate(CxStringBuff *buffer, const char *format, std::int64_t milliseconds)
{
    const auto second = static_cast<std::time_t>(milliseconds / kMillisecondsPerSecond);
    std::tm local = {};
    localtime_r(&second, &local);
    char text[kDateSize] = "";
    char utf8[kDateSize] = "";
    if (ucv_strftime(nullptr, nullptr, text, sizeof text, format, &local) == 0) return true;
    ucv_to_utf8(nullptr, text, -1, utf8, sizeof utf8);
    return append(buffer, utf8);
}

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
bool appendValue(const char *value, bool isNumber, CxStringBuff *buffer)
{
    if (!isNumber || isPlainNumber(value)) return append(buffer, value);
    bool converts = false;
    const std::int32_t number = ovxPropStrToInt32(value, &converts);
    return converts && CxStringBuffAppendInt32(buffer, number) == 1;
}

void appendProperties(const OvxEvent *event, std::string_view separator, CxStringBuff *buffer)
{
    if (!event->properties) return;
    const char *values[kLinePropertyCount + 1] = {};
    for (const auto *node = event->properties->first(); node; node = node->next())
        values[placeOf(*node)] = node->value();
    for (std::size_t i = 0; i < kLinePropertyCount; ++i)
        if (values[i] && appendValue(values[i], kLineProperties[i].isNumber, buffer))
            appendBytes(buffer, separator.data(), separator.size());
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
    append(buffer, text.get());
}

void replace(char *&text, const OvxObject *formatter, const char *name)
{
    BaxMemoryFree(std::exchange(text, BaxStringDup(peekProperty(formatter, name))));
}

} // namespace

namespace olvex {

bool appendDate(const OvxObject *formatter, std::int64_t milliseconds, CxStringBuff *buffer)
{
    const char *format = formatter ? formatter->dateTimeFormat : nullptr;
    return format ? appendCustomDate(buffer, format, milliseconds)
                  : appendBuiltInDate(buffer, milliseconds);
}

bool appendBasicFormat(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    if (!event || !isFormatter(formatter) || !formatter->cls->slots.bindMsg) return false;
    const std::string_view separator = formatter->separator ? formatter->separator : " ";
    appendDate(formatter, event->time, buffer);
    appendBytes(buffer, separator.data(), separator.size());
    appendProperties(event, separator, buffer);
    if (formatter->locale) ovxSetEventLocale(event, formatter->locale);
    appendMessage(formatter, event, buffer);
    CxStringBuffAppendChar(buffer, '\n');
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
    if (!isFormatter(formatter)) return OvxBasicObjectFCfgChange(formatter, name);
    if (BaxStringCmp(name, "separator") == 0) return replace(formatter->separator, formatter, name);
    if (BaxStringCmp(name, "dateTimeFormat") == 0)
        return replace(formatter->dateTimeFormat, formatter, name);
    if (BaxStringCmp(name, "locale") == 0) {
        formatter->locale = keepLocaleName(peekProperty(formatter, name));
        return;
    }
    OvxBasicObjectFCfgChange(formatter, name);
}
