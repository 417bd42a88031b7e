// Classes of objects: building a class's record, its default functions, registering it. Called with
// the API mutex held.
#include "toolkit/OvxObject.h"

#include "messages/Messages.h"
#include "toolkit/OvxToolkit.h"
#include "util/Locked.h"
#include "util/Memory.h"

using namespace olvex;

namespace {

// What stands in the slots that a class leaves empty.
constexpr ClassSlots kLogger = {.log = OvxBasicObjectFLog};
constexpr ClassSlots kFilter = {.log = OvxBasicObjectFLog,
                                .process = OvxBasicFilterFProcess,
                                .isLoggable = OvxLevelFilterFIsLoggable};
constexpr ClassSlots kHandler = {.process = OvxBasicHandlerFProcess,
                                 .open = OvxBasicHandlerFOpen,
                                 .close = OvxBasicHandlerFClose};

struct CategoryDefaults {
    int category;
    const ClassSlots &slots;
};

constexpr CategoryDefaults kDefaults[] = {
    {OVX_CLASS_LOGGER, kLogger},
    {OVX_CLASS_FILTER, kFilter},
    {OVX_CLASS_HANDLER, kHandler},
    {OVX_CLASS_FORMATTER, slots::ovx_basicformatter},
};

template <class Slot>
void fill(Slot &slot, Slot fallback)
{
    if (!slot) slot = fallback;
}

void fillEmptySlots(ClassSlots &slots, int category)
{
    for (const CategoryDefaults &entry : kDefaults) {
        if (entry.category != category) continue;
        fill(slots.log, entry.slots.log);
        fill(slots.process, entry.slots.process);
        fill(slots.isLoggable, entry.slots.isLoggable);
        fill(slots.open, entry.slots.open);
        fill(slots.close, entry.slots.close);
        if (!slots.format) slots.append = entry.slots.append;
        fill(slots.format, entry.slots.format);
        fill(slots.getHeader, entry.slots.getHeader);
        fill(slots.getTrailer, entry.slots.getTrailer);
        fill(slots.bindMsg, entry.slots.bindMsg);
    }
}

bool copyTexts(OvxObjClass *cls, const char *name, const OvxI18Msg *description)
{
    cls->name = Memory().duplicate(name);
    cls->description = ovxIntlCopyI18Msg(description);
    return cls->name && (cls->description || !description);
}

} // namespace

OvxObjClass *ovxInitObjectClass(const char *name, int category, const OvxI18Msg *description,
                                const ClassSlots &slots)
{
    if (!name || ovxToolkitGetClassDef(name)) return nullptr;
    auto *cls = Memory().make<OvxObjClass>();
    if (!cls || !copyTexts(cls, name, description)) {
        ovxFreeObjClass(cls);
        report(OVX_LEVEL_ERROR, Message::kOutOfMemory);
        return nullptr;
    }
    cls->category = category;
    cls->slots = slots;
    return cls;
}

void ovxFreeObjClass(OvxObjClass *cls)
{
    if (!cls) return;
    BaxMemoryFree(cls->name);
    ovxIntlFreeI18Msg(cls->description);
    Memory().destroy(cls);
}

void ovxIntlAddClass(const char *name, int category, const OvxI18Msg *description,
                     const ClassSlots &slots)
{
    ovxToolkitInitObjClasses();
    OvxObjClass *cls = ovxInitObjectClass(name, category, description, slots);
    if (!cls) return;
    fillEmptySlots(cls->slots, category);
    ovxToolkitAddClassDef(name, cls);
}

void ovxIntlAddLoggerClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                           OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFLog log)
{
    ovxIntlAddClass(
        name, OVX_CLASS_LOGGER, description,
        {.allocVars = allocVars, .freeVars = freeVars, .cfgChange = cfgChange, .log = log});
}

void ovxIntlAddFilterClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                           OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFProcess process,
                           OvxFIsLoggable isLoggable, OvxFLog log)
{
    ovxIntlAddClass(name, OVX_CLASS_FILTER, description,
                    {.allocVars = allocVars,
                     .freeVars = freeVars,
                     .cfgChange = cfgChange,
                     .log = log,
                     .process = process,
                     .isLoggable = isLoggable});
}

void ovxIntlAddHandlerClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                            OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFProcess process,
                            OvxFOpen open, OvxFClose close)
{
    ovxIntlAddClass(name, OVX_CLASS_HANDLER, description,
                    {.allocVars = allocVars,
                     .freeVars = freeVars,
                     .cfgChange = cfgChange,
                     .process = process,
                     .open = open,
                     .close = close});
}

void ovxIntlAddFormatterClass(const char *name, const OvxI18Msg *description,
                              OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                              OvxFCfgChange cfgChange, OvxFFormat format, OvxFGetHeader getHeader,
                              OvxFGetTrailer getTrailer, OvxFBindMsg bindMsg)
{
    ovxIntlAddClass(name, OVX_CLASS_FORMATTER, description,
                    {.allocVars = allocVars,
                     .freeVars = freeVars,
                     .cfgChange = cfgChange,
                     .format = format,
                     .getHeader = getHeader,
                     .getTrailer = getTrailer,
                     .bindMsg = bindMsg});
}

void OvxAddLoggerClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                       OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFLog log)
{
    locked([&] { ovxIntlAddLoggerClass(name, description, allocVars, freeVars, cfgChange, log); });
}

void OvxAddFilterClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                       OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFProcess process,
                       OvxFIsLoggable isLoggable, OvxFLog log)
{
    locked([&] {
        ovxIntlAddFilterClass(name, description, allocVars, freeVars, cfgChange, process,
                              isLoggable, log);
    });
}

void OvxAddHandlerClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                        OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFProcess process,
                        OvxFOpen open, OvxFClose close)
{
    locked([&] {
        ovxIntlAddHandlerClass(name, description, allocVars, freeVars, cfgChange, process, open,
                               close);
    });
}

void OvxAddFormatterClass(const char *name, const OvxI18Msg *description, OvxFAllocVars allocVars,
                          OvxFFreeVars freeVars, OvxFCfgChange cfgChange, OvxFFormat format,
                          OvxFGetHeader getHeader, OvxFGetTrailer getTrailer, OvxFBindMsg bindMsg)
{
    locked([&] {
        ovxIntlAddFormatterClass(name, description, allocVars, freeVars, cfgChange, format,
                                 getHeader, getTrailer, bindMsg);
    });
}

StringGroupNode *OvxGetLoggerClasses(void)
{
    return locked([] { return ovxToolkitFetchClassnames(OVX_CLASS_LOGGER); });
}

StringGroupNode *OvxGetFilterClasses(void)
{
    return locked([] { return ovxToolkitFetchClassnames(OVX_CLASS_FILTER); });
}

StringGroupNode *OvxGetHandlerClasses(void)
{
    return locked([] { return ovxToolkitFetchClassnames(OVX_CLASS_HANDLER); });
}

StringGroupNode *OvxGetFormatterClasses(void)
{
    return locked([] { return ovxToolkitFetchClassnames(OVX_CLASS_FORMATTER); });
}
