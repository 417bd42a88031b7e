// The function by which objects pass events on, and the properties that all objects share. Called
// with the API mutex held; the public twins take it.
#include "OvxListeners.h"

#include <olvex/Message.h>
#include <olvex/Props.h>

#include "OvxStrTok.h"
#include "messages/Messages.h"
#include "util/Locked.h"
#include "util/Memory.h"

using namespace olvex;

namespace {

// Set while a logger without listeners is being reported: that report may reach such a logger
// again.
bool reportingNoListeners = false;

void reportNoListeners(const OvxObject *logger)
{
    if (reportingNoListeners) return;
    reportingNoListeners = true;
    report(OVX_LEVEL_ERROR, Message::kNoListeners, ovxIntlGetObjectName(logger));
    reportingNoListeners = false;
}

// The class's description, made when it has none.
OvxI18Msg *fetchDescription(OvxObject *object)
{
    OvxI18Msg *&description = object->cls->description;
    if (!description) description = ovxIntlAllocI18Msg(nullptr, 0, 0, nullptr);
    return description;
}

void changeDescription(OvxObject *object)
{
    OvxSetI18MsgTxt(fetchDescription(object), peekProperty(object, "description"));
}

void changeDescriptionFile(OvxObject *object)
{
    OvxSetI18MsgCat(fetchDescription(object), peekProperty(object, "descriptionFile"));
}

void changeDescriptionSet(OvxObject *object)
{
    OvxSetI18MsgSet(fetchDescription(object),
                    ovxIntlGetObjPropInt(object, "descriptionSet", nullptr));
}

void changeDescriptionKey(OvxObject *object)
{
    OvxSetI18MsgKey(fetchDescription(object),
                    ovxIntlGetObjPropInt(object, "descriptionKey", nullptr));
}

struct LoggingWord {
    const char *word;
    bool enabled;
};

constexpr LoggingWord kLoggingWords[] = {
    {"on", true},
    {"true", true},
    {"off", false},
    {"false", false},
};

void changeLogging(OvxObject *object)
{
    const char *value = peekProperty(object, "logging");
    for (const LoggingWord &entry : kLoggingWords)
        if (BaxStringICmp(value, entry.word) == 0) ovxIntlSetObjectEnabled(object, entry.enabled);
}

void removeAllListeners(OvxObject *object)
{
    ListenerGroup *group = ovxFetchListenerGroup(object, false);
    while (group && group->first())
        ovxIntlListenerGroupIterRem(group->first());
}

// The property is copied first: finding a listener can run code that sets it again.
void changeListenerNames(OvxObject *object)
{
    removeAllListeners(object);
    const Text names(ovxIntlGetObjProp(object, "listenerNames", nullptr));
    for (OvxStrTokIter at = OvxStrTokIterator(names.get(), kNameDelimiters);
         OvxStrTokIterHasNext(at); at = OvxStrTokIterNext(at)) {
        const Text name(OvxStrTokIterGet(at));
        const ObjectRef listener(ovxIntlGetObject(name.get(), nullptr));
        ovxIntlAddListener(object, listener.get());
    }
}

struct PropertyChange {
    const char *name;
    void (*apply)(OvxObject *object);
};

constexpr PropertyChange kChanges[] = {
    {"description", changeDescription},
    {"descriptionFile", changeDescriptionFile},
    {"descriptionSet", changeDescriptionSet},
    {"descriptionKey", changeDescriptionKey},
    {"logging", changeLogging},
    {"listenerNames", changeListenerNames},
};

} // namespace

void OvxBasicObjectFCfgChange(OvxObject *object, const char *name)
{
    if (!object || !object->cls || !name) return;
    for (const PropertyChange &change : kChanges)
        if (BaxStringCmp(name, change.name) == 0) return change.apply(object);
}

OVX_HOT void OvxBasicObjectFLog(OvxObject *object, OvxEvent *event)
{
    if (!object || !object->cls || !object->enabled) return;
    if (!passToListeners(object, event) && isLogger(object)) reportNoListeners(object);
}

ListenerGroup *ovxFetchListenerGroup(OvxObject *object, bool create)
{
    if (!object || !object->cls || isFormatter(object)) return nullptr;
    if (!object->listeners && create) object->listeners = ovxIntlAllocListenerGroup();
    return object->listeners;
}

void ovxIntlAddListener(OvxObject *object, OvxObject *listener)
{
    if (listener && listener->cls)
        ovxIntlListenerGroupAdd(ovxFetchListenerGroup(object, true), listener);
}

void ovxIntlRemListener(OvxObject *object, OvxObject *listener)
{
    ovxIntlListenerGroupRem(ovxFetchListenerGroup(object, false), listener);
}

void OvxAddListener(OvxObject *object, OvxObject *listener)
{
    locked([&] { ovxIntlAddListener(object, listener); });
}

void OvxRemListener(OvxObject *object, OvxObject *listener)
{
    locked([&] { ovxIntlRemListener(object, listener); });
}

ListenerGroupNode *OvxGetListeners(const OvxObject *object)
{
    return locked([&]() -> ListenerGroupNode * {
        return object ? ovxIntlListenerGroupIterator(object->listeners) : nullptr;
    });
}
