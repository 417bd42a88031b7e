// The file handler: records in a file that is rolled over when it is full. The path of one event is
// OvxFileHandlerFProcess: one check that the file is still the log, one write. The size is counted;
// the system is asked for it after the path had to be looked at, and when the limit is near.
#include "handlers/OvxFileHandler.h"

#include <olvex/Ucv.h>

#include <utility>

#include "handlers/OvxHandler.h"
#include "handlers/files/OvxOlderFiles.h"
#include "messages/Messages.h"
#include "ucv/WholeText.h"
#include "util/CxResult.h"
#include "util/CxStringBuff.h"
#include "util/Descriptors.h"
#include "util/HotPath.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr char kDefaultName[] = "default.log";

// Where texts in other code sets are made; one at a time, each written before the next is made.
CxStringBuff encoding = {};

// The buffer is freed when it has grown above 64 KiB.
constexpr std::uint32_t kLargestKept = 64 * 1024;

OVX_ALWAYS_INLINE CxResult writeText(OvxFileHandlerVars &vars, const char *utf8, std::size_t size)
{
    const EncodedText text(vars.codeSet, utf8, size);
    const CxResult result = appendRecord(&vars.file, text.get(), text.size(), vars.state.size);
    if (ok(result)) vars.state.size += text.size();
    return result;
}

int flagsOf(const OvxFileHandlerVars &vars)
{
    return O_CREAT | O_RDWR | (vars.appending ? O_APPEND : O_TRUNC);
}

// Whether the error means that nothing is there, rather than that access is denied.
bool isGone(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

// Whether the open file is still under its path and could not be opened there again.
bool isOnlyOpenHere(const OvxFileHandlerVars &vars)
{
    const char *path = vars.name.path.get();
    FileState now;
    const int error = readFileState(path, now);
    if (error) return !isGone(error);
    return now.isSameFile(vars.state) && faccessat(AT_FDCWD, path, R_OK | W_OK, AT_EACCESS) != 0;
}

// The files are renamed before the active one is closed. A process that has changed its user may
// neither be able to rename the active file nor to open it again: then it stays open. False then.
bool rollOver(OvxObject *handler, OvxFileHandlerVars &vars)
{
    ovxFileHandlerDoRollover(vars);
    if (!isOnlyOpenHere(vars)) return OvxFileHandlerFClose(handler), true;
    reportFailure(measure(vars));
    return !vars.isOpen;
}

// An existing file that is full already is closed with its trailer and rolled over at once.
bool openWithRoom(OvxObject *handler, OvxFileHandlerVars &vars)
{
    if (!openLogFile(vars, flagsOf(vars))) return false;
    if (!isLogFull(vars, vars.state.size)) return true;
    vars.isOpen = true;
    return !rollOver(handler, vars) || openLogFile(vars, flagsOf(vars));
}

void writeHeader(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const Text header(ovxIntlHandlerGetFmtHeader(handler));
    if (header) reportFailure(writeText(vars, header.get(), BaxStringLen(header.get())));
}

// How far below its limit a file's size is asked for rather than counted.
constexpr std::uint64_t kNearLimit = 4096;

// A file that takes so much before it is rolled over is watched from its beginning.
constexpr std::uint64_t kWorthWatching = 16 * kNearLimit;

// Whether a record can be written without asking the system about the file: nothing has happened to
// its path, and its size as counted is far from the limit.
OVX_ALWAYS_INLINE bool isCertain(const OvxFileHandlerVars &vars)
{
    return !isLogFull(vars, vars.state.size + kNearLimit) && vars.watch.isQuiet();
}

// False when the open file can take the next record; otherwise it has been closed, and rolled over
// if it was full.
bool needsOpening(OvxObject *handler, OvxFileHandlerVars &vars)
{
    if (!vars.isOpen) return true;
    if (findLog(vars) == Presence::kGone) {
        OvxFileHandlerFClose(handler);
        return true;
    }
    const CxResult measured = measure(vars);
    reportFailure(measured);
    if (!ok(measured)) return !vars.isOpen; // the report may have come back and opened it
    return isLogFull(vars, vars.state.size) && rollOver(handler, vars);
}

// Writes a record; a file whose descriptor the host has closed or taken is opened anew for it.
OVX_ALWAYS_INLINE CxResult writeRecord(OvxObject *handler, OvxFileHandlerVars &vars,
                                       const EventText &text)
{
    const CxResult written = writeText(vars, text.get(), text.size());
    if (ok(written) || !vars.isOpen) return written;
    const CxResult measured = measureAfter(vars, written);
    if (ok(measured)) return written;
    reportFailure(measured);
    OvxFileHandlerFOpen(handler);
    return writeText(vars, text.get(), text.size());
}

// Reads which file the descriptor is, and its size; EBADF when it is not the log.
int askDescriptor(OvxFileHandlerVars &vars)
{
    FileState now;
    const int error = readFileState(vars.file, now);
    if (error) return error;
    if (!now.isSameFile(vars.state)) return EBADF;
    vars.state.size = now.size;
    return 0;
}

// A descriptor that is not the log's is forgotten.
bool isOurs(OvxFileHandlerVars &vars)
{
    if (vars.file >= 0 && askDescriptor(vars) == EBADF) vars.file = -1;
    return vars.file >= 0;
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
    CxResult opened = CxFileOpenMode(&vars.file, vars.name.path.get(), flags, vars.filePermission);
    if (ok(opened)) opened = resultOf(vars.file = keepHigh(vars.file));
    if (ok(opened)) opened = resultOfCode(readFileState(vars.file, vars.state));
    reportFailure(opened);
    vars.isDoubtful = false;
    if (!ok(opened) && vars.file >= 0) CxFileClose(&vars.file); // what it is could not be asked
    return ok(opened);
}

Presence findLog(OvxFileHandlerVars &vars)
{
    return vars.watch.isQuiet() ? Presence::kThere : lookForLog(vars);
}

Presence lookForLog(OvxFileHandlerVars &vars)
{
    vars.isDoubtful = true;
    vars.watch.beforeLook(vars.name.path.get());
    FileState now;
    const int error = readFileState(vars.name.path.get(), now);
    if (!error)
        return now.isRegular && now.isSameFile(vars.state) ? Presence::kThere : Presence::kGone;
    vars.watch.end();
    return isGone(error) ? Presence::kGone : Presence::kHidden;
}

CxResult measure(OvxFileHandlerVars &vars)
{
    const bool asks = vars.isDoubtful || !vars.state.isRegular;
    const int error = asks ? askDescriptor(vars) : readFileSize(vars.file, vars.state.size);
    vars.isDoubtful = false;
    if (error) closeWithoutTrailer(vars);
    return resultOfCode(error);
}

// EBADF from the log's own inode: the host has opened the log itself, for reading only, under the
// number of our descriptor.
CxResult measureAfter(OvxFileHandlerVars &vars, CxResult written)
{
    vars.isDoubtful = true;
    const CxResult measured = measure(vars);
    if (!ok(measured) || written.code != EBADF) return measured;
    vars.file = -1;
    closeWithoutTrailer(vars);
    return written;
}

void Closing::report() const
{
    reportFailure(written);
    reportFailure(closed);
}

Closing closeWithTrailer(OvxObject *handler, OvxFileHandlerVars &vars)
{
    const Text trailer(ovxIntlHandlerGetFmtTrailer(handler));
    const CxResult written = trailer && isOurs(vars)
                                 ? writeText(vars, trailer.get(), BaxStringLen(trailer.get()))
                                 : success();
    return {written, closeWithoutTrailer(vars).closed};
}

Closing closeWithoutTrailer(OvxFileHandlerVars &vars)
{
    vars.isOpen = false;
    vars.watch.end();
    return {success(), isOurs(vars) ? CxFileClose(&vars.file) : failure(EBADF)};
}

void EncodedText::encode(uc_ch_t *codeSet)
{
    CxStringBuff &buffer = encoding;
    CxStringBuffRestart(&buffer);
    if (!ucv::appendEncoded(codeSet, text_, size_, &buffer)) return;
    text_ = buffer.str;
    size_ = buffer.length;
}

void EncodedText::trimBuffer()
{
    if (encoding.capacity > kLargestKept) CxStringBuffDiscard(&encoding);
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
    const CxResult closed = vars->isOpen ? closeWithoutTrailer(*vars).closed : success();
    ucv_cs_free(vars->codeSet);
    Memory().destroy(vars);
    CxStringBuffDiscard(&encoding); // other handlers make it anew
    reportFailure(closed);
}

OVX_HOT void OvxFileHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !event || !handler->enabled) return;
    if (!vars->isOpen || !isCertain(*vars)) OvxFileHandlerFOpen(handler);
    CxResult written = success();
    {
        const EventText text(handler, event);
        if (text.get()) written = writeRecord(handler, *vars, text);
    }
    reportFailure(written);
    if (handler->listeners) OvxBasicObjectFLog(handler, event);
}

void OvxFileHandlerFOpen(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->name.path || !needsOpening(handler, *vars)) return;
    if (!openWithRoom(handler, *vars)) return;
    vars->isOpen = true;
    writeHeader(handler, *vars);
}

void OvxFileHandlerFClose(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (vars && vars->isOpen) closeWithTrailer(handler, *vars).report();
}

void ovxFileHandlerDoRollover(OvxFileHandlerVars &vars)
{
    const std::int32_t last = vars.maxFiles - 1;
    // NOLINTNEXTLINE(bugprone-infinite-loop): the number is another each time
    for (OlderFiles older(vars.name, last); const std::int32_t n = older.next();)
        reportFailure(n == last ? removeIfThere(vars.name.pathOf(n).get()) : moveUp(vars.name, n));
    reportFailure(moveUp(vars.name, 0));
    vars.state.size = 0;
    if (!isLogFull(vars, kWorthWatching)) vars.watch.expectQuiet();
}

constinit const ClassSlots olvex::slots::ovx_filehandler = {
    .allocVars = OvxFileHandlerFAllocVars,
    .freeVars = OvxFileHandlerFFreeVars,
    .cfgChange = OvxFileHandlerFCfgChange,
    .process = OvxFileHandlerFProcess,
    .open = OvxFileHandlerFOpen,
    .close = OvxFileHandlerFClose,
    .passesOnLast = true,
};
