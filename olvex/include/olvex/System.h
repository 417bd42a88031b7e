/* The clock and the host's name. None of these functions takes a lock. */
#ifndef OLVEX_SYSTEM_H
#define OLVEX_SYSTEM_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The time in milliseconds since 1970-01-01 00:00 UTC. */
OVX_API int64_t CxSystemGetTimestamp(void);

/**
 * Puts the host's fully qualified name, or the short one when the name service knows no better,
 * into `buffer` of `length` bytes, terminator included. CX_ENOSYS (<olvex/File.h>) when the name
 * service does not know the host, the short name then stays, or when the name does not fit. May
 * take as long as the name service does.
 */
OVX_API CxResult CxSystemGetFQHostname(char *buffer, size_t length);

OVX_END_DECLS

#endif
