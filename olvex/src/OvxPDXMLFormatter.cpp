// The problem-determination XML formatter: each event as a Message or Trace element. Values are
// written as they are, nothing is escaped.
#include "OvxPDXMLFormatter.h"

#include <olvex/MsgId.h>
#include <olvex/Props.h>

#include "OvxBasicFormatter.h"
#include "OvxEvent.h"
#include "OvxI18Msg.h"
#include "OvxPrintf.h"
#include "OvxProps.h"
#include "messages/Messages.h"
#include "util/CxStringBuff.h"
#include "util/OvxParmList.h"
#include "util/OvxStringToStringMap.h"

using namespace olvex;

namespace {

struct XmlVars {
    bool atStreamStart = true;
    bool singleComponent = false;
    bool singleProduct = false;
    bool singleProductId = false;
    bool singleServer = false;
    bool forceAsMessage = false;
    bool forceAsTrace = false;
};

struct Switch {
    const char *property;
    bool XmlVars::*flag;
};

constexpr Switch kSwitches[] = {
    {"singleComponent", &XmlVars::singleComponent}, {"singleProduct", &XmlVars::singleProduct},
    {"singleProductId", &XmlVars::singleProductId}, {"singleServer", &XmlVars::singleServer},
    {"forceAsMessage", &XmlVars::forceAsMessage},   {"forceAsTrace", &XmlVars::forceAsTrace},
};

// Properties with elements of their own.
constexpr const char *kOwnElements[] = {
    "threadId",         "correlationId",    "client",
    "ovx_prop_srcfile", "ovx_prop_srcline", "ovx_prop_srcfunction",
    "server",           "serverFormat",     "product",
    "component",        "productInstance",  "processId",
};

struct LevelWord {
    std::int32_t level;
    const char *word;
};

constexpr LevelWord kLevelWords[] = {
    {OVX_LEVEL_DEBUG_MAX, "MAX"}, {OVX_LEVEL_DEBUG_MID, "MID"}, {OVX_LEVEL_DEBUG_MIN, "MIN"},
    {OVX_LEVEL_INFO, "INFO"},     {OVX_LEVEL_WARN, "WARN"},     {OVX_LEVEL_ERROR, "ERROR"},
    {OVX_LEVEL_FATAL, "ERROR"},
};

XmlVars *varsOf(const OvxObject *formatter)
{
    return formatter ? static_cast<XmlVars *>(formatter->variables) : nullptr;
}

void add(CxStringBuff *buffer, const char *text)
{
    CxStringBuffAppendStr(buffer, text);
}

// `open`, the property's value, `close`, when the event has the property.
bool addProperty(CxStringBuff *buffer, const OvxEvent *event, const char *name, const char *open,
                 const char *close)
{
    const char *value = peekProperty(event, name);
    if (!value) return false;
    add(buffer, open);
    add(buffer, value);
    add(buffer, close);
    return true;
}

// A number property as the toolkit reads it; false when the event has none.
bool readNumber(const OvxEvent *event, const char *name, std::int64_t &number)
{
    const char *value = peekProperty(event, name);
    bool converts = false;
    number = value ? ovxPropStrToInt64(value, &converts) : 0;
    return converts;
}

bool isMessageRecord(const XmlVars &vars, const OvxEvent *event)
{
    return vars.forceAsMessage == vars.forceAsTrace ? event->isMessage : vars.forceAsMessage;
}

void addMessageTag(CxStringBuff *buffer, const OvxEvent *event, const char *boundText)
{
    CxZMSIDInfo parsed = {};
    if (!event->messageId) parsed = CxParseZMSID(boundText);
    const char *id = event->messageId ? event->messageId : parsed.id;
    add(buffer, "<Message Id=\"");
    add(buffer, *id ? id : "None");
    if (event->level != OVX_LEVEL_NONE) {
        add(buffer, "\" Severity=\"");
        ovxPDXMLEmitLevel(buffer, event->level);
    }
    add(buffer, "\">\n");
}

void addTraceTag(CxStringBuff *buffer, const OvxEvent *event)
{
    if (event->level == OVX_LEVEL_NONE) return add(buffer, "<Trace>\n");
    add(buffer, "<Trace Level=\"");
    ovxPDXMLEmitLevel(buffer, event->level);
    add(buffer, "\">\n");
}

void addTime(CxStringBuff *buffer, OvxObject *formatter, const OvxEvent *event)
{
    add(buffer, " <Time Millis=\"");
    CxStringBuffAppendInt64(buffer, event->time);
    add(buffer, "\">");
    if (!appendDate(formatter, event->time, buffer)) report(OVX_LEVEL_ERROR, Message::kOutOfMemory);
    add(buffer, "</Time>\n");
}

void addAttributes(CxStringBuff *buffer, const OvxEvent *event)
{
    bool isOpen = false;
    const auto *node = event->properties ? event->properties->first() : nullptr;
    for (; node; node = node->next()) {
        if (!ovxPDXMLCheckKey(node->key())) continue;
        if (!isOpen) add(buffer, " <LogAttribs>");
        isOpen = true;
        add(buffer, "<Key>");
        add(buffer, node->key());
        add(buffer, "</Key><Value>");
        add(buffer, node->value());
        add(buffer, "</Value>");
    }
    if (isOpen) add(buffer, "</LogAttribs>\n");
}

void addIds(CxStringBuff *buffer, const OvxEvent *event)
{
    std::int64_t number = 0;
    if (readNumber(event, "threadId", number)) {
        add(buffer, " <Thread>");
        CxStringBuffAppendUInt64(
            buffer, static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(number)}));
        add(buffer, "</Thread>\n");
    }
    if (readNumber(event, "processId", number)) {
        add(buffer, " <Process>");
        CxStringBuffAppendInt64(buffer, static_cast<std::int32_t>(number));
        add(buffer, "</Process>\n");
    }
}

void addParameter(CxStringBuff *buffer, const OvxParm &parameter)
{
    add(buffer, "<Param><![CDATA[");
    appendParm(buffer, parameter);
    add(buffer, "]]></Param>");
}

// The message's text in a buffer that is reused, since it stands in two places of a record. A
// record that is made while another one is being made has a buffer of its own.
class BoundText {
  public:
    explicit BoundText(const OvxEvent *event) : buffer_(inUse_ ? &own_ : &shared_)
    {
        inUse_ = inUse_ || buffer_ == &shared_;
        CxStringBuffRestart(buffer_);
        if (event->locale) ovxSetI18MsgLocale(event->message, event->locale);
        bindMessage(event->message, buffer_);
    }
    ~BoundText()
    {
        if (buffer_ == &shared_) inUse_ = false;
        CxStringBuffDiscard(&own_);
    }
    BoundText(const BoundText &) = delete;
    BoundText &operator=(const BoundText &) = delete;

    const char *get() const { return buffer_->str ? buffer_->str : ""; }
    std::size_t size() const { return buffer_->length; }

  private:
    static inline CxStringBuff shared_ = {};
    static inline bool inUse_ = false;
    CxStringBuff own_ = {};
    CxStringBuff *buffer_;
};

} // namespace

bool ovxPDXMLCheckKey(const char *key)
{
    for (const char *own : kOwnElements)
        if (BaxStringCmp(key, own) == 0) return false;
    return true;
}

void ovxPDXMLEmitProductInfo(CxStringBuff *buffer, const OvxEvent *event, bool withComponent,
                             bool withProduct, bool withProductId, bool withServer)
{
    if (withServer && peekProperty(event, "server")) {
        const char *format = peekProperty(event, "serverFormat");
        add(buffer, " <Server Format=\"");
        add(buffer, format ? format : "");
        addProperty(buffer, event, "server", "\">", "</Server>\n");
    }
    if (withProduct) addProperty(buffer, event, "product", " <ProductId>", "</ProductId>\n");
    if (withComponent) addProperty(buffer, event, "component", " <Component>", "</Component>\n");
    if (withProductId)
        addProperty(buffer, event, "productInstance", " <ProductInstance>", "</ProductInstance>\n");
}

void ovxPDXMLEmitLevel(CxStringBuff *buffer, int level)
{
    for (const LevelWord &entry : kLevelWords)
        if (entry.level == level) return add(buffer, entry.word);
    add(buffer, "OTHER");
}

bool ovxPDXMLEmitSource(CxStringBuff *buffer, const OvxEvent *event)
{
    if (!addProperty(buffer, event, "ovx_prop_srcfile", " <Source FileName=\"", "")) return false;
    addProperty(buffer, event, "ovx_prop_srcfunction", "\" Method=\"", "");
    const char *line = peekProperty(event, "ovx_prop_srcline");
    bool isNumber = false;
    const std::int32_t number = ovxPropStrToInt32(line, &isNumber);
    if (isNumber) {
        add(buffer, "\" Line=\"");
        CxStringBuffAppendInt32(buffer, number);
    }
    add(buffer, "\"/>\n");
    return true;
}

void ovxPDXMLEmitTranslationInfo(CxStringBuff *buffer, const OvxEvent *event, const char *catalog)
{
    const OvxI18Msg *message = event->message;
    if (!message) return;
    add(buffer, " <TranslationInfo Type=\"XPG4\" Catalog=\"");
    add(buffer, catalog ? catalog : "");
    add(buffer, "\" MsgKey=\"");
    CxStringBuffAppendInt32(buffer, message->key);
    add(buffer, "\" SetId=\"");
    CxStringBuffAppendInt32(buffer, message->set);
    add(buffer, "\">");
    const auto *node = message->parameters ? message->parameters->first() : nullptr;
    for (; node; node = node->next())
        addParameter(buffer, *node->element());
    add(buffer, "</TranslationInfo>\n");
}

char *ovxPDXMLGetMessageID(const char *text)
{
    const CxZMSIDInfo info = CxParseZMSID(text);
    return info.length > 0 ? BaxStringDup(info.id) : nullptr;
}

void ovxPDXMLFormatterCacheMessageID(OvxObject *, OvxEvent *event)
{
    if (!event || event->messageId) return;
    OvxSetEventMessageId(event, CxParseZMSID(BoundText(event).get()).id);
}

namespace olvex {

bool appendXmlRecord(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    XmlVars *vars = varsOf(formatter);
    if (!vars || !event) return false;
    if (vars->atStreamStart)
        ovxPDXMLEmitProductInfo(buffer, event, vars->singleComponent, vars->singleProduct,
                                vars->singleProductId, vars->singleServer);
    vars->atStreamStart = false;
    const bool isMessage = isMessageRecord(*vars, event);
    if (formatter->locale) ovxSetEventLocale(event, formatter->locale);
    const BoundText text(event);
    if (isMessage)
        addMessageTag(buffer, event, text.get());
    else
        addTraceTag(buffer, event);
    addTime(buffer, formatter, event);
    ovxPDXMLEmitProductInfo(buffer, event, !vars->singleComponent, !vars->singleProduct,
                            !vars->singleProductId, !vars->singleServer);
    add(buffer, " <LogText><![CDATA[");
    appendBytes(buffer, text.get(), text.size());
    add(buffer, "]]></LogText>\n");
    addAttributes(buffer, event);
    const bool hasSource = ovxPDXMLEmitSource(buffer, event);
    if (isMessage) {
        const char *catalog = event->message ? event->message->catalog : nullptr;
        ovxPDXMLEmitTranslationInfo(buffer, event, catalog);
    } else {
        if (!hasSource) add(buffer, " <Source FileName=\"None\" Method=\"None\"/>\n");
        addIds(buffer, event);
    }
    addProperty(buffer, event, "correlationId", " <CorrelationId>", "</CorrelationId>\n");
    addProperty(buffer, event, "client", " <Principal>", "</Principal>\n");
    add(buffer, isMessage ? "</Message>\n" : "</Trace>\n");
    return true;
}

} // namespace olvex

void *OvxPDXMLFormatterFAllocVars()
{
    return Memory().make<XmlVars>();
}

void OvxPDXMLFormatterFFreeVars(void *variables)
{
    BaxMemoryFree(variables);
}

void OvxPDXMLFormatterFCfgChange(OvxObject *formatter, const char *name)
{
    XmlVars *vars = varsOf(formatter);
    if (!vars || !name) return;
    for (const Switch &entry : kSwitches) {
        if (BaxStringCmp(name, entry.property) != 0) continue;
        vars->*entry.flag = ovxIntlGetObjPropBool(formatter, name, nullptr);
        return;
    }
    OvxBasicFormatterFCfgChange(formatter, name);
}

char *OvxPDXMLFormatterFFormat(OvxObject *formatter, OvxEvent *event)
{
    CxStringBuff buffer = {};
    appendXmlRecord(formatter, event, &buffer);
    return CxStringBuffTakeStr(&buffer);
}

char *OvxPDXMLFormatterFGetHeader(OvxObject *formatter)
{
    if (XmlVars *vars = varsOf(formatter)) vars->atStreamStart = true;
    return nullptr;
}

char *OvxPDXMLFormatterFGetTrailer(OvxObject *)
{
    return nullptr;
}
