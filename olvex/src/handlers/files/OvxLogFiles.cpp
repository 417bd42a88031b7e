// Names of log files, and the steps on files that both file handlers take.
#include "handlers/files/OvxLogFiles.h"

#include <olvex/Chars.h>
#include <olvex/Process.h>
#include <olvex/StringBuff.h>

#include "handlers/files/OvxFileState.h"
#include "messages/Messages.h"
#include "util/CxResult.h"

#include <charconv>

#include <unistd.h>

using namespace olvex;

namespace {

constexpr std::size_t kNameBuffer = kLongestLogName + 1;

Text copyOf(const char *text)
{
    return Text(BaxStringDup(text));
}

// Cuts `name` at its last dot; what stood behind it is the extension.
void cutExtension(char *name, LogName &parts)
{
    char *dot = BaxStringRChr(name, '.');
    if (!dot) return;
    parts.extension = copyOf(dot + 1);
    *dot = '\0';
}

// Cuts the digits at the end of `name`, but never its first character.
void cutNumber(char *name, LogName &parts)
{
    char *const end = name + BaxStringLen(name);
    char *digits = end;
    while (digits > name + 1 && CxIsASCIIDigit(digits[-1]))
        --digits;
    std::from_chars(digits, end, parts.number);
    *digits = '\0';
}

Text workingDirectory()
{
    char directory[kNameBuffer];
    const CxResult result = CxProcessGetCwd(directory, sizeof directory);
    if (!ok(result)) OvxReportPlatformErr(result.kind, result.code);
    return ok(result) ? copyOf(directory) : nullptr;
}

void cutDirectory(char *name, LogName &parts)
{
    char *slash = BaxStringRChr(name, '/');
    parts.base = copyOf(slash ? slash + 1 : name);
    if (slash) *slash = '\0';
    parts.directory = slash && *name ? copyOf(name) : workingDirectory();
}

// Writes what is not done yet.
CxResult writeRest(CxFile *file, const char *bytes, std::size_t count, std::size_t &done)
{
    while (done < count) {
        std::int64_t written = 0;
        const CxResult result = CxFileWrite(file, bytes + done, count - done, &written);
        if (result.code == EINTR) continue;
        if (!ok(result)) return result;
        if (written == 0) return failure(EIO); // or this would go on for ever
        done += static_cast<std::size_t>(written);
    }
    return success();
}

// Cuts off the beginning of a record that found no room, unless others have written too.
[[gnu::cold]] void takeBack(CxFile file, std::uint64_t size, std::size_t done)
{
    std::uint64_t now = 0;
    if (readFileSize(file, now) != 0 || now != size + done) return;
    if (ftruncate(file, static_cast<off_t>(size)) == 0) lseek(file, 0, SEEK_END);
}

CxResult ignoreMissing(CxResult result)
{
    return result.code == ENOENT ? success() : result;
}

// Joins a full name; false when memory ran out.
bool joinParts(CxStringBuff &name, const char *directory, const char *base, std::int32_t number,
               const char *extension)
{
    const bool hasDirectory = !directory || (CxStringBuffAppendStr(&name, directory) &&
                                             CxStringBuffAppendChar(&name, '/'));
    return hasDirectory && CxStringBuffAppendStr(&name, base) &&
           (number == 0 || CxStringBuffAppendInt32(&name, number)) &&
           (!extension ||
            (CxStringBuffAppendChar(&name, '.') && CxStringBuffAppendStr(&name, extension)));
}

} // namespace

namespace olvex {

Text LogName::pathOf(std::int32_t fileNumber) const
{
    char *joined = nullptr;
    ovxSetFileNameParts(&joined, directory.get(), base.get(), fileNumber, extension.get());
    return Text(joined);
}

bool makeLogDirectory(const LogName &name, std::uint32_t mode)
{
    CxFilePath path;
    return CxInitFilePath(&path, name.directory.get()) == 1 && CxFilePathMkdirs(&path, mode) == 0;
}

CxResult writeAll(CxFile *file, const char *bytes, std::size_t count)
{
    std::size_t done = 0;
    return writeRest(file, bytes, count, done);
}

CxResult finishRecord(CxFile *file, const char *bytes, std::size_t count, std::uint64_t size,
                      ssize_t written)
{
    if (written < 0 && errno != EINTR) return failure(errno);
    std::size_t done = written > 0 ? static_cast<std::size_t>(written) : 0;
    const CxResult result = writeRest(file, bytes, count, done);
    if (!ok(result) && done > 0) takeBack(*file, size, done);
    return result;
}

CxResult removeIfThere(const char *path)
{
    return ignoreMissing(CxFileNameRemove(path));
}

CxResult renameIfThere(const char *from, const char *to)
{
    return ignoreMissing(CxFileNameRename(from, to));
}

CxResult moveUp(const LogName &name, std::int32_t number)
{
    return renameIfThere(name.pathOf(number).get(), name.pathOf(number + 1).get());
}

} // namespace olvex

int ovxFHTrailingBaseDigit(const char *name)
{
    if (!name) return -1;
    const char *dot = BaxStringRChr(name, '.');
    const auto end = static_cast<int>(dot ? dot - name : static_cast<long>(BaxStringLen(name)));
    return end > 0 && CxIsLocalDigit(name[end - 1]) ? end - 1 : -1;
}

bool ovxGetNativePath(const char *name, char *buffer)
{
    if (!name || !buffer) return false;
    buffer[kLongestLogName] = '\0';
    return CxFileNameLocalize(name, buffer, kLongestLogName) == 1;
}

void ovxFHGetFileNameParts(const char *name, LogName &parts, bool reportsErrors)
{
    parts = LogName();
    if (!name) {
        if (reportsErrors) report(OVX_LEVEL_ERROR, Message::kValueNeeded, "fileName");
        return;
    }
    if (BaxStringLen(name) > kLongestLogName) {
        if (reportsErrors)
            report(OVX_LEVEL_ERROR, Message::kValueTooLong, "fileName", kLongestLogName);
        return;
    }
    char native[kNameBuffer];
    ovxGetNativePath(name, native);
    cutExtension(native, parts);
    cutNumber(native, parts);
    cutDirectory(native, parts);
    parts.path = parts.pathOf(parts.number);
}

void ovxSetFileNameParts(char **result, const char *directory, const char *base,
                         std::int32_t number, const char *extension)
{
    if (!result) return;
    *result = nullptr;
    if (!base) return;
    CxStringBuff name = {};
    if (joinParts(name, directory, base, number, extension)) *result = CxStringBuffTakeStr(&name);
    CxStringBuffDiscard(&name);
}
