// The file handler: records in a file that is rolled over when it is full. The path of one event is
// OvxFileHandlerFProcess: one question about the file, one write.
#include "OvxFileHandler.h"

#include <olvex/Ucv.h>

#include <utility>

#include "OvxHandler.h"
#include "messages/Messages.h"
#include "util/CxResult.h"
#include "util/CxStringBuff.h"

#include <fcntl.h>

using namespace olvex;

namespace {

constexpr char kDefaultName[] = "default.log";

// Where texts in other code sets are made; one at a time, each written before the next is made.
CxStringBuff encoded = {};

CxResult writeText(OvxFileHandlerVars &vars, const char *utf8, std::size_t size)
{
    const EncodedText text(vars.codeSet, utf8, size);
    const CxResult result = writeAll(&vars.file, text.get(), text.size());
    if (ok(result)) vars.state.size += text.size();
    return result;
}

int flagsOf(const OvxFileHandlerVars &vars)
{
    return O_CREAT | O_RDWR | (vars.appending ? O_APPEND : O_TRUNC);
}

// Whether the file under the path still is the open one; its size is read along with that.
bool isStillThere(OvxFileHandlerVars &vars)
{
    FileState now;
    if (readFileState(vars.name.path.get(), now) != 0) return false;
    if (!now.isRegular || !now.isSameFile(vars.state)) return false;
    vars.state.size = now.size;
    return true;
}

// An existing file that is full already is closed with its trailer and rolled over at once.
bool openWithRoom(OvxObject *handler, OvxFileHandlerVars &vars)
{
    if (!openLogFile(vars, flagsOf(vars))) return false;
    if (!isLogFull(vars, vars.state.size)) return true;
    vars.isOpen = true;
    OvxFileHandlerFClose(handler);
    ovxFileHandlerDoRollover(vars);
    return openLogFile(vars, flagsOf(vars));
}

void writeHeader(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const Text header(ovxIntlHandlerGetFmtHeader(handler));
    if (header) reportFailure(writeText(vars, header.get(), BaxStringLen(header.get())));
}

// False when the open file can take the next record; otherwise it has been closed, and rolled over
// if it was full.
bool needsOpening(OvxObject *handler, OvxFileHandlerVars &vars)
{
    if (!vars.isOpen) return true;
    const bool there = isStillThere(vars);
    if (there && !isLogFull(vars, vars.state.size)) return false;
    OvxFileHandlerFClose(handler);
    if (there) ovxFileHandlerDoRollover(vars);
    return true;
}

} // namespace

namespace olvex {

OvxFileHandlerVars *fileVarsOf(const OvxObject *handler)
{
    return handler ? static_cast<OvxFileHandlerVars *>(handler->variables) : nullptr;
}

void reportFailure(CxResult result)
{
    if (!ok(result)) OvxReportPlatformErr(result.kind, result.code);
}

bool isLogFull(const OvxFileHandlerVars &vars, std::uint64_t size)
{
    const auto limit = static_cast<std::uint64_t>(std::int64_t{vars.maxFileBytes});
    return vars.maxFiles >= 2 && size >= limit;
}

bool openLogFile(OvxFileHandlerVars &vars, int flags)
{
    if (!makeLogDirectory(vars.name, vars.dirPermission) && vars.logInternalErrs) {
        const char *directory = vars.name.directory.get();
        report(OVX_LEVEL_ERROR, Message::kBadFilePath, "fileName", directory ? directory : "NULL");
    }
    const CxResult opened =
        CxFileOpenMode(&vars.file, vars.name.path.get(), flags, vars.filePermission);
    reportFailure(opened);
    if (!ok(opened)) return false;
    reportFailure(resultOfCode(readFileState(vars.file, vars.state)));
    return true;
}

EncodedText::EncodedText(uc_ch_t *codeSet, const char *utf8, std::size_t size)
    : text_(utf8), size_(size)
{
    if (!codeSet) return;
    CxStringBuffRestart(&encoded);
    if (!appendBytes(&encoded, utf8, size) || CxStringBuffChangeFromUTF8(codeSet, &encoded) == 0)
        return;
    text_ = encoded.str;
    size_ = BaxStringLen(encoded.str);
}

} // namespace olvex

void *OvxFileHandlerFAllocVars()
{
    auto *vars = Memory().make<OvxFileHandlerVars>();
    if (vars) ovxFHGetFileNameParts(kDefaultName, vars->name, vars->logInternalErrs);
    return vars;
}

void OvxFileHandlerFFreeVars(void *variables)
{
    auto *vars = static_cast<OvxFileHandlerVars *>(variables);
    if (!vars) return;
    const CxResult closed = vars->isOpen ? CxFileClose(&vars->file) : success();
    ucv_cs_free(vars->codeSet);
    Memory().destroy(vars);
    reportFailure(closed);
}

void OvxFileHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !event || !handler->enabled) return;
    OvxFileHandlerFOpen(handler);
    CxResult written = success();
    {
        const EventText text(handler, event);
        if (text.get()) written = writeText(*vars, text.get(), text.size());
    }
    reportFailure(written);
    OvxBasicObjectFLog(handler, event);
}

void OvxFileHandlerFOpen(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->name.path || !needsOpening(handler, *vars)) return;
    if (!openWithRoom(handler, *vars)) return;
    vars->isOpen = true;
    writeHeader(handler, *vars);
}

// The handler is closed before anything is reported, since a report may come back to it.
void OvxFileHandlerFClose(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->isOpen) return;
    const Text trailer(ovxIntlHandlerGetFmtTrailer(handler));
    const CxResult written =
        trailer ? writeText(*vars, trailer.get(), BaxStringLen(trailer.get())) : success();
    const CxResult closed = CxFileClose(&vars->file);
    vars->isOpen = false;
    reportFailure(written);
    reportFailure(closed);
}

void ovxFileHandlerDoRollover(OvxFileHandlerVars &vars)
{
    const std::int32_t last = vars.maxFiles - 1;
    reportFailure(removeIfThere(vars.name.pathOf(last).get()));
    for (std::int32_t n = last - 1; n >= 0; --n)
        reportFailure(renameIfThere(vars.name.pathOf(n).get(), vars.name.pathOf(n + 1).get()));
    vars.state.size = 0;
}
