// Printing with typed parameters: a format over a list of them, or one parameter by itself.
#pragma once

#include <olvex/Parm.h>
#include <olvex/Printf.h>
#include <olvex/StringBuff.h>

namespace olvex {

// The parsed form of a format; its memory is kept from one use to the next.
struct PrintScratch {
    CxPrintfFmts formats = {};
    CxPrintfArgs arguments = {};

    void discard();
};

// Appends `format` printed over `parms` to `buffer`. Appends nothing when the format cannot be
// parsed or uses more parameters than there are; an item that cannot be printed ends the text.
void printParms(CxStringBuff *buffer, const char *format, const ParmList *parms,
                PrintScratch &scratch);

// Appends what ovxParmToUTF8Str gives with the default format of the parameter's type.
void appendParm(CxStringBuff *buffer, const OvxParm &parm);

} // namespace olvex

// One parameter as text, with `format` or the default one of its type; yours, or null.
char *ovxParmToUTF8Str(const char *format, const OvxParm *parm);
// The same; no code set is converted.
char *ovxParmToLocalStr(const char *format, const OvxParm *parm);
int ovxPrintfParm();
