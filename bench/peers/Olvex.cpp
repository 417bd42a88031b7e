// olvex: a properties file as a host would have it, and the debugging call that records the source.
#include "Peer.h"

#include <cstdlib>
#include <cstring>
#include <sys/sem.h>
#include <unistd.h>

#include <olvex/class.h>
#include <olvex/olvex.h>

namespace {

OvxObject *logger = nullptr;

std::string handlerProperties(peer::Output output, const std::string &path)
{
    const auto limits = [](int bytes, int files) {
        return "out.maxFileBytes=" + std::to_string(bytes) +
               "\nout.maxFiles=" + std::to_string(files) + "\n";
    };
    const std::string name = "out.fileName=" + path + "\n";
    switch (output) {
    case peer::Output::kFile: return "out.className=ovx_filehandler\nout.maxFiles=1\n" + name;
    case peer::Output::kRolling:
        return "out.className=ovx_filehandler\n" + name +
               limits(peer::kRollingBytes, peer::kRollingFiles);
    case peer::Output::kShared:
        return "out.className=ovx_multiproc_filehandler\n" + name +
               "out.MPFileSemKey=" + std::to_string(getppid()) + "\n" +
               limits(peer::kSharedBytes, peer::kSharedFiles);
    default: return "out.className=nowhere\n";
    }
}

// A handler that formats as the built-in ones do, and keeps nothing.
extern "C" void formatAndDrop(OvxObject *handler, OvxEvent *event)
{
    char *text = ovxIntlHandlerDoFmt(handler, event);
    if (text) peer::bytesDropped += static_cast<long>(std::strlen(text));
    BaxMemoryFree(text);
}

bool openWith(const std::string &properties)
{
    char name[] = "/tmp/olvex-bench-XXXXXX";
    const int file = mkstemp(name);
    if (file < 0) return false;
    const bool written = write(file, properties.data(), properties.size()) ==
                         static_cast<ssize_t>(properties.size());
    close(file);
    const bool opened = written && OvxOpenToolkit(name);
    unlink(name);
    return opened;
}

} // namespace

namespace peer {

bool open(Output output, const std::string &path)
{
    if (!openWith("app.className=ovx_basiclogger\napp.level=DEBUG_MIN\napp.listenerNames=out\n" +
                  handlerProperties(output, path)))
        return false;
    OvxAddHandlerClass("nowhere", nullptr, nullptr, nullptr, nullptr, formatAndDrop, nullptr,
                       nullptr);
    logger = OvxGetObject("app", nullptr);
    return logger != nullptr;
}

void log(int number)
{
    OvxLogDebugMin(logger, kSource, kFunction, kLine, "The %1$s ordered %2$s, %3$d",
                   OVX_PARM_STRING, kCustomer, OVX_PARM_STRING, kArticle, OVX_PARM_INT, number, 0);
}

void skip(int number)
{
    OVX_IF_LOGGABLE(logger, OVX_LEVEL_DEBUG_MAX)
    OvxLogDebugMax(logger, kSource, kFunction, kLine, "%1$d", OVX_PARM_INT, number, 0);
}

void skipThroughCall(int)
{
    if (OvxIsLoggable(logger, OVX_LEVEL_DEBUG_MAX)) std::abort();
}

void close()
{
    OvxReleaseObject(logger);
    OvxCloseToolkit();
}

// The key is the number of the process that starts the writers.
void forgetShared()
{
    const int semaphore = semget(getpid(), 1, 0);
    if (semaphore >= 0) semctl(semaphore, 0, IPC_RMID);
}

} // namespace peer
