// The trace formatter: fields between " - ", each of which may be empty.
#include "OvxMavTraceFormatter.h"

#include <olvex/MsgId.h>

#include "OvxBasicFormatter.h"
#include "OvxEvent.h"
#include "OvxI18Msg.h"
#include "OvxProps.h"
#include "util/CxStringBuff.h"

using namespace olvex;

namespace {

constexpr char kRecordSeparator = '\x1e';
constexpr char kFieldSeparator[] = " - ";

struct LevelWord {
    std::int32_t level;
    const char *word;
};

constexpr LevelWord kLevelWords[] = {
    {OVX_LEVEL_DEBUG_MAX, " MAX "}, {OVX_LEVEL_DEBUG_MID, " MID "}, {OVX_LEVEL_DEBUG_MIN, " MIN "},
    {OVX_LEVEL_INFO, "INFO "},      {OVX_LEVEL_WARN, "WARN "},      {OVX_LEVEL_ERROR, "ERROR"},
    {OVX_LEVEL_FATAL, "ERROR"},
};

const char *wordOf(std::int32_t level)
{
    for (const LevelWord &entry : kLevelWords)
        if (entry.level == level) return entry.word;
    return "OTHER";
}

void add(CxStringBuff *buffer, const char *text)
{
    CxStringBuffAppendStr(buffer, text);
}

// A number property; false when the event has none or it does not convert.
bool readNumber(const OvxEvent *event, const char *name, std::int32_t &number)
{
    const char *value = peekProperty(event, name);
    bool converts = false;
    number = value ? ovxPropStrToInt32(value, &converts) : 0;
    return converts;
}

void addServer(CxStringBuff *buffer, const OvxEvent *event)
{
    const char *server = peekProperty(event, "server");
    if (server)
        appendBytes(buffer, server, static_cast<std::size_t>(BaxStringStrcspn(server, ".")));
}

bool addId(CxStringBuff *buffer, const OvxEvent *event, const char *name, const char *mark)
{
    const char *value = peekProperty(event, name);
    bool converts = false;
    const std::int64_t id = value ? ovxPropStrToInt64(value, &converts) : 0;
    if (!converts) return false;
    add(buffer, mark);
    const std::int64_t widened = static_cast<std::int32_t>(id);
    CxStringBuffAppendUInt64(buffer, static_cast<std::uint64_t>(widened));
    return true;
}

void addIds(CxStringBuff *buffer, const OvxEvent *event)
{
    const bool hasProcess = addId(buffer, event, "processId", "p");
    addId(buffer, event, "threadId", hasProcess ? ":t" : "t");
}

void addSource(CxStringBuff *buffer, const OvxEvent *event)
{
    const char *file = peekProperty(event, "ovx_prop_srcfile");
    const char *function = peekProperty(event, "ovx_prop_srcfunction");
    add(buffer, file);
    if (file && function) add(buffer, ":");
    add(buffer, function);
    std::int32_t line = 0;
    if (!readNumber(event, "ovx_prop_srcline", line)) return;
    add(buffer, "(");
    CxStringBuffAppendInt32(buffer, line);
    add(buffer, ")");
}

// Binds the event's message at the end of the buffer.
void addText(CxStringBuff *buffer, const OvxEvent *event)
{
    if (event->locale) ovxSetI18MsgLocale(event->message, event->locale);
    bindMessage(event->message, buffer);
}

// An identifier that is yet to be found in the text stands before it, so it is put there when the
// text is bound.
void addTextAndItsId(CxStringBuff *buffer, const OvxEvent *event)
{
    add(buffer, kFieldSeparator);
    const std::uint32_t start = buffer->length;
    addText(buffer, event);
    if (!buffer->str || buffer->length <= start) return;
    const CxZMSIDInfo info = CxParseZMSID(buffer->str + start);
    constexpr std::uint32_t kSeparatorSize = sizeof kFieldSeparator - 1;
    CxStringBuffInsertStr(buffer, info.id, static_cast<std::int32_t>(start - kSeparatorSize));
}

void addIdAndText(CxStringBuff *buffer, const OvxEvent *event)
{
    if (!event->messageId) return addTextAndItsId(buffer, event);
    add(buffer, event->messageId);
    add(buffer, kFieldSeparator);
    addText(buffer, event);
}

} // namespace

namespace olvex {

bool appendTraceLine(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    if (!formatter || !event) return false;
    CxStringBuffAppendChar(buffer, kRecordSeparator);
    add(buffer, "[");
    appendDate(formatter, event->time, buffer);
    add(buffer, "] - ");
    add(buffer, wordOf(event->level));
    add(buffer, kFieldSeparator);
    addServer(buffer, event);
    add(buffer, kFieldSeparator);
    addIds(buffer, event);
    add(buffer, kFieldSeparator);
    addSource(buffer, event);
    add(buffer, kFieldSeparator);
    addIdAndText(buffer, event);
    add(buffer, "\n");
    return true;
}

} // namespace olvex

char *OvxMavTraceFormatterFFormat(OvxObject *formatter, OvxEvent *event)
{
    CxStringBuff buffer = {};
    appendTraceLine(formatter, event, &buffer);
    return CxStringBuffTakeStr(&buffer);
}
