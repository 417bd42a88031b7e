/*
 * Events: the record that one logging call makes and that travels through filters and handlers to a
 * formatter. An event lives for that call only; nothing downstream keeps the pointer. None of these
 * functions takes the lock: an event belongs to the call, or to the host, that made it.
 */
#ifndef OLVEX_EVENT_H
#define OLVEX_EVENT_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * Makes an event of the current time from a level, message coordinates and a typed parameter list
 * (see OVX_PROP and OVX_PARM_BOOL to OVX_PARM_STRING); catalog, text and values are copied. The
 * event is yours: free it with OvxFreeEvent. NULL when memory runs out. A list that does not end or
 * has an unknown marker is reported to the toolkit's error logger; the event keeps what was read.
 * Takes no lock; call it from class functions or where no other thread logs.
 */
OVX_API OvxEvent *OvxVaAllocEvent(int level, const char *catalog, int set, int key,
                                  const char *text, va_list parameters);

/** Frees an event of OvxVaAllocEvent with all it owns. Takes no lock. */
OVX_API void OvxFreeEvent(OvxEvent *event);

/** The event's time in milliseconds since 1970-01-01 00:00 UTC. Takes no lock. */
OVX_API int64_t OvxGetEventTime(const OvxEvent *event);

/** The event's level; OVX_LEVEL_NONE for no event. Takes no lock. */
OVX_API int32_t OvxGetEventLevel(const OvxEvent *event);

/** Says whether the event is a catalogued message rather than debug or plain text. No lock. */
OVX_API bool OvxGetEventIsMessage(const OvxEvent *event);

/** Marks the event as a message, or not. Takes no lock. */
OVX_API void OvxSetEventIsMessage(OvxEvent *event, bool isMessage);

/** The message identifier, yours, or NULL. Takes no lock. */
OVX_API char *OvxGetEventMessageId(const OvxEvent *event);

/** Sets the message identifier (copied; NULL clears it). Takes no lock. */
OVX_API void OvxSetEventMessageId(OvxEvent *event, const char *id);

/** The value of an event property, yours, or NULL; `found` (optional) says whether it is there. */
OVX_API char *OvxGetEventProp(const OvxEvent *event, const char *name, bool *found);

/** An event property as a boolean; `found` (optional) says whether it converts. No lock. */
OVX_API bool OvxGetEventPropBool(const OvxEvent *event, const char *name, bool *found);

/** An event property as a 32-bit integer; `found` (optional) says whether it converts. No lock. */
OVX_API int32_t OvxGetEventPropInt(const OvxEvent *event, const char *name, bool *found);

/** An event property as a long; `found` (optional) says whether it converts. Takes no lock. */
OVX_API long OvxGetEventPropLong(const OvxEvent *event, const char *name, bool *found);

/** An event property as a float; `found` (optional) says whether it converts. Takes no lock. */
OVX_API float OvxGetEventPropFloat(const OvxEvent *event, const char *name, bool *found);

/** An event property as a double; `found` (optional) says whether it converts. Takes no lock. */
OVX_API double OvxGetEventPropDouble(const OvxEvent *event, const char *name, bool *found);

/** Sets an event property; name and value are copied. Takes no lock. */
OVX_API void OvxSetEventProp(OvxEvent *event, const char *name, const char *value);

/** Sets an event property to "true" or "false". Takes no lock. */
OVX_API void OvxSetEventPropBool(OvxEvent *event, const char *name, bool value);

/** Sets an event property to the decimal text of an int. Takes no lock. */
OVX_API void OvxSetEventPropInt(OvxEvent *event, const char *name, int32_t value);

/** Sets an event property to the decimal text of a long. Takes no lock. */
OVX_API void OvxSetEventPropLong(OvxEvent *event, const char *name, long value);

/** Sets an event property to a float in fixed notation, six digits. Takes no lock. */
OVX_API void OvxSetEventPropFloat(OvxEvent *event, const char *name, float value);

/** Sets an event property to a double in fixed notation, six digits. Takes no lock. */
OVX_API void OvxSetEventPropDouble(OvxEvent *event, const char *name, double value);

/**
 * Binds the event's message with a formatter's function, in the event's locale if it has one. The
 * text is yours; NULL without event or function. Takes no lock; call it from class functions.
 */
OVX_API char *OvxBindEventMsg(OvxEvent *event, OvxFBindMsg bind);

OVX_END_DECLS

#endif
