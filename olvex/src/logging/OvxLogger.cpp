// The logging calls and the basic logger. The path of one event begins here: the public call tests
// the logger's gate without the lock, takes the lock, builds the event in the arena and hands it to
// the logger's FLog.
#include "logging/OvxLogger.h"

#include "logging/OvxEvent.h"
#include "messages/Messages.h"
#include "toolkit/OvxListeners.h"
#include "toolkit/OvxToolkit.h"
#include "util/HotPath.h"
#include "util/Locked.h"

#include <cerrno>

using namespace olvex;

namespace {

// The memory of events under way, one nested in the other when a report is logged inside a call.
Arena eventArena;

// Hands the event to the logger. A logger that is at work already, because it or one of its
// handlers reports a failure of its own, is left out: its other listeners still get the report.
void hand(OvxObject *logger, OvxFLog log, OvxEvent *event)
{
    if (logger->running) return OvxBasicObjectFLog(logger, event);
    const ObjectRef reference = ObjectRef::to(logger);
    const Running running(logger);
    if (log != OvxBasicObjectFLog || !passToListeners(logger, event)) log(logger, event);
}

OvxFLog logFunctionOf(const OvxObject *logger)
{
    return isLogger(logger) && logger->enabled ? logger->cls->slots.log : nullptr;
}

void enterMessage(OvxObject *logger, int level, const char *catalog, int set, int key,
                  const char *text, va_list parameters)
{
    const OvxFLog log = logFunctionOf(logger);
    if (!log) return;
    CallEvent event(&eventArena, level, catalog, set, key, text, parameters);
    event.get()->isMessage = true;
    hand(logger, log, event.get());
}

void enterDebug(OvxObject *logger, int level, const SourceLocation &source, const char *text,
                va_list parameters)
{
    const OvxFLog log = logFunctionOf(logger);
    if (!log) return;
    CallEvent event(&eventArena, level, nullptr, 0, 0, text, parameters);
    setSourceLocation(event.get(), source);
    hand(logger, log, event.get());
}

// Gives a host back the error number that it may be logging about.
class KeptErrno {
  public:
    KeptErrno() : place_(errno), value_(errno) {}
    ~KeptErrno() { place_ = value_; }
    KeptErrno(const KeptErrno &) = delete;
    KeptErrno &operator=(const KeptErrno &) = delete;

  private:
    int &place_;
    int value_;
};

void logMessage(OvxObject *logger, int level, const char *catalog, int set, int key,
                const char *text, va_list parameters)
{
    if (!OvxWouldLog(logger, level)) return;
    const KeptErrno kept;
    locked([&] { enterMessage(logger, level, catalog, set, key, text, parameters); });
}

void logDebug(OvxObject *logger, int level, const SourceLocation &source, const char *text,
              va_list parameters)
{
    if (!OvxWouldLog(logger, level)) return;
    const KeptErrno kept;
    locked([&] { enterDebug(logger, level, source, text, parameters); });
}

} // namespace

void ovxDiscardEventMemory()
{
    eventArena.discard();
}

bool OvxIsLoggable(const OvxObject *logger, int level)
{
    return OvxWouldLog(logger, level);
}

bool ovxIntlIsLoggable()
{
    return false;
}

OvxFLog ovxIntlLoggerGetFLog(OvxObject *logger)
{
    return logFunctionOf(logger);
}

OvxFLog OvxLoggerGetFLog(OvxObject *logger)
{
    return locked([&] { return ovxIntlLoggerGetFLog(logger); });
}

void ovxLogMessageEntry(OvxObject *logger, int level, const char *catalog, int set, int key,
                        const char *text, va_list parameters)
{
    enterMessage(logger, level, catalog, set, key, text, parameters);
}

void ovxLogDebugEntry(OvxObject *logger, int level, const char *srcFile, const char *srcFunction,
                      int srcLine, const char *text, va_list parameters)
{
    enterDebug(logger, level, {srcFile, srcFunction, srcLine}, text, parameters);
}

void ovxIntlLogVA(int level, int key, const char *text, ...)
{
    OvxObject *logger = ovxToolkitLogger();
    if (!OvxIsLoggable(logger, level)) return;
    va_list parameters;
    va_start(parameters, text);
    ovxLogMessageEntry(logger, level, textOf(Message::kCatalog), kMessageSet, key, text,
                       parameters);
    va_end(parameters);
}

void OvxBasicLoggerFCfgChange(OvxObject *logger, const char *name)
{
    if (isLogger(logger) && BaxStringCmp(name, "level") == 0) return applyLevelProperty(logger);
    OvxBasicObjectFCfgChange(logger, name);
}

// Each logging call has a form with "..." and one with a va_list; only names and levels differ.
#define DEFINE_MESSAGE_CALL(Name, level)                                                           \
    OVX_FLATTEN void Name(OvxObject *logger, const char *catalog, int set, int key,                \
                          const char *text, ...)                                                   \
    {                                                                                              \
        va_list parameters;                                                                        \
        va_start(parameters, text);                                                                \
        logMessage(logger, level, catalog, set, key, text, parameters);                            \
        va_end(parameters);                                                                        \
    }                                                                                              \
    void Name##VA(OvxObject *logger, const char *catalog, int set, int key, const char *text,      \
                  va_list parameters)                                                              \
    {                                                                                              \
        logMessage(logger, level, catalog, set, key, text, parameters);                            \
    }

#define DEFINE_DEBUG_CALL(Name, level)                                                             \
    OVX_FLATTEN void Name(OvxObject *logger, const char *srcFile, const char *srcFunction,         \
                          int srcLine, const char *text, ...)                                      \
    {                                                                                              \
        va_list parameters;                                                                        \
        va_start(parameters, text);                                                                \
        logDebug(logger, level, {srcFile, srcFunction, srcLine}, text, parameters);                \
        va_end(parameters);                                                                        \
    }                                                                                              \
    void Name##VA(OvxObject *logger, const char *srcFile, const char *srcFunction, int srcLine,    \
                  const char *text, va_list parameters)                                            \
    {                                                                                              \
        logDebug(logger, level, {srcFile, srcFunction, srcLine}, text, parameters);                \
    }

DEFINE_MESSAGE_CALL(OvxLogMsg, OVX_LEVEL_NONE)
DEFINE_MESSAGE_CALL(OvxLogInfo, OVX_LEVEL_INFO)
DEFINE_MESSAGE_CALL(OvxLogWarn, OVX_LEVEL_WARN)
DEFINE_MESSAGE_CALL(OvxLogError, OVX_LEVEL_ERROR)
DEFINE_MESSAGE_CALL(OvxLogFatal, OVX_LEVEL_FATAL)
DEFINE_DEBUG_CALL(OvxLogDebugMin, OVX_LEVEL_DEBUG_MIN)
DEFINE_DEBUG_CALL(OvxLogDebugMid, OVX_LEVEL_DEBUG_MID)
DEFINE_DEBUG_CALL(OvxLogDebugMax, OVX_LEVEL_DEBUG_MAX)

void OvxLogText(OvxObject *logger, const char *text, ...)
{
    va_list parameters;
    va_start(parameters, text);
    OvxLogTextVA(logger, text, parameters);
    va_end(parameters);
}

void OvxLogTextVA(OvxObject *logger, const char *text, va_list parameters)
{
    logDebug(logger, OVX_LEVEL_NONE, {}, text, parameters);
}

constinit const ClassSlots olvex::slots::ovx_basiclogger = {.cfgChange = OvxBasicLoggerFCfgChange,
                                                            .log = OvxBasicObjectFLog};
