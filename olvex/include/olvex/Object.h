/*
 * Objects and their classes. A logger, filter, handler or formatter is an object of a registered
 * class, created by name on first request and configured from the configuration of that name.
 */
#ifndef OLVEX_OBJECT_H
#define OLVEX_OBJECT_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/*
 * Registering classes. Names and descriptions are copied; functions left NULL get the basic one of
 * the category (FAllocVars, FFreeVars, FCfgChange: none). A name that is taken stays as it is.
 * Class functions run with the toolkit's lock held: they call the ovxIntl functions of
 * <olvex/class.h>.
 */

/** Registers a logger class; FLog defaults to OvxBasicObjectFLog. */
OVX_API void OvxAddLoggerClass(const char *name, const OvxI18Msg *description,
                               OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                               OvxFCfgChange cfgChange, OvxFLog log);

/**
 * Registers a filter class; FProcess defaults to OvxBasicFilterFProcess, FIsLoggable to
 * OvxLevelFilterFIsLoggable, FLog to OvxBasicObjectFLog.
 */
OVX_API void OvxAddFilterClass(const char *name, const OvxI18Msg *description,
                               OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                               OvxFCfgChange cfgChange, OvxFProcess process,
                               OvxFIsLoggable isLoggable, OvxFLog log);

/** Registers a handler class; FProcess, FOpen and FClose default to functions that do nothing. */
OVX_API void OvxAddHandlerClass(const char *name, const OvxI18Msg *description,
                                OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                OvxFCfgChange cfgChange, OvxFProcess process, OvxFOpen open,
                                OvxFClose close);

/** Registers a formatter class; its functions default to those of the basic formatter. */
OVX_API void OvxAddFormatterClass(const char *name, const OvxI18Msg *description,
                                  OvxFAllocVars allocVars, OvxFFreeVars freeVars,
                                  OvxFCfgChange cfgChange, OvxFFormat format,
                                  OvxFGetHeader getHeader, OvxFGetTrailer getTrailer,
                                  OvxFBindMsg bindMsg);

/** Iterates over the names of the logger classes, in order of registration. */
OVX_API StringGroupNode *OvxGetLoggerClasses(void);

/** Iterates over the names of the filter classes, in order of registration. */
OVX_API StringGroupNode *OvxGetFilterClasses(void);

/** Iterates over the names of the handler classes, in order of registration. */
OVX_API StringGroupNode *OvxGetHandlerClasses(void);

/** Iterates over the names of the formatter classes, in order of registration. */
OVX_API StringGroupNode *OvxGetFormatterClasses(void);

/**
 * The object called `name`, made when it does not exist: its class is `className`, or for NULL the
 * property "className" of its configuration. Yours to release. NULL, and a message to the error
 * logger, when there is no such class or the object exists with another one.
 */
OVX_API OvxObject *OvxGetObject(const char *name, const char *className);

/** Adds a reference and returns the object; release it once more. */
OVX_API OvxObject *OvxAcquireObject(OvxObject *object);

/** Gives a reference back; the last one closes and frees the object. */
OVX_API void OvxReleaseObject(OvxObject *object);

/** The object's name, yours. */
OVX_API char *OvxGetObjectName(const OvxObject *object);

/** The description of the object's class as text, yours; NULL when it has none. */
OVX_API char *OvxGetObjectDesc(const OvxObject *object);

/** Says whether both are the same object. Takes no lock. */
OVX_API bool OvxAreObjectsEqual(const OvxObject *a, const OvxObject *b);

/** Says whether the object is enabled (property "logging"). */
OVX_API bool OvxIsObjectEnabled(const OvxObject *object);

/** Enables or disables the object: a disabled one passes nothing on. */
OVX_API void OvxSetObjectEnabled(OvxObject *object, bool enabled);

/**
 * Says whether a filter lets the event pass; false for what is not a filter. Takes no lock, so it
 * serves class functions, which run with the lock held. Elsewhere it is not to be called while
 * another thread logs or closes the toolkit: a filter may keep what it has seen.
 */
OVX_API bool OvxIsLoggableByFilter(OvxObject *filter, OvxEvent *event);

/*
 * Properties of an object, stored as text. Setting one stores it and tells the object's class.
 * `found` (optional) says whether the name is there, for the typed forms whether it converts.
 */

/** The value of a property, yours, or NULL. */
OVX_API char *OvxGetObjProp(const OvxObject *object, const char *name, bool *found);
/** A property as a boolean. */
OVX_API bool OvxGetObjPropBool(const OvxObject *object, const char *name, bool *found);
/** A property as a 32-bit integer. */
OVX_API int32_t OvxGetObjPropInt(const OvxObject *object, const char *name, bool *found);
/** A property as a 64-bit integer. */
OVX_API int64_t OvxGetObjPropLong(const OvxObject *object, const char *name, bool *found);
/** A property as a float. */
OVX_API float OvxGetObjPropFloat(const OvxObject *object, const char *name, bool *found);
/** A property as a double. */
OVX_API double OvxGetObjPropDouble(const OvxObject *object, const char *name, bool *found);

/** Sets a property; name and value are copied. */
OVX_API void OvxSetObjProp(OvxObject *object, const char *name, const char *value);
/** Sets a property to "true" or "false". */
OVX_API void OvxSetObjPropBool(OvxObject *object, const char *name, bool value);
/** Sets a property to the decimal text of a 32-bit integer. */
OVX_API void OvxSetObjPropInt(OvxObject *object, const char *name, int32_t value);
/** Sets a property to the decimal text of a 64-bit integer. */
OVX_API void OvxSetObjPropLong(OvxObject *object, const char *name, int64_t value);
/** Sets a property to a float in fixed notation, six digits. */
OVX_API void OvxSetObjPropFloat(OvxObject *object, const char *name, float value);
/** Sets a property to a double in fixed notation, six digits. */
OVX_API void OvxSetObjPropDouble(OvxObject *object, const char *name, double value);

/** Adds a listener (kept) to a logger, filter or handler; one already there is not added twice. */
OVX_API void OvxAddListener(OvxObject *object, OvxObject *listener);

/** Removes a listener and releases it. */
OVX_API void OvxRemListener(OvxObject *object, OvxObject *listener);

/** Iterates over the listeners in the order in which they were added; NULL when there are none. */
OVX_API ListenerGroupNode *OvxGetListeners(const OvxObject *object);

OVX_END_DECLS

#endif
