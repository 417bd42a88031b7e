// The function by which objects pass events on, and the properties that all objects share. Called
// with the API mutex held; the public twins take it.
#include "toolkit/OvxListeners.h"

#include <olvex/Message.h>

#include <optional>
#include <utility>

#include "messages/Messages.h"
#include "toolkit/OvxPropertyTable.h"
#include "toolkit/OvxProps.h"
#include "toolkit/OvxStrTok.h"
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

// Whether passing the event on is the last thing that the class's function does. For a class of the
// host's this is not known, unless it has the basic functions.
bool passesOnLast(const OvxObject *object)
{
    const ClassSlots &slots = object->cls->slots;
    if (slots.process == OvxBasicFilterFProcess) return slots.log == OvxBasicObjectFLog;
    return slots.passesOnLast;
}

// Set while an object's function runs whose last act is to pass the event on. Passing on then only
// clears this, and the caller serves the listeners when the function has returned.
OvxObject *passingOnLast = nullptr;

// One level of a chain that is too deep for the stack: an object, and which of its listeners the
// event has reached. Levels are linked on the heap.
struct Descent {
    Descent(OvxObject *object, Descent *deliveringTo)
        : above(deliveringTo), reference(ObjectRef::to(object)), running(object)
    {}

    // Calls the class's function. Returns whether the caller is to pass the event to the listeners.
    bool process(OvxEvent *event)
    {
        OvxObject *object = reference.get();
        const bool isLast = passesOnLast(object);
        OvxObject *const before = std::exchange(passingOnLast, isLast ? object : nullptr);
        object->cls->slots.process(object, event);
        const bool passesOn = isLast && !passingOnLast;
        passingOnLast = before;
        return passesOn;
    }

    Descent *above;
    ObjectRef reference;
    Running running;
    std::optional<ListenerGroup::Walk> listeners;
};

// Hands the event to the object and returns the level to go on with: a new one if the object has
// listeners to serve, else `above`. Without memory for it the listeners are served on the stack.
Descent *descend(Descent *above, OvxObject *object, OvxEvent *event)
{
    auto *descent = Memory().make<Descent>(object, above);
    if (!descent) {
        const ObjectRef reference = ObjectRef::to(object);
        const Running running(object);
        object->cls->slots.process(object, event);
        return above;
    }
    if (descent->process(event)) {
        descent->listeners.emplace(descent->reference.get()->listeners);
        return descent;
    }
    Memory().destroy(descent);
    return above;
}

// The class's description, made when it has none.
OvxI18Msg *fetchDescription(OvxObject *object)
{
    OvxI18Msg *&description = object->cls->description;
    if (!description) description = ovxIntlAllocI18Msg(nullptr, 0, 0, nullptr);
    return description;
}

template <schema::Name>
void apply(OvxObject *object, const char *value) = delete;

template <>
void apply<"description">(OvxObject *object, const char *value)
{
    OvxSetI18MsgTxt(fetchDescription(object), value);
}

template <>
void apply<"descriptionFile">(OvxObject *object, const char *value)
{
    OvxSetI18MsgCat(fetchDescription(object), value);
}

template <>
void apply<"descriptionSet">(OvxObject *object, const char *value)
{
    OvxSetI18MsgSet(fetchDescription(object), ovxPropStrToInt32(value, nullptr));
}

template <>
void apply<"descriptionKey">(OvxObject *object, const char *value)
{
    OvxSetI18MsgKey(fetchDescription(object), ovxPropStrToInt32(value, nullptr));
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

template <>
void apply<"logging">(OvxObject *object, const char *value)
{
    for (const LoggingWord &entry : kLoggingWords)
        if (BaxStringICmp(value, entry.word) == 0) ovxIntlSetObjectEnabled(object, entry.enabled);
}

void removeAllListeners(OvxObject *object)
{
    ListenerGroup *group = ovxFetchListenerGroup(object, false);
    while (group && group->first())
        ovxIntlListenerGroupIterRem(group->first());
}

template <>
void apply<"listenerNames">(OvxObject *object, const char *names)
{
    removeAllListeners(object);
    for (OvxStrTokIter at = OvxStrTokIterator(names, kNameDelimiters); OvxStrTokIterHasNext(at);
         at = OvxStrTokIterNext(at)) {
        const Text name(OvxStrTokIterGet(at));
        const ObjectRef listener(ovxIntlGetObject(name.get(), nullptr));
        ovxIntlAddListener(object, listener.get());
    }
}

constexpr auto kDescription =
    rowsOf<schema::kDescription>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });
constexpr auto kListeners =
    rowsOf<schema::kListeners>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

} // namespace

namespace olvex {

[[gnu::cold, gnu::noinline]] void deliverDeep(OvxObject *listener, OvxEvent *event)
{
    Descent *deepest = descend(nullptr, listener, event);
    while (deepest) {
        const ListenerGroupNode *node = deepest->listeners->next();
        if (!node)
            Memory().destroy(std::exchange(deepest, deepest->above));
        else if (mayDeliver(node->element()))
            deepest = descend(deepest, node->element(), event);
    }
}

} // namespace olvex

void OvxBasicObjectFCfgChange(OvxObject *object, const char *name)
{
    if (!object || !object->cls || !name) return;
    if (!applyProperty(kListeners, object, name)) applyProperty(kDescription, object, name);
}

OVX_HOT void OvxBasicObjectFLog(OvxObject *object, OvxEvent *event)
{
    if (!object || !object->cls || !object->enabled) return;
    if (object == passingOnLast) [[unlikely]] {
        passingOnLast = nullptr;
        return;
    }
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
