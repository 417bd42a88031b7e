// Handlers as such: their formatter, and the basic functions of handler classes.
#include "OvxHandler.h"

#include <utility>

#include "OvxBasicFormatter.h"
#include "OvxMavTraceFormatter.h"
#include "OvxPDXMLFormatter.h"
#include "util/Locked.h"

using namespace olvex;

namespace {

// The buffer that the built-in formatter writes into, handed from event to event.
struct SharedBuffer {
    CxStringBuff text;
    bool inUse;
} shared = {};

using AppendFormat = bool (*)(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer);

// The built-in formatters' functions, and the same work done into a buffer.
constexpr struct {
    OvxFFormat format;
    AppendFormat append;
} kAppendFormats[] = {
    {OvxBasicFormatterFFormat, appendBasicFormat},
    {OvxPDXMLFormatterFFormat, appendXmlRecord},
    {OvxMavTraceFormatterFFormat, appendTraceLine},
};

// Null for the function of a formatter class of a host's own.
AppendFormat appendFormatOf(OvxFFormat format)
{
    for (const auto &entry : kAppendFormats)
        if (entry.format == format) return entry.append;
    return nullptr;
}

// Buffers that a huge event has blown up are not kept.
constexpr std::uint32_t kLargestKept = 64 * 1024;

OvxObject *formatterOf(const OvxObject *handler)
{
    if (!isHandler(handler) || !isFormatter(handler->formatter)) return nullptr;
    return handler->formatter;
}

} // namespace

namespace olvex {

EventText::EventText(OvxObject *handler, OvxEvent *event)
{
    OvxObject *formatter = formatterOf(handler);
    if (!formatter || !formatter->cls->slots.format) return;
    const AppendFormat append = appendFormatOf(formatter->cls->slots.format);
    if (!append || shared.inUse) {
        owned_.reset(formatter->cls->slots.format(formatter, event));
        text_ = owned_.get();
        size_ = BaxStringLen(text_);
        return;
    }
    shared.inUse = usesSharedBuffer_ = true;
    CxStringBuffRestart(&shared.text);
    if (!append(formatter, event, &shared.text)) return;
    text_ = shared.text.str;
    size_ = shared.text.length;
}

EventText::~EventText()
{
    if (!usesSharedBuffer_) return;
    if (shared.text.capacity > kLargestKept) CxStringBuffDiscard(&shared.text);
    shared.inUse = false;
}

void discardEventText()
{
    CxStringBuffDiscard(&shared.text);
}

} // namespace olvex

OvxObject *ovxIntlHandlerGetFormatter(OvxObject *handler)
{
    return isHandler(handler) ? ovxIntlAcquireObject(handler->formatter) : nullptr;
}

// The new formatter is stored before the old one is released, which may end it.
void ovxIntlHandlerSetFormatter(OvxObject *handler, OvxObject *formatter)
{
    if (!isHandler(handler)) return;
    ovxIntlAcquireObject(formatter);
    ovxIntlReleaseObject(std::exchange(handler->formatter, formatter));
}

char *ovxIntlHandlerGetFmtHeader(OvxObject *handler)
{
    OvxObject *formatter = formatterOf(handler);
    const OvxFGetHeader getHeader = formatter ? formatter->cls->slots.getHeader : nullptr;
    return getHeader ? getHeader(formatter) : nullptr;
}

char *ovxIntlHandlerGetFmtTrailer(OvxObject *handler)
{
    OvxObject *formatter = formatterOf(handler);
    const OvxFGetTrailer getTrailer = formatter ? formatter->cls->slots.getTrailer : nullptr;
    return getTrailer ? getTrailer(formatter) : nullptr;
}

char *ovxIntlHandlerDoFmt(OvxObject *handler, OvxEvent *event)
{
    OvxObject *formatter = formatterOf(handler);
    const OvxFFormat format = formatter ? formatter->cls->slots.format : nullptr;
    return format ? format(formatter, event) : nullptr;
}

void OvxBasicHandlerFCfgChange(OvxObject *handler, const char *name)
{
    if (BaxStringCmp(name, "formatterName") != 0) return OvxBasicObjectFCfgChange(handler, name);
    const Text formatterName(ovxIntlGetObjProp(handler, "formatterName", nullptr));
    if (!formatterName) return;
    const ObjectRef formatter(ovxIntlGetObject(formatterName.get(), nullptr));
    ovxIntlHandlerSetFormatter(handler, formatter.get());
}

void OvxBasicHandlerFProcess(OvxObject *, OvxEvent *) {}
void OvxBasicHandlerFOpen(OvxObject *) {}
void OvxBasicHandlerFClose(OvxObject *) {}

OvxObject *OvxHandlerGetFormatter(OvxObject *handler)
{
    return locked([&] { return ovxIntlHandlerGetFormatter(handler); });
}

void OvxHandlerSetFormatter(OvxObject *handler, OvxObject *formatter)
{
    locked([&] { ovxIntlHandlerSetFormatter(handler, formatter); });
}

char *OvxHandlerGetFmtHeader(OvxObject *handler)
{
    return locked([&] { return ovxIntlHandlerGetFmtHeader(handler); });
}

char *OvxHandlerGetFmtTrailer(OvxObject *handler)
{
    return locked([&] { return ovxIntlHandlerGetFmtTrailer(handler); });
}

char *OvxHandlerDoFmt(OvxObject *handler, OvxEvent *event)
{
    return locked([&] { return ovxIntlHandlerDoFmt(handler, event); });
}
