// The level filter, and what every filter does with an event. Called with the API mutex held.
#include <olvex/Event.h>
#include <olvex/Level.h>

#include "toolkit/OvxObject.h"
#include "util/Memory.h"

using namespace olvex;

void OvxLevelFilterFCfgChange(OvxObject *filter, const char *name)
{
    if (isFilter(filter) && BaxStringCmp(name, "level") == 0) return applyLevelProperty(filter);
    OvxBasicObjectFCfgChange(filter, name);
}

bool OvxLevelFilterFIsLoggable(OvxObject *filter, OvxEvent *event)
{
    if (!filter || !event) return false;
    const std::int32_t threshold = filter->threshold.load(std::memory_order_relaxed);
    const std::int32_t level = OvxGetEventLevel(event);
    return threshold == OVX_LEVEL_ALL || level == OVX_LEVEL_NONE || level >= threshold;
}

void OvxBasicFilterFProcess(OvxObject *filter, OvxEvent *event)
{
    if (!isFilter(filter) || !filter->enabled) return;
    const ClassSlots &slots = filter->cls->slots;
    if (slots.isLoggable && slots.log && slots.isLoggable(filter, event)) slots.log(filter, event);
}

constinit const ClassSlots olvex::slots::ovx_levelfilter = {
    .cfgChange = OvxLevelFilterFCfgChange,
    .log = OvxBasicObjectFLog,
    .process = OvxBasicFilterFProcess,
    .isLoggable = OvxLevelFilterFIsLoggable,
};
