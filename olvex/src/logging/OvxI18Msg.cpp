// Internationalised messages: the record, its parameters, its binding, and the code-set utilities
// of the message layer.
#include "logging/OvxI18Msg.h"

#include <utility>

#include "logging/OvxParmList.h"
#include "messages/Messages.h"
#include "ucv/WholeText.h"
#include "ucv/catalogs/CatalogSearch.h"
#include "util/HotPath.h"
#include "util/Locked.h"
#include "util/collections/OvxStringGroup.h"

using namespace olvex;

namespace {

// The message layer's code-set handles, set while the toolkit is open. Nobody makes the EBCDIC ones
// or the spare one; they are freed like the first all the same.
struct CodeSets {
    uc_ch_t *utf8;
    uc_ch_t *cs1047;
    uc_ch_t *cs37;
    uc_ch_t *spare;
} codeSets = {};

// The messages' texts, parsed.
FormatCache formats;

void replaceText(const Memory &memory, const char *&text, const char *value)
{
    const char *copy = memory.duplicate(value);
    memory.release(const_cast<char *>(std::exchange(text, copy)));
}

bool addParameter(OvxI18Msg *msg, const OvxParm &parm)
{
    return ovxIntlParmListAppend(ovxGetI18MsgParmList(msg), &parm);
}

bool copyParameters(OvxI18Msg *copy, Parms parms)
{
    for (std::size_t i = 0; i < parms.size(); ++i)
        if (!addParameter(copy, parms.at(i))) return false;
    return true;
}

// A bound text ends at a zero byte, which "%c" prints for false: what follows is no part of it, and
// no record holds such a byte.
bool endAtZeroByte(CxStringBuff *buffer, std::uint32_t start)
{
    buffer->length = start + static_cast<std::uint32_t>(std::strlen(buffer->str + start));
    return true;
}

// Appends `format` printed over the parameters; what cannot be printed appends the default text.
OVX_HOT bool printOrDefault(const OvxI18Msg *msg, const char *format, CxStringBuff *buffer)
{
    const auto before = buffer->length;
    if (format) {
        FormatPlan &plan = formats.planOf(format);
        plan.print(buffer, parmsOf(msg));
        if (buffer->length > before) return !plan.mayPrintZero() || endAtZeroByte(buffer, before);
    }
    return msg->text && CxStringBuffAppendStr(buffer, msg->text) == 1;
}

bool bindFromCatalog(const OvxI18Msg *msg, CxStringBuff *buffer)
{
    const char *format = msg->text;
    if (ucv_cat_t *catalog = ucv::catalogForBinding(msg->catalog, msg->locale))
        format = ucv_catgets(catalog, msg->set, msg->key, format, codeSets.utf8);
    return printOrDefault(msg, format, buffer);
}

// Converts a whole text in one direction, through a string buffer.
char *convertText(const char *text, uc_ch_t *codeSet, int (*change)(uc_ch_t *, CxStringBuff *))
{
    CxStringBuff buffer = {};
    CxStringBuffAppendStr(&buffer, text);
    change(codeSet, &buffer);
    return CxStringBuffTakeStr(&buffer);
}

// Never freed: see keepLocaleName.
StringGroup *localeNames = nullptr;

void freeCodeSet(uc_ch_t *&codeSet)
{
    if (codeSet) ucv_cs_free(std::exchange(codeSet, nullptr));
}

} // namespace

namespace olvex {

OvxI18Msg *makeMessage(const char *catalog, int set, int key, const char *text)
{
    const Memory heap;
    char *keptCatalog = heap.duplicate(catalog);
    char *keptText = heap.duplicate(text);
    auto *msg = heap.make<OvxI18Msg>();
    if (msg) *msg = {keptCatalog, set, key, keptText, {}, nullptr, nullptr, heap};
    if (msg && (keptCatalog || !catalog) && (keptText || !text)) return msg;
    heap.release(msg);
    heap.release(keptCatalog);
    heap.release(keptText);
    return nullptr;
}

OVX_HOT bool bindMessage(const OvxI18Msg *msg, CxStringBuff *buffer)
{
    if (!msg) return false;
    return msg->catalog ? bindFromCatalog(msg, buffer) : printOrDefault(msg, msg->text, buffer);
}

const char *keepLocaleName(const char *name)
{
    char *canonical = name ? ucv_loc_new(name) : nullptr;
    if (!canonical) return nullptr;
    if (!localeNames) localeNames = ovxIntlAllocStringGroup();
    ovxIntlStringGroupAdd(localeNames, canonical);
    const StringGroupNode *node = OvxStringGroupGetLink(localeNames, canonical);
    ucv_loc_free(canonical);
    return node ? node->element() : nullptr;
}

} // namespace olvex

OvxI18Msg *ovxIntlAllocI18Msg(const char *catalog, int set, int key, const char *text)
{
    return makeMessage(catalog, set, key, text);
}

OvxI18Msg *ovxIntlCopyI18Msg(const OvxI18Msg *msg)
{
    if (!msg) return nullptr;
    OvxI18Msg *copy = ovxIntlAllocI18Msg(msg->catalog, msg->set, msg->key, msg->text);
    if (!copy) return nullptr;
    copy->locale = msg->locale;
    if (copyParameters(copy, parmsOf(msg))) return copy;
    ovxIntlFreeI18Msg(copy);
    return nullptr;
}

void ovxIntlFreeI18Msg(OvxI18Msg *msg)
{
    if (!msg) return;
    const Memory memory = msg->memory;
    memory.release(const_cast<char *>(msg->catalog));
    memory.release(const_cast<char *>(msg->text));
    ovxIntlFreeParmList(msg->parameters);
    memory.destroy(msg);
}

ParmList *ovxGetI18MsgParmList(OvxI18Msg *msg)
{
    if (!msg || msg->parameters) return msg ? msg->parameters : nullptr;
    msg->parameters = msg->memory.make<ParmList>(msg->memory);
    if (!msg->parameters) return nullptr;
    for (const OvxParm &parm : std::exchange(msg->row, {}))
        msg->parameters->appendBorrowed(parm);
    return msg->parameters;
}

bool ovxIntlAddI18MsgParmBool(OvxI18Msg *msg, bool value)
{
    return addParameter(msg, {OVX_PARM_BOOL, {.boolean = value}});
}

bool ovxIntlAddI18MsgParmChar(OvxI18Msg *msg, char value)
{
    return addParameter(msg, {OVX_PARM_CHAR, {.character = static_cast<signed char>(value)}});
}

bool ovxIntlAddI18MsgParmInt(OvxI18Msg *msg, int value)
{
    return addParameter(msg, {OVX_PARM_INT, {.integer = value}});
}

bool ovxIntlAddI18MsgParmLong(OvxI18Msg *msg, long value)
{
    return addParameter(msg, {OVX_PARM_LONG, {.longInteger = value}});
}

bool ovxIntlAddI18MsgParmFloat(OvxI18Msg *msg, float value)
{
    return addParameter(msg, {OVX_PARM_FLOAT, {.floating = value}});
}

bool ovxIntlAddI18MsgParmDouble(OvxI18Msg *msg, double value)
{
    return addParameter(msg, {OVX_PARM_DOUBLE, {.doubleFloating = value}});
}

bool ovxIntlAddI18MsgParmString(OvxI18Msg *msg, const char *value)
{
    return addParameter(msg, {OVX_PARM_STRING, {.string = const_cast<char *>(value)}});
}

const char *ovxSetI18MsgLocale(OvxI18Msg *msg, const char *locale)
{
    if (!msg) return nullptr;
    msg->locale = locale;
    return locale;
}

char *ovxIntlBindI18Msg(OvxI18Msg *msg)
{
    CxStringBuff buffer = {};
    bindMessage(msg, &buffer);
    char *text = CxStringBuffTakeStr(&buffer);
    return text || !msg ? text : BaxStringDup(msg->text);
}

int ovxI18PrintUTF8AsLocal(FILE *stream, const char *utf8)
{
    if (!stream || !utf8) return -1;
    char local[4096];
    const int size = ucv::encodeText(nullptr, utf8, -1, local, sizeof local);
    const auto length = static_cast<std::size_t>(size > 0 ? size - 1 : 0);
    return std::fwrite(local, 1, length, stream) == length ? static_cast<int>(length) : -1;
}

void ovxI18InitUcv()
{
    ucv_init();
    codeSets = {ucv_cs_new("UTF8"), nullptr, nullptr, nullptr};
}

int ovxI18UninitUcv()
{
    freeCodeSet(codeSets.utf8);
    freeCodeSet(codeSets.cs1047);
    freeCodeSet(codeSets.cs37);
    freeCodeSet(codeSets.spare);
    formats.discard();
    ucv::forgetSearches();
    ucv::closeToolkitCatalogs();
    return ucv_uninit();
}

uc_ch_t *ovxI18GetCs1047()
{
    return codeSets.cs1047;
}
uc_ch_t *ovxI18GetCs37()
{
    return codeSets.cs37;
}

char *ovxI18Str1047ToUTF8(const char *text)
{
    return convertText(text, codeSets.cs1047, CxStringBuffChangeToUTF8);
}

char *ovxI18Str37ToUTF8(const char *text)
{
    return convertText(text, codeSets.cs37, CxStringBuffChangeToUTF8);
}

char *ovxI18StrUTF8To1047(const char *text)
{
    return convertText(text, codeSets.cs1047, CxStringBuffChangeFromUTF8);
}

char *ovxI18StrUTF8To37(const char *text)
{
    return convertText(text, codeSets.cs37, CxStringBuffChangeFromUTF8);
}

OvxI18Msg *OvxAllocI18Msg(const char *catalog, int set, int key, const char *text)
{
    return locked([&] { return ovxIntlAllocI18Msg(catalog, set, key, text); });
}

OvxI18Msg *OvxCopyI18Msg(const OvxI18Msg *msg)
{
    return locked([&] { return ovxIntlCopyI18Msg(msg); });
}

void OvxFreeI18Msg(OvxI18Msg *msg)
{
    locked([&] { ovxIntlFreeI18Msg(msg); });
}

void OvxAddI18MsgParmBool(OvxI18Msg *msg, bool value)
{
    locked([&] { ovxIntlAddI18MsgParmBool(msg, value); });
}

void OvxAddI18MsgParmChar(OvxI18Msg *msg, char value)
{
    locked([&] { ovxIntlAddI18MsgParmChar(msg, value); });
}

void OvxAddI18MsgParmInt(OvxI18Msg *msg, int value)
{
    locked([&] { ovxIntlAddI18MsgParmInt(msg, value); });
}

void OvxAddI18MsgParmLong(OvxI18Msg *msg, long value)
{
    locked([&] { ovxIntlAddI18MsgParmLong(msg, value); });
}

void OvxAddI18MsgParmFloat(OvxI18Msg *msg, float value)
{
    locked([&] { ovxIntlAddI18MsgParmFloat(msg, value); });
}

void OvxAddI18MsgParmDouble(OvxI18Msg *msg, double value)
{
    locked([&] { ovxIntlAddI18MsgParmDouble(msg, value); });
}

void OvxAddI18MsgParmString(OvxI18Msg *msg, const char *value)
{
    locked([&] { ovxIntlAddI18MsgParmString(msg, value); });
}

char *OvxBindI18Msg(OvxI18Msg *msg)
{
    return locked([&] { return ovxIntlBindI18Msg(msg); });
}

void OvxSetI18MsgCat(OvxI18Msg *msg, const char *catalog)
{
    if (msg) replaceText(msg->memory, msg->catalog, catalog);
}

void OvxSetI18MsgTxt(OvxI18Msg *msg, const char *text)
{
    if (msg) replaceText(msg->memory, msg->text, text);
}

void OvxSetI18MsgSet(OvxI18Msg *msg, int set)
{
    if (msg) msg->set = set;
}

void OvxSetI18MsgKey(OvxI18Msg *msg, int key)
{
    if (msg) msg->key = key;
}
