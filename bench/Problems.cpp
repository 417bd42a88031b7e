// What problem determination costs: an XML record or a trace line, from the logging call into a
// sink that throws it away, and the message-ID filter's verdict on an event with an identifier.
#include <benchmark/benchmark.h>

#include <cstdarg>

#include <olvex/class.h>
#include <olvex/olvex.h>

#include "Allocations.h"

namespace {

long recordsDropped = 0;

extern "C" void formatAndDropRecord(OvxObject *handler, OvxEvent *event)
{
    char *text = ovxIntlHandlerDoFmt(handler, event);
    if (text) recordsDropped += text[0] != '\0';
    BaxMemoryFree(text);
}

// A message with three parameters and four properties.
void logProblem(OvxObject *logger)
{
    OvxLogError(logger, nullptr, 0, 0, "SHPDB0020E The user %1$s could not read %2$s after %3$d ms",
                OVX_PARM_STRING, "operator", OVX_PARM_STRING, "/var/lib/shop/orders.db",
                OVX_PARM_INT, 4711, OVX_PROP, "product", OVX_PARM_STRING, "shop", OVX_PROP,
                "component", OVX_PARM_STRING, "database", OVX_PROP, "client", OVX_PARM_STRING,
                "operator", OVX_PROP, "order", OVX_PARM_LONG, 1234567L, 0);
}

// A line of tracing with its place in the source.
void logTrace(OvxObject *logger)
{
    OvxLogDebugMin(logger, "orders.c", "readOrders", 117, "read %1$d orders of %2$s", OVX_PARM_INT,
                   4711, OVX_PARM_STRING, "operator", 0);
}

void logThrough(benchmark::State &state, const char *loggerClass, const char *formatterClass,
                void (*logOne)(OvxObject *))
{
    OvxOpenToolkit(nullptr);
    OvxAddHandlerClass("problems_sink", nullptr, nullptr, nullptr, nullptr, formatAndDropRecord,
                       nullptr, nullptr);
    OvxObject *logger = OvxGetObject("problems.logger", loggerClass);
    OvxObject *handler = OvxGetObject("problems.handler", "problems_sink");
    OvxObject *formatter = OvxGetObject("problems.formatter", formatterClass);
    OvxHandlerSetFormatter(handler, formatter);
    OvxAddListener(logger, handler);
    for (int warmUp = 0; warmUp < 100; ++warmUp)
        logOne(logger);
    recordsDropped = 0;
    const long before = allocationCount();
    for (auto _ : state)
        logOne(logger);
    const auto allocations = static_cast<double>(allocationCount() - before);
    state.counters["allocations"] =
        benchmark::Counter(allocations, benchmark::Counter::kAvgIterations);
    if (recordsDropped < state.iterations()) state.SkipWithError("events were lost");
    OvxReleaseObject(formatter);
    OvxReleaseObject(handler);
    OvxReleaseObject(logger);
}

void xmlRecord(benchmark::State &state)
{
    logThrough(state, "ovx_basiclogger", "ovx_xmlformatter", logProblem);
}
BENCHMARK(xmlRecord);

void xmlRecordStamped(benchmark::State &state)
{
    logThrough(state, "ovx_pdlogger", "ovx_xmlformatter", logProblem);
}
BENCHMARK(xmlRecordStamped);

void traceLine(benchmark::State &state)
{
    logThrough(state, "ovx_basiclogger", "ovx_mavtraceformatter", logTrace);
}
BENCHMARK(traceLine);

void traceLineStamped(benchmark::State &state)
{
    logThrough(state, "ovx_pdlogger", "ovx_mavtraceformatter", logTrace);
}
BENCHMARK(traceLineStamped);

OvxEvent *makeEvent(const char *text, ...)
{
    va_list list;
    va_start(list, text);
    OvxEvent *event = OvxVaAllocEvent(OVX_LEVEL_ERROR, nullptr, 0, 0, text, list);
    va_end(list);
    return event;
}

// Ten patterns of all shapes, of which none matches, so that each is tried.
void filterTenPatterns(benchmark::State &state)
{
    OvxOpenToolkit(nullptr);
    OvxObject *filter = OvxGetObject("problems.filter", "ovx_msgidfilter");
    OvxSetObjProp(filter, "msgIds",
                  "*W *I SHPUI* SHPDB001* SHPDB0021E *0099* SHP*1E ABC0001E SHPNET* *BC002*");
    OvxEvent *event = makeEvent("SHPDB0020E text", 0);
    OvxSetEventMessageId(event, "SHPDB0020E");
    bool passes = true;
    for (auto _ : state) {
        passes = OvxIsLoggableByFilter(filter, event) && passes;
        benchmark::ClobberMemory();
    }
    if (!passes) state.SkipWithError("a pattern matched");
    OvxFreeEvent(event);
    OvxReleaseObject(filter);
}
BENCHMARK(filterTenPatterns);

} // namespace
