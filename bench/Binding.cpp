// What it costs to bind a message with two parameters: its default text, the same with a catalog
// name that leads to no catalog, and with an open catalog.
#include <benchmark/benchmark.h>

#include <cstring>

#include <olvex/olvex.h>

#include "InstalledCatalog.h"

namespace {

void bind(benchmark::State &state, const char *catalog, const char *defaultText)
{
    OvxOpenToolkit(nullptr);
    OvxI18Msg *msg = OvxAllocI18Msg(catalog, 1, kCatalogKey, defaultText);
    OvxAddI18MsgParmString(msg, "operator");
    OvxAddI18MsgParmString(msg, "/var/lib/shop/orders.db");
    char *text = OvxBindI18Msg(msg);
    if (!text || !std::strstr(text, "operator")) state.SkipWithError("nothing was bound");
    BaxMemoryFree(text);
    for (auto _ : state)
        BaxMemoryFree(OvxBindI18Msg(msg));
    OvxFreeI18Msg(msg);
    OvxCloseToolkit();
}

void bindWithoutCatalog(benchmark::State &state)
{
    bind(state, nullptr, kCatalogText);
}
BENCHMARK(bindWithoutCatalog);

void bindWithCatalogMissing(benchmark::State &state)
{
    bind(state, "nowhere", kCatalogText);
}
BENCHMARK(bindWithCatalogMissing);

void bindFromOpenCatalog(benchmark::State &state)
{
    const InstalledCatalog installed;
    bind(state, kCatalogName, "never shown");
}
BENCHMARK(bindFromOpenCatalog);

} // namespace
