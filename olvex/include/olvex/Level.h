/* Levels as text. The levels themselves are constants of Types.h. */
#ifndef OLVEX_LEVEL_H
#define OLVEX_LEVEL_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * Reads a level: a decimal number, or a name (FATAL, ERROR, WARN, INFO, DEBUG_MIN, MIN, DEBUG_MID,
 * MID, DEBUG_MAX, MAX, ALL, OFF) in any case and with anything after it ("warning" is WARN). A text
 * of blanks is 0; NULL and anything else is OVX_LEVEL_NONE. Takes no lock.
 */
OVX_API int32_t OvxGetLevelFromString(const char *text);

OVX_END_DECLS

#endif
