/*
 * A growable, always NUL-terminated byte string. The record is the caller's, usually on the stack;
 * one of zeros is a valid empty buffer. Functions return 1 for success and 0 for a null argument or
 * when memory runs out, and then leave the buffer as it was. None of them takes a lock; a buffer
 * belongs to one thread at a time.
 */
#ifndef OLVEX_STRINGBUFF_H
#define OLVEX_STRINGBUFF_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The buffer; begins as zeros. */
typedef struct CxStringBuff {
    uint32_t length;   /**< bytes in use, the terminator not counted */
    uint32_t capacity; /**< bytes allocated for `str` */
    char *str;         /**< block of BaxMemoryMalloc, or NULL */
} CxStringBuff;

/** Appends one byte; a NUL is appended and counted like any other. */
OVX_API int CxStringBuffAppendChar(CxStringBuff *buffer, char byte);
/** Appends a code point as UTF-8, in up to six bytes; surrogates are not refused. */
OVX_API int CxStringBuffAppendUTF32Char(CxStringBuff *buffer, int32_t codePoint);
/** Appends a 16-bit unit, taken as a code point, as UTF-8. */
OVX_API int CxStringBuffAppendUCS2Char(CxStringBuff *buffer, char16_t unit);
/** Appends the decimal digits of a signed 32-bit number. */
OVX_API int CxStringBuffAppendInt32(CxStringBuff *buffer, int32_t value);
/** Appends the decimal digits of a signed 64-bit number. */
OVX_API int CxStringBuffAppendInt64(CxStringBuff *buffer, int64_t value);
/** Appends the decimal digits of an unsigned 64-bit number. */
OVX_API int CxStringBuffAppendUInt64(CxStringBuff *buffer, uint64_t value);
/** Appends the decimal digits of a signed 64-bit number in EBCDIC. */
OVX_API int CxStringBuffAppendEBCDICInt64(CxStringBuff *buffer, int64_t value);
/** Appends a string. */
OVX_API int CxStringBuffAppendStr(CxStringBuff *buffer, const char *string);
/** Appends at most `count` bytes of a string, all of it for -1. */
OVX_API int CxStringBuffAppendStrN(CxStringBuff *buffer, const char *string, int32_t count);
/**
 * Appends a NUL-terminated string of 16-bit units in a code set (NULL for the default one), whole
 * characters only and at most `limit` bytes, -1 for no limit. On a unit that cannot be converted it
 * returns 0 and keeps what it appended.
 */
OVX_API int CxStringBuffAppendWStrN(CxStringBuff *buffer, uc_ch_t *codeSet, const char16_t *string,
                                    int32_t limit);
/** Inserts a string so that it begins at `position`, which must lie within the text. */
OVX_API int CxStringBuffInsertStr(CxStringBuff *buffer, const char *string, int32_t position);
/** Hands the text over: it is yours, the buffer is empty; NULL if it never held any. */
OVX_API char *CxStringBuffTakeStr(CxStringBuff *buffer);
/** The text, borrowed until the buffer changes. */
OVX_API char *CxStringBuffPeekStr(const CxStringBuff *buffer);
/** A copy of the text, yours. */
OVX_API char *CxStringBuffCopyStr(const CxStringBuff *buffer);
/** Converts the text in place from UTF-8 to a code set (NULL for the default one). */
OVX_API int CxStringBuffChangeFromUTF8(uc_ch_t *codeSet, CxStringBuff *buffer);
/** Converts the text in place from a code set (NULL for the default one) to UTF-8. */
OVX_API int CxStringBuffChangeToUTF8(uc_ch_t *codeSet, CxStringBuff *buffer);
/** Empties the text and keeps the memory. */
OVX_API void CxStringBuffRestart(CxStringBuff *buffer);
/** Frees the memory; the buffer is empty and may be used again. */
OVX_API void CxStringBuffDiscard(CxStringBuff *buffer);
/** Shrinks the memory to the text; 0 when it fits already. */
OVX_API int CxStringBuffPack(CxStringBuff *buffer);

OVX_END_DECLS

#endif
