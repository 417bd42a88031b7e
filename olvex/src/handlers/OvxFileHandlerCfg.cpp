// The properties of the file handlers. A change closes the handler, is stored, and is reported
// last, since the report may come back to the handler.
#include "handlers/OvxFileHandler.h"

#include <olvex/Ucv.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "messages/Messages.h"
#include "toolkit/OvxPropertyTable.h"
#include "toolkit/OvxProps.h"

#include <cstdio>

using namespace olvex;

namespace {

constexpr auto kFallbackBytes = schema::fallbackOf(schema::kFileHandler, "maxFileBytes");
constexpr auto kFallbackFiles = schema::fallbackOf(schema::kFileHandler, "maxFiles");
constexpr auto kFallbackSemKey = schema::fallbackOf(schema::kSharedFile, "MPFileSemKey");
constexpr std::uint32_t kModeBits = 07777;

// Closes the file with the old settings, and reports what went wrong with that when the new one is
// stored: a report that comes back to the handler finds it settled.
class ClosedMeanwhile {
  public:
    ClosedMeanwhile(OvxObject *handler, OvxFileHandlerVars &vars)
    {
        if (vars.isOpen) closing_ = closeWithTrailer(handler, vars);
    }
    ~ClosedMeanwhile() { closing_.report(); }
    ClosedMeanwhile(const ClosedMeanwhile &) = delete;
    ClosedMeanwhile &operator=(const ClosedMeanwhile &) = delete;

  private:
    Closing closing_;
};

std::optional<std::int32_t> numberIn(const char *value)
{
    bool converts = false;
    const std::int32_t number = ovxPropStrToInt32(value, &converts);
    return converts ? std::optional(number) : std::nullopt;
}

bool flagIn(const char *value)
{
    bool converts = false;
    const bool flag = ovxPropStrToBool(value, &converts);
    return converts ? flag : true;
}

// A base that ends in a digit gets a "_" behind it: numbers are for the older files.
Text withoutTrailingNumber(const char *name)
{
    Text copy(static_cast<char *>(BaxMemoryMalloc(BaxStringLen(name) + 2)));
    if (!copy) return nullptr;
    const int digit = ovxFHTrailingBaseDigit(name);
    if (digit < 0) {
        BaxStringCpy(copy.get(), name);
        return copy;
    }
    const auto head = static_cast<std::size_t>(digit) + 1;
    std::memcpy(copy.get(), name, head);
    copy.get()[head] = '_';
    BaxStringCpy(copy.get() + head + 1, name + head);
    return copy;
}

template <schema::Name>
void apply(OvxObject *handler, const char *value, OvxFileHandlerVars &vars) = delete;

template <>
void apply<"fileName">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    const bool isGiven = value && *value;
    const Text name = withoutTrailingNumber(isGiven ? value : "default.log");
    ovxFHGetFileNameParts(name.get(), vars.name, vars.logInternalErrs);
    if (!isGiven)
        report(OVX_LEVEL_WARN, Message::kEmptyProperty, "fileName", ovxIntlGetObjectName(handler));
}

template <>
void apply<"maxFileSize">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    vars.maxFileBytes = numberIn(value).value_or(kFallbackBytes);
}

template <>
void apply<"maxFileBytes">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    const auto bytes = numberIn(value);
    const bool isBad = bytes && *bytes <= 0;
    vars.maxFileBytes = bytes && !isBad ? *bytes : kFallbackBytes;
    if (isBad)
        report(OVX_LEVEL_WARN, Message::kBadMaxFileBytes, ovxIntlGetObjectName(handler), *bytes);
    else if (vars.maxFiles == 1)
        report(OVX_LEVEL_WARN, Message::kMaxFileBytesUnused, ovxIntlGetObjectName(handler));
}

template <>
void apply<"maxFiles">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    const auto files = numberIn(value);
    const bool isBad = files && *files < 1;
    vars.maxFiles = files && !isBad ? *files : kFallbackFiles;
    if (isBad) report(OVX_LEVEL_WARN, Message::kBadMaxFiles, ovxIntlGetObjectName(handler), *files);
}

template <>
void apply<"appending">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    vars.appending = flagIn(value);
}

template <>
void apply<"fileEncoding">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    ucv_cs_free(std::exchange(vars.codeSet, value ? ucv_cs_new(value) : nullptr));
    if (value && !vars.codeSet && vars.logInternalErrs)
        report(OVX_LEVEL_WARN, Message::kCodeSetNotLoaded, value);
}

// A key in hexadecimal, as the system's tools print keys; 0 when the text is not one as a whole.
std::int32_t hexadecimalKey(const char *value)
{
    constexpr char kBlanks[] = " \t\r\n\f\v";
    std::string_view text = value ? value : "";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
    if (!text.starts_with("0x") && !text.starts_with("0X")) return 0;
    std::uint32_t key = 0;
    const char *const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + 2, end, key, 16);
    return read.ec == std::errc() && read.ptr == end ? static_cast<std::int32_t>(key) : 0;
}

// The key 0 would give each process a set of its own, which keeps nobody apart.
template <>
void apply<"MPFileSemKey">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    const ClosedMeanwhile closed(handler, vars);
    const std::int32_t key = hexadecimalKey(value);
    vars.semKey = key ? key : ovxPropStrToInt32(value, nullptr);
    if (vars.semKey != 0) return;
    vars.semKey = kFallbackSemKey;
    report(OVX_LEVEL_WARN, Message::kBadSemKey, ovxIntlGetObjectName(handler), value ? value : "",
           vars.semKey);
}

template <>
void apply<"emptyUncopied">(OvxObject *, const char *value, OvxFileHandlerVars &vars)
{
    vars.emptyUncopied = flagIn(value);
}

template <>
void apply<"logInternalErrs">(OvxObject *, const char *value, OvxFileHandlerVars &vars)
{
    vars.logInternalErrs = flagIn(value);
}

// Reads up to four octal digits into a permission; what cannot be read is reported.
void changePermission(OvxObject *handler, const char *text, std::uint32_t &permission)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !text) return;
    unsigned mode = 0;
    if (std::sscanf(text, "%4o", &mode) == 1) // NOLINT(cert-err34-c): four digits always fit
        permission = mode & kModeBits;
    else if (vars->logInternalErrs)
        report(OVX_LEVEL_WARN, Message::kBadFileMode, text, ovxIntlGetObjectName(handler));
}

template <>
void apply<"filePermission">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    if (!value) return;
    const ClosedMeanwhile closed(handler, vars);
    changePermission(handler, value, vars.filePermission);
}

template <>
void apply<"dirPermission">(OvxObject *handler, const char *value, OvxFileHandlerVars &vars)
{
    if (!value) return;
    const ClosedMeanwhile closed(handler, vars);
    changePermission(handler, value, vars.dirPermission);
}

constexpr auto kFileHandler =
    rowsOf<schema::kFileHandler>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });
constexpr auto kOwnFile =
    rowsOf<schema::kOwnFile>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });
constexpr auto kSharedFile =
    rowsOf<schema::kSharedFile>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

// The trailer is that of the formatter that wrote the records. The new one is made first, since its
// making may log.
void changeFormatter(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const Text name(ovxIntlGetObjProp(handler, "formatterName", nullptr));
    if (!name) return;
    const ObjectRef formatter(ovxIntlGetObject(name.get(), nullptr));
    const ClosedMeanwhile closed(handler, vars);
    ovxIntlHandlerSetFormatter(handler, formatter.get());
}

} // namespace

void ovxFileHandlerCfgPerms(OvxObject *handler, const char *text)
{
    if (OvxFileHandlerVars *vars = fileVarsOf(handler))
        changePermission(handler, text, vars->filePermission);
}

void ovxFileHandlerCfgDirPerms(OvxObject *handler, const char *text)
{
    if (OvxFileHandlerVars *vars = fileVarsOf(handler))
        changePermission(handler, text, vars->dirPermission);
}

void OvxFileHandlerFCfgChange(OvxObject *handler, const char *name)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !name) return;
    if (BaxStringCmp(name, "formatterName") == 0) return changeFormatter(handler, *vars);
    if (!applyProperty(kFileHandler, handler, name, *vars) &&
        !applyProperty(kOwnFile, handler, name, *vars) &&
        !applyProperty(kSharedFile, handler, name, *vars))
        OvxBasicHandlerFCfgChange(handler, name);
}
