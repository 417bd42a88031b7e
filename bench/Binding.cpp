// What it costs to bind a message with two parameters: its default text, the same with a catalog
// name that leads to no catalog, and with an open catalog.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

#include <olvex/olvex.h>

namespace {

constexpr char kText[] = "The user %1$s opened the file %2$s";
constexpr std::uint32_t kMessages = 100;

// A catalog of one set with kMessages messages, each of which is kText.
std::string catalogBytes()
{
    constexpr std::uint32_t records = sizeof(MCHeaderT) + sizeof(MCSetTDisk);
    constexpr std::uint32_t texts = records + kMessages * sizeof(MCMsgTDisk);
    MCHeaderT header = {{'*', 'n', 'a', 'z', 'g', 'u', 'l', '*'}, 1, 0, 0, 1, sizeof(MCHeaderT)};
    MCSetTDisk set = {1, 0, records, texts, kMessages * sizeof kText, kMessages, 0};
    hton_MCHeaderT(&header);
    hton_MCSetTDisk(&set);
    std::string bytes(reinterpret_cast<const char *>(&header), sizeof header);
    bytes.append(reinterpret_cast<const char *>(&set), sizeof set);
    for (std::uint32_t index = 0; index < kMessages; ++index) {
        MCMsgTDisk message = {index + 1, index * static_cast<std::uint32_t>(sizeof kText), 0};
        hton_MCMsgTDisk(&message);
        bytes.append(reinterpret_cast<const char *>(&message), sizeof message);
    }
    for (std::uint32_t index = 0; index < kMessages; ++index)
        bytes.append(kText, sizeof kText);
    return bytes;
}

// A folder with the catalog "bench", and NLSPATH that leads there.
class Catalog {
  public:
    Catalog()
    {
        char folder[] = "/tmp/olvex-bench-XXXXXX";
        path_ = std::string(mkdtemp(folder)) + "/bench.cat";
        FILE *file = std::fopen(path_.c_str(), "w");
        const std::string bytes = catalogBytes();
        if (file) std::fwrite(bytes.data(), 1, bytes.size(), file);
        if (file) std::fclose(file);
        ucv_set_nlspath((std::string(folder) + "/%L/%N.cat:" + folder + "/%N.cat").c_str());
    }
    ~Catalog()
    {
        unsetenv("NLSPATH");
        std::remove(path_.c_str());
        rmdir(path_.substr(0, path_.rfind('/')).c_str());
    }
    Catalog(const Catalog &) = delete;
    Catalog &operator=(const Catalog &) = delete;

  private:
    std::string path_;
};

void bind(benchmark::State &state, const char *catalog, const char *defaultText)
{
    OvxOpenToolkit(nullptr);
    OvxI18Msg *msg = OvxAllocI18Msg(catalog, 1, 77, defaultText);
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
    bind(state, nullptr, kText);
}
BENCHMARK(bindWithoutCatalog);

void bindWithCatalogMissing(benchmark::State &state)
{
    bind(state, "nowhere", kText);
}
BENCHMARK(bindWithCatalogMissing);

void bindFromOpenCatalog(benchmark::State &state)
{
    const Catalog installed;
    bind(state, "bench", "never shown");
}
BENCHMARK(bindFromOpenCatalog);

} // namespace
