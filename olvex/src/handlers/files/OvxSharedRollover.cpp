// A rollover can be cut short by the death of its process at any place. Its trace is the passing
// file into which the active one is copied: while that exists, the shift of the numbered files goes
// on from the gap that it had reached, and a copy that the active file does not begin with any more
// is one whose active file was emptied already: only its last name is missing.
//
// The active file is emptied even when its copy failed, and the shift goes on after a file that
// could not be moved, unless the property emptyUncopied is false: then the rollover ends there and
// is tried again at the next event.
#include "handlers/files/OvxSharedRollover.h"

#include <olvex/StringBuff.h>

#include "handlers/files/OvxOlderFiles.h"
#include "handlers/files/OvxRolloverPoints.h"
#include "messages/Messages.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace olvex;

namespace {

// What files are copied and compared in, off the stack, which may be small in a host. The API mutex
// is held.
char block[8192];
constexpr std::size_t kHalfBlock = sizeof block / 2;

// The passing file's name is the log's with this behind it.
constexpr char kPassing[] = ".ovx-roll";

// How often a copy is flushed, since records came while it was.
constexpr int kMostFlushes = 3;

bool exists(const char *path)
{
    struct stat status = {};
    return path && lstat(path, &status) == 0;
}

// The name under which the active file is copied; none when memory ran out.
Text passingPath(const OvxFileHandlerVars &vars)
{
    CxStringBuff path = {};
    if (CxStringBuffAppendStr(&path, vars.name.path.get()) &&
        CxStringBuffAppendStr(&path, kPassing))
        return Text(CxStringBuffTakeStr(&path));
    CxStringBuffDiscard(&path);
    return nullptr;
}

// A file for the length of a scope; without a path it is not open and has not failed.
class OpenFile {
  public:
    OpenFile(const char *path, int flags, std::uint32_t mode)
    {
        if (path) result_ = CxFileOpenMode(&file_, path, flags, mode);
        if (!ok(result_)) file_ = -1;
    }
    ~OpenFile()
    {
        if (isOpen()) CxFileClose(&file_);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    bool isOpen() const { return file_ >= 0; }
    CxResult result() const { return result_; }
    CxFile *get() { return &file_; }

    bool flush() { return ok(CxFileFlush(&file_)); }
    bool close() { return ok(CxFileClose(&file_)); }

  private:
    CxFile file_ = -1;
    CxResult result_ = success();
};

// What stands under the passing name.
enum class Left {
    kNothing,
    kBeginning, // a copy of what the active file begins with, to be made anew
    kRest,      // a copy of what the active file does not hold any more
    kForeign,   // nothing that a rollover made, or that can be read: it is left alone
};

// Compares a copy with the active file.
Left compare(CxFile active, CxFile copy)
{
    char *const ours = block;
    char *const theirs = block + kHalfBlock;
    for (off_t at = 0;;) {
        const ssize_t count = pread(copy, theirs, kHalfBlock, at);
        if (count == 0) return Left::kBeginning;
        if (count < 0) return Left::kForeign;
        const auto size = static_cast<std::size_t>(count);
        const ssize_t same = pread(active, ours, size, at);
        if (same < 0) return Left::kForeign;
        if (same != count || std::memcmp(ours, theirs, size) != 0) return Left::kRest;
        at += count;
    }
}

Left whatIsLeft(const OvxFileHandlerVars &vars, const char *passingName)
{
    struct stat status = {};
    if (!passingName || lstat(passingName, &status) != 0) return Left::kNothing;
    if (!S_ISREG(status.st_mode)) return Left::kForeign;
    OpenFile copy(passingName, O_RDONLY | O_NOFOLLOW, 0);
    return copy.isOpen() ? compare(vars.file, *copy.get()) : Left::kForeign;
}

// Makes room at number 1: the last file goes, each other one moves up. Ends at the first file that
// cannot be moved, or goes on. Both functions tell whether all were moved.
class Shift {
  public:
    Shift(const OvxFileHandlerVars &vars, bool goesOn, Failures &failures)
        : vars_(vars), goesOn_(goesOn), failures_(failures)
    {}

    bool all()
    {
        bool isMoved = true;
        // NOLINTNEXTLINE(bugprone-infinite-loop): the number is another each time
        for (OlderFiles older(vars_.name, vars_.maxFiles - 1); const std::int32_t n = older.next();)
            if (isMoved = move(n) && isMoved; !isMoved && !goesOn_) return false;
        return isMoved;
    }

    // Goes on with a shift that was cut short: what lies above the gap has been moved.
    bool rest()
    {
        std::int32_t gap = 1;
        while (gap < vars_.maxFiles && exists(vars_.name.pathOf(gap).get()))
            ++gap;
        if (gap == vars_.maxFiles) return all();
        bool isMoved = true;
        while (--gap >= 1)
            if (isMoved = move(gap) && isMoved; !isMoved && !goesOn_) return false;
        return isMoved;
    }

  private:
    bool move(std::int32_t number)
    {
        const bool isLast = number == vars_.maxFiles - 1;
        const CxResult moved =
            isLast ? removeIfThere(vars_.name.pathOf(number).get()) : moveUp(vars_.name, number);
        failures_.add(moved);
        rolloverPoint(isLast ? "removed" : "renamed");
        return ok(moved);
    }

    const OvxFileHandlerVars &vars_;
    bool goesOn_;
    Failures &failures_;
};

// Copies the active file from where it was read to on; read and write failures end the copy and are
// noted. How many bytes, or -1.
std::int64_t copyOn(OvxFileHandlerVars &vars, CxFile *backup, Failures &failures)
{
    for (std::int64_t copied = 0;;) {
        std::int64_t count = 0;
        if (!ok(CxFileRead(&vars.file, block, sizeof block, &count))) return failures.addRead(), -1;
        if (count == 0) return copied;
        if (!ok(writeAll(backup, block, static_cast<std::size_t>(count))))
            return failures.addWrite(), -1;
        copied += count;
        rolloverPoint("copying");
    }
}

// Copies the active file and flushes the copy. A process whose semaphore was removed under it may
// write a record meanwhile, which is copied too. False when something failed, which is noted.
bool copyActive(OvxFileHandlerVars &vars, OpenFile &backup, Failures &failures)
{
    if (!ok(CxFileSeek(&vars.file, 0, SEEK_SET))) return failures.addRead(), false;
    std::int64_t copied = copyOn(vars, backup.get(), failures);
    for (int n = 0; n < kMostFlushes && copied >= 0; ++n) {
        if (!backup.flush()) return failures.addWrite(), false;
        copied = copyOn(vars, backup.get(), failures);
        if (copied == 0) break;
    }
    return copied >= 0;
}

bool emptyActive(OvxFileHandlerVars &vars, Failures &failures)
{
    rolloverPoint("copied");
    const CxResult emptied = CxFileTrunc(&vars.file);
    failures.add(emptied);
    if (ok(emptied)) vars.state.size = 0;
    rolloverPoint("truncated");
    return ok(emptied);
}

// Copies the active file, as far as that goes, and empties it.
void moveContent(OvxFileHandlerVars &vars, OpenFile &backup, Failures &failures)
{
    if (!backup.isOpen()) {
        failures.addOpen();
        failures.addWrite();
    } else if (copyActive(vars, backup, failures); !backup.close()) {
        failures.addWrite();
    }
    emptyActive(vars, failures);
    vars.state.size = 0;
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

// A rollover that leaves everything as it is unless the copy can be made.
class CarefulRollover {
  public:
    CarefulRollover(OvxFileHandlerVars &vars, OpenFile &passing, const char *passingName)
        : vars_(vars), passing_(passing), passingName_(passingName)
    {}

    // Failures are told once, however often it is tried.
    void run(bool wasCutShort, Failures &failures)
    {
        const bool isDone = hasRoom() ? roll(wasCutShort) : giveUpEarly(wasCutShort);
        if (isDone || !vars_.rolloverWaits) failures.add(noted_);
        vars_.rolloverWaits = !isDone;
    }

  private:
    // Whether there is a passing file, and room on the disk for what goes into it. A file system
    // that cannot say so is believed to have it.
    bool hasRoom()
    {
        if (!passing_.isOpen()) {
            noted_.add(passing_.result());
            return noted_.addWrite(), false;
        }
        if (fallocate(*passing_.get(), FALLOC_FL_KEEP_SIZE, 0,
                      static_cast<off_t>(vars_.state.size)) == 0 ||
            (errno != ENOSPC && errno != EDQUOT))
            return true;
        noted_.add(failure(errno));
        return noted_.addWrite(), false;
    }

    bool roll(bool wasCutShort)
    {
        Shift shift(vars_, false, noted_);
        const Text first = vars_.name.pathOf(1);
        if (!(wasCutShort ? shift.rest() : shift.all()) || exists(first.get()))
            return noted_.addWrite(), giveUp();
        if (!copyActive(vars_, passing_, noted_) || !emptyActive(vars_, noted_)) return giveUp();
        if (!ok(CxFileNameRename(passingName_, first.get()))) noted_.addWrite();
        return true;
    }

    // The passing file stays, as a mark that files have been moved, but takes no room.
    bool giveUp()
    {
        if (passing_.isOpen()) noted_.add(resultOf(ftruncate(*passing_.get(), 0)));
        return false;
    }

    bool giveUpEarly(bool wasCutShort)
    {
        giveUp();
        if (passing_.isOpen() && !wasCutShort) noted_.add(removeIfThere(passingName_));
        return false;
    }

    OvxFileHandlerVars &vars_;
    OpenFile &passing_;
    const char *passingName_;
    Failures noted_;
};

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
    if (vars.maxFiles < 2) return;
    const Text passingName = passingPath(vars);
    if (whatIsLeft(vars, passingName.get()) != Left::kRest) return;
    const Text first = vars.name.pathOf(1);
    if (Shift(vars, false, failures).rest() && !exists(first.get()))
        failures.add(renameIfThere(passingName.get(), first.get()));
}

} // namespace olvex

void ovxMultiProcFileHandlerDoRollover(OvxFileHandlerVars &vars, Failures &failures)
{
    const Text passingName = passingPath(vars);
    const Left left = whatIsLeft(vars, passingName.get());
    const bool isFree = left == Left::kNothing || left == Left::kBeginning;
    const bool wasCutShort = left == Left::kBeginning || left == Left::kRest;
    OpenFile passing(isFree ? passingName.get() : nullptr, O_CREAT | O_RDWR | O_TRUNC | O_NOFOLLOW,
                     vars.filePermission);
    rolloverPoint("begun");
    if (!vars.emptyUncopied)
        return CarefulRollover(vars, passing, passingName.get()).run(wasCutShort, failures);
    Shift shift(vars, true, failures);
    wasCutShort ? shift.rest() : shift.all();
    ovxMultiProcFileHandlerRollActiveLog(vars, passing, passingName.get(), failures);
}
