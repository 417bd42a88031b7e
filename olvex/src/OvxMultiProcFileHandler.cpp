// The handler for a log that several processes write and roll over together. Records are formatted
// first, then written under a semaphore that all of them share; nothing is reported while it is
// held.
//
// A rollover can be cut short by the death of its process at any place. Its trace is the passing
// file into which the active one is copied: while that exists, the shift of the numbered files goes
// on from the gap that it had reached, and a copy that the active file does not begin with any more
// is one whose active file was emptied already: only its last name is missing.
#include "OvxFileHandler.h"

#include <olvex/StringBuff.h>

#include "OvxHandler.h"
#include "OvxRolloverPoints.h"
#include "messages/Messages.h"
#include "util/CxResult.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr std::size_t kCopyBlock = 8192;

// What went wrong while the semaphore was held, to be reported once it is not.
class Failures {
  public:
    void add(CxResult result)
    {
        if (!ok(result) && count_ < kMost) results_[count_++] = result;
    }
    void addRead() { read_ = true; }
    void addWrite() { write_ = true; }

    void report(const OvxFileHandlerVars &vars) const
    {
        for (int i = 0; i < count_; ++i)
            reportFailure(results_[i]);
        if (!vars.logInternalErrs) return;
        if (read_) reportFile(Message::kRolloverRead, vars.name.pathOf(0));
        if (write_) reportFile(Message::kRolloverWrite, vars.name.pathOf(1));
    }

  private:
    static constexpr int kMost = 8;

    static void reportFile(Message message, const Text &path)
    {
        olvex::report(OVX_LEVEL_WARN, message, static_cast<const char *>(path.get()));
    }

    CxResult results_[kMost] = {};
    int count_ = 0;
    bool read_ = false;
    bool write_ = false;
};

bool exists(const char *path)
{
    return path && access(path, F_OK) == 0;
}

// Whether a file stands there that a rollover may have left.
bool isLeftBehind(const char *path)
{
    FileState state;
    return path && readFileState(path, state) == 0 && state.isRegular;
}

// The name under which the active file is copied.
Text passingPath(const OvxFileHandlerVars &vars)
{
    CxStringBuff path = {};
    CxStringBuffAppendStr(&path, vars.name.path.get());
    CxStringBuffAppendStr(&path, ".rollover");
    return Text(CxStringBuffTakeStr(&path));
}

class OpenFile {
  public:
    OpenFile(const char *path, int flags, std::uint32_t mode)
    {
        if (!ok(CxFileOpenMode(&file_, path, flags, mode))) file_ = -1;
    }
    ~OpenFile()
    {
        if (isOpen()) CxFileClose(&file_);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    bool isOpen() const { return file_ >= 0; }
    CxFile *get() { return &file_; }

    // Flushes and closes; false when either fails.
    bool finish()
    {
        const bool flushed = ok(CxFileFlush(&file_));
        return ok(CxFileClose(&file_)) && flushed;
    }

  private:
    CxFile file_ = -1;
};

// Whether the file under `path` holds nothing but what the active file begins with.
bool isBeginningOf(CxFile active, const char *path)
{
    OpenFile copy(path, O_RDONLY, 0);
    char ours[kCopyBlock];
    char theirs[kCopyBlock];
    for (off_t at = 0;;) {
        const ssize_t count = pread(*copy.get(), theirs, sizeof theirs, at);
        if (count <= 0) return count == 0;
        if (pread(active, ours, static_cast<std::size_t>(count), at) != count ||
            std::memcmp(ours, theirs, static_cast<std::size_t>(count)) != 0)
            return false;
        at += count;
    }
}

// Makes room at number 1: the last file goes, each other one moves up.
class Shift {
  public:
    Shift(const OvxFileHandlerVars &vars, Failures &failures) : vars_(vars), failures_(failures) {}

    void all()
    {
        const std::int32_t last = vars_.maxFiles - 1;
        failures_.add(removeIfThere(vars_.name.pathOf(last).get()));
        rolloverPoint("removed");
        below(last);
    }

    // Goes on with a shift that was cut short: what lies above the gap has been moved.
    void rest()
    {
        const std::int32_t last = vars_.maxFiles - 1;
        for (std::int32_t gap = 1; gap <= last; ++gap)
            if (!exists(vars_.name.pathOf(gap).get())) return below(gap);
        all();
    }

  private:
    void below(std::int32_t gap)
    {
        for (std::int32_t n = gap - 1; n >= 1; --n) {
            failures_.add(
                renameIfThere(vars_.name.pathOf(n).get(), vars_.name.pathOf(n + 1).get()));
            rolloverPoint("renamed");
        }
    }

    const OvxFileHandlerVars &vars_;
    Failures &failures_;
};

// Copies the active file; read and write failures end the copy and are noted.
void copyActive(OvxFileHandlerVars &vars, CxFile *backup, Failures &failures)
{
    if (!ok(CxFileSeek(&vars.file, 0, SEEK_SET))) return failures.addRead();
    char block[kCopyBlock];
    for (;;) {
        std::int64_t count = 0;
        if (!ok(CxFileRead(&vars.file, block, sizeof block, &count))) return failures.addRead();
        if (count == 0) return;
        if (!ok(writeAll(backup, block, static_cast<std::size_t>(count))))
            return failures.addWrite();
        rolloverPoint("copying");
    }
}

// Copies the active file under the passing name, empties it, and gives the copy its number.
void ovxMultiProcFileHandlerRollActiveLog(OvxFileHandlerVars &vars, OpenFile &passing,
                                          const char *passingName, Failures &failures)
{
    const Text first = vars.name.pathOf(1);
    const bool isOpen = passing.isOpen();
    if (isOpen) {
        copyActive(vars, passing.get(), failures);
        if (!passing.finish()) failures.addWrite();
    } else {
        std::printf("ERR opening %s pre rollover\n", first.get());
        failures.addWrite();
    }
    rolloverPoint("copied");
    failures.add(CxFileTrunc(&vars.file));
    rolloverPoint("truncated");
    if (isOpen && !ok(CxFileNameRename(passingName, first.get()))) failures.addWrite();
}

void ovxMultiProcFileHandlerDoRollover(OvxFileHandlerVars &vars, Failures &failures)
{
    const Text passingName = passingPath(vars);
    const bool wasCutShort = isLeftBehind(passingName.get());
    OpenFile passing(passingName.get(), O_CREAT | O_RDWR | O_TRUNC, vars.filePermission);
    rolloverPoint("begun");
    Shift shift(vars, failures);
    if (wasCutShort)
        shift.rest();
    else
        shift.all();
    ovxMultiProcFileHandlerRollActiveLog(vars, passing, passingName.get(), failures);
    vars.state.size = 0;
}

// A copy that was left behind by a rollover that had emptied the active file gets its number.
void finishCutRollover(OvxFileHandlerVars &vars, Failures &failures)
{
    const Text passingName = passingPath(vars);
    if (!isLeftBehind(passingName.get()) || isBeginningOf(vars.file, passingName.get())) return;
    Shift(vars, failures).rest();
    failures.add(renameIfThere(passingName.get(), vars.name.pathOf(1).get()));
}

bool ovxMultiProcFileHandlerInitSem(OvxFileHandlerVars &vars)
{
    const CxResult opened = CxSemOpen(&vars.sem, vars.semKey);
    vars.semOpen = ok(opened);
    reportFailure(opened);
    return vars.semOpen;
}

bool wasRemoved(CxResult result)
{
    return result.code == EIDRM || result.code == CX_EINVAL;
}

// A set that was removed from the system while it was open here is opened anew.
bool ovxMultiProcFileHandlerLockSem(OvxFileHandlerVars &vars)
{
    CxResult locked = CxSemLock(&vars.sem);
    if (wasRemoved(locked)) {
        if (!ovxMultiProcFileHandlerInitSem(vars)) return false;
        locked = CxSemLock(&vars.sem);
    }
    reportFailure(locked);
    return ok(locked);
}

// Looks at the file under its path: when the open one is gone from there, the one that is there is
// opened, or made. True when the file is another than at the last record, or shorter, which is when
// a rollover that another process did not finish may have left something behind.
bool refresh(OvxFileHandlerVars &vars, Failures &failures)
{
    FileState now;
    const int error = readFileState(vars.name.path.get(), now);
    if (error == 0 && now.isRegular && now.isSameFile(vars.state)) {
        const bool isShorter = now.size < vars.state.size;
        vars.state.size = now.size;
        return isShorter;
    }
    failures.add(CxFileClose(&vars.file));
    failures.add(CxFileOpenMode(&vars.file, vars.name.path.get(), O_CREAT | O_RDWR | O_APPEND,
                                vars.filePermission));
    failures.add(resultOfCode(readFileState(vars.file, vars.state)));
    return true;
}

void writeUnderSemaphore(OvxFileHandlerVars &vars, const EncodedText &text)
{
    if (!ovxMultiProcFileHandlerLockSem(vars)) return;
    Failures failures;
    const bool isChanged = refresh(vars, failures);
    const bool isFull = isLogFull(vars, vars.state.size);
    if (isChanged || isFull) finishCutRollover(vars, failures);
    if (isFull) ovxMultiProcFileHandlerDoRollover(vars, failures);
    const CxResult written = writeAll(&vars.file, text.get(), text.size());
    if (ok(written)) vars.state.size += text.size();
    failures.add(written);
    failures.add(CxSemUnlock(&vars.sem));
    failures.report(vars);
}

} // namespace

void OvxMultiProcFileHandlerFOpen(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->name.path || vars->isOpen) return;
    if (!vars->semOpen && !ovxMultiProcFileHandlerInitSem(*vars)) return;
    vars->isOpen = openLogFile(*vars, O_CREAT | O_RDWR | O_APPEND);
    vars->state.size = UINT64_MAX; // so that the first look at the file finds it changed
}

void OvxMultiProcFileHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !event || !handler->enabled) return;
    OvxMultiProcFileHandlerFOpen(handler);
    if (!vars->isOpen) return;
    {
        const EventText text(handler, event);
        if (text.get())
            writeUnderSemaphore(*vars, EncodedText(vars->codeSet, text.get(), text.size()));
    }
    OvxBasicObjectFLog(handler, event);
}

void OvxMultiProcFileHandlerFClose(OvxObject *handler)
{
    OvxFileHandlerVars *vars = fileVarsOf(handler);
    if (!vars || !vars->isOpen) return;
    const CxResult closed = CxFileClose(&vars->file);
    vars->isOpen = false;
    reportFailure(closed);
}
