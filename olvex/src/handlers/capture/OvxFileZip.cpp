// Copying files into a zip archive by running an external program.
#include "handlers/capture/OvxFileCopy.h"

#include <olvex/Misc.h>
#include <olvex/Process.h>

#include <algorithm>

#include "handlers/capture/OvxFFDCTriggerHandler.h"
#include "messages/Messages.h"
#include "util/CxProcess.h"
#include "util/CxResult.h"

#include <csignal>
#include <ctime>

using namespace olvex;

namespace {

// A zip program that takes longer hangs, and holds up everything that logs.
constexpr std::int64_t kLongestZipRun = 5 * 60 * 1000; // milliseconds

constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

void reportFailure(CxResult result)
{
    OvxReportPlatformErr(result.kind, result.code);
}

std::int64_t millisecondsNow()
{
    std::timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * std::int64_t{1000} + now.tv_nsec / kNanosecondsPerMillisecond;
}

void sleepFor(std::int64_t milliseconds)
{
    std::timespec time = {};
    time.tv_sec = static_cast<std::time_t>(milliseconds / 1000);
    time.tv_nsec = static_cast<long>(milliseconds % 1000 * kNanosecondsPerMillisecond);
    nanosleep(&time, nullptr);
}

// Looks again and again, at longer and longer intervals, whether the child has ended; false when it
// had to be killed.
bool waitForEnd(std::int32_t pid, std::int64_t longest)
{
    constexpr std::int64_t kLongestPause = 50;
    const std::int64_t deadline = millisecondsNow() + longest;
    CxProcessStatus status = {};
    CxResult result = CxProcessWaitFor(&pid, &status, false);
    for (std::int64_t pause = 1; ok(result) && !status.finished;
         pause = std::min(pause * 2, kLongestPause)) {
        if (millisecondsNow() >= deadline) {
            kill(-pid, SIGKILL); // with what it has started
            kill(pid, SIGKILL);  // had it no group of its own yet
            reportFailure(CxProcessWaitFor(&pid, &status, true));
            return false;
        }
        sleepFor(pause);
        result = CxProcessWaitFor(&pid, &status, false);
    }
    reportFailure(result);
    return true;
}

// An argument vector that owns its strings; it ends with the null that a program expects.
class Arguments {
  public:
    explicit Arguments(int room)
        : items_(static_cast<char **>(
              BaxMemoryCalloc(static_cast<std::size_t>(room) + 1, sizeof(char *)))),
          room_(items_ ? room : 0)
    {}
    ~Arguments()
    {
        for (int i = 0; i < count_; ++i)
            BaxMemoryFree(items_.get()[i]);
    }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    // Borrowed text; what there is no room or memory for makes the whole unusable.
    void add(const char *text)
    {
        char *copy = count_ < room_ ? BaxStringDup(text) : nullptr;
        if (copy)
            items_.get()[count_++] = copy;
        else
            room_ = 0;
    }
    char *const *get() const { return room_ > 0 ? items_.get() : nullptr; }

  private:
    Owned<char *> items_;
    int room_;
    int count_ = 0;
};

// A path that begins as an option of the program does is given as "./-path".
void addPath(Arguments &arguments, const char *path)
{
    if (!path || (*path != '-' && *path != '@')) return arguments.add(path);
    const char *const parts[] = {"./", path};
    const Text named(OvxStrACat(2, parts, nullptr));
    arguments.add(named.get());
}

// What is not captured is not given to the program either: it might wait for ever.
void addFile(Arguments &arguments, const char *file, const char *handlerName)
{
    const Text native = nativePath(file);
    if (isKeptOut(native.get()))
        reportNotCopied(native.get(), handlerName);
    else if (ovxFileExists(native.get()))
        addPath(arguments, native.get());
}

bool runZip(const char *zipCmdPath, const char *files, int fileCount, const char *zipPath,
            const char *handlerName)
{
    constexpr int kOtherArguments = 4;
    Arguments arguments(fileCount + kOtherArguments);
    for (const char *text : {" ", "-q", "-j"})
        arguments.add(text);
    addPath(arguments, zipPath);
    forEachListedFile(files, [&](const char *file) { addFile(arguments, file, handlerName); });
    if (!arguments.get()) return false;
    return runProgram(zipCmdPath, arguments.get(), kLongestZipRun);
}

} // namespace

namespace olvex {

bool runProgram(const char *path, char *const *arguments, std::int64_t longest)
{
    std::int32_t pid = -1;
    const CxResult created = cxProcessCreateAlone(&pid, path, arguments);
    reportFailure(created);
    if (!ok(created)) return true;
    const bool ended = waitForEnd(pid, longest);
    reportFailure(CxProcessRelease(pid));
    return ended;
}

} // namespace olvex

void ovxFileCopyHandlerCopyToZip(const char *zipCmdPath, const char *files, int fileCount,
                                 const char *dir, const char *zipFile, const char *handlerName)
{
    if (!zipCmdPath) return;
    const char *const parts[] = {dir, zipFile};
    const Text zipPath(OvxStrACat(2, parts, "/"));
    const bool ended = !ovxFCHValidateFilesToCopy(files, handlerName) ||
                       runZip(zipCmdPath, files, fileCount, zipPath.get(), handlerName);
    if (ended && ovxFileExists(zipPath.get())) return;
    if (ovxFileExists(zipCmdPath))
        report(OVX_LEVEL_ERROR, Message::kZipNotCreated, zipPath.get());
    else
        report(OVX_LEVEL_ERROR, Message::kZipNotRun, zipCmdPath);
}
