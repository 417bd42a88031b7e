// Copying files one by one. Neither pipes nor devices can hold the host up: files are opened
// without waiting and only regular ones are read and written.
#include "handlers/capture/OvxFileCopy.h"

#include <olvex/Misc.h>

#include <algorithm>

#include "handlers/capture/OvxFFDCTriggerHandler.h"
#include "handlers/files/OvxFileState.h"
#include "handlers/files/OvxLogFiles.h"
#include "messages/Messages.h"
#include "util/CxResult.h"

#include <fcntl.h>
#include <sys/stat.h>

using namespace olvex;

namespace {

// Off the stack, which may be small in a host. The API mutex is held.
char block[8192];

constexpr std::size_t kTargetLimit = 255; // bytes of its path that a copy must stay below

constexpr int kNeverWait = O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;

constexpr char kSafePunctuation[] = "_ \"'%+,-./:=@\\~";

bool isSafe(char c)
{
    return CxIsASCIIAlpha(c) || CxIsASCIIDigit(c) || std::strchr(kSafePunctuation, c);
}

void reportMissing(const char *file, const char *handlerName)
{
    report(OVX_LEVEL_WARN, Message::kCopySourceMissing, file, handlerName);
}

// An open regular file, closed with its scope.
class RegularFile {
  public:
    RegularFile(const char *path, int flags)
    {
        if (!ok(CxFileOpen(&file_, path, flags | kNeverWait))) file_ = -1;
        isOpen_ = file_ >= 0 && readFileState(file_, state_) == 0 && state_.isRegular;
    }
    ~RegularFile()
    {
        if (file_ >= 0) CxFileClose(&file_);
    }
    RegularFile(const RegularFile &) = delete;
    RegularFile &operator=(const RegularFile &) = delete;

    bool isOpen() const { return isOpen_; }
    std::int64_t size() const { return static_cast<std::int64_t>(state_.size); }

    // The bytes read, 0 at the end, -1 on failure.
    std::int64_t read(char *bytes, std::size_t size)
    {
        std::int64_t count = -1;
        return ok(CxFileRead(&file_, bytes, size, &count)) ? count : -1;
    }
    bool write(const char *bytes, std::size_t size) { return ok(writeAll(&file_, bytes, size)); }
    bool finish()
    {
        const bool flushed = ok(CxFileFlush(&file_));
        return ok(CxFileClose(&file_)) && flushed;
    }

  private:
    CxFile file_ = -1;
    FileState state_;
    bool isOpen_ = false;
};

enum class Outcome { kCopied, kSourceFailed, kTargetFailed, kCut };

// Copies at most so many bytes, and counts down what is left of them. Whole blocks are read, since
// there are files that give nothing else.
Outcome copyBlocks(RegularFile &source, RegularFile &target, std::int64_t &most)
{
    for (;;) {
        const std::int64_t count = source.read(block, sizeof block);
        if (count < 0) return Outcome::kSourceFailed;
        if (count == 0) return Outcome::kCopied;
        const std::int64_t taken = std::min(count, most);
        if (!target.write(block, static_cast<std::size_t>(taken))) return Outcome::kTargetFailed;
        most -= taken;
        if (taken < count) return Outcome::kCut;
    }
}

// A file of unknown size goes to its end, or as far as the quota. Of one that grows while it is
// copied no more is taken than it had.
Outcome copyContent(RegularFile &source, RegularFile &target, std::int64_t &quota)
{
    if (source.size() == 0) return copyBlocks(source, target, quota);
    std::int64_t size = source.size();
    const Outcome outcome = copyBlocks(source, target, size);
    return outcome == Outcome::kCut ? Outcome::kCopied : outcome;
}

// A file that stands there already is written over from its beginning, and keeps what is behind.
// Links are followed on neither side.
Outcome copyFile(const char *from, const char *to, std::int64_t &quota)
{
    RegularFile source(from, O_RDONLY);
    if (!source.isOpen()) return Outcome::kSourceFailed;
    RegularFile target(to, O_CREAT | O_RDWR);
    if (!target.isOpen()) return Outcome::kTargetFailed;
    const Outcome outcome = copyContent(source, target, quota);
    const bool finished = target.finish();
    return outcome == Outcome::kCopied && !finished ? Outcome::kTargetFailed : outcome;
}

const char *lastNameOf(const char *path)
{
    const char *slash = BaxStringRChr(path, '/');
    return slash ? slash + 1 : path;
}

Text joinPath(const char *dir, const char *name)
{
    const char *const parts[] = {dir, name};
    return Text(OvxStrACat(2, parts, "/"));
}

} // namespace

namespace olvex {

bool isKeptOut(const char *path)
{
    struct stat status = {};
    return path && lstat(path, &status) == 0 && !S_ISREG(status.st_mode) &&
           !S_ISDIR(status.st_mode);
}

void reportNotCopied(const char *path, const char *handlerName)
{
    report(OVX_LEVEL_WARN, Message::kNotCopied, handlerName, path);
}

} // namespace olvex

bool ovxFileExists(const char *path)
{
    CxFilePath file;
    return CxInitFilePath(&file, path) == 1 && CxFilePathExists(&file) == 0;
}

bool ovxIsFilenameUnsafe(const char *name)
{
    for (; name && *name; ++name)
        if (!isSafe(*name)) return true;
    return false;
}

bool ovxFCHValidateFilesToCopy(const char *files, const char *handlerName)
{
    bool isAnyThere = false;
    forEachListedFile(files, [&](const char *file) {
        if (ovxFileExists(file))
            isAnyThere = true;
        else
            reportMissing(file, handlerName);
    });
    return isAnyThere;
}

void ovxFCHDoFileCopy(const char *file, const char *dir, const char *handlerName,
                      std::int64_t &quota)
{
    if (!file || !dir) return;
    const Text source = nativePath(file);
    const char *name = source ? lastNameOf(source.get()) : "";
    if (!*name) return reportMissing(file, handlerName);
    if (isKeptOut(source.get())) return reportNotCopied(source.get(), handlerName);
    const Text target = joinPath(dir, name);
    if (!target) return;
    const Outcome outcome = BaxStringLen(target.get()) < kTargetLimit
                                ? copyFile(source.get(), target.get(), quota)
                                : Outcome::kTargetFailed;
    if (outcome == Outcome::kCopied) return;
    if (outcome == Outcome::kSourceFailed)
        reportMissing(source.get(), handlerName);
    else
        reportNotCopied(target.get(), handlerName);
}

// A directory that could not be made shows here: no copy succeeds.
void ovxFileCopyHandlerCopyToDir(const char *files, const char *dir, const char *handlerName,
                                 std::int64_t quota)
{
    if (!ovxFCHValidateFilesToCopy(files, handlerName)) return;
    forEachListedFile(files,
                      [&](const char *file) { ovxFCHDoFileCopy(file, dir, handlerName, quota); });
}
