// The toolkit's front door: opening and closing, the error logger, and the registry of live
// objects. The registry of classes is in OvxClassRegistry.cpp, the API mutex in OvxApiMutex.cpp.
#include "toolkit/OvxToolkit.h"

#include <utility>

#include "logging/OvxI18Msg.h"
#include "logging/OvxLogger.h"
#include "messages/Messages.h"
#include "toolkit/OvxClassRegistry.h"
#include "toolkit/OvxLogManager.h"
#include "toolkit/OvxReadProps.h"
#include "toolkit/collections/OvxStringToObjMap.h"

#include <ctime>

using namespace olvex;

namespace {

std::atomic<bool> toolkitOpen = false;
StringToObjMap *instances = nullptr;

// The error-logging chain; the toolkit holds a reference to each while it is open.
struct ErrorChain {
    OvxObject *logger;
    OvxObject *handler;
    OvxObject *formatter;
} errorChain = {};

// Finds an object of the chain, or makes it.
OvxObject *findOrMake(const char *name, const char *className, bool &made)
{
    OvxObject *object = ovxToolkitGetObjInstance(name);
    made = !object;
    return object ? object : ovxIntlGetObject(name, className);
}

void buildErrorHandler()
{
    bool made = false;
    errorChain.handler = findOrMake("olvex.stderrHandler", "ovx_stderrhandler", made);
    if (!made || !errorChain.handler) return;
    bool formatterMade = false;
    errorChain.formatter =
        findOrMake("olvex.defaultFormatter", "ovx_basicformatter", formatterMade);
    ovxIntlHandlerSetFormatter(errorChain.handler, errorChain.formatter);
}

// An error logger that exists already is taken as it is, without a handler of ours.
void buildErrorChain()
{
    bool made = false;
    errorChain.logger = findOrMake("olvex.errorLogger", "ovx_basiclogger", made);
    if (!made) return;
    buildErrorHandler();
    ovxIntlAddListener(errorChain.logger, errorChain.handler);
}

void releaseErrorChain()
{
    const ErrorChain chain = std::exchange(errorChain, ErrorChain{});
    ovxIntlReleaseObject(chain.formatter);
    ovxIntlReleaseObject(chain.handler);
    ovxIntlReleaseObject(chain.logger);
}

void closeHoldingLock()
{
    toolkitOpen.store(false, std::memory_order_relaxed);
    ovxCloseLogMgr();
    ovxFreeInstancesMap();
    releaseErrorChain();
    ovxFreeObjClasses();
    ovxI18UninitUcv();
    discardEventText();
    ovxDiscardEventMemory();
}

bool openHoldingLock(const char *propertiesFile)
{
    if (OvxIsToolkitOpen()) return true;
    tzset();
    ovxI18InitUcv();
    ovxInitLogMgr();
    ovxToolkitInitObjClasses();
    if (propertiesFile && !ovxDoReadProps(propertiesFile, nullptr)) {
        printToStderr(Message::kPropertiesNotRead, propertiesFile);
        closeHoldingLock();
        return false;
    }
    buildErrorChain();
    toolkitOpen.store(true, std::memory_order_relaxed);
    return true;
}

bool loadHoldingLock(const char *propertiesFile)
{
    if (!OvxIsToolkitOpen()) return openHoldingLock(propertiesFile);
    return !propertiesFile || ovxDoReadProps(propertiesFile, nullptr);
}

// All registered objects, each with one more reference, linked in the order of the registry.
OvxObject *takeAllObjects()
{
    OvxObject *first = nullptr;
    OvxObject **link = &first;
    for (const auto *node = instances ? instances->first() : nullptr; node; node = node->next()) {
        *link = ovxIntlAcquireObject(node->value());
        link = &(*link)->nextInTearDown;
    }
    *link = nullptr;
    return first;
}

template <class Action>
void forEachTaken(OvxObject *first, Action action)
{
    for (OvxObject *object = first; object;) {
        OvxObject *next = object->nextInTearDown;
        action(object);
        object = next;
    }
}

} // namespace

bool OvxOpenToolkit(const char *propertiesFile)
{
    return locked([&] { return openHoldingLock(propertiesFile); });
}

bool OvxLoadAdditionalProperties(const char *propertiesFile)
{
    return locked([&] { return loadHoldingLock(propertiesFile); });
}

void OvxCloseToolkit(void)
{
    locked([] { closeHoldingLock(); });
}

bool OvxIsToolkitOpen(void)
{
    return toolkitOpen.load(std::memory_order_relaxed);
}

OvxObject *ovxToolkitLogger()
{
    return OvxIsToolkitOpen() ? errorChain.logger : nullptr;
}

void ovxToolkitAddObjInstance(const char *name, OvxObject *object)
{
    if (!name || !object) return;
    if (!instances) instances = ovxIntlAllocStringToObjMap();
    if (!instances) return;
    const auto *node = instances->find(name);
    OvxObject *replaced = node ? node->value() : nullptr;
    if (replaced == object) return;
    if (replaced) replaced->registered = false;
    object->registered = true;
    if (!ovxIntlStringToObjMapPut(instances, name, object)) object->registered = false;
}

OvxObject *ovxToolkitGetObjInstance(const char *name)
{
    return ovxIntlStringToObjMapGet(instances, name);
}

void ovxToolkitRemObjInstance(OvxObject *object)
{
    if (!object->registered) return;
    object->registered = false;
    auto *node = ovxIntlStringToObjMapGetNode(instances, object->name);
    if (node && node->value() == object) ovxIntlStringToObjMapRemNode(instances, node);
}

// In each round all variables are freed before all links, so that no object is reached through one
// that has ended. Functions of classes may make new objects meanwhile, which the next round frees.
// After the last round what is left becomes shells, for a class that makes objects without end.
void ovxFreeInstancesMap()
{
    constexpr int kRounds = 8;
    for (int round = 0; round < kRounds && instances && instances->first(); ++round) {
        OvxObject *all = takeAllObjects();
        forEachTaken(all, ovxFreeObjectVars);
        forEachTaken(all, ovxFreeObjectLinks);
        forEachTaken(all, ovxRetireObject);
    }
    for (const auto *node = instances ? instances->first() : nullptr; node; node = node->next())
        node->value()->cls = nullptr;
    ovxIntlFreeStringToObjMap(std::exchange(instances, nullptr));
}
