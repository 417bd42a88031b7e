// The rollover of a log that several processes write.
//
// FILES. The active file keeps its inode, since every process has it open: it is copied and
// emptied, never renamed. Older files are numbered: 1 is the newest, maxFiles - 1 the oldest. The
// temporary copy has the log's name with ".ovx-roll" behind it; while it exists, a rollover is
// under way or was cut short.
//
// LOCKS. The caller holds the semaphore of the log and the rollover lock (OvxRolloverLock.h). The
// kernel gives both back when a process dies, so the next writer goes on at once.
//
// STEPS, with the rolloverPoint() at which tests end a process:
//
//   1  look at the temporary copy; create or empty it         "begun"
//   2  remove the oldest file and give each other one the     "removed", "renamed"
//      next number, highest first: number 1 is free then
//   3  copy the active file; flush the copy, and again when   "copying"
//      records came meanwhile
//   4  empty the active file                                  "copied" before, "truncated" after
//   5  rename the temporary copy to number 1
//
// A PROCESS THAT DIES leaves one of these, which the next writer of a record repairs first:
//
//   died in  left behind                         whatIsLeft  repair
//   1, 2     empty copy, full active file, a     kBeginning  a new rollover, whose step 2 begins
//            gap where step 2 stopped                        below the gap: files above have moved
//   3        part of a copy, full active file,   kBeginning  the same, which makes the copy anew
//            number 1 free
//   3 to 4   whole copy, full active file        kBeginning  the same
//   4 to 5   whole copy, empty active file       kRest       finishCutRollover(): step 5
//   after 5  nothing                             kNothing    none
//
// Full and emptied are told apart by bytes: the active file begins with what is in the copy, or it
// does not. A full active file leads to a new rollover by its size. An emptied one is looked for
// when the log is shorter than at this process's last record, and at the first record after opening
// it: so step 5 comes before any record is written to the emptied file. A process may die in a
// repair as well, and leaves one of the same states.
//
// Directories are not flushed: after a crash of the machine, the file system decides which renames
// are there. The copy is flushed before the active file is emptied.
//
// FAILURES. While emptyUncopied is true, which is the default, they end nothing: a file that cannot
// be moved stays, and the active file is emptied even when its copy failed. While it is false, the
// rollover asks the disk for room before step 2, ends at the first step that fails, and is tried
// again at the next record; the temporary copy stays meanwhile, empty, once files may have moved.
//
// Without a temporary copy, or with a number 1 that could not be moved, step 3 writes to number 1
// itself and there is no step 5; a process that dies then may leave records twice. What has the
// temporary copy's name but is no regular file or cannot be read (kForeign) is left alone.
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

// The buffer for copying and comparing; not on the stack, which may be small in a host. Used with
// the API mutex held.
char block[8192];
constexpr std::size_t kHalfBlock = sizeof block / 2;

// What the temporary copy's name has behind the log's.
constexpr char kPassing[] = ".ovx-roll";

// How often a copy is flushed at most: records may come while it is.
constexpr int kMostFlushes = 3;

bool exists(const char *path)
{
    struct stat status = {};
    return path && lstat(path, &status) == 0;
}

// The path of the temporary copy; none when memory ran out.
Text passingPath(const OvxFileHandlerVars &vars)
{
    CxStringBuff path = {};
    if (CxStringBuffAppendStr(&path, vars.name.path.get()) &&
        CxStringBuffAppendStr(&path, kPassing))
        return Text(CxStringBuffTakeStr(&path));
    CxStringBuffDiscard(&path);
    return nullptr;
}

// A file that is open for one scope. Without a path it is neither open nor failed.
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

// What is found under the temporary copy's name.
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

// Step 2: removes the oldest file and moves each other one up. A file that cannot be moved ends it,
// unless it `goesOn`. Both functions return whether all were moved.
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

    // Finishes a shift that was cut short: files above the first free number have been moved.
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

// Copies what follows the active file's position. Returns the number of bytes, or -1 after a
// failure, which is noted.
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

// Step 3. A process whose semaphore was removed while it waited may write a record meanwhile, which
// is copied too. False after a failure, which is noted.
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

// Steps 3 and 4 for emptyUncopied=true: empties the active file even if copying failed.
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

// Steps 3 to 5. Without a temporary copy, or when number 1 could not be moved away, the copy is
// written to number 1 itself.
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

// The rollover for emptyUncopied=false: it empties the active file only after a whole copy.
class CarefulRollover {
  public:
    CarefulRollover(OvxFileHandlerVars &vars, OpenFile &passing, const char *passingName)
        : vars_(vars), passing_(passing), passingName_(passingName)
    {}

    // Failures are reported once, however often it is tried.
    void run(bool wasCutShort, Failures &failures)
    {
        const bool isDone = hasRoom() ? roll(wasCutShort) : giveUpEarly(wasCutShort);
        if (isDone || !vars_.rolloverWaits) failures.add(noted_);
        vars_.rolloverWaits = !isDone;
    }

  private:
    // Whether the temporary copy is open, and the disk has room for it. A file system that cannot
    // reserve room is taken to have it.
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

    // The temporary copy stays, empty, as the mark that files have been moved.
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
