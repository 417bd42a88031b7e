/*
 * Memory and strings that tolerate null pointers. Whatever crosses the interface is allocated and
 * freed with these. None of them takes a lock.
 */
#ifndef OLVEX_MEMORY_H
#define OLVEX_MEMORY_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** A block of `size` bytes, yours; NULL for size 0 or when memory runs out. */
OVX_API void *BaxMemoryMalloc(size_t size);
/** A zeroed block of `count` times `size` bytes, yours; NULL if either is 0 or memory runs out. */
OVX_API void *BaxMemoryCalloc(size_t count, size_t size);
/** Resizes a block; NULL for size 0 (the block stays) or when memory runs out (likewise). */
OVX_API void *BaxMemoryRealloc(void *block, size_t size);
/** Frees a block. */
OVX_API void BaxMemoryFree(void *block);

/** strcmp; 1 when `a` is NULL, -1 when only `b` is. */
OVX_API int BaxStringCmp(const char *a, const char *b);
/** strncmp over at most `count` bytes; 1 when `a` is NULL, -1 when only `b` is. */
OVX_API int BaxStringNCmp(const char *a, const char *b, size_t count);
/** strcasecmp as in the C locale; 1 when `a` is NULL, -1 when only `b` is. */
OVX_API int BaxStringICmp(const char *a, const char *b);
/** strncasecmp as in the C locale; 1 when `a` is NULL, -1 when only `b` is. */
OVX_API int BaxStringNICmp(const char *a, const char *b, size_t count);

/** strcat; returns `target`, unchanged when `source` is NULL. */
OVX_API char *BaxStringCat(char *target, const char *source);
/** Appends at most `count` bytes of `source`; returns `target`, unchanged for a NULL source. */
OVX_API char *BaxStringNCat(char *target, const char *source, size_t count);
/** strcpy; returns `target`, empty when `source` is NULL. */
OVX_API char *BaxStringCpy(char *target, const char *source);
/** strncpy; returns `target`, empty when `source` is NULL. */
OVX_API char *BaxStringNCpy(char *target, const char *source, size_t count);
/** A copy of the string, yours. */
OVX_API char *BaxStringDup(const char *string);
/** The string's length in bytes; 0 for NULL. */
OVX_API size_t BaxStringLen(const char *string);
/** The first byte `ch` of the string, borrowed from it, or NULL. */
OVX_API char *BaxStringChr(const char *string, int ch);
/** The last byte `ch` of the string, borrowed from it, or NULL. */
OVX_API char *BaxStringRChr(const char *string, int ch);
/** The first occurrence of `part` in the string, borrowed from it, or NULL. */
OVX_API char *BaxStringStr(const char *string, const char *part);
/** The first byte of the string that is in `set`, borrowed from it, or NULL. */
OVX_API char *BaxStringStrpbrk(const char *string, const char *set);
/** How many bytes at the start are not in `set`; -1 for no string, its length for no set. */
OVX_API int BaxStringStrcspn(const char *string, const char *set);
/** How many bytes at the start are in `set`; -1 for no string, 0 for no set. */
OVX_API int BaxStringStrspn(const char *string, const char *set);
/** sprintf into `target`, which must be large enough; the number of bytes written, -1 on error. */
OVX_API int BaxStringSprintf(char *target, const char *format, ...) OVX_PRINTF_LIKE(2, 3);

OVX_END_DECLS

#endif
