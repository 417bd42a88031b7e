// What a logging call costs: skipped, and through logger, handler and basic formatter into a sink
// that throws the text away.
#include <benchmark/benchmark.h>

#include <cstdio>

#include <olvex/class.h>
#include <olvex/olvex.h>

#include "Allocations.h"
#include "InstalledCatalog.h"

namespace {

// What arrived where it was thrown away: a benchmark that delivers nothing must not count.
long bytesDropped = 0;

// A handler that formats as the built-in ones do, and keeps nothing.
extern "C" void formatAndDrop(OvxObject *handler, OvxEvent *event)
{
    char *text = ovxIntlHandlerDoFmt(handler, event);
    if (text) bytesDropped += text[0] != '\0';
    BaxMemoryFree(text);
}

// A handler that does nothing: what is left is the making of the event.
extern "C" void drop(OvxObject *, OvxEvent *)
{
    ++bytesDropped;
}

ssize_t dropBytes(void *, const char *, std::size_t size)
{
    bytesDropped += static_cast<long>(size);
    return static_cast<ssize_t>(size);
}

// Makes standard error lead to nowhere, through a buffer, so that no system call is measured.
void dropStandardError()
{
    static FILE *nowhere = fopencookie(nullptr, "w", {nullptr, dropBytes, nullptr, nullptr});
    stderr = nowhere;
}

void addClass(const char *name, OvxFProcess process)
{
    OvxAddHandlerClass(name, nullptr, nullptr, nullptr, nullptr, process, nullptr, nullptr);
}

// The toolkit, open, and a logger of level INFO with one handler of the given class.
class Logger {
  public:
    explicit Logger(const char *handlerClass)
    {
        OvxOpenToolkit(nullptr);
        addClass("bench_sink", formatAndDrop);
        addClass("bench_drop", drop);
        logger_ = OvxGetObject("bench.logger", "ovx_basiclogger");
        OvxObject *handler = OvxGetObject("bench.handler", handlerClass);
        OvxSetObjProp(logger_, "level", "INFO");
        OvxAddListener(logger_, handler);
        OvxReleaseObject(handler);
    }
    ~Logger()
    {
        OvxReleaseObject(logger_);
        OvxCloseToolkit();
    }
    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;

    OvxObject *get() const { return logger_; }

  private:
    OvxObject *logger_;
};

void disabledThroughFunction(benchmark::State &state)
{
    const Logger logger("bench_sink");
    for (auto _ : state) {
        bool loggable = OvxIsLoggable(logger.get(), OVX_LEVEL_DEBUG_MIN);
        benchmark::DoNotOptimize(loggable);
    }
}
BENCHMARK(disabledThroughFunction);

void disabledInline(benchmark::State &state)
{
    const Logger logger("bench_sink");
    for (auto _ : state) {
        OVX_IF_LOGGABLE(logger.get(), OVX_LEVEL_DEBUG_MIN)
        OvxLogDebugMin(logger.get(), __FILE__, __func__, __LINE__, "never", 0);
        benchmark::ClobberMemory(); // the logger's gate is read each time
    }
}
BENCHMARK(disabledInline);

void logOne(OvxObject *logger)
{
    OvxLogInfo(logger, nullptr, 0, 0, "The user %1$s opened the file %2$s for the %3$d. time",
               OVX_PARM_STRING, "operator", OVX_PARM_STRING, "/var/lib/shop/orders.db",
               OVX_PARM_INT, 4711, 0);
}

void logFromCatalog(OvxObject *logger)
{
    OvxLogInfo(logger, kCatalogName, 1, kCatalogKey, kCatalogText, OVX_PARM_STRING, "operator",
               OVX_PARM_STRING, "/var/lib/shop/orders.db", 0);
}

void logWithoutCatalog(OvxObject *logger)
{
    OvxLogInfo(logger, nullptr, 0, 0, kCatalogText, OVX_PARM_STRING, "operator", OVX_PARM_STRING,
               "/var/lib/shop/orders.db", 0);
}

void logEvents(benchmark::State &state, const char *handlerClass, void (*log)(OvxObject *) = logOne)
{
    const Logger logger(handlerClass);
    for (int warmUp = 0; warmUp < 100; ++warmUp)
        log(logger.get());
    bytesDropped = 0;
    const long before = allocationCount();
    for (auto _ : state)
        log(logger.get());
    const auto allocations = static_cast<double>(allocationCount() - before);
    state.counters["allocations"] =
        benchmark::Counter(allocations, benchmark::Counter::kAvgIterations);
    std::fflush(stderr);
    if (bytesDropped < state.iterations()) state.SkipWithError("events were lost");
}

void eventMade(benchmark::State &state)
{
    logEvents(state, "bench_drop");
}
BENCHMARK(eventMade);

void eventFormatted(benchmark::State &state)
{
    logEvents(state, "bench_sink");
}
BENCHMARK(eventFormatted);

void eventThroughConsoleHandler(benchmark::State &state)
{
    dropStandardError();
    logEvents(state, "ovx_stderrhandler");
}
BENCHMARK(eventThroughConsoleHandler);

void messageWithoutCatalog(benchmark::State &state)
{
    logEvents(state, "bench_sink", logWithoutCatalog);
}
BENCHMARK(messageWithoutCatalog);

void messageWithCatalogMissing(benchmark::State &state)
{
    logEvents(state, "bench_sink", logFromCatalog);
}
BENCHMARK(messageWithCatalogMissing);

void messageFromCatalog(benchmark::State &state)
{
    const InstalledCatalog installed;
    logEvents(state, "bench_sink", logFromCatalog);
}
BENCHMARK(messageFromCatalog);

} // namespace
