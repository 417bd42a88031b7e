// Printing of one typed parameter by itself.
#pragma once

#include <olvex/Parm.h>
#include <olvex/StringBuff.h>

namespace olvex {

// Appends what ovxParmToUTF8Str gives with the default format of the parameter's type.
void appendParm(CxStringBuff *buffer, const OvxParm &parm);

} // namespace olvex

// One parameter as text, with `format` or the default one of its type; yours, or null.
char *ovxParmToUTF8Str(const char *format, const OvxParm *parm);
// The same; no code set is converted.
char *ovxParmToLocalStr(const char *format, const OvxParm *parm);
int ovxPrintfParm();
