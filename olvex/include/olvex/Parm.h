/* Message parameters: one typed value each, and the printing of a format over a list of them. */
#ifndef OLVEX_PARM_H
#define OLVEX_PARM_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** One typed value that fills a positional placeholder of a message text. */
typedef struct OvxParm {
    int32_t type; /**< OVX_PARM_BOOL to OVX_PARM_STRING; says which member of `value` counts */
    union {
        bool boolean;          /**< OVX_PARM_BOOL */
        signed char character; /**< OVX_PARM_CHAR */
        int32_t integer;       /**< OVX_PARM_INT */
        long longInteger;      /**< OVX_PARM_LONG */
        float floating;        /**< OVX_PARM_FLOAT */
        double doubleFloating; /**< OVX_PARM_DOUBLE */
        char *string;          /**< OVX_PARM_STRING; owned by records that OvxCopyParm made */
    } value;                   /**< the value, in the member of its type */
} OvxParm;

/**
 * Copies a parameter, its string included; a record of an unknown type is copied with its type
 * only. The copy is yours: free it with OvxFreeParm. Takes no lock.
 */
OVX_API OvxParm *OvxCopyParm(const OvxParm *parm);

/** Frees a copy made by OvxCopyParm, and its string. Takes no lock. */
OVX_API void OvxFreeParm(OvxParm *parm);

/**
 * Says whether two parameters have the same known type and the same value; two null parameters are
 * equal. Takes no lock.
 */
OVX_API bool OvxCmpParms(const OvxParm *a, const OvxParm *b);

/**
 * Prints `format` with the parameters of `parms` as its positional arguments ("%1$s" is the first).
 * The text is yours; NULL when the format cannot be parsed, uses more parameters than there are, or
 * printed nothing. Widths and precisions are bounded as for CxStringBuffPrintf. Takes no lock.
 */
OVX_API char *OvxAprintf(const char *format, const ParmList *parms);

OVX_END_DECLS

#endif
