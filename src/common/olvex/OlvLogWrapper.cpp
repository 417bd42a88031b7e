// The eight trace handles and the trace calls on them. No locks of its own; the toolkit takes its
// lock in each call.
#include "CutText.h"
#include "OlvLogCall.h"
#include "OlvLogConfig.h"
#include "Publish.h"

#include <olvex/Memory.h>
#include <olvex/Object.h>
#include <olvex/Toolkit.h>

#include <cstdio>
#include <cstring>

namespace {

struct Component {
    const char *loggerName;
    OlvLogWrapper *handle; // none until the first request
};

Component components[] = {
    {"hw.loggers.trcLogger", nullptr},       {"vpd.loggers.trcLogger", nullptr},
    {"common.loggers.trcLogger", nullptr},   {"sigeval.loggers.trcLogger", nullptr},
    {"fscanner.loggers.trcLogger", nullptr}, {"plugin.loggers.trcLogger", nullptr},
    {"use.loggers.trcLogger", nullptr},      {"net.loggers.trcLogger", nullptr},
};
constexpr int kComponents = sizeof components / sizeof *components;

int32_t levelOf(const OvxObject *logger)
{
    if (OvxIsLoggable(logger, OVX_LEVEL_DEBUG_MAX)) return 4;
    if (OvxIsLoggable(logger, OVX_LEVEL_DEBUG_MID)) return 2;
    return OvxIsLoggable(logger, OVX_LEVEL_DEBUG_MIN) ? 1 : 0;
}

OlvLogWrapper openHandle(const char *loggerName)
{
    if (!OvxOpenToolkit(g_LogPropertiesFile)) return {nullptr, 0, 0};
    olvex::relocateTraceFile();
    OvxObject *logger = OvxGetObject(loggerName, nullptr);
    if (!logger) return {nullptr, 0, 0};
    return {logger, levelOf(logger), 1};
}

OlvLogWrapper *makeHandle(const char *loggerName)
{
    auto *handle = static_cast<OlvLogWrapper *>(BaxMemoryMalloc(sizeof(OlvLogWrapper)));
    if (handle) *handle = openHandle(loggerName);
    return handle;
}

void discardHandle(OlvLogWrapper *handle)
{
    OvxReleaseObject(handle->logger);
    BaxMemoryFree(handle);
}

// The method's name as it is written, with a new string only when it has to be another one.
class MethodName {
  public:
    MethodName(const char *prefix, const char *method)
        : made_(*prefix || !method || std::strpbrk(method, "\"&'<>")
                    ? createMethodName(prefix, method)
                    : nullptr),
          name_(made_ ? made_ : method)
    {}
    ~MethodName() { BaxMemoryFree(made_); }
    MethodName(const MethodName &) = delete;
    MethodName &operator=(const MethodName &) = delete;
    const char *get() const { return name_; }

  private:
    char *made_;
    const char *name_;
};

// What does not fit is cut off, at a character's boundary.
void printText(char (&text)[olvex::kTraceBuffer], const char *format, va_list arguments)
{
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    constexpr int kLongest = sizeof text - 1;
    if (length < 0)
        text[0] = '\0';
    else if (length > kLongest)
        text[olvex::wholeCharacters(text, kLongest)] = '\0';
}

} // namespace

void olvex::writeTrace(const OlvLogWrapper &handle, const TraceKind &kind, const TracePlace &place,
                       const char *format, va_list arguments)
{
    char text[kTraceBuffer] = "";
    if (format) printText(text, format, arguments);
    const MethodName method(kind.prefix, place.method);
    kind.log(handle.logger, place.file, method.get(), place.line, text, 0);
}

inline namespace olvex_trace {

OlvLogWrapper *createWrapper(int component)
{
    if (component < 0 || component >= kComponents) return nullptr;
    Component &wanted = components[component];
    return olvex::publishedIn(
        wanted.handle, [&] { return makeHandle(wanted.loggerName); }, discardHandle);
}

OlvLogWrapper *getOlvLogHw()
{
    return createWrapper(0);
}

OlvLogWrapper *getOlvLogSw()
{
    return createWrapper(1);
}

OlvLogWrapper *getOlvLogCom()
{
    return createWrapper(2);
}

OlvLogWrapper *getOlvLogXse()
{
    return createWrapper(3);
}

OlvLogWrapper *getOlvLogFs()
{
    return createWrapper(4);
}

OlvLogWrapper *getOlvLogPlugin()
{
    return createWrapper(5);
}

OlvLogWrapper *getOlvLogUse()
{
    return createWrapper(6);
}

OlvLogWrapper *getOlvLogNet()
{
    return createWrapper(7);
}

int istraceActive(OlvLogWrapper *handle, int level)
{
    return handle && handle->level == level;
}

int getTrcLevel(OlvLogWrapper *handle)
{
    return handle ? handle->level : 0;
}

void traceMIN(OlvLogWrapper *handle, int line, const char *file, const char *method,
              const char *format, ...)
{
    OLVEX_TRACE_CALL(handle, olvex::kTraceMin);
}

void traceMID(OlvLogWrapper *handle, int line, const char *file, const char *method,
              const char *format, ...)
{
    OLVEX_TRACE_CALL(handle, olvex::kTraceMid);
}

void traceMAX(OlvLogWrapper *handle, int line, const char *file, const char *method,
              const char *format, ...)
{
    OLVEX_TRACE_CALL(handle, olvex::kTraceMax);
}

void traceEntry(OlvLogWrapper *handle, int line, const char *file, const char *method,
                const char *format, ...)
{
    OLVEX_TRACE_CALL(handle, olvex::kTraceEntry);
}

void traceExit(OlvLogWrapper *handle, int line, const char *file, const char *method,
               const char *format, ...)
{
    OLVEX_TRACE_CALL(handle, olvex::kTraceExit);
}

} // namespace olvex_trace
