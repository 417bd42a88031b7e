/* Small helpers that belong to no family. */
#ifndef OLVEX_MISC_H
#define OLVEX_MISC_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * Joins the first `count` strings, leaving out those that are NULL, with `separator` (NULL for
 * none) between every two of them. The text is yours; it is empty for a count of 0 or less, NULL
 * when memory runs out. Takes no lock.
 */
OVX_API char *OvxStrACat(int count, const char *const *strings, const char *separator);

OVX_END_DECLS

#endif
