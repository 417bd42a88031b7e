/*
 * Logging. Every call ends with the typed parameter list described at OVX_PROP in Types.h, closed
 * by 0. A call whose level does not reach the logger's threshold returns at once, without the lock.
 * Calls return nothing, keep errno and never fail visibly; what goes wrong is reported to the
 * logger "olvex.errorLogger".
 *
 * No logging call may be made from a signal handler: the signal may have come while the thread
 * holds the lock or the allocator's. Such a handler calls OvxEmergencyWrite(), the one function
 * here that it may call, or leaves a flag for the program to log later.
 */
#ifndef OLVEX_LOG_H
#define OLVEX_LOG_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Says whether the logger would take an event of the level. Takes no lock. */
OVX_API OVX_DIRECT bool OvxIsLoggable(const OvxObject *logger, int level);

/** Logs a message without a level of its own (the list may set one). All texts are copied. */
OVX_API void OvxLogMsg(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                       ...);
/** OvxLogMsg with the list as a va_list. */
OVX_API void OvxLogMsgVA(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                         va_list parameters);

/** Logs a message at OVX_LEVEL_INFO. */
OVX_API void OvxLogInfo(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                        ...);
/** OvxLogInfo with the list as a va_list. */
OVX_API void OvxLogInfoVA(OvxObject *logger, const char *catalog, int set, int key,
                          const char *text, va_list parameters);

/** Logs a message at OVX_LEVEL_WARN. */
OVX_API void OvxLogWarn(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                        ...);
/** OvxLogWarn with the list as a va_list. */
OVX_API void OvxLogWarnVA(OvxObject *logger, const char *catalog, int set, int key,
                          const char *text, va_list parameters);

/** Logs a message at OVX_LEVEL_ERROR. */
OVX_API void OvxLogError(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                         ...);
/** OvxLogError with the list as a va_list. */
OVX_API void OvxLogErrorVA(OvxObject *logger, const char *catalog, int set, int key,
                           const char *text, va_list parameters);

/** Logs a message at OVX_LEVEL_FATAL. */
OVX_API void OvxLogFatal(OvxObject *logger, const char *catalog, int set, int key, const char *text,
                         ...);
/** OvxLogFatal with the list as a va_list. */
OVX_API void OvxLogFatalVA(OvxObject *logger, const char *catalog, int set, int key,
                           const char *text, va_list parameters);

/**
 * Logs debugging text at OVX_LEVEL_DEBUG_MIN. The text is the format itself; file, function and
 * line become event properties (a line without a file is not recorded).
 */
OVX_API void OvxLogDebugMin(OvxObject *logger, const char *srcFile, const char *srcFunction,
                            int srcLine, const char *text, ...);
/** OvxLogDebugMin with the list as a va_list. */
OVX_API void OvxLogDebugMinVA(OvxObject *logger, const char *srcFile, const char *srcFunction,
                              int srcLine, const char *text, va_list parameters);

/** Logs debugging text at OVX_LEVEL_DEBUG_MID. */
OVX_API void OvxLogDebugMid(OvxObject *logger, const char *srcFile, const char *srcFunction,
                            int srcLine, const char *text, ...);
/** OvxLogDebugMid with the list as a va_list. */
OVX_API void OvxLogDebugMidVA(OvxObject *logger, const char *srcFile, const char *srcFunction,
                              int srcLine, const char *text, va_list parameters);

/** Logs debugging text at OVX_LEVEL_DEBUG_MAX. */
OVX_API void OvxLogDebugMax(OvxObject *logger, const char *srcFile, const char *srcFunction,
                            int srcLine, const char *text, ...);
/** OvxLogDebugMax with the list as a va_list. */
OVX_API void OvxLogDebugMaxVA(OvxObject *logger, const char *srcFile, const char *srcFunction,
                              int srcLine, const char *text, va_list parameters);

/** Logs plain text, a format itself, without a level of its own (the list may set one). */
OVX_API void OvxLogText(OvxObject *logger, const char *text, ...);
/** OvxLogText with the list as a va_list. */
OVX_API void OvxLogTextVA(OvxObject *logger, const char *text, va_list parameters);

/**
 * Names the file (a path) that OvxEmergencyWrite() writes to, besides standard error, and opens it
 * for appending, with mode 0600 if it is made. It stays open until another call, also when the
 * toolkit closes; NULL or "" names none any more. True when a file is open for it. A failure is
 * reported, and leaves none. A text written while another thread is in this call goes into the
 * old file or the new one. Call it with NULL before the library is unloaded.
 */
OVX_API bool OvxSetEmergencyFile(const char *path);

/**
 * Writes the text as it is, without a line end, to standard error and to the emergency file. For
 * signal handlers and other places where nothing else may be called: takes no lock, allocates
 * nothing, keeps errno. What cannot be written is lost.
 */
OVX_API void OvxEmergencyWrite(const char *text);

/** The function with which the logger passes events on; NULL when disabled or not a logger. */
OVX_API OvxFLog OvxLoggerGetFLog(OvxObject *logger);

/**
 * OvxIsLoggable without the call. An object begins with its gate, the lowest level that passes; for
 * what is disabled or not a logger it is INT64_MAX. This layout is part of the binary interface.
 */
static inline bool OvxWouldLog(const OvxObject *logger, int level)
{
    if (!logger) return false;
    const int64_t gate = __atomic_load_n((const int64_t *)(const void *)logger, __ATOMIC_RELAXED);
    return level == OVX_LEVEL_NONE ? gate != INT64_MAX : level >= gate;
}

/**
 * Runs the statement that follows only when the logger takes the level; nothing of that statement
 * is evaluated otherwise: OVX_IF_LOGGABLE(log, OVX_LEVEL_DEBUG_MIN) OvxLogDebugMin(log, ...);
 */
#define OVX_IF_LOGGABLE(logger, level)                                                             \
    if (!OvxWouldLog((logger), (level))) {                                                         \
    } else

OVX_END_DECLS

#endif
