/* The clock and the host's name. None of these functions takes a lock. */
#ifndef OLVEX_SYSTEM_H
#define OLVEX_SYSTEM_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Milliseconds since 1970-01-01 00:00 UTC. */
OVX_API int64_t CxSystemGetTimestamp(void);

/**
 * The fully qualified host name into `buffer` of `length` bytes, terminator included; code 89 when
 * it cannot be found, the short name then stays in the buffer.
 */
OVX_API CxResult CxSystemGetFQHostname(char *buffer, size_t length);

OVX_END_DECLS

#endif
