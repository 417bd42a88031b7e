// The basic formatter: timestamp, source location, problem data and message in one line.
#include "OvxBasicFormatter.h"

#include <olvex/Props.h>
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#include <utility>

#include "OvxEvent.h"
#include "OvxI18Msg.h"
#include "OvxProps.h"
#include "util/Memory.h"

#include <cstdio>
#include <ctime>

using namespace olvex;

namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::size_t kDateSize = 128;

// The date and zone of the second last printed: most events share it with the one before.
struct SecondText {
    std::time_t second;
    long zone; // the system's offset west of UTC that was in force
    bool valid;
    std::uint8_t dateLength;
    std::uint8_t zoneLength;
    char date[kDateSize];
    char zoneText[32];
} lastSecond = {};

struct LineProperty {
    const char *name;
    bool isNumber;
};

// What a line shows of an event's properties, in its order.
constexpr LineProperty kLineProperties[] = {
    {"ovx_prop_srcfile", false}, {"ovx_prop_srcfunction", false},
    {"ovx_prop_srcline", true},  {"organization", false},
    {"product", false},          {"component", false},
    {"client", false},           {"server", false},
};

bool append(CxStringBuff *buffer, const char *text)
{
    return CxStringBuffAppendStr(buffer, text) == 1;
}

// The zone is the system's standard offset, one hour more in summer; its hours carry the sign.
void formatZone(SecondText &text, const std::tm &local)
{
    const long hours = -timezone / 3600 + (local.tm_isdst > 0 ? 1 : 0);
    const long minutes = timezone / 60 % 60;
    const int length = std::snprintf(text.zoneText, sizeof text.zoneText, "%+03ld:%02ld", hours,
                                     minutes < 0 ? -minutes : minutes);
    text.zoneLength = static_cast<std::uint8_t>(length);
}

const SecondText &textOfSecond(std::time_t second)
{
    if (lastSecond.valid && lastSecond.second == second && lastSecond.zone == timezone)
        return lastSecond;
    std::tm local = {};
    localtime_r(&second, &local);
    lastSecond.second = second;
    lastSecond.zone = timezone;
    lastSecond.dateLength = static_cast<std::uint8_t>(
        std::strftime(lastSecond.date, sizeof lastSecond.date, "%Y-%m-%d %H:%M:%S", &local));
    formatZone(lastSecond, local);
    lastSecond.valid = true;
    return lastSecond;
}

// ".042", or ".-42" filled up as "-042" for times before 1970, which count backwards.
bool appendMilliseconds(CxStringBuff *buffer, int milliseconds)
{
    char text[6] = {'.'};
    char *at = text + 1;
    if (milliseconds < 0) {
        *at++ = '-';
        milliseconds = -milliseconds;
    }
    *at++ = static_cast<char>('0' + milliseconds / 100);
    *at++ = static_cast<char>('0' + milliseconds / 10 % 10);
    *at = static_cast<char>('0' + milliseconds % 10);
    return append(buffer, text);
}

bool appendBuiltInDate(CxStringBuff *buffer, std::int64_t milliseconds)
{
    const SecondText &text =
        textOfSecond(static_cast<std::time_t>(milliseconds / kMillisecondsPerSecond));
    return CxStringBuffAppendStrN(buffer, text.date, text.dateLength) == 1 &&
           appendMilliseconds(buffer, static_cast<int>(milliseconds % kMillisecondsPerSecond)) &&
           CxStringBuffAppendStrN(buffer, text.zoneText, text.zoneLength) == 1;
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

void appendProperties(const OvxEvent *event, const char *separator, CxStringBuff *buffer)
{
    if (!event->properties) return;
    for (const LineProperty &property : kLineProperties) {
        const char *value = peekProperty(event, property.name);
        if (!value) continue;
        if (property.isNumber) {
            bool converts = false;
            const std::int32_t number = ovxPropStrToInt32(value, &converts);
            if (!converts) continue;
            CxStringBuffAppendInt32(buffer, number);
        } else {
            append(buffer, value);
        }
        append(buffer, separator);
    }
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
    const char *separator = formatter->separator ? formatter->separator : " ";
    appendDate(formatter, event->time, buffer);
    append(buffer, separator);
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
