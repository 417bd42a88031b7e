// The life of objects: found or made by name, counted, torn down. Called with the API mutex held;
// the public twins take it.
#include "toolkit/OvxObject.h"

#include <utility>

#include "messages/Messages.h"
#include "toolkit/OvxLogManager.h"
#include "toolkit/OvxObjConfig.h"
#include "toolkit/OvxToolkit.h"
#include "util/Locked.h"
#include "util/Memory.h"

using namespace olvex;

namespace {

constexpr char kDefaultFormatter[] = "olvex.defaultFormatter";
constexpr char kDefaultFormatterClass[] = "ovx_basicformatter";

// The gate says in one number what enabled flag and threshold say in two.
void adjustGate(OvxObject *object)
{
    const std::int32_t threshold = object->threshold.load(std::memory_order_relaxed);
    std::int64_t gate = OvxObject::kShut;
    if (object->enabled && isLogger(object))
        gate = threshold == OVX_LEVEL_NONE ? INT32_MIN : threshold;
    object->gate.store(gate, std::memory_order_relaxed);
}

// An object that exists, if it is what the caller asks for; takes over the reference.
OvxObject *checkClass(OvxObject *object, const char *name, const char *className)
{
    if (!object->cls)
        report(OVX_LEVEL_ERROR, Message::kCorruptObject, name);
    else if (className && BaxStringCmp(className, object->cls->name) != 0)
        report(OVX_LEVEL_ERROR, Message::kOtherClass, name,
               static_cast<const char *>(object->cls->name), className);
    else
        return object;
    ovxIntlReleaseObject(object);
    return nullptr;
}

OvxObjClass *findConfiguredClass(const char *name)
{
    OvxObjCfg *cfg = ovxIntlLogMgrGetCfg(name);
    const Text className(ovxIntlGetInheritedObjCfgProp(cfg, "className", nullptr));
    ovxIntlReleaseObjCfg(cfg);
    if (!className) {
        report(OVX_LEVEL_ERROR, Message::kNoClass, name);
        return nullptr;
    }
    OvxObjClass *cls = ovxToolkitGetClassDef(className.get());
    if (!cls)
        report(OVX_LEVEL_ERROR, Message::kUnknownClass, static_cast<const char *>(className.get()),
               name);
    return cls;
}

OvxObjClass *findClass(const char *name, const char *className)
{
    if (!className) return findConfiguredClass(name);
    OvxObjClass *cls = ovxToolkitGetClassDef(className);
    if (!cls) report(OVX_LEVEL_ERROR, Message::kUnknownClass, className, name);
    return cls;
}

OvxObject *allocObject(const char *name, OvxObjClass *cls)
{
    auto *object = Memory().make<OvxObject>();
    char *copy = Memory().duplicate(name);
    if (!object || !copy) {
        BaxMemoryFree(copy);
        Memory().destroy(object);
        report(OVX_LEVEL_ERROR, Message::kOutOfMemory);
        return nullptr;
    }
    object->cls = cls;
    object->name = copy;
    object->enabled = true;
    object->threshold = isLogger(object) ? OVX_LEVEL_DEBUG_MIN : OVX_LEVEL_ALL;
    adjustGate(object);
    return object;
}

// Private variables and the default formatter: either may run code that makes further objects.
void fillObject(OvxObject *object)
{
    if (isHandler(object))
        object->formatter = ovxIntlGetObject(kDefaultFormatter, kDefaultFormatterClass);
    if (object->cls->slots.allocVars) object->variables = object->cls->slots.allocVars();
}

// Enters a new object under its name; false, with a report, when the making of its parts has put
// another object there, or when memory runs out.
bool registerObject(OvxObject *object)
{
    const ObjectRef rival(ovxToolkitGetObjInstance(object->name));
    if (rival && rival.get()->cls) {
        report(OVX_LEVEL_ERROR, Message::kOtherClass, static_cast<const char *>(object->name),
               static_cast<const char *>(rival.get()->cls->name),
               static_cast<const char *>(object->cls->name));
        return false;
    }
    ovxToolkitAddObjInstance(object->name, object);
    if (!object->registered) report(OVX_LEVEL_ERROR, Message::kOutOfMemory);
    return object->registered;
}

// The caller's reference is taken before anything else runs, so that whatever the making and
// configuring of the object calls cannot end it.
OvxObject *createObject(const char *name, OvxObjClass *cls)
{
    OvxObject *object = ovxIntlAcquireObject(allocObject(name, cls));
    if (!object) return nullptr;
    fillObject(object);
    if (!registerObject(object)) {
        ovxIntlReleaseObject(object);
        return nullptr;
    }
    ovxIntlLogMgrApplyCfg(object, name);
    return object;
}

void freeFormatterParts(OvxObject *object)
{
    BaxMemoryFree(std::exchange(object->separator, nullptr));
    BaxMemoryFree(std::exchange(object->dateTimeFormat, nullptr));
    object->locale = nullptr;
}

void callFreeVars(OvxObject *object)
{
    void *variables = std::exchange(object->variables, nullptr);
    if (object->cls->slots.freeVars) object->cls->slots.freeVars(variables);
}

// Ends everything an object does and owns, but for its record and name.
void tearDown(OvxObject *object)
{
    object->dying = true;
    object->gate.store(OvxObject::kShut, std::memory_order_relaxed);
    ovxToolkitRemObjInstance(object);
    if (isHandler(object) && object->cls->slots.close) object->cls->slots.close(object);
    ovxIntlFreeStringToStringMap(std::exchange(object->properties, nullptr));
    ovxIntlFreeListenerGroup(std::exchange(object->listeners, nullptr));
    callFreeVars(object);
    ovxFreeObjectLinks(object);
    freeFormatterParts(object);
    // Whatever ran meanwhile may have set properties again, a logger's level among them.
    ovxIntlFreeStringToStringMap(std::exchange(object->properties, nullptr));
    object->enabled = false;
    adjustGate(object);
    object->cls = nullptr;
    object->dying = false;
}

// Ending an object releases its listeners, which may end too. Beyond this depth of recursion,
// releases are postponed until the outermost one is done, so that a long chain needs no deep stack.
constexpr unsigned kMostNestedEnds = 8;
unsigned nestedEnds = 0;
OvxObject *postponed = nullptr;

bool endsWithRelease(const OvxObject *object)
{
    return object->cls && !object->dying && object->references == (object->registered ? 2u : 1u);
}

// The reference stays counted until then, so that no other release ends the object.
void postponeRelease(OvxObject *object)
{
    object->nextPostponed = std::exchange(postponed, object);
}

void tearDownInTurn(OvxObject *object)
{
    ++nestedEnds;
    tearDown(object);
    --nestedEnds;
}

void releasePostponed()
{
    if (nestedEnds > 0) return;
    ++nestedEnds;
    while (postponed)
        ovxIntlReleaseObject(std::exchange(postponed, postponed->nextPostponed));
    --nestedEnds;
}

void freeShell(OvxObject *object)
{
    BaxMemoryFree(object->name);
    Memory().destroy(object);
}

} // namespace

namespace olvex {

void setThreshold(OvxObject *object, int level)
{
    object->threshold.store(level, std::memory_order_relaxed);
    adjustGate(object);
}

} // namespace olvex

OvxObject *ovxIntlGetObject(const char *name, const char *className)
{
    if (!name) return nullptr;
    if (OvxObject *object = ovxToolkitGetObjInstance(name))
        return checkClass(object, name, className);
    OvxObjClass *cls = findClass(name, className);
    return cls ? createObject(name, cls) : nullptr;
}

OvxObject *ovxIntlAcquireObject(OvxObject *object)
{
    if (object) ++object->references;
    return object;
}

// An object ends when the registry's reference is the only one left, or none. A shell, which the
// closing toolkit has left, ends with its last reference.
void ovxIntlReleaseObject(OvxObject *object)
{
    if (!object || object->references == 0) return;
    const bool ends = endsWithRelease(object);
    if (ends && nestedEnds >= kMostNestedEnds) return postponeRelease(object);
    --object->references;
    if (object->dying) return;
    if (ends) tearDownInTurn(object);
    if (!object->cls && object->references == 0) freeShell(object);
    if (ends) releasePostponed();
}

const char *ovxIntlGetObjectName(const OvxObject *object)
{
    return object && object->cls ? object->name : nullptr;
}

void *ovxIntlGetObjectVars(const OvxObject *object)
{
    return object ? object->variables : nullptr;
}

int ovxIntlGetObjectCategory(const OvxObject *object)
{
    return object && object->cls ? object->cls->category : 0;
}

char *ovxIntlGetObjectDesc(const OvxObject *object)
{
    return object && object->cls ? ovxIntlBindI18Msg(object->cls->description) : nullptr;
}

bool ovxIntlIsObjectEnabled(const OvxObject *object)
{
    return object && object->enabled;
}

void ovxIntlSetObjectEnabled(OvxObject *object, bool enabled)
{
    if (!object || !object->cls) return;
    object->enabled = enabled;
    adjustGate(object);
}

void ovxFreeObjectVars(OvxObject *object)
{
    if (object->variables) callFreeVars(object);
}

void ovxFreeObjectLinks(OvxObject *object)
{
    ovxIntlReleaseObject(std::exchange(object->formatter, nullptr));
    ovxIntlFreeListenerGroup(std::exchange(object->listeners, nullptr));
}

void ovxRetireObject(OvxObject *object)
{
    if (object->cls) tearDown(object);
    ovxIntlReleaseObject(object);
}

OvxObject *OvxGetObject(const char *name, const char *className)
{
    return locked([&] { return ovxIntlGetObject(name, className); });
}

OvxObject *OvxAcquireObject(OvxObject *object)
{
    return locked([&] { return ovxIntlAcquireObject(object); });
}

void OvxReleaseObject(OvxObject *object)
{
    locked([&] { ovxIntlReleaseObject(object); });
}

char *OvxGetObjectName(const OvxObject *object)
{
    return locked([&] { return BaxStringDup(ovxIntlGetObjectName(object)); });
}

char *OvxGetObjectDesc(const OvxObject *object)
{
    return locked([&] { return ovxIntlGetObjectDesc(object); });
}

bool OvxAreObjectsEqual(const OvxObject *a, const OvxObject *b)
{
    return a == b;
}

bool OvxIsObjectEnabled(const OvxObject *object)
{
    return locked([&] { return ovxIntlIsObjectEnabled(object); });
}

void OvxSetObjectEnabled(OvxObject *object, bool enabled)
{
    locked([&] { ovxIntlSetObjectEnabled(object, enabled); });
}

bool OvxIsLoggableByFilter(OvxObject *filter, OvxEvent *event)
{
    return event && isFilter(filter) && filter->cls->slots.isLoggable &&
           filter->cls->slots.isLoggable(filter, event);
}
