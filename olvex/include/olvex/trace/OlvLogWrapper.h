/*
 * Tracing with plain functions. A product has eight components, each with a trace handle that is
 * bound to a logger of the toolkit; the first request for a handle opens the toolkit with the
 * properties file that initializeWrapper() found. Trace calls write method entries, exits and
 * printf-style texts at three levels of detail.
 *
 * All names of the tracing front end can be used without a qualifier. They stand in the inline
 * namespace olvex_trace, so that a function or class of a host never meets one of them when the
 * host is linked or loaded.
 */
#ifndef OLVEX_TRACE_OLVLOGWRAPPER_H
#define OLVEX_TRACE_OLVLOGWRAPPER_H

#include <olvex/Types.h>

inline namespace olvex_trace {

/**
 * The trace handle of one component. It is made on the first request, stays as it is and lives to
 * the end of the process.
 */
struct OlvLogWrapper {
    OvxObject *logger; /**< the component's logger, or none */
    /** What the logger took when the handle was made: 4 DEBUG_MAX and all below, 2 DEBUG_MID and
        DEBUG_MIN, 1 DEBUG_MIN, 0 none of them */
    int32_t level;
    int32_t initialized; /**< 1 when the toolkit was opened and the logger exists, else 0 */
};

/** The path of the trace properties file, as initializeWrapper() left it. */
extern OVX_API char g_LogPropertiesFile[1024];

/* Names of the product's file-system providers; nothing here reads them. */

/** "provider_standard" */
extern OVX_API const wchar_t *const FS_PROVIDER_STANDARD;
/** "provider_cache" */
extern OVX_API const wchar_t *const FS_PROVIDER_CACHE;
/** "provider_cache2" */
extern OVX_API const wchar_t *const FS_PROVIDER_CACHE2;
/** "provider_cache3" */
extern OVX_API const wchar_t *const FS_PROVIDER_CACHE3;
/** "provider_remote_cache" */
extern OVX_API const wchar_t *const FS_PROVIDER_REMOTE_CACHE;
/** "provider_remote_cache2" */
extern OVX_API const wchar_t *const FS_PROVIDER_REMOTE_CACHE2;
/** "provider_remote_cache3" */
extern OVX_API const wchar_t *const FS_PROVIDER_REMOTE_CACHE3;

/*
 * Start-up
 */

/**
 * Sets the trace properties file: `propertiesFile` (copied, cut at 1023 bytes), or for none
 * "ZetTrace.properties" in the configuration directory. Backslashes become slashes. Returns
 * g_LogPropertiesFile. Belongs before the first request for a handle, in one thread.
 */
OVX_API char *initializeWrapper(const char *propertiesFile);

/**
 * Writes the product's configuration directory into `buffer`, at least 1024 bytes, and returns it:
 * "/config/" below $ZET_TEST, which a process with raised privileges does not read, or else below
 * the "ZET_HomeDirectory" of "/etc/zet/zet.ini", or else "/config/" itself.
 */
OVX_API char *get_config_directory_path(char *buffer);

/**
 * The handle of a component, 0 to 7, borrowed; none for another number. The first request makes it:
 * opens the toolkit with g_LogPropertiesFile; when the configuration "handlers.traceFile" names a
 * file that cannot be written, moves that into the user's home directory; gets the logger. A handle
 * for which that failed stays inactive: trace calls on it do nothing.
 */
OVX_API OlvLogWrapper *createWrapper(int component);

/** The handle of component 0, logger "hw.loggers.trcLogger"; borrowed, as from createWrapper(). */
OVX_API OlvLogWrapper *getOlvLogHw();
/** The handle of component 1, logger "vpd.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogSw();
/** The handle of component 2, logger "common.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogCom();
/** The handle of component 3, logger "sigeval.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogXse();
/** The handle of component 4, logger "fscanner.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogFs();
/** The handle of component 5, logger "plugin.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogPlugin();
/** The handle of component 6, logger "use.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogUse();
/** The handle of component 7, logger "net.loggers.trcLogger". */
OVX_API OlvLogWrapper *getOlvLogNet();

/** 1 when the handle's level is exactly `level`, else 0. */
OVX_API int istraceActive(OlvLogWrapper *handle, int level);
/** The handle's level; 0 for none. */
OVX_API int getTrcLevel(OlvLogWrapper *handle);

/*
 * Trace calls. Each writes one record: the text, at most 1023 bytes of whole characters, made by
 * vsnprintf from `format` (none for an empty text) and its arguments, with source file, line and
 * method name, in which the five special characters of XML are escaped. Nothing is formatted when
 * the handle does not take the call's level. Arguments are borrowed. They take the toolkit's lock
 * when they write.
 */

/** Writes at DEBUG_MIN; the handle's level must be 1 or more. */
OVX_API void traceMIN(OlvLogWrapper *handle, int line, const char *file, const char *method,
                      const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MID; the handle's level must be 2 or more. */
OVX_API void traceMID(OlvLogWrapper *handle, int line, const char *file, const char *method,
                      const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX; the handle's level must be 4. */
OVX_API void traceMAX(OlvLogWrapper *handle, int line, const char *file, const char *method,
                      const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX with "Entry " before the method; the handle's level must be 4. */
OVX_API void traceEntry(OlvLogWrapper *handle, int line, const char *file, const char *method,
                        const char *format, ...) OVX_PRINTF_LIKE(5, 6);
/** Writes at DEBUG_MAX with "Exit " before the method; the handle's level must be 4. */
OVX_API void traceExit(OlvLogWrapper *handle, int line, const char *file, const char *method,
                       const char *format, ...) OVX_PRINTF_LIKE(5, 6);

/*
 * Texts. New strings are yours and freed with BaxMemoryFree().
 */

/**
 * Replaces what is not valid in XML text among the first 1024 bytes of `text`, in place, by
 * `replacement`, or by a blank when that is not valid itself. The number of bytes replaced.
 */
OVX_API int replaceInvalidXMLChars(char replacement, char *text);
/**
 * `prefix` and `method` (none for the prefix alone) with the special characters of XML escaped;
 * yours. None without a prefix or without memory.
 */
OVX_API char *createMethodName(const char *prefix, const char *method);
/** The text with `"`, `&`, `'`, `<` and `>` as XML entities; yours. */
OVX_API char *escapeXmlString(const char *text);
/** Turns every backslash into a slash, in place, and returns `text`. */
OVX_API char *convertSlashes(char *text);
/** Removes white space at both ends, in place, whatever the locale, and returns `text`. */
OVX_API char *trim(char *text);

/*
 * Files
 */

/**
 * The home directory of the process's real user, or else of the user who logged in, by the user
 * database; borrowed until the next call in this thread. None when neither is known.
 */
OVX_API const char *getHomeDir();
/**
 * 1 when `file` exists and this process cannot write it, or when it cannot write `directory`; else
 * 0. What is none is not asked for.
 */
OVX_API int isWriteBlocked(const char *file, const char *directory);

} // namespace olvex_trace

#endif
