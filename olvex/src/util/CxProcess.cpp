// The process itself and its children, and the trace texts for debugging.
#include "util/CxProcess.h"

#include "util/CxResult.h"

#include <atomic>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <sys/auxv.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr int kExecFailed = 127;

// Asked for once, and again in a child after a fork.
std::atomic<pid_t> currentId{0};

void forgetId()
{
    currentId.store(0, std::memory_order_relaxed);
}

[[gnu::constructor]] void renewAfterForks()
{
    pthread_atfork(nullptr, nullptr, forgetId);
}

// The low byte of a status is 0 for a normal exit; bits 8 to 15 hold the exit status then.
void readStatus(int bits, CxProcessStatus &status)
{
    const int low = bits & 0xFF;
    const int high = bits >> 8 & 0xFF;
    status.finished = true;
    if (low == 0) status.exitCode = high;
    status.signaled = low != 0 && high == 0;
    if (status.signaled) status.signal = low & 0x7F;
}

// `prepare` runs in the child, where only what signal handlers may call can be used.
template <class Prepare>
CxResult createProcess(std::int32_t *pid, const char *path, char *const *argv, Prepare prepare)
{
    if (!pid || !path || !*path) return badArgument();
    char *const none[] = {nullptr};
    *pid = fork();
    if (*pid == 0) {
        prepare();
        execv(path, argv ? argv : none);
        _exit(kExecFailed);
    }
    return resultOf(*pid);
}

constexpr int kTraceStep = 3;
int traceIndent = 0;

void writeTrace(const char *word, const char *format, std::va_list list)
{
    std::fprintf(stderr, "%*s%s ", traceIndent > 0 ? traceIndent : 0, "", word);
    std::vfprintf(stderr, format, list);
    std::fflush(stderr);
}

} // namespace

bool cxIsPrivileged()
{
    return getauxval(AT_SECURE) != 0;
}

const char *cxTrustedEnv(const char *name)
{
    return name ? secure_getenv(name) : nullptr;
}

const char *CxProcessGetEnv(const char *name)
{
    return name ? std::getenv(name) : nullptr;
}

int64_t CxProcessGetCurrentID(void)
{
    pid_t id = currentId.load(std::memory_order_relaxed);
    if (id == 0) currentId.store(id = getpid(), std::memory_order_relaxed);
    return id;
}

CxResult CxProcessGetCwd(char *buffer, size_t size)
{
    if (!buffer || size == 0) return badArgument();
    if (getcwd(buffer, size)) return success();
    *buffer = '\0';
    return failure(errno);
}

CxResult CxProcessCreate(int32_t *pid, const char *path, char *const *argv)
{
    return createProcess(pid, path, argv, [] {});
}

CxResult cxProcessCreateAlone(int32_t *pid, const char *path, char *const *argv)
{
    return createProcess(pid, path, argv, [] {
        setpgid(0, 0);
        closefrom(STDERR_FILENO + 1);
    });
}

CxResult CxProcessWaitFor(int32_t *pid, CxProcessStatus *status, bool wait)
{
    if (!pid || !status || *pid == -1) return badArgument();
    *status = {};
    int bits = 0;
    pid_t ended;
    do {
        ended = waitpid(*pid, &bits, wait ? 0 : WNOHANG);
    } while (ended < 0 && errno == EINTR);
    if (ended > 0) readStatus(bits, *status);
    return resultOf(ended);
}

CxResult CxProcessRelease(int32_t pid)
{
    return pid == 0 ? badArgument() : success();
}

void cxIntlTraceEnter(const char *format, ...)
{
    std::va_list list;
    va_start(list, format);
    writeTrace("ENTER", format, list);
    va_end(list);
    traceIndent += kTraceStep;
}

void cxIntlTraceLeave(const char *format, ...)
{
    traceIndent -= kTraceStep;
    std::va_list list;
    va_start(list, format);
    writeTrace("LEAVE", format, list);
    va_end(list);
}

void cxIntlTracePoint(const char *format, ...)
{
    std::va_list list;
    va_start(list, format);
    writeTrace("...", format, list);
    va_end(list);
}
