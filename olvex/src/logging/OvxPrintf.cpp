// Printing with typed parameters, on the formatted-output engine.
#include "logging/OvxPrintf.h"

#include "logging/OvxFormatPlan.h"
#include "util/print/CxPrintUtil.h"

using namespace olvex;

namespace {

constexpr struct {
    int type;
    const char *format;
} kDefaultFormats[] = {
    {OVX_PARM_BOOL, "%c"},   {OVX_PARM_INT, "%d"},  {OVX_PARM_LONG, "%ld"},  {OVX_PARM_FLOAT, "%f"},
    {OVX_PARM_DOUBLE, "%f"}, {OVX_PARM_CHAR, "%c"}, {OVX_PARM_STRING, "%s"},
};

const char *defaultFormatOf(int type)
{
    for (const auto &entry : kDefaultFormats)
        if (entry.type == type) return entry.format;
    return nullptr;
}

void printOne(CxStringBuff *buffer, const char *format, const OvxParm &parm)
{
    switch (parm.type) {
    case OVX_PARM_BOOL: CxStringBuffPrintf(nullptr, buffer, format, parm.value.boolean); return;
    case OVX_PARM_INT: CxStringBuffPrintf(nullptr, buffer, format, parm.value.integer); return;
    case OVX_PARM_LONG: CxStringBuffPrintf(nullptr, buffer, format, parm.value.longInteger); return;
    case OVX_PARM_FLOAT:
        CxStringBuffPrintf(nullptr, buffer, format, static_cast<double>(parm.value.floating));
        return;
    case OVX_PARM_DOUBLE:
        CxStringBuffPrintf(nullptr, buffer, format, parm.value.doubleFloating);
        return;
    case OVX_PARM_CHAR: CxStringBuffPrintf(nullptr, buffer, format, parm.value.character); return;
    default: CxStringBuffPrintf(nullptr, buffer, format, parm.value.string); return;
    }
}

// A zero byte would end the text that it stands in.
void appendByte(CxStringBuff *buffer, int byte)
{
    if (byte) CxStringBuffAppendChar(buffer, static_cast<char>(byte));
}

void appendFloating(CxStringBuff *buffer, double value)
{
    CxPrintfFmt item = {};
    item.conversion = 'f';
    CxPrintfArg slot = {};
    setDouble(slot, static_cast<long double>(value));
    printFloating({item, slot, 0, -1}, buffer);
}

} // namespace

namespace olvex {

void appendParm(CxStringBuff *buffer, const OvxParm &parm)
{
    switch (parm.type) {
    case OVX_PARM_BOOL: return appendByte(buffer, parm.value.boolean);
    case OVX_PARM_INT: CxStringBuffAppendInt32(buffer, parm.value.integer); return;
    case OVX_PARM_LONG: CxStringBuffAppendInt64(buffer, parm.value.longInteger); return;
    case OVX_PARM_FLOAT: return appendFloating(buffer, static_cast<double>(parm.value.floating));
    case OVX_PARM_DOUBLE: return appendFloating(buffer, parm.value.doubleFloating);
    case OVX_PARM_CHAR: return appendByte(buffer, parm.value.character);
    case OVX_PARM_STRING: CxStringBuffAppendStr(buffer, parm.value.string); return;
    default: return;
    }
}

} // namespace olvex

char *OvxAprintf(const char *format, const ParmList *parms)
{
    FormatPlan plan;
    CxStringBuff buffer = {};
    plan.parse(format);
    plan.print(&buffer, Parms(parms));
    plan.discard();
    if (buffer.length == 0) CxStringBuffDiscard(&buffer);
    return CxStringBuffTakeStr(&buffer);
}

char *ovxParmToUTF8Str(const char *format, const OvxParm *parm)
{
    const char *known = parm ? defaultFormatOf(parm->type) : nullptr;
    if (!known) return nullptr;
    CxStringBuff buffer = {};
    printOne(&buffer, format ? format : known, *parm);
    return CxStringBuffTakeStr(&buffer);
}

char *ovxParmToLocalStr(const char *format, const OvxParm *parm)
{
    return ovxParmToUTF8Str(format, parm);
}

int ovxPrintfParm()
{
    return 0;
}
