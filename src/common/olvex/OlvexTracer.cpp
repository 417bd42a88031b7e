// The tracer that writes through the toolkit, by the plain functions on its component's handle.
#include <olvex/trace/OlvexTracer.h>

#include "OlvLogConfig.h"

#include <cstring>
#include <string_view>

namespace {

// The text is never taken as a format.
constexpr const char *kFormat = "%s";

// A message's text. When the trace call would cut it inside a hex dump, those lines of the dump
// that fit, and the dump's end mark; none of the dump when not even its first line fits.
class Message {
  public:
    explicit Message(const char *text) : text_(text ? text : "")
    {
        const std::string_view whole(text_);
        if (whole.size() <= kLongest) return;
        const std::string_view seen(text_, kLongest);
        const std::size_t start = whole.rfind("\n-START DATA-: ", kLongest - 1);
        if (start == seen.npos || seen.find("\n-END DATA-", start) != seen.npos) return;
        cutBehind(start, seen.rfind('\n', kLongest - kEndMark.size() - 1));
    }
    const char *get() const { return text_; }

  private:
    static constexpr std::size_t kLongest = olvex::kTraceBuffer - 1;
    static constexpr std::string_view kEndMark = "-END DATA-";

    void cutBehind(std::size_t start, std::size_t lineEnd)
    {
        const bool hasLines = lineEnd != std::string_view::npos && lineEnd > start;
        const std::size_t kept = hasLines ? lineEnd + 1 : start;
        std::memcpy(cut_, text_, kept);
        std::strcpy(cut_ + kept, hasLines ? kEndMark.data() : "");
        text_ = cut_;
    }

    const char *text_;
    char cut_[olvex::kTraceBuffer];
};

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
    if (call) call(handle_, line, file, method, kFormat, Message(text).get());
}

void OlvexTracer::logEntry(Level, const char *file, int line, const char *method, const char *text)
{
    traceEntry(handle_, line, file, method, kFormat, Message(text).get());
}

void OlvexTracer::logExit(Level, const char *file, int line, const char *method, const char *text)
{
    traceExit(handle_, line, file, method, kFormat, Message(text).get());
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
