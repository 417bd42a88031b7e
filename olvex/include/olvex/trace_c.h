/*
 * Tracing for hosts in C: the plain functions of the tracing front end, each with "ovx_" before its
 * name. They act on the same handles as those of C++ and may be mixed with them.
 */
#ifndef OLVEX_TRACE_C_H
#define OLVEX_TRACE_C_H

#include <olvex/Export.h>

OVX_BEGIN_DECLS

/**
 * The trace handle of one component. It is made on the first request, stays as it is and lives to
 * the end of the process.
 */
typedef struct ovx_OlvLogWrapper ovx_OlvLogWrapper;

/*
 * Start-up
 */

/**
 * Sets the trace properties file: `propertiesFile` (copied, cut at 1023 bytes), or for none
 * "ZetTrace.properties" in the configuration directory. Backslashes become slashes. Returns the
 * path that was set, borrowed. Belongs before the first request for a handle, in one thread.
 */
OVX_API const char *ovx_initializeWrapper(const char *propertiesFile);

/**
 * Writes the product's configuration directory into `buffer`, at least 1024 bytes, and returns it:
 * "/config/" below $ZET_TEST, which a process with raised privileges does not read, or else below
 * the "ZET_HomeDirectory" of "/etc/zet/zet.ini", or else "/config/" itself.
 */
OVX_API char *ovx_get_config_directory_path(char *buffer);

/**
 * The handle of a component, 0 to 7, borrowed; none for another number. The first request makes it:
 * opens the toolkit with the trace properties file; when the configuration "handlers.traceFile"
 * names a file that cannot be written, moves that into the user's home directory; gets the logger.
 * A handle for which that failed stays inactive: trace calls on it do nothing.
 */
OVX_API ovx_OlvLogWrapper *ovx_createWrapper(int component);

/** The handle of component 0, logger "hw.loggers.trcLogger"; as from ovx_createWrapper(). */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogHw(void);
/** The handle of component 1, logger "vpd.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogSw(void);
/** The handle of component 2, logger "common.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogCom(void);
/** The handle of component 3, logger "sigeval.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogXse(void);
/** The handle of component 4, logger "fscanner.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogFs(void);
/** The handle of component 5, logger "plugin.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogPlugin(void);
/** The handle of component 6, logger "use.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogUse(void);
/** The handle of component 7, logger "net.loggers.trcLogger". */
OVX_API ovx_OlvLogWrapper *ovx_getOlvLogNet(void);

/** 1 when the handle's level is exactly `level`, else 0. */
OVX_API int ovx_istraceActive(ovx_OlvLogWrapper *handle, int level);
/** The handle's level: 4, 2, 1 or 0; 0 for none. */
OVX_API int ovx_getTrcLevel(ovx_OlvLogWrapper *handle);

/*
 * Trace calls. Each writes one record: the text, at most 1023 bytes of it, made by vsnprintf from
 * `format` (none for an empty text) and its arguments, with source file, line and method name, in
 * which the five special characters of XML are escaped. Nothing is formatted when the handle does
 * not take the call's level. Arguments are borrowed. They take the toolkit's lock when they write.
 */

/** Writes at DEBUG_MIN; the handle's level must be 1 or more. */
OVX_API void ovx_traceMIN(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                          const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MID; the handle's level must be 2 or more. */
OVX_API void ovx_traceMID(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                          const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX; the handle's level must be 4. */
OVX_API void ovx_traceMAX(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                          const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX with "Entry " before the method; the handle's level must be 4. */
OVX_API void ovx_traceEntry(ovx_OlvLogWrapper *handle, int line, const char *file,
                            const char *method, const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX with "Exit " before the method; the handle's level must be 4. */
OVX_API void ovx_traceExit(ovx_OlvLogWrapper *handle, int line, const char *file,
                           const char *method, const char *format, ...) OVX_PRINTF_LIKE(5, 6);

/*
 * Texts. New strings are yours and freed with BaxMemoryFree() of <olvex/Memory.h>.
 */

/**
 * Replaces what is not valid in XML text among the first 1024 bytes of `text`, in place, by
 * `replacement`, or by a blank when that is not valid itself. The number of bytes replaced.
 */
OVX_API int ovx_replaceInvalidXMLChars(char replacement, char *text);
/**
 * `prefix` and `method` (none for the prefix alone) with the special characters of XML escaped;
 * yours. None without a prefix or without memory.
 */
OVX_API char *ovx_createMethodName(const char *prefix, const char *method);
/** The text with `"`, `&`, `'`, `<` and `>` as XML entities; yours. */
OVX_API char *ovx_escapeXmlString(const char *text);
/** Turns every backslash into a slash, in place, and returns `text`. */
OVX_API char *ovx_convertSlashes(char *text);
/** Removes white space at both ends, in place, whatever the locale, and returns `text`. */
OVX_API char *ovx_trim(char *text);

/*
 * Files
 */

/**
 * The home directory of the process's real user, or else of the user who logged in, by the user
 * database; borrowed until the next call in this thread. None when neither is known.
 */
OVX_API const char *ovx_getHomeDir(void);
/**
 * 1 when `file` exists and this process cannot write it, or when it cannot write `directory`; else
 * 0. What is none is not asked for.
 */
OVX_API int ovx_isWriteBlocked(const char *file, const char *directory);

OVX_END_DECLS

#endif
