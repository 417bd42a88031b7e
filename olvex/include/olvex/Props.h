/*
 * The typed view of string properties, and the tokenizer for lists of names. `found` (optional)
 * says for the string form whether the name is there, for the typed forms whether its value
 * converts. No function here takes a lock: whoever owns the map serialises its use.
 */
#ifndef OLVEX_PROPS_H
#define OLVEX_PROPS_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The value of `name`, yours; NULL when there is none. */
OVX_API char *OvxGetMapProp(const StringToStringMap *map, const char *name, bool *found);
/** The value of `name` as a boolean: "true" or "false" in any case. */
OVX_API bool OvxGetMapPropBool(const StringToStringMap *map, const char *name, bool *found);
/** The first byte of the value of `name`. */
OVX_API char OvxGetMapPropChar(const StringToStringMap *map, const char *name, bool *found);
/** The value of `name` as a 32-bit integer; beyond the range, the nearest limit. */
OVX_API int32_t OvxGetMapPropInt(const StringToStringMap *map, const char *name, bool *found);
/** The value of `name` as a 64-bit integer; beyond the range, the nearest limit. */
OVX_API int64_t OvxGetMapPropLong(const StringToStringMap *map, const char *name, bool *found);
/** The value of `name` as a float. */
OVX_API float OvxGetMapPropFloat(const StringToStringMap *map, const char *name, bool *found);
/** The value of `name` as a double. */
OVX_API double OvxGetMapPropDouble(const StringToStringMap *map, const char *name, bool *found);

/** Sets `name` to a string; both are copied. */
OVX_API void OvxSetMapProp(StringToStringMap *map, const char *name, const char *value);
/** Sets `name` to "true" or "false". */
OVX_API void OvxSetMapPropBool(StringToStringMap *map, const char *name, bool value);
/** Sets `name` to a string of one byte. */
OVX_API void OvxSetMapPropChar(StringToStringMap *map, const char *name, char value);
/** Sets `name` to the decimal text of a 32-bit integer. */
OVX_API void OvxSetMapPropInt(StringToStringMap *map, const char *name, int32_t value);
/** Sets `name` to the decimal text of a 64-bit integer. */
OVX_API void OvxSetMapPropLong(StringToStringMap *map, const char *name, int64_t value);
/** Sets `name` to a float in fixed notation with six decimal places. */
OVX_API void OvxSetMapPropFloat(StringToStringMap *map, const char *name, float value);
/** Sets `name` to a double in fixed notation with six decimal places. */
OVX_API void OvxSetMapPropDouble(StringToStringMap *map, const char *name, double value);

/** A place in a string of tokens; a value that the caller holds. */
typedef struct OvxStrTokIter {
    const char *position;   /**< borrowed from the string */
    const char *delimiters; /**< borrowed; none or empty: each byte is a token */
} OvxStrTokIter;

/** An iterator at the start of `string`; string and delimiters are borrowed. */
OVX_API OvxStrTokIter OvxStrTokIterator(const char *string, const char *delimiters);
/** Says whether a token is left. */
OVX_API bool OvxStrTokIterHasNext(OvxStrTokIter iterator);
/** The token at the iterator's place, yours; NULL when there is none or memory runs out. */
OVX_API char *OvxStrTokIterGet(OvxStrTokIter iterator);
/** The iterator behind the current token; one at the end stays there. */
OVX_API OvxStrTokIter OvxStrTokIterNext(OvxStrTokIter iterator);

OVX_END_DECLS

#endif
