// The settings of the handlers of first failure data capture, as functions: the setters, which the
// properties use too, and the public twins.
#include "handlers/capture/OvxFFDCTriggerHandler.h"

#include <utility>

#include "util/Locked.h"

using namespace olvex;

namespace {

struct PolicyName {
    QuotaPolicy policy;
    const char *name;
};

constexpr PolicyName kPolicies[] = {
    {QuotaPolicy::kIgnore, "QUOTA_IGNORE"},
    {QuotaPolicy::kAutoDelete, "QUOTA_AUTODELETE"},
    {QuotaPolicy::kSuspend, "QUOTA_SUSPEND"},
};

const char *nameOf(QuotaPolicy policy)
{
    for (const PolicyName &entry : kPolicies)
        if (entry.policy == policy) return entry.name;
    return nullptr;
}

// What `get` finds in the handler's variables; 0 or null without any.
template <class Get>
auto ask(const OvxObject *handler, Get get)
{
    return locked([&] {
        const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
        return vars ? get(*vars) : decltype(get(*vars)){};
    });
}

// Lets `change` loose on the handler's variables, if it has any.
template <class Change>
void withVars(const OvxObject *handler, Change change)
{
    if (OvxFFDCHandlerVars *vars = ffdcVarsOf(handler)) change(*vars);
}

constexpr bool isFraction(double value)
{
    return value > 0 && value < 1;
}

} // namespace

void ovxIntlFFDCTriggerHandlerSetBaseDir(OvxObject *handler, const char *dir)
{
    if (dir) withVars(handler, [&](auto &vars) { vars.baseDir = nativePath(dir); });
}

void ovxIntlFFDCTriggerHandlerSetMaxDisk(OvxObject *handler, std::int64_t bytes)
{
    if (bytes > 0) withVars(handler, [&](auto &vars) { vars.maxDiskSpace = bytes; });
}

void ovxIntlFFDCTriggerHandlerSetFilter(OvxObject *handler, OvxObject *filter)
{
    OvxFFDCHandlerVars *vars = filter ? ffdcVarsOf(handler) : nullptr;
    if (!vars) return;
    ovxIntlAcquireObject(filter);
    ovxIntlReleaseObject(std::exchange(vars->filter, filter));
}

void ovxIntlFFDCTriggerHandlerSetFilterName(OvxObject *handler, const char *name)
{
    if (name) withVars(handler, [&](auto &vars) { vars.filterName.reset(BaxStringDup(name)); });
}

void ovxIntlFFDCTriggerHandlerSetInterval(OvxObject *handler, std::int64_t milliseconds)
{
    if (milliseconds > 0) withVars(handler, [&](auto &vars) { vars.repeatTime = milliseconds; });
}

void ovxIntlFFDCTriggerHandlerSetQuotaPolicy(OvxObject *handler, const char *policy)
{
    for (const PolicyName &entry : kPolicies)
        if (policy && BaxStringCmp(policy, entry.name) == 0)
            withVars(handler, [&](auto &vars) { vars.quotaPolicy = entry.policy; });
}

void ovxIntlFFDCTriggerHandlerSetFirstWarning(OvxObject *handler, double fraction)
{
    if (isFraction(fraction)) withVars(handler, [&](auto &vars) { vars.firstWarning = fraction; });
}

void ovxIntlFFDCTriggerHandlerSetSecondWarning(OvxObject *handler, double fraction)
{
    if (isFraction(fraction)) withVars(handler, [&](auto &vars) { vars.secondWarning = fraction; });
}

char *OvxFFDCTriggerHandlerGetBaseDir(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return BaxStringDup(vars.baseDir.get()); });
}

void OvxFFDCTriggerHandlerSetBaseDir(OvxObject *handler, const char *dir)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetBaseDir(handler, dir); });
}

int64_t OvxFFDCTriggerHandlerGetMaxDisk(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return vars.maxDiskSpace; });
}

void OvxFFDCTriggerHandlerSetMaxDisk(OvxObject *handler, int64_t bytes)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetMaxDisk(handler, bytes); });
}

OvxObject *OvxFFDCTriggerHandlerGetFilter(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return ovxIntlAcquireObject(vars.filter); });
}

void OvxFFDCTriggerHandlerSetFilter(OvxObject *handler, OvxObject *filter)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetFilter(handler, filter); });
}

char *OvxFFDCTriggerHandlerGetFilterName(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return BaxStringDup(vars.filterName.get()); });
}

void OvxFFDCTriggerHandlerSetFilterName(OvxObject *handler, const char *name)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetFilterName(handler, name); });
}

int64_t OvxFFDCTriggerHandlerGetInterval(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return vars.repeatTime; });
}

void OvxFFDCTriggerHandlerSetInterval(OvxObject *handler, int64_t milliseconds)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetInterval(handler, milliseconds); });
}

char *OvxFFDCTriggerHandlerGetQuotaPolicy(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return BaxStringDup(nameOf(vars.quotaPolicy)); });
}

void OvxFFDCTriggerHandlerSetQuotaPolicy(OvxObject *handler, const char *policy)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetQuotaPolicy(handler, policy); });
}

double OvxFFDCTriggerHandlerGetFirstWarning(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return vars.firstWarning; });
}

void OvxFFDCTriggerHandlerSetFirstWarning(OvxObject *handler, double fraction)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetFirstWarning(handler, fraction); });
}

double OvxFFDCTriggerHandlerGetSecondWarning(OvxObject *handler)
{
    return ask(handler, [](auto &vars) { return vars.secondWarning; });
}

void OvxFFDCTriggerHandlerSetSecondWarning(OvxObject *handler, double fraction)
{
    locked([&] { ovxIntlFFDCTriggerHandlerSetSecondWarning(handler, fraction); });
}
