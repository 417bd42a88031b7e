// What tracing costs where nothing is written, and what a trace stream costs where something is.
#include <benchmark/benchmark.h>

#include <olvex/trace/OlvLogWrapper.h>
#include <olvex/trace/OlvexTracer.h>
#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/Trace.h>

namespace {

// A handle of a logger that takes nothing of what is traced.
OlvLogWrapper quietHandle{nullptr, 0, 1};

// Counts what reaches it, so that nothing that is measured gets lost.
class Counter : public Tracer {
  public:
    void logMessage(Level, const char *, int, const char *, const char *text) override
    {
        bytes += text[0] != '\0';
    }
    void logEntry(Level, const char *, int, const char *, const char *) override { ++bytes; }
    void logExit(Level, const char *, int, const char *, const char *) override { ++bytes; }
    void setLevel(Level) override {}
    Level getLevel() override { return LEVEL_INFO; }

    long bytes = 0;
};

void traceFunctionDisabled(benchmark::State &state)
{
    OlvLogWrapper *handle = &quietHandle;
    for (auto _ : state) {
        benchmark::DoNotOptimize(handle);
        traceMAX(handle, __LINE__, __FILE__, "run", "%d", 5);
    }
}
BENCHMARK(traceFunctionDisabled);

// Entry and exit on a tracer whose level takes neither.
template <typename Make>
void bracket(benchmark::State &state, Make tracer)
{
    for (auto _ : state) {
        Trace trace(tracer, "Component::methodOfSomeLength");
        benchmark::DoNotOptimize(&trace);
    }
}

void traceStreamDisabledConsole(benchmark::State &state)
{
    bracket(state, StdoutTracer(Tracer::COMPONENT_COMMON));
}
BENCHMARK(traceStreamDisabledConsole);

// The handle's logger takes nothing: no properties file names it.
void traceStreamDisabledToolkit(benchmark::State &state)
{
    bracket(state, OlvexTracer(Tracer::COMPONENT_COMMON));
}
BENCHMARK(traceStreamDisabledToolkit);

void traceStreamOneMessage(benchmark::State &state)
{
    Counter counter;
    Trace trace(counter, "Component::methodOfSomeLength");
    for (auto _ : state)
        trace << "x=" << 5 << " of " << 17UL << Trace::end;
    if (counter.bytes < state.iterations()) state.SkipWithError("messages were lost");
}
BENCHMARK(traceStreamOneMessage);

} // namespace
