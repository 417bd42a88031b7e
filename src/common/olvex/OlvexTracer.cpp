// The tracer that writes through the toolkit, by the plain functions on its component's handle.
#include <olvex/trace/OlvexTracer.h>

namespace {

// The text is never taken as a format.
constexpr const char *kFormat = "%s";

const char *orEmpty(const char *text)
{
    return text ? text : "";
}

// The call that writes messages of a level; none for an unknown level.
decltype(&traceMAX) callFor(Tracer::Level level)
{
    switch (level) {
    case Tracer::LEVEL_FATAL:
    case Tracer::LEVEL_ERROR: return traceMIN;
    case Tracer::LEVEL_WARNING: return traceMID;
    case Tracer::LEVEL_INFO: return traceMAX;
    }
    return nullptr;
}

} // namespace

OlvexTracer::OlvexTracer(Component component) : handle_(createWrapper(component)) {}

void OlvexTracer::logMessage(Level level, const char *file, int line, const char *method,
                             const char *text)
{
    const auto call = callFor(level);
    if (call) call(handle_, line, file, method, kFormat, orEmpty(text));
}

void OlvexTracer::logEntry(Level, const char *file, int line, const char *method, const char *text)
{
    traceEntry(handle_, line, file, method, kFormat, orEmpty(text));
}

void OlvexTracer::logExit(Level, const char *file, int line, const char *method, const char *text)
{
    traceExit(handle_, line, file, method, kFormat, orEmpty(text));
}

void OlvexTracer::setLevel(Level) {}

Tracer::Level OlvexTracer::getLevel()
{
    switch (getTrcLevel(handle_)) {
    case 1: return LEVEL_ERROR;
    case 2: return LEVEL_WARNING;
    default: return LEVEL_INFO;
    }
}
