// The trigger handler of first failure data capture: its class functions, the decision to act, and
// the directory of a date.
#include "handlers/capture/OvxFFDCTriggerHandler.h"

#include <olvex/Misc.h>

#include <cmath>
#include <ctime>
#include <utility>

#include "handlers/files/OvxLogFiles.h"
#include "logging/OvxEvent.h"
#include "messages/Messages.h"
#include "toolkit/OvxPropertyTable.h"
#include "toolkit/OvxProps.h"
#include "util/Sums.h"

using namespace olvex;

namespace {

constexpr std::uint32_t kDirectoryMode = 0771;
constexpr std::int64_t kMillisecondsPerSecond = 1000;

// Makes a directory and its missing parents. What fails shows when files cannot be copied there.
void makeDirectories(const char *name)
{
    CxFilePath path;
    if (CxInitFilePath(&path, name) == 1) CxFilePathMkdirs(&path, kDirectoryMode);
}

// The new filter is stored before the old one is released, which may end it.
void storeFilter(OvxFFDCHandlerVars &vars, OvxObject *owned)
{
    ovxIntlReleaseObject(std::exchange(vars.filter, owned));
}

// The name is copied first: finding the filter can run code that sets it again.
void findFilter(const OvxObject *handler, OvxFFDCHandlerVars &vars)
{
    const Text name(BaxStringDup(vars.filterName.get()));
    if (name)
        storeFilter(vars, ovxIntlGetObject(name.get(), nullptr));
    else
        report(OVX_LEVEL_ERROR, Message::kNoTriggerFilter, ovxIntlGetObjectName(handler));
}

// "/2008.04.01/"; empty for a time that has no date.
struct DateName {
    char text[64] = "";

    explicit DateName(std::int64_t milliseconds)
    {
        const auto second = static_cast<std::time_t>(milliseconds / kMillisecondsPerSecond);
        std::tm local = {};
        if (!localtime_r(&second, &local)) return;
        if (std::strftime(text, sizeof text, "/%Y.%m.%d/", &local) == 0) *text = '\0';
    }
};

// The setters take no value that makes no sense, such as the 0 of one that is no number.
template <schema::Name>
void apply(OvxObject *handler, const char *value) = delete;

template <>
void apply<"triggerFilter">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetFilterName(handler, value);
}

template <>
void apply<"triggerRepeatTime">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetInterval(handler, ovxPropStrToInt64(value, nullptr));
}

template <>
void apply<"baseDir">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetBaseDir(handler, value);
}

template <>
void apply<"maxDiskSpace">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetMaxDisk(handler, ovxPropStrToInt64(value, nullptr));
}

template <>
void apply<"quotaPolicy">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetQuotaPolicy(handler, value);
}

template <>
void apply<"firstWarning">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetFirstWarning(handler, ovxPropStrToFloat64(value, nullptr));
}

template <>
void apply<"secondWarning">(OvxObject *handler, const char *value)
{
    ovxIntlFFDCTriggerHandlerSetSecondWarning(handler, ovxPropStrToFloat64(value, nullptr));
}

template <>
void apply<"warnOnDiskSpace">(OvxObject *handler, const char *value)
{
    bool isNumber = false;
    const double number = ovxPropStrToFloat64(value, &isNumber);
    if (isNumber) ffdcVarsOf(handler)->warnOnDiskSpace = std::fabs(number) >= 1.0;
}

constexpr auto kProperties =
    rowsOf<schema::kTriggered>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

} // namespace

namespace olvex {

OvxFFDCHandlerVars *ffdcVarsOf(const OvxObject *handler)
{
    if (!isHandler(handler) || handler->cls->slots.open != OvxFFDCTriggerHandlerFOpen)
        return nullptr;
    return static_cast<OvxFFDCHandlerVars *>(handler->variables);
}

bool hasBaseDirectory(const OvxFFDCHandlerVars &vars)
{
    const char *path = vars.baseDir.get();
    return path && path[std::strspn(path, "/")] != '\0';
}

Text nativePath(const char *path)
{
    if (!path || BaxStringLen(path) > kLongestLogName) return nullptr;
    char native[kLongestLogName + 1];
    return Text(ovxGetNativePath(path, native) ? BaxStringDup(native) : nullptr);
}

} // namespace olvex

void *OvxFFDCTriggerHandlerFAllocVars()
{
    return Memory().make<OvxFFDCHandlerVars>();
}

void OvxFFDCTriggerHandlerFFreeVars(void *variables)
{
    auto *vars = static_cast<OvxFFDCHandlerVars *>(variables);
    if (!vars) return;
    storeFilter(*vars, nullptr);
    Memory().destroy(vars);
}

void OvxFFDCTriggerHandlerFCfgChange(OvxObject *handler, const char *name)
{
    if (!name || (ffdcVarsOf(handler) && applyProperty(kProperties, handler, name))) return;
    OvxBasicHandlerFCfgChange(handler, name);
}

void OvxFFDCTriggerHandlerFOpen(OvxObject *handler)
{
    OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars || vars->isOpen) return;
    if (!vars->filter) findFilter(handler, *vars);
    if (hasBaseDirectory(*vars))
        makeDirectories(vars->baseDir.get());
    else
        report(OVX_LEVEL_ERROR, Message::kNoBaseDirectory, ovxIntlGetObjectName(handler));
    vars->isOpen = true;
}

// The next open looks the filter up again.
void OvxFFDCTriggerHandlerFClose(OvxObject *handler)
{
    OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars || !vars->isOpen) return;
    vars->isOpen = false;
    storeFilter(*vars, nullptr);
}

bool ovxShouldFFDCActionOccur(OvxObject *handler, OvxEvent *event)
{
    OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars || !event || !ovxIntlIsTriggerLoggable(vars->filter, event)) return false;
    const std::int64_t time = OvxGetEventTime(event);
    if (vars->lastActionTime != 0 && saturatedSum(vars->lastActionTime, vars->repeatTime) >= time)
        return false;
    vars->lastActionTime = time;
    return true;
}

// A filter of a host's own may change the handler's filter meanwhile, so it is held.
bool ovxIntlIsTriggerLoggable(OvxObject *filter, OvxEvent *event)
{
    const ObjectRef reference(ovxIntlAcquireObject(filter));
    return OvxIsLoggableByFilter(filter, event);
}

char *ovxMakeFFDCDir(OvxObject *handler, OvxEvent *event)
{
    if (const char *made = peekProperty(event, "ffdcDir")) return BaxStringDup(made);
    const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!vars || !event || !hasBaseDirectory(*vars)) return nullptr;
    const DateName date(OvxGetEventTime(event));
    if (!*date.text) return nullptr;
    const char *const parts[] = {vars->baseDir.get(), date.text};
    char *directory = OvxStrACat(2, parts, nullptr);
    if (!directory) return nullptr;
    makeDirectories(directory);
    OvxSetEventProp(event, "ffdcDir", directory);
    return directory;
}

constinit const ClassSlots olvex::slots::ovx_ffdc_trigger_handler = {
    .allocVars = OvxFFDCTriggerHandlerFAllocVars,
    .freeVars = OvxFFDCTriggerHandlerFFreeVars,
    .cfgChange = OvxFFDCTriggerHandlerFCfgChange,
    .open = OvxFFDCTriggerHandlerFOpen,
    .close = OvxFFDCTriggerHandlerFClose,
};
