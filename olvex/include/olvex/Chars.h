/*
 * Characters, a tokenizer that understands double quotes, and growable arrays. None of these
 * functions takes a lock or depends on the locale.
 */
#ifndef OLVEX_CHARS_H
#define OLVEX_CHARS_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** 1 for "0" to "9", else 0. */
OVX_API int CxIsASCIIDigit(int ch);
/** 1 for "0" to "9", else 0. */
OVX_API int CxIsLocalDigit(int ch);
/** 1 for "A" to "Z" and "a" to "z", else 0. */
OVX_API int CxIsASCIIAlpha(int ch);
/** Makes text ASCII in place, which it is already here; returns the length, 0 if not positive. */
OVX_API int CxETOA(char *buffer, int length);

/** The state of a tokenizer; a value that the caller holds. */
typedef struct CxStringTokIter {
    const char *str;      /**< the string being split, borrowed */
    int32_t length;       /**< its length in bytes */
    const char *delims;   /**< the delimiter characters, borrowed */
    unsigned char quotes; /**< 1 when double quotes group text */
    int32_t tokStart;     /**< first byte of the current token; -9 when there is none */
    int32_t tokEnd;       /**< behind its last byte; -9 when there is none */
} CxStringTokIter;

/** A tokenizer on the first token of `string`; string and delimiters are borrowed. */
OVX_API CxStringTokIter CxStringTokIterator(const char *string, const char *delimiters, int quotes);
/** 1 while there is a current token, else 0. */
OVX_API int CxStringTokIterHasNext(const CxStringTokIter *iterator);
/** The current token, yours, without double quotes when they group; NULL when there is none. */
OVX_API char *CxStringTokIterGet(const CxStringTokIter *iterator);
/** Moves to the next token. */
OVX_API void CxStringTokIterNext(CxStringTokIter *iterator);

/**
 * Makes room for `needed` elements of a growable array: a block of BaxMemoryMalloc, its capacity
 * and its count. 1 on success; 0 leaves the array as it was.
 */
OVX_API int CxListEnsureCapacity(void **block, int32_t *capacity, int32_t *count, int32_t needed,
                                 size_t elementSize);
/** Frees a growable array and zeroes all three. */
OVX_API void CxListDiscard(void **block, int32_t *capacity, int32_t *count);

OVX_END_DECLS

#endif
