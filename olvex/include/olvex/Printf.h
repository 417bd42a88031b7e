/*
 * Formatted output into a string buffer: printf with positional arguments ("%1$s") everywhere,
 * 16-bit strings converted through a code set, and output of any length. A format is parsed into
 * items and a table of the arguments it needs; the table is filled; then the items are printed. No
 * function here takes a lock.
 */
#ifndef OLVEX_PRINTF_H
#define OLVEX_PRINTF_H

#include <olvex/StringBuff.h>
#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * An argument's value: a 64-bit integer or a pointer in the first bytes, as the machine keeps them,
 * or a floating-point number, for "%f" and "%Lf" alike, as an extended value in the first ten: a
 * significand of 64 bits of which the highest stands before the point, then 15 bits of exponent,
 * biased by 16383, below the sign; lowest byte first on every processor. On x86 that is a `long
 * double`.
 */
typedef struct CxPrintfValue {
    unsigned char bytes[12]; /**< not aligned */
} CxPrintfValue;

/** One entry of the argument table. */
typedef struct CxPrintfArg {
    unsigned char type;  /**< type code, 0 while no directive names this argument */
    CxPrintfValue value; /**< the argument, once it is gathered */
} CxPrintfArg;

/** The argument table; begins as zeros. */
typedef struct CxPrintfArgs {
    int32_t count;      /**< highest argument named, plus one */
    int32_t capacity;   /**< entries allocated */
    CxPrintfArg *items; /**< block of BaxMemoryMalloc */
} CxPrintfArgs;

/** One item of a parsed format. */
typedef struct CxPrintfFmt {
    unsigned char kind; /**< 1 literal text, 0 conversion */
    union {
        int32_t argIndex;      /**< conversion: which argument, from 0 */
        const char *textStart; /**< literal: first byte, borrowed from the format */
    } from;                    /**< where the item comes from */
    union {
        unsigned char argType; /**< conversion: type code */
        const char *textEnd;   /**< literal: last byte, included */
    } to;                      /**< where it ends, or what it is */
    uint32_t flags;            /**< 0x01 "-", 0x02 "0", 0x04 "+", 0x08 " ", 0x10 "#", 0x20 "'" */
    int32_t widthArg;          /**< argument that supplies the width, -1 for none */
    int32_t width;             /**< -1 for none */
    int32_t precisionArg;      /**< argument that supplies the precision, -1 for none */
    int32_t precision;         /**< -1 for none */
    int32_t lengthMod;         /**< length modifier code, 0 for none */
    char conversion;           /**< conversion character; "i" is kept as "d" */
} CxPrintfFmt;

/** A parsed format; begins as zeros. */
typedef struct CxPrintfFmts {
    int32_t nextArg;    /**< next argument for directives without a position */
    int32_t positional; /**< 1 once a position was named */
    int32_t count;      /**< items in use */
    int32_t capacity;   /**< items allocated */
    CxPrintfFmt *items; /**< block of BaxMemoryMalloc */
} CxPrintfFmts;

/**
 * Appends formatted text and returns the number of bytes appended. A format that cannot be parsed
 * appends nothing; an item that cannot be printed ends the text. So does one whose width or
 * precision would, with those before it, add more than 16 MiB. The code set (NULL for the default
 * one) is that of wide arguments. Wide conversions take char16_t, so the compiler cannot check
 * them.
 */
OVX_API int CxStringBuffPrintf(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format, ...);

/** CxStringBuffPrintf with a va_list. */
OVX_API int CxStringBuffPrintfV(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format,
                                va_list arguments);

/** CxStringBuffPrintf with an array of values, one for each argument that the format names. */
OVX_API int CxStringBuffPrintfA(uc_ch_t *codeSet, CxStringBuff *buffer, const char *format,
                                const CxPrintfValue *values);

/**
 * Parses a format, which must outlive the items, into `formats` and notes the argument types in
 * `arguments`; 0, or 1 on error. Either way `items` of both are yours to free with BaxMemoryFree().
 */
OVX_API int CxPrintfProcessFmts(const char *format, CxPrintfFmts *formats, CxPrintfArgs *arguments);

OVX_END_DECLS

#endif
