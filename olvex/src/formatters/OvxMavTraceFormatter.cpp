// The trace formatter: fields between " - ", each of which may be empty.
#include "formatters/OvxMavTraceFormatter.h"

#include <olvex/MsgId.h>

#include <algorithm>
#include <string_view>

#include "formatters/OvxBasicFormatter.h"
#include "logging/OvxEvent.h"
#include "logging/OvxI18Msg.h"
#include "logging/OvxProblemProps.h"
#include "toolkit/OvxProps.h"
#include "util/CxStringBuff.h"

using namespace olvex;

namespace {

constexpr std::string_view kRecordStart = "\x1e[";
constexpr std::string_view kFieldSeparator = " - ";

// Room for most lines in one block.
constexpr std::size_t kUsualLine = 250; // bytes

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

void add(CxStringBuff *buffer, std::string_view text)
{
    appendBytes(buffer, text.data(), text.size());
}

void addText(CxStringBuff *buffer, const char *text)
{
    if (text) add(buffer, text);
}

// Up to the first dot.
void addServer(CxStringBuff *buffer, const char *server)
{
    if (!server) return;
    const std::string_view name(server);
    add(buffer, {server, std::min(name.find('.'), name.size())});
}

bool addId(CxStringBuff *buffer, const char *value, const char *mark)
{
    bool converts = false;
    const std::int64_t id = value ? ovxPropStrToInt64(value, &converts) : 0;
    if (!converts) return false;
    add(buffer, mark);
    const std::int64_t widened = static_cast<std::int32_t>(id);
    CxStringBuffAppendUInt64(buffer, static_cast<std::uint64_t>(widened));
    return true;
}

void addIds(CxStringBuff *buffer, const ProblemProps &props)
{
    const bool hasProcess = addId(buffer, props[ProblemProps::kProcessId], "p");
    addId(buffer, props[ProblemProps::kThreadId], hasProcess ? ":t" : "t");
}

void addSource(CxStringBuff *buffer, const ProblemProps &props)
{
    const char *file = props[ProblemProps::kSourceFile];
    const char *function = props[ProblemProps::kSourceFunction];
    addText(buffer, file);
    if (file && function) add(buffer, ":");
    addText(buffer, function);
    bool isNumber = false;
    const std::int32_t line = ovxPropStrToInt32(props[ProblemProps::kSourceLine], &isNumber);
    if (!isNumber) return;
    add(buffer, "(");
    CxStringBuffAppendInt32(buffer, line);
    add(buffer, ")");
}

// Binds the event's message at the end of the buffer.
void addMessage(CxStringBuff *buffer, const OvxEvent *event)
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
    addMessage(buffer, event);
    if (!buffer->str || buffer->length <= start) return;
    const CxZMSIDInfo info = CxParseZMSID(buffer->str + start);
    const auto place = static_cast<std::int32_t>(start - kFieldSeparator.size());
    CxStringBuffInsertStr(buffer, info.id, place);
}

void addIdAndText(CxStringBuff *buffer, const OvxEvent *event)
{
    if (!event->messageId) return addTextAndItsId(buffer, event);
    add(buffer, event->messageId);
    add(buffer, kFieldSeparator);
    addMessage(buffer, event);
}

} // namespace

namespace olvex {

bool appendTraceLine(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    if (!formatter || !event) return false;
    const ProblemProps props(event);
    add(buffer, kRecordStart);
    appendDate(formatter, event->time, buffer);
    add(buffer, "] - ");
    add(buffer, wordOf(event->level));
    add(buffer, kFieldSeparator);
    addServer(buffer, props[ProblemProps::kServer]);
    add(buffer, kFieldSeparator);
    addIds(buffer, props);
    add(buffer, kFieldSeparator);
    addSource(buffer, props);
    add(buffer, kFieldSeparator);
    addIdAndText(buffer, event);
    add(buffer, "\n");
    return true;
}

} // namespace olvex

char *OvxMavTraceFormatterFFormat(OvxObject *formatter, OvxEvent *event)
{
    CxStringBuff buffer = {};
    if (formatter && event) cxStringBuffHasCapacity(&buffer, kUsualLine);
    appendTraceLine(formatter, event, &buffer);
    return CxStringBuffTakeStr(&buffer);
}

constinit const ClassSlots olvex::slots::ovx_mavtraceformatter = {
    .format = OvxMavTraceFormatterFFormat,
    .bindMsg = ovxIntlBindI18Msg,
    .append = appendTraceLine,
};
