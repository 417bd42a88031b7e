// Conversions of property values. `ok` (optional) says whether the text converts; one that does not
// gives the zero value. Numbers may be followed by anything.
#pragma once

#include <olvex/Props.h>

bool ovxPropStrToBool(const char *text, bool *ok);
char ovxPropStrToChar(const char *text, bool *ok);
int32_t ovxPropStrToInt32(const char *text, bool *ok);
int64_t ovxPropStrToInt64(const char *text, bool *ok);
float ovxPropStrToFloat32(const char *text, bool *ok);
double ovxPropStrToFloat64(const char *text, bool *ok);
