/*
 * Handlers and their formatters. A handler asks its formatter for the text of each event.
 *
 * The classes "ovx_consolehandler" and "ovx_stderrhandler" write to the standard streams,
 * "ovx_filehandler" to a rolling set of files, and "ovx_multiproc_filehandler" to a log that
 * several processes write and roll over together, under a System V semaphore set that outlives
 * them. With the file handlers, a record is in the kernel when the logging call returns.
 * docs/log-files.md lists their properties, what can be lost when, and how to see and remove the
 * semaphore set.
 */
#ifndef OLVEX_HANDLER_H
#define OLVEX_HANDLER_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The handler's formatter, yours to release; NULL when it has none or is not a handler. */
OVX_API OvxObject *OvxHandlerGetFormatter(OvxObject *handler);

/** Gives the handler another formatter (kept), or none for NULL. Property "formatterName". */
OVX_API void OvxHandlerSetFormatter(OvxObject *handler, OvxObject *formatter);

/** What the handler's formatter puts before the first record; yours, or NULL. */
OVX_API char *OvxHandlerGetFmtHeader(OvxObject *handler);

/** What the handler's formatter puts after the last record; yours, or NULL. */
OVX_API char *OvxHandlerGetFmtTrailer(OvxObject *handler);

/** The event as text by the handler's formatter; UTF-8, yours, or NULL. */
OVX_API char *OvxHandlerDoFmt(OvxObject *handler, OvxEvent *event);

OVX_END_DECLS

#endif
