// Handlers as such: their formatter, and the basic functions of handler classes.
#include "handlers/OvxHandler.h"

#include <utility>

#include "formatters/OvxBasicFormatter.h"
#include "logging/OvxEvent.h"
#include "toolkit/OvxToolkit.h"
#include "util/HotPath.h"
#include "util/Locked.h"

using namespace olvex;

namespace {

ReusedBuffer shared;

// What the handler formats with, held while a function of its class runs: that function may give
// the handler another one.
OVX_HOT ObjectRef formatterOf(const OvxObject *handler)
{
    const bool usable = isHandler(handler) && isFormatter(handler->formatter);
    return ObjectRef::to(usable ? handler->formatter : nullptr);
}

// Calls a function of the formatter's class; null when there is no formatter or no such function.
template <class Function, class... Arguments>
char *callFormatter(const OvxObject *handler, Function ClassSlots::*slot, Arguments... arguments)
{
    const ObjectRef formatter = formatterOf(handler);
    const Function function = formatter ? formatter.get()->cls->slots.*slot : nullptr;
    return function ? function(formatter.get(), arguments...) : nullptr;
}

} // namespace

namespace olvex {

OVX_HOT EventText::EventText(OvxObject *handler, OvxEvent *event) : buffer_(shared)
{
    const ObjectRef formatter = formatterOf(handler);
    if (!formatter) return;
    if (const auto append = formatter.get()->cls->slots.append) {
        if (!append(formatter.get(), event, buffer_.get())) return;
        text_ = buffer_.get()->str;
        size_ = buffer_.size();
        return;
    }
    owned_.reset(callFormatter(handler, &ClassSlots::format, event));
    text_ = owned_.get();
    size_ = BaxStringLen(text_);
}

void discardEventText()
{
    shared.discard();
    discardBoundText();
    discardTimestamp();
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
    return callFormatter(handler, &ClassSlots::getHeader);
}

char *ovxIntlHandlerGetFmtTrailer(OvxObject *handler)
{
    return callFormatter(handler, &ClassSlots::getTrailer);
}

char *ovxIntlHandlerDoFmt(OvxObject *handler, OvxEvent *event)
{
    return callFormatter(handler, &ClassSlots::format, event);
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
