// Copying a list of files into a directory, one by one or by a zip program. What goes wrong with
// one file is reported and the others are copied. Called with the API mutex held.
#pragma once

#include <olvex/Chars.h>
#include <olvex/Types.h>

#include "util/Memory.h"

namespace olvex {

// Calls `action` with each path of a list as it stands in "filesToCopy".
template <class Action>
void forEachListedFile(const char *files, const Action &action)
{
    CxStringTokIter at = CxStringTokIterator(files, " ", 1);
    for (; CxStringTokIterHasNext(&at); CxStringTokIterNext(&at))
        if (const Text file(CxStringTokIterGet(&at)); file) action(file.get());
}

// Whether something stands there that is never captured: a pipe, a device, a socket, or a link to
// whatever it may be.
bool isKeptOut(const char *path);

void reportNotCopied(const char *path, const char *handlerName);

// Runs a program to its end, with the standard three descriptors only; false when it had to be
// killed because the time, in milliseconds, was over. Failures of the platform are reported.
bool runProgram(const char *path, char *const *arguments, std::int64_t longest);

} // namespace olvex

bool ovxFileExists(const char *path);
// Whether a name has characters that mean something to a shell, or are no ASCII.
bool ovxIsFilenameUnsafe(const char *name);
// Reports each listed file that does not exist; true when there is any that does.
bool ovxFCHValidateFilesToCopy(const char *files, const char *handlerName);
// `quota` is the bytes that files may take whose size the system does not tell, such as those below
// /proc; it becomes less with each. What is cut at its end is reported.
void ovxFCHDoFileCopy(const char *file, const char *dir, const char *handlerName,
                      std::int64_t &quota);
void ovxFileCopyHandlerCopyToDir(const char *files, const char *dir, const char *handlerName,
                                 std::int64_t quota);
void ovxFileCopyHandlerCopyToZip(const char *zipCmdPath, const char *files, int fileCount,
                                 const char *dir, const char *zipFile, const char *handlerName);
