/*
 * For hosts that write classes of their own. Class functions run with the toolkit's lock held, so
 * they call the functions of this header, which expect the lock to be held and never take it; a
 * public call from inside a class function is refused. None of these may be called from anywhere
 * else, except those of which a comment says that it takes no lock and needs none.
 */
#ifndef OLVEX_CLASS_H
#define OLVEX_CLASS_H

#include <olvex/ClassCollections.h>
#include <olvex/Types.h>

#include <stdio.h>

OVX_BEGIN_DECLS

/*
 * Classes
 */
/** Registers a logger class, as OvxAddLoggerClass. */
OVX_API void ovxIntlAddLoggerClass(const char *name, const OvxI18Msg *description,
                                   OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                   OvxFCfgChange cfgChange, OvxFLog log);

/** Registers a filter class, as OvxAddFilterClass. */
OVX_API void ovxIntlAddFilterClass(const char *name, const OvxI18Msg *description,
                                   OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                   OvxFCfgChange cfgChange, OvxFProcess process,
                                   OvxFIsLoggable isLoggable, OvxFLog log);

/** Registers a handler class, as OvxAddHandlerClass. */
OVX_API void ovxIntlAddHandlerClass(const char *name, const OvxI18Msg *description,
                                    OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                    OvxFCfgChange cfgChange, OvxFProcess process, OvxFOpen open,
                                    OvxFClose close);

/** Registers a formatter class, as OvxAddFormatterClass. */
OVX_API void ovxIntlAddFormatterClass(const char *name, const OvxI18Msg *description,
                                      OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                      OvxFCfgChange cfgChange, OvxFFormat format,
                                      OvxFGetHeader getHeader, OvxFGetTrailer getTrailer,
                                      OvxFBindMsg bindMsg);

/*
 * Objects, their properties and listeners
 */

/** The object called `name`, as OvxGetObject; yours to release with ovxIntlReleaseObject. */
OVX_API OvxObject *ovxIntlGetObject(const char *name, const char *className);

/** Adds a reference and returns the object. */
OVX_API OvxObject *ovxIntlAcquireObject(OvxObject *object);

/** Gives a reference back; the last one closes and frees the object. */
OVX_API void ovxIntlReleaseObject(OvxObject *object);

/** The object's name, borrowed while the object lives. */
OVX_API const char *ovxIntlGetObjectName(const OvxObject *object);

/** What the class's FAllocVars returned for this object, borrowed; NULL once it was freed. */
OVX_API void *ovxIntlGetObjectVars(const OvxObject *object);

/** The category of the object's class, OVX_CLASS_LOGGER and so on; 0 for none. */
OVX_API int ovxIntlGetObjectCategory(const OvxObject *object);

/** The description of the object's class as text, yours; NULL when it has none. */
OVX_API char *ovxIntlGetObjectDesc(const OvxObject *object);

/** Says whether the object is enabled. */
OVX_API bool ovxIntlIsObjectEnabled(const OvxObject *object);

/** Enables or disables the object. */
OVX_API void ovxIntlSetObjectEnabled(OvxObject *object, bool enabled);

/** The value of a property, yours, or NULL; `found` (optional) says whether the name is there. */
OVX_API char *ovxIntlGetObjProp(const OvxObject *object, const char *name, bool *found);
/** A property as a boolean; `found` (optional) says whether it converts. */
OVX_API bool ovxIntlGetObjPropBool(const OvxObject *object, const char *name, bool *found);
/** A property as a 32-bit integer; `found` (optional) says whether it converts. */
OVX_API int32_t ovxIntlGetObjPropInt(const OvxObject *object, const char *name, bool *found);
/** A property as a 64-bit integer; `found` (optional) says whether it converts. */
OVX_API int64_t ovxIntlGetObjPropLong(const OvxObject *object, const char *name, bool *found);
/** A property as a float; `found` (optional) says whether it converts. */
OVX_API float ovxIntlGetObjPropFloat(const OvxObject *object, const char *name, bool *found);
/** A property as a double; `found` (optional) says whether it converts. */
OVX_API double ovxIntlGetObjPropDouble(const OvxObject *object, const char *name, bool *found);

/** Sets a property (copied) and tells the object's class. */
OVX_API void ovxIntlSetObjProp(OvxObject *object, const char *name, const char *value);
/** Sets a property to "true" or "false" and tells the object's class. */
OVX_API void ovxIntlSetObjPropBool(OvxObject *object, const char *name, bool value);
/** Sets a property to the text of a 32-bit integer and tells the object's class. */
OVX_API void ovxIntlSetObjPropInt(OvxObject *object, const char *name, int32_t value);
/** Sets a property to the text of a 64-bit integer and tells the object's class. */
OVX_API void ovxIntlSetObjPropLong(OvxObject *object, const char *name, int64_t value);
/** Sets a property to a float in fixed notation and tells the object's class. */
OVX_API void ovxIntlSetObjPropFloat(OvxObject *object, const char *name, float value);
/** Sets a property to a double in fixed notation and tells the object's class. */
OVX_API void ovxIntlSetObjPropDouble(OvxObject *object, const char *name, double value);

/** The object's property map, made when missing; borrowed. */
OVX_API StringToStringMap *ovxFetchObjPropMap(OvxObject *object);

/** Tells the object's class that the property `name` was set. */
OVX_API void ovxNotifyObjCfgChange(OvxObject *object, const char *name);

/** Adds a listener (kept); one already there is not added twice. */
OVX_API void ovxIntlAddListener(OvxObject *object, OvxObject *listener);

/** Removes a listener and releases it. */
OVX_API void ovxIntlRemListener(OvxObject *object, OvxObject *listener);

/** The group of listeners of a logger, filter or handler, borrowed; `create` makes a missing one.
 */
OVX_API ListenerGroup *ovxFetchListenerGroup(OvxObject *object, bool create);

/*
 * Basic class functions: what a class of a host's own falls back on
 */

/** Passes the event on to the object's listeners, when the object is enabled. */
OVX_API void OvxBasicObjectFLog(OvxObject *object, OvxEvent *event);

/**
 * Handles the properties that all objects share: "description", "descriptionFile",
 * "descriptionSet", "descriptionKey", "logging" and "listenerNames".
 */
OVX_API void OvxBasicObjectFCfgChange(OvxObject *object, const char *name);

/** Handles "level" of a basic logger; all else goes to OvxBasicObjectFCfgChange. */
OVX_API void OvxBasicLoggerFCfgChange(OvxObject *logger, const char *name);

/** Asks the filter's FIsLoggable and, when it says yes, passes the event on with its FLog. */
OVX_API void OvxBasicFilterFProcess(OvxObject *filter, OvxEvent *event);

/** Handles "level" of a level filter; all else goes to OvxBasicObjectFCfgChange. */
OVX_API void OvxLevelFilterFCfgChange(OvxObject *filter, const char *name);

/** Compares the event's level with the filter's threshold. Takes no lock and needs none. */
OVX_API bool OvxLevelFilterFIsLoggable(OvxObject *filter, OvxEvent *event);

/** Handles "formatterName"; all else goes to OvxBasicObjectFCfgChange. */
OVX_API void OvxBasicHandlerFCfgChange(OvxObject *handler, const char *name);
/** Does nothing. */
OVX_API void OvxBasicHandlerFProcess(OvxObject *handler, OvxEvent *event);
/** Does nothing. */
OVX_API void OvxBasicHandlerFOpen(OvxObject *handler);
/** Does nothing. */
OVX_API void OvxBasicHandlerFClose(OvxObject *handler);

/** Makes the open flag of a console handler. */
OVX_API void *OvxConsoleHandlerFAllocVars(void);
/** Frees the open flag of a console handler. */
OVX_API void OvxConsoleHandlerFFreeVars(void *variables);
/** Writes the event to standard output, then passes it on to the handler's listeners. */
OVX_API void OvxConsoleHandlerFProcess(OvxObject *handler, OvxEvent *event);
/** Writes the event to standard error, then passes it on to the handler's listeners. */
OVX_API void OvxStderrHandlerFProcess(OvxObject *handler, OvxEvent *event);
/** Writes the formatter's header to the handler's stream, once until it is closed. */
OVX_API void OvxConsoleHandlerFOpen(OvxObject *handler);
/** Writes the formatter's trailer to the handler's stream, when it is open. */
OVX_API void OvxConsoleHandlerFClose(OvxObject *handler);

/**
 * Handles "separator", "dateTimeFormat" and "locale" of a basic formatter; all else goes to
 * OvxBasicObjectFCfgChange.
 */
OVX_API void OvxBasicFormatterFCfgChange(OvxObject *formatter, const char *name);
/** The event as one line: timestamp, properties, message; UTF-8, yours. */
OVX_API char *OvxBasicFormatterFFormat(OvxObject *formatter, OvxEvent *event);
/** NULL: the basic format has no header. */
OVX_API char *OvxBasicFormatterFGetHeader(OvxObject *formatter);
/** NULL: the basic format has no trailer. */
OVX_API char *OvxBasicFormatterFGetTrailer(OvxObject *formatter);
/** A time in milliseconds since 1970 as the formatter's timestamp; UTF-8, yours. */
OVX_API char *OvxBasicFormatterFormatDate(OvxObject *formatter, int64_t milliseconds);

/*
 * Handlers and formatters
 */

/** The handler's formatter, yours to release with ovxIntlReleaseObject, or NULL. */
OVX_API OvxObject *ovxIntlHandlerGetFormatter(OvxObject *handler);
/** Gives the handler another formatter (kept), or none for NULL. */
OVX_API void ovxIntlHandlerSetFormatter(OvxObject *handler, OvxObject *formatter);
/** What the handler's formatter puts before the first record; yours, or NULL. */
OVX_API char *ovxIntlHandlerGetFmtHeader(OvxObject *handler);
/** What the handler's formatter puts after the last record; yours, or NULL. */
OVX_API char *ovxIntlHandlerGetFmtTrailer(OvxObject *handler);
/** The event as text by the handler's formatter; UTF-8, yours, or NULL. */
OVX_API char *ovxIntlHandlerDoFmt(OvxObject *handler, OvxEvent *event);

/*
 * Events (the accessors of <olvex/Event.h> take no lock and serve here too)
 */

/** The locale in which the event is to be bound, borrowed; NULL for the process's language. */
OVX_API const char *ovxGetEventLocale(const OvxEvent *event);
/** Sets the locale; borrowed, so it must outlive the event. */
OVX_API void ovxSetEventLocale(OvxEvent *event, const char *locale);
/** The event's property map, made when missing; borrowed. */
OVX_API StringToStringMap *ovxFetchEventPropMap(OvxEvent *event);

/*
 * Messages
 */

/** Makes a message, as OvxAllocI18Msg. */
OVX_API OvxI18Msg *ovxIntlAllocI18Msg(const char *catalog, int set, int key, const char *text);
/** Copies a message, as OvxCopyI18Msg. */
OVX_API OvxI18Msg *ovxIntlCopyI18Msg(const OvxI18Msg *msg);
/** Frees a message. */
OVX_API void ovxIntlFreeI18Msg(OvxI18Msg *msg);
/** Appends a boolean parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmBool(OvxI18Msg *msg, bool value);
/** Appends a character parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmChar(OvxI18Msg *msg, char value);
/** Appends an int parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmInt(OvxI18Msg *msg, int value);
/** Appends a long parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmLong(OvxI18Msg *msg, long value);
/** Appends a float parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmFloat(OvxI18Msg *msg, float value);
/** Appends a double parameter; false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmDouble(OvxI18Msg *msg, double value);
/** Appends a string parameter (copied); false when memory runs out. */
OVX_API bool ovxIntlAddI18MsgParmString(OvxI18Msg *msg, const char *value);
/** The message's parameter list, made when missing; borrowed. */
OVX_API ParmList *ovxGetI18MsgParmList(OvxI18Msg *msg);
/** Sets the locale to translate into, borrowed, and returns it. */
OVX_API const char *ovxSetI18MsgLocale(OvxI18Msg *msg, const char *locale);
/** Binds a message, as OvxBindI18Msg; the FBindMsg of every built-in formatter. */
OVX_API char *ovxIntlBindI18Msg(OvxI18Msg *msg);
/**
 * Writes UTF-8 text to a stream in the default code set, at most 4095 bytes, cut at a character.
 * Returns the number of bytes written, or a negative number. Takes no lock.
 */
OVX_API int ovxI18PrintUTF8AsLocal(FILE *stream, const char *utf8);

/*
 * Reporting
 */

/** The function with which the logger passes events on; NULL when disabled or not a logger. */
OVX_API OvxFLog ovxIntlLoggerGetFLog(OvxObject *logger);

/**
 * Logs message `key` of the toolkit's own table, with `text` as its default text and a typed
 * parameter list, to "olvex.errorLogger". Does nothing while the toolkit is not open.
 */
OVX_API void ovxIntlLogVA(int level, int key, const char *text, ...);

/** Logs the system's text for an error number at OVX_LEVEL_WARN; any kind but 'p' is ignored. */
OVX_API void OvxReportPlatformErr(char kind, int code);

OVX_END_DECLS

#endif
