/*
 * Characters and times in any code set. No function here takes a lock; a NULL handle means the
 * default code set.
 */
#ifndef OLVEX_UCVWIDE_H
#define OLVEX_UCVWIDE_H

#include <olvex/Types.h>

#include <time.h>

OVX_BEGIN_DECLS

/**
 * Converts one 16-bit unit into at most 4 bytes; the number of bytes, or -1 when it cannot be
 * converted whole. A NULL target resets the shift state and gives 1 for a code set that has shifts.
 */
OVX_API int ucv_wctomb(uc_ch_t *handle, char *target, char16_t unit);

/**
 * strftime with format and result in the handle's code set; the bytes written without the
 * terminator, 0 when nothing was. The second argument is not used.
 */
OVX_API size_t ucv_strftime(uc_ch_t *handle, void *reserved, char *buffer, size_t size,
                            const char *format, const struct tm *time);

OVX_END_DECLS

#endif
