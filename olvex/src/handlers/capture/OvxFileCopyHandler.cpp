// The file copy handler: its settings and what it does with an event. The copying itself is in
// OvxFileCopy.
#include "handlers/capture/OvxFileCopyHandler.h"

#include <olvex/Misc.h>

#include <algorithm>

#include "handlers/capture/OvxFFDCSpace.h"
#include "handlers/capture/OvxFileCopy.h"
#include "messages/Messages.h"
#include "toolkit/OvxPropertyTable.h"
#include "util/CxResult.h"
#include "util/Locked.h"

using namespace olvex;

namespace {

OvxFileCopySettings *settingsOf(const OvxObject *handler)
{
    const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    return vars ? vars->copySettings : nullptr;
}

using Setting = Text OvxFileCopySettings::*;

void store(const OvxObject *handler, Setting setting, Text text)
{
    if (OvxFileCopySettings *settings = settingsOf(handler)) settings->*setting = std::move(text);
}

Text copyOf(const OvxObject *handler, Setting setting)
{
    const OvxFileCopySettings *settings = settingsOf(handler);
    return Text(settings ? BaxStringDup((settings->*setting).get()) : nullptr);
}

Text withZipExtension(const char *name)
{
    const char *dot = BaxStringRChr(name, '.');
    if (dot && BaxStringICmp(dot, ".zip") == 0) return Text(BaxStringDup(name));
    const char *const parts[] = {name, ".zip"};
    return Text(OvxStrACat(2, parts, nullptr));
}

struct Work {
    int files = 0;
    std::int64_t bytes = 0;
    bool hasUnknown = false; // files that say that they are empty, of which not all are
};

// A file whose size cannot be had counts as nothing.
Work measure(const char *files)
{
    Work work;
    forEachListedFile(files, [&](const char *file) {
        ++work.files;
        const Text native = nativePath(file);
        std::int64_t size = 0;
        if (isKeptOut(native.get()) || !ok(CxFileNameGetSize(native.get(), &size))) return;
        if (size == 0) work.hasUnknown = true;
        if (__builtin_add_overflow(work.bytes, size, &work.bytes)) work.bytes = INT64_MAX;
    });
    return work;
}

// What files of unknown size may take besides the others. Of a quota that is ignored they may take
// the whole, since something must be their end.
std::int64_t quotaFor(const OvxObject *handler, const Work &work)
{
    const OvxFFDCHandlerVars *vars = ffdcVarsOf(handler);
    if (!work.hasUnknown || !vars) return 0;
    if (vars->quotaPolicy == QuotaPolicy::kIgnore) return vars->maxDiskSpace;
    const std::int64_t free = vars->maxDiskSpace - ovxCountFFDCSpaceUsed(vars->baseDir.get());
    return std::max(free - work.bytes, std::int64_t{0});
}

// The settings are copied first: what is reported on the way can come to code that changes them.
void act(OvxObject *handler, OvxEvent *event)
{
    const Text files = copyOf(handler, &OvxFileCopySettings::filesToCopy);
    const Text zipFile = copyOf(handler, &OvxFileCopySettings::zipFile);
    const Text zipCmdPath = copyOf(handler, &OvxFileCopySettings::zipCmdPath);
    const Work work = measure(files.get());
    if (!ovxIsFFDCSpaceAvailable(handler, work.bytes)) return;
    const Text dir(ovxMakeFFDCDir(handler, event));
    const char *name = ovxIntlGetObjectName(handler);
    if (!dir) return;
    if (zipFile)
        ovxFileCopyHandlerCopyToZip(zipCmdPath.get(), files.get(), work.files, dir.get(),
                                    zipFile.get(), name);
    else
        ovxFileCopyHandlerCopyToDir(files.get(), dir.get(), name, quotaFor(handler, work));
}

template <schema::Name>
void apply(OvxObject *handler, const char *value) = delete;

template <>
void apply<"filesToCopy">(OvxObject *handler, const char *value)
{
    ovxIntlFileCopyHandlerSetFiles(handler, value);
}

template <>
void apply<"zipFileName">(OvxObject *handler, const char *value)
{
    ovxIntlFileCopyHandlerSetZipFile(handler, value);
}

template <>
void apply<"zipCmdPath">(OvxObject *handler, const char *value)
{
    ovxIntlFileCopyHandlerSetZipCmdPath(handler, value);
}

constexpr auto kProperties =
    rowsOf<schema::kFileCopy>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

} // namespace

void *OvxFileCopyHandlerFAllocVars()
{
    auto *vars = static_cast<OvxFFDCHandlerVars *>(OvxFFDCTriggerHandlerFAllocVars());
    if (!vars) return nullptr;
    vars->copySettings = Memory().make<OvxFileCopySettings>();
    if (vars->copySettings) return vars;
    OvxFFDCTriggerHandlerFFreeVars(vars);
    return nullptr;
}

void OvxFileCopyHandlerFFreeVars(void *variables)
{
    auto *vars = static_cast<OvxFFDCHandlerVars *>(variables);
    if (vars) Memory().destroy(vars->copySettings);
    OvxFFDCTriggerHandlerFFreeVars(vars);
}

void OvxFileCopyHandlerFCfgChange(OvxObject *handler, const char *name)
{
    if (!name) return;
    if (!applyProperty(kProperties, handler, name)) OvxFFDCTriggerHandlerFCfgChange(handler, name);
}

void OvxFileCopyHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    if (!settingsOf(handler) || !event || !handler->enabled) return;
    OvxFFDCTriggerHandlerFOpen(handler);
    if (hasBaseDirectory(*ffdcVarsOf(handler)) && ovxShouldFFDCActionOccur(handler, event))
        act(handler, event);
    OvxBasicObjectFLog(handler, event);
}

void ovxIntlFileCopyHandlerSetFiles(OvxObject *handler, const char *files)
{
    if (files) store(handler, &OvxFileCopySettings::filesToCopy, Text(BaxStringDup(files)));
}

void ovxIntlFileCopyHandlerSetZipFile(OvxObject *handler, const char *name)
{
    if (name)
        store(handler, &OvxFileCopySettings::zipFile, *name ? withZipExtension(name) : nullptr);
}

void ovxIntlFileCopyHandlerSetZipCmdPath(OvxObject *handler, const char *path)
{
    if (!path || !settingsOf(handler)) return;
    if (!ovxIsFilenameUnsafe(path) && ovxFileExists(path))
        store(handler, &OvxFileCopySettings::zipCmdPath, Text(BaxStringDup(path)));
    else
        report(OVX_LEVEL_ERROR, Message::kZipNotRun, path);
}

char *OvxFileCopyHandlerGetFiles(OvxObject *handler)
{
    return locked([&] { return copyOf(handler, &OvxFileCopySettings::filesToCopy).release(); });
}

void OvxFileCopyHandlerSetFiles(OvxObject *handler, const char *files)
{
    locked([&] { ovxIntlFileCopyHandlerSetFiles(handler, files); });
}

char *OvxFileCopyHandlerGetZipFile(OvxObject *handler)
{
    return locked([&] { return copyOf(handler, &OvxFileCopySettings::zipFile).release(); });
}

void OvxFileCopyHandlerSetZipFile(OvxObject *handler, const char *name)
{
    locked([&] { ovxIntlFileCopyHandlerSetZipFile(handler, name); });
}

char *OvxFileCopyHandlerGetZipCmdPath(OvxObject *handler)
{
    return locked([&] { return copyOf(handler, &OvxFileCopySettings::zipCmdPath).release(); });
}

void OvxFileCopyHandlerSetZipCmdPath(OvxObject *handler, const char *path)
{
    locked([&] { ovxIntlFileCopyHandlerSetZipCmdPath(handler, path); });
}

constinit const ClassSlots olvex::slots::ovx_ffdc_filecopy_handler = {
    .allocVars = OvxFileCopyHandlerFAllocVars,
    .freeVars = OvxFileCopyHandlerFFreeVars,
    .cfgChange = OvxFileCopyHandlerFCfgChange,
    .process = OvxFileCopyHandlerFProcess,
    .open = OvxFFDCTriggerHandlerFOpen,
    .close = OvxFFDCTriggerHandlerFClose,
    .passesOnLast = true,
};
