// What a logging call costs: skipped, and through logger, handler and basic formatter into a sink
// that throws the text away.
#include <benchmark/benchmark.h>

#include <cstdio>

#include <olvex/class.h>
#include <olvex/olvex.h>

#include "Allocations.h"

namespace {

// A handler that formats as the built-in ones do, and keeps nothing.
extern "C" void formatAndDrop(OvxObject *handler, OvxEvent *event)
{
    char *text = ovxIntlHandlerDoFmt(handler, event);
    benchmark::DoNotOptimize(text);
    BaxMemoryFree(text);
}

// A handler that does nothing: what is left is the making of the event.
extern "C" void drop(OvxObject *, OvxEvent *event)
{
    benchmark::DoNotOptimize(event);
}

// The toolkit, opened once, with a logger for each kind of handler.
class Setup {
  public:
    static Setup &get()
    {
        static Setup setup;
        return setup;
    }

    OvxObject *makeLogger(const char *name, const char *handlerClass)
    {
        OvxObject *logger = OvxGetObject(name, "ovx_basiclogger");
        OvxObject *handler = OvxGetObject(handlerClass, handlerClass);
        OvxSetObjProp(logger, "level", "INFO");
        OvxAddListener(logger, handler);
        OvxReleaseObject(handler);
        return logger;
    }

  private:
    Setup()
    {
        OvxOpenToolkit(nullptr);
        OvxAddHandlerClass("bench_sink", nullptr, nullptr, nullptr, nullptr, formatAndDrop, nullptr,
                           nullptr);
        OvxAddHandlerClass("bench_drop", nullptr, nullptr, nullptr, nullptr, drop, nullptr,
                           nullptr);
    }
    ~Setup() { OvxCloseToolkit(); }
};

void disabledThroughFunction(benchmark::State &state)
{
    OvxObject *logger = Setup::get().makeLogger("disabled", "bench_sink");
    for (auto _ : state) {
        benchmark::DoNotOptimize(logger);
        bool loggable = OvxIsLoggable(logger, OVX_LEVEL_DEBUG_MIN);
        benchmark::DoNotOptimize(loggable);
    }
    OvxReleaseObject(logger);
}
BENCHMARK(disabledThroughFunction);

void disabledInline(benchmark::State &state)
{
    OvxObject *logger = Setup::get().makeLogger("disabled", "bench_sink");
    for (auto _ : state) {
        benchmark::DoNotOptimize(logger);
        OVX_IF_LOGGABLE(logger, OVX_LEVEL_DEBUG_MIN)
        OvxLogDebugMin(logger, __FILE__, __func__, __LINE__, "never", 0);
    }
    OvxReleaseObject(logger);
}
BENCHMARK(disabledInline);

void logEvents(benchmark::State &state, const char *handlerClass)
{
    OvxObject *logger = Setup::get().makeLogger(handlerClass, handlerClass);
    const auto logOne = [&] {
        OvxLogInfo(logger, nullptr, 0, 0, "The user %1$s opened the file %2$s for the %3$d. time",
                   OVX_PARM_STRING, "operator", OVX_PARM_STRING, "/var/lib/shop/orders.db",
                   OVX_PARM_INT, 4711, 0);
    };
    for (int warmUp = 0; warmUp < 100; ++warmUp)
        logOne();
    const long before = allocationCount();
    for (auto _ : state)
        logOne();
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(allocationCount() - before), benchmark::Counter::kAvgIterations);
    OvxReleaseObject(logger);
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

// The library's own handler for standard error, which leads to nowhere here and is given a buffer,
// so that no system call is measured.
void eventThroughConsoleHandler(benchmark::State &state)
{
    static char buffer[1 << 16];
    static FILE *nowhere = std::freopen("/dev/null", "w", stderr);
    std::setvbuf(nowhere, buffer, _IOFBF, sizeof buffer);
    logEvents(state, "ovx_stderrhandler");
}
BENCHMARK(eventThroughConsoleHandler);

} // namespace
