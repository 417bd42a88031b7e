/* Message identifiers ("OVXBC0020E"): recognising them, and the patterns that select them. */
#ifndef OLVEX_MSGID_H
#define OLVEX_MSGID_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** An identifier found at the start of a text. */
typedef struct CxZMSIDInfo {
    const char *formatName; /**< the format's name, "" when there is no identifier; static */
    int32_t formatNumber;   /**< the format's number, 0 when there is no identifier */
    int32_t length;         /**< the identifier's length in bytes */
    char id[11];            /**< the identifier */
    char severity;          /**< its last letter: 'I', 'W' or 'E' */
} CxZMSIDInfo;

/**
 * Looks for an identifier at the start of `text`: 3 to 6 letters, 2 to 6 digits, and a severity
 * letter, in one of eleven shapes. Takes no lock.
 */
OVX_API CxZMSIDInfo CxParseZMSID(const char *text);

/** Says whether `text` matches a pattern in which "*" stands for anything. Takes no lock. */
OVX_API bool OvxPatternMatch(const char *pattern, const char *text);

/** The words of a text, separated by blanks, tabs and line ends, in a new list; yours. No lock. */
OVX_API StringList *OvxMsgIdFilterGetStringList(const char *text);

/** Says whether any of the patterns matches the identifier. Takes no lock. */
OVX_API bool OvxMsgIdFilterMatchMsgId(const StringList *patterns, const char *id);

OVX_END_DECLS

#endif
