/*
 * Internationalised messages. A message names its translation (catalog, set, key), carries a
 * default text and typed parameters, and becomes text only when it is bound.
 */
#ifndef OLVEX_MESSAGE_H
#define OLVEX_MESSAGE_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * The toolkit's own message table: entry 0 is the catalog's name, entry k the default text of
 * message k of its set 1.
 */
extern OVX_API const char *const ovxmsg[167];

/**
 * Makes a message; catalog and text are copied, either may be NULL. The message is yours: free it
 * with OvxFreeI18Msg. NULL when memory runs out.
 */
OVX_API OvxI18Msg *OvxAllocI18Msg(const char *catalog, int set, int key, const char *text);

/** Copies a message with its parameters; the copy is yours, its locale stays borrowed. */
OVX_API OvxI18Msg *OvxCopyI18Msg(const OvxI18Msg *msg);

/** Frees a message with its texts and parameters. */
OVX_API void OvxFreeI18Msg(OvxI18Msg *msg);

/** Appends a boolean parameter to the message. */
OVX_API void OvxAddI18MsgParmBool(OvxI18Msg *msg, bool value);

/** Appends a character parameter to the message. */
OVX_API void OvxAddI18MsgParmChar(OvxI18Msg *msg, char value);

/** Appends an int parameter to the message. */
OVX_API void OvxAddI18MsgParmInt(OvxI18Msg *msg, int value);

/** Appends a long parameter to the message. */
OVX_API void OvxAddI18MsgParmLong(OvxI18Msg *msg, long value);

/** Appends a float parameter to the message. */
OVX_API void OvxAddI18MsgParmFloat(OvxI18Msg *msg, float value);

/** Appends a double parameter to the message. */
OVX_API void OvxAddI18MsgParmDouble(OvxI18Msg *msg, double value);

/** Appends a string parameter to the message; the string is copied. */
OVX_API void OvxAddI18MsgParmString(OvxI18Msg *msg, const char *value);

/**
 * Binds a message: its translation, or else its default text, printed over its parameters. When
 * that prints nothing the result is the default text as it stands. The UTF-8 text is yours; NULL
 * when there is no text at all.
 */
OVX_API char *OvxBindI18Msg(OvxI18Msg *msg);

/** Sets the catalog's name (copied; NULL for none). Takes no lock. */
OVX_API void OvxSetI18MsgCat(OvxI18Msg *msg, const char *catalog);

/** Sets the default text (copied; NULL for none). Takes no lock. */
OVX_API void OvxSetI18MsgTxt(OvxI18Msg *msg, const char *text);

/** Sets the set number. Takes no lock. */
OVX_API void OvxSetI18MsgSet(OvxI18Msg *msg, int set);

/** Sets the key, the message's number within its set. Takes no lock. */
OVX_API void OvxSetI18MsgKey(OvxI18Msg *msg, int key);

OVX_END_DECLS

#endif
