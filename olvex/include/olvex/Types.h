/*
 * The conventions of the whole interface, then the types and constants that its families share.
 *
 *  1. Text. Strings are NUL-terminated. Event texts, parameters and everything that a formatter
 *     returns are UTF-8; file names, property values and locale names are bytes as the host gave
 *     them.
 *  2. Null. Every argument may be null: the call then does nothing and returns the neutral value
 *     of its type (false, 0, NULL, 0.0). A doc comment names the result where it is another one.
 *  3. Ownership, in four words. "borrowed": the callee only looks at it during the call, or the
 *     caller only looks at what it got while its owner lives. "copied": the callee makes its own
 *     copy. "kept": the callee keeps a counted reference. "yours": the caller owns the result and
 *     frees it, a string with BaxMemoryFree(), an object with OvxReleaseObject(), a configuration
 *     with OvxReleaseObjCfg().
 *  4. Locks. Functions take the toolkit's one lock for the length of the call unless their comment
 *     says "takes no lock". When the lock cannot be had, which only happens to a public call made
 *     from inside a class function, the call reports that and returns the neutral value.
 *  5. Threads. Every function may be called from any thread, except where a comment restricts it;
 *     none but OvxEmergencyWrite() may be called from a signal handler. A thread that holds the
 *     lock is not cancelled.
 *  6. Numbers. Levels, sets and keys are signed 32-bit integers; times are milliseconds since
 *     1970-01-01 00:00 UTC; sizes are bytes.
 *  7. Errors. The toolkit reports its own problems to the logger "olvex.errorLogger" and goes on.
 *     Functions of the portability layer return a CxResult instead.
 *  8. Exceptions. No function throws, and no callback may throw through the library.
 */
#ifndef OLVEX_TYPES_H
#define OLVEX_TYPES_H

#include <olvex/Export.h>

#include <stdarg.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifndef __cplusplus
#include <uchar.h>
#endif

OVX_BEGIN_DECLS

/** A logger, filter, handler or formatter: a named, reference-counted instance of a class. */
typedef struct OvxObject OvxObject;
/** The table of functions that gives objects of one class their behaviour; owned by the toolkit. */
typedef struct OvxObjClass OvxObjClass;
/** A named, reference-counted set of string properties: the configuration of one object name. */
typedef struct OvxObjCfg OvxObjCfg;
/** The record that one logging call makes; it lives for the length of that call. */
typedef struct OvxEvent OvxEvent;
/** An internationalised message: catalog, set, key, default text and typed parameters. */
typedef struct OvxI18Msg OvxI18Msg;

/** A group of objects that listen to another one, in the order in which they were added. */
typedef struct ListenerGroup ListenerGroup;
/** A group of strings, in the order in which they were added. */
typedef struct StringGroup StringGroup;
/** A map from names to configurations, in order of insertion. */
typedef struct StringToObjCfgMap StringToObjCfgMap;
/** A map from names to object classes, in order of insertion. */
typedef struct StringToObjClassMap StringToObjClassMap;
/** A map from names to objects, in order of insertion. */
typedef struct StringToObjMap StringToObjMap;
/** A map from names to strings, in order of insertion. */
typedef struct StringToStringMap StringToStringMap;
/** A list of typed parameters. */
typedef struct ParmList ParmList;
/** A list of strings. */
typedef struct StringList StringList;

/** A place in a ListenerGroup; a null pointer is the end of a walk. */
typedef struct ListenerGroupNode ListenerGroupNode;
/** A place in a StringGroup; a null pointer is the end of a walk. */
typedef struct StringGroupNode StringGroupNode;
/** A place in a StringToObjCfgMap; a null pointer is the end of a walk. */
typedef struct StringToObjCfgMapNode StringToObjCfgMapNode;
/** A place in a StringToObjClassMap; a null pointer is the end of a walk. */
typedef struct StringToObjClassMapNode StringToObjClassMapNode;
/** A place in a StringToObjMap; a null pointer is the end of a walk. */
typedef struct StringToObjMapNode StringToObjMapNode;
/** A place in a StringToStringMap; a null pointer is the end of a walk. */
typedef struct StringToStringMapNode StringToStringMapNode;
/** A place in a ParmList; a null pointer is the end of a walk. */
typedef struct ParmListNode ParmListNode;
/** A place in a StringList; a null pointer is the end of a walk. */
typedef struct StringListNode StringListNode;

/** A code-set handle of the internationalisation services; none means the default code set. */
typedef struct uc_ch_t uc_ch_t;

/** Categories of object classes. */
enum {
    OVX_CLASS_LOGGER = 101,
    OVX_CLASS_FILTER = 102,
    OVX_CLASS_HANDLER = 103,
    OVX_CLASS_FORMATTER = 104
};

/** Levels: greater is more severe. Any other 32-bit integer is a level as well. */
enum {
    OVX_LEVEL_NONE = -9999,     /**< no level: passes every threshold; as a threshold, none */
    OVX_LEVEL_ALL = 0,          /**< a threshold that lets everything pass */
    OVX_LEVEL_DEBUG_MAX = 1000, /**< most detailed debugging */
    OVX_LEVEL_DEBUG_MID = 2000, /**< medium debugging */
    OVX_LEVEL_DEBUG_MIN = 3000, /**< least detailed debugging; threshold of a new logger */
    OVX_LEVEL_INFO = 4000,      /**< information */
    OVX_LEVEL_WARN = 5000,      /**< warning */
    OVX_LEVEL_ERROR = 6000,     /**< error */
    OVX_LEVEL_FATAL = 7000,     /**< fatal error */
    OVX_LEVEL_OFF = 9999        /**< a threshold that only events without a level pass */
};

/**
 * Markers of the typed parameter list that ends every logging call. Each value follows its marker,
 * and 0 (or NULL) closes the list: OvxLogText(log, "%1$s", OVX_PARM_STRING, text, 0). A level value
 * in the place of a marker sets the event's level. At most 62 entries, then the closing 0.
 */
enum {
    OVX_PROP = 201,        /**< a property name follows, then a marker and its value */
    OVX_PARM_BOOL = 501,   /**< followed by an int whose low byte is the truth value */
    OVX_PARM_INT = 502,    /**< followed by an int */
    OVX_PARM_LONG = 503,   /**< followed by a long */
    OVX_PARM_FLOAT = 504,  /**< followed by a float (which arrives as a double) */
    OVX_PARM_DOUBLE = 505, /**< followed by a double */
    OVX_PARM_CHAR = 506,   /**< followed by an int whose low byte is the character */
    OVX_PARM_STRING = 507  /**< followed by a const char *; copied */
};

/** Makes the private variables of a new object; yours to free in OvxFFreeVars. May return NULL. */
typedef void *(*OvxFAllocVars)(void);
/** Frees what OvxFAllocVars made; must accept NULL. */
typedef void (*OvxFFreeVars)(void *variables);
/** Told that the property `name` of `object` was set. */
typedef void (*OvxFCfgChange)(OvxObject *object, const char *name);
/** Passes an event on to the listeners of a logger or filter. */
typedef void (*OvxFLog)(OvxObject *object, OvxEvent *event);
/** Handles an event that a filter or handler receives. */
typedef void (*OvxFProcess)(OvxObject *object, OvxEvent *event);
/** Says whether a filter lets an event pass. */
typedef bool (*OvxFIsLoggable)(OvxObject *object, OvxEvent *event);
/** Opens a handler. */
typedef void (*OvxFOpen)(OvxObject *object);
/** Closes a handler; its private variables may be gone already. */
typedef void (*OvxFClose)(OvxObject *object);
/** Formats an event; returns a new string from BaxMemoryMalloc, or NULL. */
typedef char *(*OvxFFormat)(OvxObject *formatter, OvxEvent *event);
/** Returns what stands before the first record, a new string from BaxMemoryMalloc, or NULL. */
typedef char *(*OvxFGetHeader)(OvxObject *formatter);
/** Returns what stands after the last record, a new string from BaxMemoryMalloc, or NULL. */
typedef char *(*OvxFGetTrailer)(OvxObject *formatter);
/** Turns a message into text; returns a new string from BaxMemoryMalloc, or NULL. */
typedef char *(*OvxFBindMsg)(OvxI18Msg *message);

/** Result of an operation of the portability layer. */
typedef struct CxResult {
    char kind;    /**< '-' for success, 'p' for a failure with a platform error number */
    int32_t code; /**< 0, or the error number */
} CxResult;

OVX_END_DECLS

#endif
