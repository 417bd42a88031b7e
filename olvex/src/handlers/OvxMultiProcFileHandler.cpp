// The handler for a log that several processes write and roll over together. The path of one event
// is OvxMultiProcFileHandlerFProcess: is the file still there; the record's text; then, under the
// semaphore that all processes share, one question about the size and one write. Nothing is
// reported while the semaphore is held.
#include "handlers/OvxFileHandler.h"

#include "handlers/OvxHandler.h"
#include "handlers/files/OvxFileFailures.h"
#include "handlers/files/OvxRolloverLock.h"
#include "handlers/files/OvxSharedRollover.h"
#include "util/CxResult.h"
#include "util/CxSem.h"
#include "util/HotPath.h"

#include <cerrno>
#include <fcntl.h>

using namespace olvex;

namespace {

// No size that a file can have: the first look at an opened file finds it changed.
constexpr std::uint64_t kUnknownSize = UINT64_MAX;

// How often the lock is sought in a new set when the one before was removed.
constexpr int kMostSets = 20;

// The unknown size makes the first record under a new set take the rollover lock: another process
// may still be in a rollover under the set that was removed.
CxResult openSemaphore(OvxFileHandlerVars &vars)
{
    const CxResult opened = CxSemOpen(&vars.sem, vars.semKey);
    vars.semOpen = ok(opened);
    if (vars.semOpen)
        useOnce(vars.sem);
    else
        vars.sem = -1; // the next event asks anew, and does not lock what was never ready
    vars.state.size = kUnknownSize;
    return opened;
}

bool ovxMultiProcFileHandlerInitSem(OvxFileHandlerVars &vars)
{
    const CxResult opened = openSemaphore(vars);
    reportFailure(opened);
    return ok(opened);
}

bool wasRemoved(CxResult result)
{
    return result.code == EIDRM || result.code == CX_EINVAL;
}

// A set that was removed from the system while it was open here is opened anew.
bool ovxMultiProcFileHandlerLockSem(OvxFileHandlerVars &vars, Failures &failures)
{
    CxResult locked = CxSemLock(&vars.sem);
    for (int n = 0; wasRemoved(locked) && n < kMostSets; ++n) {
        locked = openSemaphore(vars);
        if (!ok(locked)) break;
        locked = CxSemLock(&vars.sem);
    }
    failures.add(locked);
    return ok(locked);
}

// Tried twice: a semaphore that stays locked stops every process, this one at its next record.
void ovxMultiProcFileHandlerUnlockSem(OvxFileHandlerVars &vars, Failures &failures)
{
    const CxResult unlocked = CxSemUnlock(&vars.sem);
    failures.add(unlocked);
    if (!ok(unlocked)) CxSemUnlock(&vars.sem);
}

// Runs before a record when the file is full; and when it is shorter than at the last record or
// newly opened, since a process may have died in a rollover then. The caller keeps the lock until
// its record is written. There is no rollover when the file was moved away while this process
// waited, since the path leads to another file; nor when this process's semaphore was removed,
// since other processes use a new one.
[[gnu::cold]] void tendRollovers(OvxFileHandlerVars &vars, RolloverLock &lock, Failures &failures)
{
    lock.take(vars.file);
    if (isRemoved(vars.sem) || lookForLog(vars) != Presence::kThere) return;
    const CxResult measured = measure(vars);
    failures.add(measured);
    if (!ok(measured)) return lock.forget();
    finishCutRollover(vars, failures);
    if (isLogFull(vars, vars.state.size)) ovxMultiProcFileHandlerDoRollover(vars, failures);
}

// Leaves the handler closed and the record unwritten when the size cannot be read or the descriptor
// is not the log's.
OVX_ALWAYS_INLINE void writeRecord(OvxFileHandlerVars &vars, const EncodedText &text,
                                   Failures &failures)
{
    const std::uint64_t before = vars.state.size;
    const CxResult measured = measure(vars);
    failures.add(measured);
    if (!ok(measured)) return;
    RolloverLock lock;
    if (vars.state.size < before || isLogFull(vars, vars.state.size))
        tendRollovers(vars, lock, failures);
    if (!vars.isOpen) return;
    const CxResult written = appendRecord(&vars.file, text.get(), text.size(), vars.state.size);
    if (ok(written)) {
        vars.state.size += text.size();
        return;
    }
    const CxResult asked = measureAfter(vars, written);
    if (!ok(asked)) lock.forget();
    failures.add(ok(asked) ? written : asked);
}

OVX_ALWAYS_INLINE void writeUnderSemaphore(OvxFileHandlerVars &vars, const EventText &text,
                                           Failures &failures)
{
    const EncodedText encoded(vars.codeSet, text.get(), text.size());
    if (!ovxMultiProcFileHandlerLockSem(vars, failures)) return;
    writeRecord(vars, encoded, failures);
    ovxMultiProcFileHandlerUnlockSem(vars, failures);
}

OVX_ALWAYS_INLINE void writeText(OvxObject *handler, OvxFileHandlerVars &vars,
                                 const EventText &text, Failures &failures)
{
    writeUnderSemaphore(vars, text, failures);
    if (vars.isOpen) return;
    OvxMultiProcFileHandlerFOpen(handler);
    if (vars.isOpen) writeUnderSemaphore(vars, text, failures);
}

} // namespace

void OvxMultiProcFileHandlerFOpen(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->name.path || vars->isOpen) return;
    if (!vars->semOpen && !ovxMultiProcFileHandlerInitSem(*vars)) return;
    vars->isOpen = openLogFile(*vars, O_CREAT | O_RDWR | O_APPEND);
    vars->state.size = kUnknownSize;
}

void OvxMultiProcFileHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !event || !handler->enabled) return;
    if (vars->isOpen && findLog(*vars) == Presence::kGone) OvxMultiProcFileHandlerFClose(handler);
    OvxMultiProcFileHandlerFOpen(handler);
    if (!vars->isOpen) return;
    Failures failures;
    {
        const EventText text(handler, event);
        if (text.get()) writeText(handler, *vars, text, failures);
    }
    failures.report(*vars);
    OvxBasicObjectFLog(handler, event);
}

void OvxMultiProcFileHandlerFClose(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (vars && vars->isOpen) closeWithoutTrailer(*vars).report();
}

constinit const ClassSlots olvex::slots::ovx_multiproc_filehandler = {
    .allocVars = OvxFileHandlerFAllocVars,
    .freeVars = OvxFileHandlerFFreeVars,
    .cfgChange = OvxFileHandlerFCfgChange,
    .process = OvxMultiProcFileHandlerFProcess,
    .open = OvxMultiProcFileHandlerFOpen,
    .close = OvxMultiProcFileHandlerFClose,
    .passesOnLast = true,
};
