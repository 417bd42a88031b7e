// Events: their record, its accessors, and the reading of the typed parameter list.
#include "logging/OvxEvent.h"

#include <olvex/MsgId.h>
#include <olvex/Props.h>
#include <olvex/System.h>

#include <charconv>
#include <utility>

#include "logging/OvxParmList.h"
#include "messages/Messages.h"
#include "util/HotPath.h"
#include "util/collections/OvxStringToStringMap.h"

using namespace olvex;

namespace {

constexpr bool isValueMarker(int marker)
{
    return marker >= OVX_PARM_BOOL && marker <= OVX_PARM_STRING;
}

constexpr bool isLevelMarker(int marker)
{
    constexpr int kLevels[] = {OVX_LEVEL_NONE,      OVX_LEVEL_DEBUG_MAX, OVX_LEVEL_DEBUG_MID,
                               OVX_LEVEL_DEBUG_MIN, OVX_LEVEL_INFO,      OVX_LEVEL_WARN,
                               OVX_LEVEL_ERROR,     OVX_LEVEL_FATAL,     OVX_LEVEL_OFF};
    for (const int level : kLevels)
        if (marker == level) return true;
    return false;
}

void setProperty(StringToStringMap *map, const char *name, const OvxParm &value)
{
    switch (value.type) {
    case OVX_PARM_BOOL: return OvxSetMapPropBool(map, name, value.value.boolean);
    case OVX_PARM_INT: return OvxSetMapPropInt(map, name, value.value.integer);
    case OVX_PARM_LONG: return OvxSetMapPropLong(map, name, value.value.longInteger);
    case OVX_PARM_FLOAT: return OvxSetMapPropFloat(map, name, value.value.floating);
    case OVX_PARM_DOUBLE: return OvxSetMapPropDouble(map, name, value.value.doubleFloating);
    case OVX_PARM_CHAR:
        return OvxSetMapPropChar(map, name, static_cast<char>(value.value.character));
    default: return OvxSetMapProp(map, name, value.value.string);
    }
}

// Reads a typed parameter list into an event: parameters into its message's list or, where there is
// one, into a row.
class ParameterReader {
  public:
    ParameterReader(OvxEvent *event, va_list list, OvxParm *row = nullptr)
        : event_(event), row_(row)
    {
        va_copy(list_, list);
    }
    ~ParameterReader() { va_end(list_); }
    ParameterReader(const ParameterReader &) = delete;
    ParameterReader &operator=(const ParameterReader &) = delete;

    OVX_HOT void readAll()
    {
        bool known = true;
        bool ended = false;
        for (std::size_t entries = 0; known && !ended && entries < kMostEntries; ++entries) {
            const int marker = va_arg(list_, int);
            ended = marker == 0;
            known = ended || readEntry(marker);
        }
        if (row_) setParameterRow(event_->message, {row_, rowSize_});
        if (!known) return report(OVX_LEVEL_ERROR, Message::kMissingMarkers);
        if (!ended) report(OVX_LEVEL_ERROR, Message::kListNotEnded);
    }

  private:
    // What comes most often is looked for first.
    bool readEntry(int marker)
    {
        if (isValueMarker(marker)) return readParameter(marker);
        return marker == OVX_PROP ? readProperty() : readLevel(marker);
    }

    // A name, then a marker with its value. Here 0 is a level, not the end of the list.
    bool readProperty()
    {
        StringToStringMap *map = ovxFetchEventPropMap(event_);
        const char *name = va_arg(list_, const char *);
        const int marker = va_arg(list_, int);
        if (!isValueMarker(marker))
            return marker == OVX_LEVEL_ALL ? takeLevel(marker) : readLevel(marker);
        OvxParm value;
        readValue(marker, value);
        if (name && map) putProperty(map, name, value);
        return true;
    }

    bool readParameter(int marker)
    {
        OvxParm own;
        OvxParm &parm = row_ ? row_[rowSize_++] : own;
        readValue(marker, parm);
        if (!row_) ovxIntlParmListAppend(ovxGetI18MsgParmList(event_->message), &parm);
        return true;
    }

    bool readLevel(int marker) { return isLevelMarker(marker) && takeLevel(marker); }

    // The caller's strings outlive an event in an arena.
    void putProperty(StringToStringMap *map, const char *name, const OvxParm &value)
    {
        if (event_->memory.isArena() && value.type == OVX_PARM_STRING)
            map->putBorrowed(name, value.value.string);
        else
            setProperty(map, name, value);
    }

    bool takeLevel(int level)
    {
        event_->level = level;
        return true;
    }

    // The value behind a value marker, in the form in which the list carries it. Its fields are
    // written where they belong: copying a whole right after writing its parts costs a
    // store-forwarding stall.
    void readValue(int marker, OvxParm &parm)
    {
        parm.type = marker;
        switch (marker) {
        case OVX_PARM_BOOL: parm.value.boolean = (va_arg(list_, int) & 0xFF) != 0; break;
        case OVX_PARM_INT: parm.value.integer = va_arg(list_, int); break;
        case OVX_PARM_LONG: parm.value.longInteger = va_arg(list_, long); break;
        case OVX_PARM_FLOAT: parm.value.floating = static_cast<float>(va_arg(list_, double)); break;
        case OVX_PARM_DOUBLE: parm.value.doubleFloating = va_arg(list_, double); break;
        case OVX_PARM_CHAR:
            parm.value.character = static_cast<signed char>(va_arg(list_, int));
            break;
        default: parm.value.string = va_arg(list_, char *);
        }
    }

    OvxEvent *event_;
    va_list list_;
    OvxParm *row_;
    std::size_t rowSize_ = 0;
};

char *numberText(Memory memory, int number)
{
    constexpr std::size_t kRoom = 12;
    auto *text = static_cast<char *>(memory.allocate(kRoom));
    if (text) *std::to_chars(text, text + kRoom - 1, number).ptr = '\0';
    return text;
}

void putSource(StringToStringMap *map, const SourceLocation &source)
{
    if (source.file) {
        map->putBorrowed(kPropSourceFile, const_cast<char *>(source.file));
        map->putBorrowed(kPropSourceLine, numberText(map->memory(), source.line));
    }
    if (source.function) map->putBorrowed(kPropSourceFunction, const_cast<char *>(source.function));
}

} // namespace

namespace olvex {

OVX_HOT CallEvent::CallEvent(Arena *arena, int level, const char *catalog, int set, int key,
                             const char *text, va_list parameters)
    : arena_(arena),
      mark_(arena->mark()),
      event_{.isMessage = catalog != nullptr,
             .time = CxSystemGetTimestamp(),
             .level = level,
             .message = &message_,
             .memory = Memory(arena)},
      message_{catalog, set, key, text, {}, nullptr, nullptr, Memory(arena)}
{
    ParameterReader(&event_, parameters, parameters_).readAll();
}

OVX_HOT void setSourceLocation(OvxEvent *event, const SourceLocation &source)
{
    if (!event) return;
    if (event->properties)
        putSource(event->properties, source);
    else
        event->source = source;
}

StringToStringMap *propertiesOf(const OvxEvent *event)
{
    if (!event || !event->source) return event ? event->properties : nullptr;
    return ovxFetchEventPropMap(const_cast<OvxEvent *>(event));
}

const char *peekProperty(const OvxEvent *event, const char *name)
{
    const StringToStringMap *map = propertiesOf(event);
    const StringToStringMapNode *node = map ? map->find(name) : nullptr;
    return node ? node->value() : nullptr;
}

} // namespace olvex

OvxEvent *OvxVaAllocEvent(int level, const char *catalog, int set, int key, const char *text,
                          va_list parameters)
{
    auto *event = Memory().make<OvxEvent>();
    if (!event) return nullptr;
    event->isMessage = catalog != nullptr;
    event->time = CxSystemGetTimestamp();
    event->level = level;
    event->message = makeMessage(catalog, set, key, text);
    ParameterReader(event, parameters).readAll();
    return event;
}

void OvxFreeEvent(OvxEvent *event)
{
    if (!event) return;
    const Memory memory = event->memory;
    ovxIntlFreeI18Msg(event->message);
    ovxIntlFreeStringToStringMap(event->properties);
    memory.release(event->messageId);
    memory.destroy(event);
}

int64_t OvxGetEventTime(const OvxEvent *event)
{
    return event ? event->time : 0;
}

int32_t OvxGetEventLevel(const OvxEvent *event)
{
    return event ? event->level : OVX_LEVEL_NONE;
}

bool OvxGetEventIsMessage(const OvxEvent *event)
{
    return event && event->isMessage;
}

void OvxSetEventIsMessage(OvxEvent *event, bool isMessage)
{
    if (event) event->isMessage = isMessage;
}

char *OvxGetEventMessageId(const OvxEvent *event)
{
    return event ? BaxStringDup(event->messageId) : nullptr;
}

void OvxSetEventMessageId(OvxEvent *event, const char *id)
{
    if (!event) return;
    char *copy = event->memory.duplicate(id);
    event->memory.release(std::exchange(event->messageId, copy));
}

const char *ovxGetEventLocale(const OvxEvent *event)
{
    return event ? event->locale : nullptr;
}

void ovxSetEventLocale(OvxEvent *event, const char *locale)
{
    if (event) event->locale = locale;
}

StringToStringMap *ovxFetchEventPropMap(OvxEvent *event)
{
    if (!event) return nullptr;
    if (event->properties) return event->properties;
    event->properties = event->memory.make<StringToStringMap>(event->memory);
    if (event->properties) putSource(event->properties, std::exchange(event->source, {}));
    return event->properties;
}

char *OvxGetEventProp(const OvxEvent *event, const char *name, bool *found)
{
    return OvxGetMapProp(propertiesOf(event), name, found);
}

bool OvxGetEventPropBool(const OvxEvent *event, const char *name, bool *found)
{
    return OvxGetMapPropBool(propertiesOf(event), name, found);
}

int32_t OvxGetEventPropInt(const OvxEvent *event, const char *name, bool *found)
{
    return OvxGetMapPropInt(propertiesOf(event), name, found);
}

long OvxGetEventPropLong(const OvxEvent *event, const char *name, bool *found)
{
    return static_cast<long>(OvxGetMapPropLong(propertiesOf(event), name, found));
}

float OvxGetEventPropFloat(const OvxEvent *event, const char *name, bool *found)
{
    return OvxGetMapPropFloat(propertiesOf(event), name, found);
}

double OvxGetEventPropDouble(const OvxEvent *event, const char *name, bool *found)
{
    return OvxGetMapPropDouble(propertiesOf(event), name, found);
}

void OvxSetEventProp(OvxEvent *event, const char *name, const char *value)
{
    OvxSetMapProp(ovxFetchEventPropMap(event), name, value);
}

void OvxSetEventPropBool(OvxEvent *event, const char *name, bool value)
{
    OvxSetMapPropBool(ovxFetchEventPropMap(event), name, value);
}

void OvxSetEventPropInt(OvxEvent *event, const char *name, int32_t value)
{
    OvxSetMapPropInt(ovxFetchEventPropMap(event), name, value);
}

void OvxSetEventPropLong(OvxEvent *event, const char *name, long value)
{
    OvxSetMapPropLong(ovxFetchEventPropMap(event), name, value);
}

void OvxSetEventPropFloat(OvxEvent *event, const char *name, float value)
{
    OvxSetMapPropFloat(ovxFetchEventPropMap(event), name, value);
}

void OvxSetEventPropDouble(OvxEvent *event, const char *name, double value)
{
    OvxSetMapPropDouble(ovxFetchEventPropMap(event), name, value);
}

char *OvxBindEventMsg(OvxEvent *event, OvxFBindMsg bind)
{
    if (!event || !bind) return nullptr;
    if (event->locale) ovxSetI18MsgLocale(event->message, event->locale);
    return bind(event->message);
}

namespace olvex {

namespace {

ReusedBuffer boundText;

} // namespace

BoundText::BoundText(const OvxEvent *event) : buffer_(boundText)
{
    if (event->locale) ovxSetI18MsgLocale(event->message, event->locale);
    bindMessage(event->message, buffer_.get());
}

void discardBoundText()
{
    boundText.discard();
}

} // namespace olvex

void ovxPDXMLFormatterCacheMessageID(OvxObject *, OvxEvent *event)
{
    if (!event || event->messageId) return;
    BoundText text(event);
    OvxSetEventMessageId(event, CxParseZMSID(text.text()).id);
}
