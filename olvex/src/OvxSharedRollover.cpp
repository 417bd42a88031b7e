// A rollover can be cut short by the death of its process at any place. Its trace is the passing
// file into which the active one is copied: while that exists, the shift of the numbered files goes
// on from the gap that it had reached, and a copy that the active file does not begin with any more
// is one whose active file was emptied already: only its last name is missing.
#include "OvxSharedRollover.h"

#include <olvex/StringBuff.h>

#include "OvxOlderFiles.h"
#include "OvxRolloverPoints.h"
#include "messages/Messages.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace olvex;

namespace {

// Hosts may have small stacks.
constexpr std::size_t kCopyBlock = 8192;
constexpr std::size_t kCompareBlock = 4096;

bool exists(const char *path)
{
    FileState state;
    return path && readFileState(path, state) == 0;
}

// Whether a file stands there that a rollover may have left.
bool isLeftBehind(const char *path)
{
    FileState state;
    return path && readFileState(path, state) == 0 && state.isRegular;
}

// The name under which the active file is copied; none when memory ran out.
Text passingPath(const OvxFileHandlerVars &vars)
{
    CxStringBuff path = {};
    if (CxStringBuffAppendStr(&path, vars.name.path.get()) &&
        CxStringBuffAppendStr(&path, ".rollover"))
        return Text(CxStringBuffTakeStr(&path));
    CxStringBuffDiscard(&path);
    return nullptr;
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

// Whether the file under `path` holds nothing but what the active file begins with. One that cannot
// be read is taken to: it is left alone then.
bool isBeginningOf(CxFile active, const char *path)
{
    OpenFile copy(path, O_RDONLY, 0);
    char ours[kCompareBlock];
    char theirs[kCompareBlock];
    for (off_t at = 0;;) {
        const ssize_t count = pread(*copy.get(), theirs, sizeof theirs, at);
        if (count <= 0) return true;
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
        // NOLINTNEXTLINE(bugprone-infinite-loop): the number is another each time
        for (OlderFiles older(vars_.name, last); const std::int32_t n = older.next();)
            n == last ? remove(n) : rename(n);
    }

    // Goes on with a shift that was cut short: what lies above the gap has been moved.
    void rest()
    {
        std::int32_t gap = 1;
        while (gap < vars_.maxFiles && exists(vars_.name.pathOf(gap).get()))
            ++gap;
        if (gap == vars_.maxFiles) return all();
        while (--gap >= 1)
            rename(gap);
    }

  private:
    void remove(std::int32_t number)
    {
        failures_.add(removeIfThere(vars_.name.pathOf(number).get()));
        rolloverPoint("removed");
    }

    void rename(std::int32_t number)
    {
        failures_.add(moveUp(vars_.name, number));
        rolloverPoint("renamed");
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

// Copies the active file, as far as that goes, and empties it.
void moveContent(OvxFileHandlerVars &vars, OpenFile &backup, Failures &failures)
{
    if (!backup.isOpen()) {
        failures.addOpen();
        failures.addWrite();
    } else {
        copyActive(vars, backup.get(), failures);
        if (!backup.finish()) failures.addWrite();
    }
    rolloverPoint("copied");
    failures.add(CxFileTrunc(&vars.file));
    rolloverPoint("truncated");
}

// The copy gets its number when it is whole and the active file is empty. Where there is no passing
// file, or something stands at number 1 that could not be moved away, number 1 is written itself.
void ovxMultiProcFileHandlerRollActiveLog(OvxFileHandlerVars &vars, OpenFile &passing,
                                          const char *passingName, Failures &failures)
{
    const Text first = vars.name.pathOf(1);
    if (passing.isOpen() && !exists(first.get())) {
        moveContent(vars, passing, failures);
        if (!ok(CxFileNameRename(passingName, first.get()))) failures.addWrite();
        return;
    }
    const bool hasPassing = passing.isOpen();
    OpenFile backup(first.get(), O_CREAT | O_RDWR, vars.filePermission);
    moveContent(vars, backup, failures);
    if (hasPassing) failures.add(removeIfThere(passingName));
}

} // namespace

namespace olvex {

void Failures::reportOne(const Entry &entry, const OvxFileHandlerVars &vars)
{
    if (entry.kind == Kind::kPlatform) return reportFailure(entry.result);
    const Text path = vars.name.pathOf(entry.kind == Kind::kRead ? 0 : 1);
    const char *name = path.get();
    if (entry.kind == Kind::kOpen)
        std::printf("ERR opening %s pre rollover\n", name ? name : "");
    else if (vars.logInternalErrs)
        olvex::report(OVX_LEVEL_WARN,
                      entry.kind == Kind::kRead ? Message::kRolloverRead : Message::kRolloverWrite,
                      name);
}

void finishCutRollover(OvxFileHandlerVars &vars, Failures &failures)
{
    const Text passingName = passingPath(vars);
    if (!isLeftBehind(passingName.get()) || isBeginningOf(vars.file, passingName.get())) return;
    Shift(vars, failures).rest();
    failures.add(renameIfThere(passingName.get(), vars.name.pathOf(1).get()));
}

} // namespace olvex

void ovxMultiProcFileHandlerDoRollover(OvxFileHandlerVars &vars, Failures &failures)
{
    const Text passingName = passingPath(vars);
    const bool wasCutShort = isLeftBehind(passingName.get());
    OpenFile passing(passingName.get(), O_CREAT | O_RDWR | O_TRUNC | O_NOFOLLOW,
                     vars.filePermission);
    rolloverPoint("begun");
    Shift shift(vars, failures);
    if (wasCutShort)
        shift.rest();
    else
        shift.all();
    ovxMultiProcFileHandlerRollActiveLog(vars, passing, passingName.get(), failures);
    vars.state.size = 0;
}
