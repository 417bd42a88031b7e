// The properties of the file handlers. A change closes the handler, is stored, and is reported
// last, since the report may come back to the handler.
#include "OvxFileHandler.h"

#include <olvex/Ucv.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "messages/Messages.h"

#include <cstdio>

using namespace olvex;

namespace {

constexpr std::int32_t kFallbackBytes = 1024;
constexpr std::int32_t kFallbackFiles = 3;
constexpr std::uint32_t kModeBits = 07777;

std::optional<std::int32_t> numberProperty(const OvxObject *handler, const char *name)
{
    bool found = false;
    const std::int32_t value = ovxIntlGetObjPropInt(handler, name, &found);
    return found ? std::optional(value) : std::nullopt;
}

bool flagProperty(const OvxObject *handler, const char *name)
{
    bool found = false;
    const bool value = ovxIntlGetObjPropBool(handler, name, &found);
    return found ? value : true;
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

void changeFileName(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const char *value = peekProperty(handler, "fileName");
    const bool isGiven = value && *value;
    const Text name = withoutTrailingNumber(isGiven ? value : "default.log");
    ovxFHGetFileNameParts(name.get(), vars.name, vars.logInternalErrs);
    if (!isGiven)
        report(OVX_LEVEL_WARN, Message::kEmptyProperty, "fileName", ovxIntlGetObjectName(handler));
}

void changeMaxFileSize(OvxObject *handler, OvxFileHandlerVars &vars)
{
    vars.maxFileBytes = numberProperty(handler, "maxFileSize").value_or(kFallbackBytes);
}

void changeMaxFileBytes(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const auto value = numberProperty(handler, "maxFileBytes");
    const bool isBad = value && *value <= 0;
    vars.maxFileBytes = value && !isBad ? *value : kFallbackBytes;
    if (isBad)
        report(OVX_LEVEL_WARN, Message::kBadMaxFileBytes, ovxIntlGetObjectName(handler), *value);
    else if (vars.maxFiles == 1)
        report(OVX_LEVEL_WARN, Message::kMaxFileBytesUnused, ovxIntlGetObjectName(handler));
}

void changeMaxFiles(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const auto value = numberProperty(handler, "maxFiles");
    const bool isBad = value && *value < 1;
    vars.maxFiles = value && !isBad ? *value : kFallbackFiles;
    if (isBad) report(OVX_LEVEL_WARN, Message::kBadMaxFiles, ovxIntlGetObjectName(handler), *value);
}

void changeAppending(OvxObject *handler, OvxFileHandlerVars &vars)
{
    vars.appending = flagProperty(handler, "appending");
}

void changeFileEncoding(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const Text name(ovxIntlGetObjProp(handler, "fileEncoding", nullptr));
    ucv_cs_free(std::exchange(vars.codeSet, name ? ucv_cs_new(name.get()) : nullptr));
    if (name && !vars.codeSet && vars.logInternalErrs)
        report(OVX_LEVEL_WARN, Message::kCodeSetNotLoaded, static_cast<const char *>(name.get()));
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
void changeSemKey(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const char *value = peekProperty(handler, "MPFileSemKey");
    const std::int32_t key = hexadecimalKey(value);
    vars.semKey = key ? key : ovxIntlGetObjPropInt(handler, "MPFileSemKey", nullptr);
    if (vars.semKey != 0) return;
    vars.semKey = kDefaultSemKey;
    report(OVX_LEVEL_WARN, Message::kBadSemKey, ovxIntlGetObjectName(handler), value ? value : "",
           vars.semKey);
}

void changeEmptyUncopied(OvxObject *handler, OvxFileHandlerVars &vars)
{
    vars.emptyUncopied = flagProperty(handler, "emptyUncopied");
}

void changeLogInternalErrs(OvxObject *handler, OvxFileHandlerVars &vars)
{
    vars.logInternalErrs = flagProperty(handler, "logInternalErrs");
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

void changeFilePermission(OvxObject *handler, OvxFileHandlerVars &)
{
    const Text text(ovxIntlGetObjProp(handler, "filePermission", nullptr));
    ovxFileHandlerCfgPerms(handler, text.get());
}

void changeDirPermission(OvxObject *handler, OvxFileHandlerVars &)
{
    const Text text(ovxIntlGetObjProp(handler, "dirPermission", nullptr));
    ovxFileHandlerCfgDirPerms(handler, text.get());
}

enum class Closes { kAlways, kWhenPresent, kNever };

struct PropertyChange {
    const char *name;
    void (*apply)(OvxObject *handler, OvxFileHandlerVars &vars);
    Closes closes = Closes::kAlways;
};

constexpr PropertyChange kChanges[] = {
    {"fileName", changeFileName},
    {"maxFileBytes", changeMaxFileBytes},
    {"maxFileSize", changeMaxFileSize},
    {"maxFiles", changeMaxFiles},
    {"appending", changeAppending},
    {"filePermission", changeFilePermission, Closes::kWhenPresent},
    {"dirPermission", changeDirPermission, Closes::kWhenPresent},
    {"fileEncoding", changeFileEncoding},
    {"MPFileSemKey", changeSemKey},
    {"logInternalErrs", changeLogInternalErrs, Closes::kNever},
    {"emptyUncopied", changeEmptyUncopied, Closes::kNever},
};

bool closesFor(const OvxObject *handler, const PropertyChange &change)
{
    if (change.closes != Closes::kWhenPresent) return change.closes == Closes::kAlways;
    return peekProperty(handler, change.name) != nullptr;
}

// The file is closed with the old settings, the new one is stored, and then the closing's failures
// are reported: a report that comes back to the handler finds it settled.
void changeProperty(OvxObject *handler, OvxFileHandlerVars &vars, const PropertyChange &change)
{
    Closing closing;
    if (vars.isOpen && closesFor(handler, change)) closing = closeWithTrailer(handler, vars);
    change.apply(handler, vars);
    closing.report();
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
    for (const PropertyChange &change : kChanges)
        if (BaxStringCmp(name, change.name) == 0) return changeProperty(handler, *vars, change);
    OvxBasicHandlerFCfgChange(handler, name);
}
