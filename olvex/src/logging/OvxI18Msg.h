// The message record, its parameters, and the printing of its bound text into a
// buffer. Binding runs with the API mutex held.
#pragma once

#include <olvex/Message.h>
#include <olvex/StringBuff.h>
#include <olvex/Ucv.h>
#include <olvex/class.h>

#include <span>

#include "logging/OvxFormatPlan.h"
#include "util/Memory.h"

struct OvxI18Msg {
    const char *catalog;
    int set;
    int key;
    const char *text;
    std::span<const OvxParm> row; // parameters that have not been made a list
    ParmList *parameters;
    const char *locale; // borrowed
    olvex::Memory memory;
};

namespace olvex {

// Makes a message with copies of catalog and text; null when memory runs out.
OvxI18Msg *makeMessage(const char *catalog, int set, int key, const char *text);

// Gives a message its parameters, in a row that lives as long as it does. They become a list once
// somebody asks for that.
inline void setParameterRow(OvxI18Msg *msg, std::span<const OvxParm> row)
{
    if (msg) msg->row = row;
}

// The parameters, wherever they are.
inline Parms parmsOf(const OvxI18Msg *msg)
{
    return msg->parameters ? Parms(msg->parameters) : Parms(msg->row);
}

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
