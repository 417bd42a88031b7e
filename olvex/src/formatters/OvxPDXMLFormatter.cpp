// The problem-determination XML formatter: each event as a Message or Trace element. Values are
// written as they are, nothing is escaped.
#include "formatters/OvxPDXMLFormatter.h"

#include <olvex/MsgId.h>
#include <olvex/Props.h>

#include <string_view>
#include <utility>

#include "formatters/OvxBasicFormatter.h"
#include "logging/OvxEvent.h"
#include "logging/OvxI18Msg.h"
#include "logging/OvxParmList.h"
#include "logging/OvxPrintf.h"
#include "logging/OvxProblemProps.h"
#include "messages/Messages.h"
#include "toolkit/OvxProps.h"
#include "util/CxStringBuff.h"

using namespace olvex;

namespace {

// Room for most records in one block.
constexpr std::size_t kUsualRecord = 1000; // bytes

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

void add(CxStringBuff *buffer, std::string_view text)
{
    appendBytes(buffer, text.data(), text.size());
}

// Appends an optional value.
void addText(CxStringBuff *buffer, const char *text)
{
    if (text) add(buffer, text);
}

// `open`, the text, `close`, when there is a text.
void addElement(CxStringBuff *buffer, std::string_view open, const char *text,
                std::string_view close)
{
    if (!text) return;
    add(buffer, open);
    add(buffer, text);
    add(buffer, close);
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
    add(buffer, " <LogAttribs>");
    for (const auto *node = propertiesOf(event)->first(); node; node = node->next()) {
        if (!ovxPDXMLCheckKey(node->key())) continue;
        add(buffer, "<Key>");
        add(buffer, node->key());
        add(buffer, "</Key><Value>");
        addText(buffer, node->value());
        add(buffer, "</Value>");
    }
    add(buffer, "</LogAttribs>\n");
}

// A number in the form that the toolkit stores, cut to 32 bits; false when there is none.
bool readId(const char *text, std::int64_t &id)
{
    bool converts = false;
    id = static_cast<std::int32_t>(text ? ovxPropStrToInt64(text, &converts) : 0);
    return converts;
}

void addIds(CxStringBuff *buffer, const ProblemProps &props)
{
    std::int64_t id = 0;
    if (readId(props[ProblemProps::kThreadId], id)) {
        add(buffer, " <Thread>");
        CxStringBuffAppendUInt64(buffer, static_cast<std::uint64_t>(id));
        add(buffer, "</Thread>\n");
    }
    if (readId(props[ProblemProps::kProcessId], id)) {
        add(buffer, " <Process>");
        CxStringBuffAppendInt64(buffer, id);
        add(buffer, "</Process>\n");
    }
}

void addParameter(CxStringBuff *buffer, const OvxParm &parameter)
{
    add(buffer, "<Param><![CDATA[");
    appendParm(buffer, parameter);
    add(buffer, "]]></Param>");
}

// Where the event comes from: a message's source and translation, a trace's source and ids.
void addOrigin(CxStringBuff *buffer, const OvxEvent *event, const ProblemProps &props,
               bool isMessage)
{
    const bool hasSource = ovxPDXMLEmitSource(buffer, props);
    if (isMessage) {
        const char *catalog = event->message ? event->message->catalog : nullptr;
        return ovxPDXMLEmitTranslationInfo(buffer, event, catalog);
    }
    if (!hasSource) add(buffer, " <Source FileName=\"None\" Method=\"None\"/>\n");
    addIds(buffer, props);
}

} // namespace

bool ovxPDXMLCheckKey(const char *key)
{
    return key && ProblemProps::nameOf(key) == ProblemProps::kOther;
}

void ovxPDXMLEmitProductInfo(CxStringBuff *buffer, const ProblemProps &props, bool withComponent,
                             bool withProduct, bool withProductId, bool withServer)
{
    const char *server = props[ProblemProps::kServer];
    if (withServer && server) {
        add(buffer, " <Server Format=\"");
        addText(buffer, props[ProblemProps::kServerFormat]);
        addElement(buffer, "\">", server, "</Server>\n");
    }
    if (withProduct)
        addElement(buffer, " <ProductId>", props[ProblemProps::kProduct], "</ProductId>\n");
    if (withComponent)
        addElement(buffer, " <Component>", props[ProblemProps::kComponent], "</Component>\n");
    if (withProductId)
        addElement(buffer, " <ProductInstance>", props[ProblemProps::kProductInstance],
                   "</ProductInstance>\n");
}

void ovxPDXMLEmitLevel(CxStringBuff *buffer, int level)
{
    for (const LevelWord &entry : kLevelWords)
        if (entry.level == level) return add(buffer, entry.word);
    add(buffer, "OTHER");
}

bool ovxPDXMLEmitSource(CxStringBuff *buffer, const ProblemProps &props)
{
    const char *file = props[ProblemProps::kSourceFile];
    if (!file) return false;
    addElement(buffer, " <Source FileName=\"", file, "");
    addElement(buffer, "\" Method=\"", props[ProblemProps::kSourceFunction], "");
    bool isNumber = false;
    const std::int32_t line = ovxPropStrToInt32(props[ProblemProps::kSourceLine], &isNumber);
    if (isNumber) {
        add(buffer, "\" Line=\"");
        CxStringBuffAppendInt32(buffer, line);
    }
    add(buffer, "\"/>\n");
    return true;
}

void ovxPDXMLEmitTranslationInfo(CxStringBuff *buffer, const OvxEvent *event, const char *catalog)
{
    const OvxI18Msg *message = event->message;
    if (!message) return;
    add(buffer, " <TranslationInfo Type=\"XPG4\" Catalog=\"");
    addText(buffer, catalog);
    add(buffer, "\" MsgKey=\"");
    CxStringBuffAppendInt32(buffer, message->key);
    add(buffer, "\" SetId=\"");
    CxStringBuffAppendInt32(buffer, message->set);
    add(buffer, "\">");
    Parms parms = parmsOf(message);
    for (std::size_t i = 0; i < parms.size(); ++i)
        addParameter(buffer, parms.at(i));
    add(buffer, "</TranslationInfo>\n");
}

char *ovxPDXMLGetMessageID(const char *text)
{
    const CxZMSIDInfo info = CxParseZMSID(text);
    return info.length > 0 ? BaxStringDup(info.id) : nullptr;
}

namespace olvex {

bool appendXmlRecord(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer)
{
    XmlVars *vars = varsOf(formatter);
    if (!vars || !event) return false;
    const ProblemProps props(event);
    if (std::exchange(vars->atStreamStart, false))
        ovxPDXMLEmitProductInfo(buffer, props, vars->singleComponent, vars->singleProduct,
                                vars->singleProductId, vars->singleServer);
    const bool isMessage = isMessageRecord(*vars, event);
    if (formatter->locale) ovxSetEventLocale(event, formatter->locale);
    BoundText text(event); // which stands in two places of a record
    if (isMessage)
        addMessageTag(buffer, event, text.text());
    else
        addTraceTag(buffer, event);
    addTime(buffer, formatter, event);
    ovxPDXMLEmitProductInfo(buffer, props, !vars->singleComponent, !vars->singleProduct,
                            !vars->singleProductId, !vars->singleServer);
    add(buffer, " <LogText><![CDATA[");
    add(buffer, {text.text(), text.size()});
    add(buffer, "]]></LogText>\n");
    if (props.hasOthers()) addAttributes(buffer, event);
    addOrigin(buffer, event, props, isMessage);
    addElement(buffer, " <CorrelationId>", props[ProblemProps::kCorrelationId],
               "</CorrelationId>\n");
    addElement(buffer, " <Principal>", props[ProblemProps::kClient], "</Principal>\n");
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
    if (varsOf(formatter) && event) cxStringBuffHasCapacity(&buffer, kUsualRecord);
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

constinit const ClassSlots olvex::slots::ovx_xmlformatter = {
    .allocVars = OvxPDXMLFormatterFAllocVars,
    .freeVars = OvxPDXMLFormatterFFreeVars,
    .cfgChange = OvxPDXMLFormatterFCfgChange,
    .format = OvxPDXMLFormatterFFormat,
    .getHeader = OvxPDXMLFormatterFGetHeader,
    .getTrailer = OvxPDXMLFormatterFGetTrailer,
    .bindMsg = ovxIntlBindI18Msg,
    .append = appendXmlRecord,
};
