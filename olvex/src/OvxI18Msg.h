// The message record, its making in a given memory, and the printing of its bound text into a
// buffer. Binding runs with the API mutex held.
#pragma once

#include <olvex/Message.h>
#include <olvex/StringBuff.h>
#include <olvex/Ucv.h>
#include <olvex/class.h>

#include "util/Memory.h"

struct OvxI18Msg {
    const char *catalog;
    int set;
    int key;
    const char *text;
    ParmList *parameters;
    const char *locale; // borrowed
    olvex::Memory memory;
};

namespace olvex {

// Makes a message in `memory`. On the heap it copies catalog and text; in an arena it borrows them,
// since they outlive the call that the arena serves. Null when memory runs out.
OvxI18Msg *makeMessage(Memory memory, const char *catalog, int set, int key, const char *text);

// Appends the bound text to `buffer`; false when there is none, or memory runs out.
bool bindMessage(const OvxI18Msg *msg, CxStringBuff *buffer);

// The canonical form of a locale name, kept for the life of the process, since events borrow it;
// null for null.
const char *keepLocaleName(const char *name);

} // namespace olvex

// The toolkit's use of the internationalisation services, from its opening to its close.
void ovxI18InitUcv();
int ovxI18UninitUcv();

// The handles for EBCDIC code pages, which nobody makes, and the conversions through them.
uc_ch_t *ovxI18GetCs1047();
uc_ch_t *ovxI18GetCs37();
char *ovxI18Str1047ToUTF8(const char *text);
char *ovxI18Str37ToUTF8(const char *text);
char *ovxI18StrUTF8To1047(const char *text);
char *ovxI18StrUTF8To37(const char *text);
