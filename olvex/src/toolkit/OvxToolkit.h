// The toolkit's process-wide state: open flag, the registries of classes and objects, the error
// logger. All but the open flag is used with the API mutex held.
#pragma once

#include <olvex/Toolkit.h>

#include "toolkit/OvxObject.h"
#include "util/Locked.h"

void ovxToolkitInitObjClasses();
void ovxToolkitAddClassDef(const char *name, OvxObjClass *cls);
OvxObjClass *ovxToolkitGetClassDef(const char *name);
StringGroupNode *ovxToolkitFetchClassnames(int category);

void ovxToolkitAddObjInstance(const char *name, OvxObject *object);
// A new reference, or none.
OvxObject *ovxToolkitGetObjInstance(const char *name);
// Takes the object out of the registry if it still is the one under its name.
void ovxToolkitRemObjInstance(OvxObject *object);
void ovxFreeInstancesMap();

namespace olvex {

// Gives back the buffers that handlers and formatters reuse from event to event, when the toolkit
// closes. Handlers define it, whom the toolkit does not know otherwise.
void discardEventText();

} // namespace olvex

// The logger for the toolkit's own reports while the toolkit is open; borrowed.
OvxObject *ovxToolkitLogger();
