// The tracer that writes lines to standard output or standard error. No locks: each line is one
// write to a stream, which locks itself, and the number of methods entered is atomic.
#include <olvex/trace/StdoutTracer.h>

#include <cstring>
#include <ctime>
#include <unistd.h>

#include "CutText.h"

// What differs between the lines; text stands before and behind the indent.
struct StdoutTracer::Line {
    Level level;
    const char *method;
    const char *before;
    char fill;
    std::size_t indent;
    const char *behind;
};

namespace {

// Not constexpr, so that the compiler does not warn of a year in two digits, which is what is
// meant.
const char *const kTimeFormat = "%y/%m/%d %H:%M:%S";

// A text of one repeated character. Without memory for a long one it is empty.
class Indent {
  public:
    Indent(char fill, std::size_t count) : text_(short_)
    {
        if (count >= sizeof short_) text_ = static_cast<char *>(BaxMemoryMalloc(count + 1));
        if (!text_) {
            text_ = short_;
            count = 0;
        }
        std::memset(text_, fill, count);
        text_[count] = '\0';
    }
    ~Indent()
    {
        if (text_ != short_) BaxMemoryFree(text_);
    }
    Indent(const Indent &) = delete;
    Indent &operator=(const Indent &) = delete;
    const char *get() const { return text_; }

  private:
    char *text_;
    char short_[128];
};

// How many bytes of a method's name are shown.
int shownLength(const char *method)
{
    constexpr std::size_t kMost = 30;
    const std::size_t length = strnlen(method, kMost + 1);
    return static_cast<int>(length > kMost ? olvex::wholeCharacters(method, kMost) : kMost);
}

// Counts one entry less, unless there is none, and returns what is left.
unsigned leave(unsigned *nesting)
{
    unsigned level = __atomic_load_n(nesting, __ATOMIC_RELAXED);
    while (level > 0 && !__atomic_compare_exchange_n(nesting, &level, level - 1, true,
                                                     __ATOMIC_RELAXED, __ATOMIC_RELAXED)) {
    }
    return level > 0 ? level - 1 : 0;
}

} // namespace

unsigned StdoutTracer::_nestingLevel;

StdoutTracer::StdoutTracer(Component component) : StdoutTracer(component, false) {}

StdoutTracer::StdoutTracer(Component component, bool standardError)
    : level_(LEVEL_FATAL), component_(component), stream_(standardError ? stderr : stdout)
{}

void StdoutTracer::logMessage(Level level, const char *, int, const char *method, const char *text)
{
    if (!text || !takes(level)) return;
    const std::size_t nesting = __atomic_load_n(&_nestingLevel, __ATOMIC_RELAXED);
    write({level, method, "", ' ', nesting > 0 ? 2 * nesting + 2 : 0, text});
}

void StdoutTracer::logEntry(Level level, const char *, int, const char *method, const char *)
{
    if (!takes(level)) return;
    const std::size_t nesting = __atomic_fetch_add(&_nestingLevel, 1U, __ATOMIC_RELAXED);
    write({level, method, "", '-', 2 * nesting, "--> ENTRY"});
}

void StdoutTracer::logExit(Level level, const char *, int, const char *method, const char *)
{
    if (!takes(level)) return;
    const std::size_t nesting = leave(&_nestingLevel);
    write({level, method, "<--", '-', 2 * nesting, " EXIT"});
}

bool StdoutTracer::takes(Level level)
{
    return level <= getLevel();
}

void StdoutTracer::write(const Line &line)
{
    char time[20];
    const Indent indent(line.fill, line.indent);
    const char *method = line.method ? line.method : "";
    std::fprintf(stream_, "%s %c [%s] %-30.*s [%04lu] %s%s%s\n", getTimeString(time, sizeof time),
                 getLevelSymbol(line.level), getComponentSymbol(component_), shownLength(method),
                 method, getThreadId(), line.before, indent.get(), line.behind);
    std::fflush(stream_);
}

void StdoutTracer::setLevel(Level level)
{
    __atomic_store_n(&level_, level, __ATOMIC_RELAXED);
}

Tracer::Level StdoutTracer::getLevel()
{
    return __atomic_load_n(&level_, __ATOMIC_RELAXED);
}

unsigned long StdoutTracer::getThreadId()
{
    return static_cast<unsigned long>(gettid());
}

char *StdoutTracer::getTimeString(char *buffer, unsigned size)
{
    if (!buffer || size == 0) return buffer;
    const std::time_t now = std::time(nullptr);
    std::tm local;
    if (!localtime_r(&now, &local) || !std::strftime(buffer, size, "%y/%m/%d %H:%M:%S", &local))
        *buffer = '\0';
    return buffer;
}

char StdoutTracer::getLevelSymbol(Level level)
{
    return level >= LEVEL_FATAL && level <= LEVEL_INFO ? "FEWI"[level] : ' ';
}

const char *StdoutTracer::getComponentSymbol(Component component)
{
    static constexpr const char *kSymbols[] = {"Hardware", "Vpd     ", "Com     ",
                                               "XSE     ", "FileScan", "Plugin  "};
    const bool isKnown = component >= COMPONENT_HARDWARE && component <= COMPONENT_PLUGIN;
    return isKnown ? kSymbols[component] : "Unknown ";
}
