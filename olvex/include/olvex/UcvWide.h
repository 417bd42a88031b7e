/*
 * Strings of 16-bit units, single characters, whole strings and times in any code set. The
 * functions are those of the standard library with 16-bit units in place of wchar_t and a code-set
 * handle in place of the process's locale. None takes a lock; a NULL handle means the default code
 * set, and a handle that converts is used by one thread at a time. NULL strings give NULL, 0 or -1.
 */
#ifndef OLVEX_UCVWIDE_H
#define OLVEX_UCVWIDE_H

#include <olvex/Types.h>

#include <time.h>

OVX_BEGIN_DECLS

/* Strings of units, closed by a unit of 0. What is returned points into the caller's strings. */

/** The number of units before the closing one. */
OVX_API size_t ucv_wcslen(const char16_t *string);
/** The same, but at most `count`; nothing is read behind that. */
OVX_API size_t ucv_wcsnlen(const char16_t *string, size_t count);
/** Appends `source` to `target`, which must have room; gives `target`. */
OVX_API char16_t *ucv_wcscat(char16_t *target, const char16_t *source);
/** Appends at most `count` units and always a closing one; gives `target`. */
OVX_API char16_t *ucv_wcsncat(char16_t *target, const char16_t *source, size_t count);
/** Copies `source` to `target`, which must have room; gives `target`. */
OVX_API char16_t *ucv_wcscpy(char16_t *target, const char16_t *source);
/** Copies at most `count` units and fills up to `count` with 0; gives `target`. */
OVX_API char16_t *ucv_wcsncpy(char16_t *target, const char16_t *source, size_t count);
/** The difference of the first differing units among `count`; 0 for none. */
OVX_API int ucv_wcsncmp(const char16_t *left, const char16_t *right, size_t count);
/** The first such unit, the closing one included; NULL when there is none. */
OVX_API char16_t *ucv_wcschr(const char16_t *string, char16_t unit);
/** The last such unit, the closing one included; NULL when there is none. */
OVX_API char16_t *ucv_wcsrchr(const char16_t *string, char16_t unit);
/** How many units at the start are in `set`. */
OVX_API size_t ucv_wcsspn(const char16_t *string, const char16_t *set);
/** How many units at the start are not in `set`. */
OVX_API size_t ucv_wcscspn(const char16_t *string, const char16_t *set);
/** The first unit that is in `set`; NULL when there is none. */
OVX_API char16_t *ucv_wcspbrk(const char16_t *string, const char16_t *set);
/** The first place where `part` stands, for an empty one the start; NULL when there is none. */
OVX_API char16_t *ucv_wcswcs(const char16_t *string, const char16_t *part);
/**
 * The next token, closed in place; NULL when there is none. A NULL string goes on from `*next`,
 * where the place behind the token is kept.
 */
OVX_API char16_t *ucv_wcstok(char16_t *string, const char16_t *delimiters, char16_t **next);

/* Characters. A text with shift codes is worked through from its start: the handle keeps the state.
 */

/**
 * Converts one unit into at most 4 bytes; the number of bytes, or -1 when it cannot be converted
 * whole. A question mark for a unit without a code counts as converted. A NULL target resets the
 * shift state and gives 1 for a code set that has shifts, else 0.
 */
OVX_API int ucv_wctomb(uc_ch_t *handle, char *target, char16_t unit);
/**
 * Converts one character of at most `size` bytes into one unit (not kept when NULL); the bytes
 * consumed, 0 for the NUL character, -1 when there is no such character. Nothing behind a NUL byte
 * is read. A NULL source resets the shift state and gives 1 for a code set that has shifts, else 0.
 */
OVX_API int ucv_mbtowc(uc_ch_t *handle, char16_t *unit, const char *source, size_t size);
/**
 * The length of one character of at most `size` bytes, of any plane; 0 for a NUL byte, -1 for a
 * byte that begins no character and for one that is cut. A NULL source is as in ucv_mbtowc().
 */
OVX_API int ucv_mblen(uc_ch_t *handle, const char *source, size_t size);
/**
 * Converts a string into at most `size` bytes, what ends a shift included, and closes it with NUL
 * when there is room. The bytes written without that, (size_t)-1 for a unit that is half a
 * character. A NULL target counts the bytes needed.
 */
OVX_API size_t ucv_wcstombs(uc_ch_t *handle, char *target, const char16_t *source, size_t size);
/**
 * Converts a string into at most `count` units, the closing one among them when there is room. The
 * units without it, (size_t)-1 for a character that is cut or takes two units. A NULL target counts
 * the characters.
 */
OVX_API size_t ucv_mbstowcs(uc_ch_t *handle, char16_t *target, const char *source, size_t count);
/**
 * What the byte at an index of a string is: 0 a character of its own, 1 the first byte of a longer
 * one, 2 a following byte, -1 neither, or behind the string's end.
 */
OVX_API int ucv_mbsbtype(uc_ch_t *handle, const char *string, size_t index);
/** 1 when a place in a string is the first byte of a character of several bytes, else 0. */
OVX_API int ucv_ismbs1st(uc_ch_t *handle, const char *string, const char *position);
/** How many characters were replaced since the handle was made or last asked; starts anew at 0. */
OVX_API int ucv_check_subs(uc_ch_t *handle);

/*
 * Whole strings. The result is in the buffer of `*slot` when that holds one, which must be large
 * enough, otherwise in a new one, which is kept in the slot when there is one. A new buffer is
 * yours to free with ucv_free(). A NULL string is taken as "". NULL when memory runs out.
 */

/** Code set to UTF-8; needs 3 bytes for each of the string and one. */
OVX_API char *ucv_s2u(uc_ch_t *handle, const char *string, char **slot);
/** UTF-8 to code set; needs 2 bytes for each of the string and one. */
OVX_API char *ucv_u2s(uc_ch_t *handle, const char *string, char **slot);
/** One code set to another; needs 4 bytes for each of the string and one. */
OVX_API char *ucv_strconv(uc_ch_t *from, uc_ch_t *to, const char *string, char **slot);

/* Times. The second argument is not used. */

/**
 * strftime with format and result in the handle's code set; the bytes written without the
 * terminator, 0 when nothing was. What does not fit is cut at a character.
 */
OVX_API size_t ucv_strftime(uc_ch_t *handle, void *reserved, char *buffer, size_t size,
                            const char *format, const struct tm *time);
/**
 * strptime with both strings in the handle's code set; the place in `string` behind what was read,
 * NULL when it does not match.
 */
OVX_API char *ucv_strptime(uc_ch_t *handle, void *reserved, const char *string, const char *format,
                           struct tm *time);

OVX_END_DECLS

#endif
