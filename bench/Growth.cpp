// How the cost of an event grows: with parameters, properties, listeners, named objects and the
// length of the message. Everything ends in a stream that throws the text away.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <olvex/olvex.h>

namespace {

long bytesDropped = 0;

ssize_t dropBytes(void *, const char *, std::size_t size)
{
    bytesDropped += static_cast<long>(size);
    return static_cast<ssize_t>(size);
}

// A toolkit of its own, with a logger whose handlers write to a standard error that leads nowhere.
class Host {
  public:
    explicit Host(benchmark::State &state, int handlers = 1) : state_(state)
    {
        static FILE *nowhere = fopencookie(nullptr, "w", {nullptr, dropBytes, nullptr, nullptr});
        stderr = nowhere;
        OvxOpenToolkit(nullptr);
        logger = OvxGetObject("growth.logger", "ovx_basiclogger");
        for (int i = 0; i < handlers; ++i)
            addHandler("growth.handler" + std::to_string(i));
        bytesDropped = 0;
    }

    ~Host()
    {
        std::fflush(stderr);
        if (bytesDropped < state_.iterations()) state_.SkipWithError("events were lost");
        for (OvxObject *object : objects_)
            OvxReleaseObject(object);
        OvxReleaseObject(logger);
        OvxCloseToolkit();
    }
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    void addObject(const std::string &name)
    {
        objects_.push_back(OvxGetObject(name.c_str(), "ovx_basiclogger"));
    }

    OvxObject *logger;

  private:
    void addHandler(const std::string &name)
    {
        objects_.push_back(OvxGetObject(name.c_str(), "ovx_stderrhandler"));
        OvxAddListener(logger, objects_.back());
    }

    benchmark::State &state_;
    std::vector<OvxObject *> objects_;
};

// Calls `call` with `Count` times what `Entry` expands to.
template <class Entry, std::size_t... Index>
void logEntries(OvxObject *logger, const char *text, std::index_sequence<Index...>)
{
    Entry::template log<Index...>(logger, text);
}

struct Parameter {
    template <std::size_t... Index>
    static void log(OvxObject *logger, const char *text)
    {
        const auto call = [&](auto... list) {
            OvxLogInfo(logger, nullptr, 0, 0, text, list..., 0);
        };
        std::apply(call, std::tuple_cat(std::tuple(OVX_PARM_INT, static_cast<int>(Index))...));
    }
};

struct Property {
    template <std::size_t... Index>
    static void log(OvxObject *logger, const char *text)
    {
        static const char *const names[] = {"a", "b", "c", "d", "e", "f", "g", "h",
                                            "i", "j", "k", "l", "m", "n", "o", "p"};
        const auto call = [&](auto... list) {
            OvxLogInfo(logger, nullptr, 0, 0, text, list..., 0);
        };
        std::apply(call, std::tuple_cat(std::tuple(OVX_PROP, names[Index], OVX_PARM_INT,
                                                   static_cast<int>(Index))...));
    }
};

std::string formatFor(std::size_t parameters)
{
    std::string format = "values";
    for (std::size_t i = 1; i <= parameters; ++i)
        format += " %" + std::to_string(i) + "$d";
    return format;
}

template <class Entry, std::size_t Count>
void entries(benchmark::State &state)
{
    const Host host(state);
    const std::string format =
        std::is_same_v<Entry, Parameter> ? formatFor(Count) : std::string("values");
    for (auto _ : state)
        logEntries<Entry>(host.logger, format.c_str(), std::make_index_sequence<Count>());
}
BENCHMARK(entries<Parameter, 0>)->Name("parameters/0");
BENCHMARK(entries<Parameter, 1>)->Name("parameters/1");
BENCHMARK(entries<Parameter, 4>)->Name("parameters/4");
BENCHMARK(entries<Parameter, 16>)->Name("parameters/16");
BENCHMARK(entries<Parameter, 62>)->Name("parameters/62");
BENCHMARK(entries<Property, 1>)->Name("properties/1");
BENCHMARK(entries<Property, 4>)->Name("properties/4");
BENCHMARK(entries<Property, 16>)->Name("properties/16");

void listeners(benchmark::State &state)
{
    const Host host(state, static_cast<int>(state.range(0)));
    for (auto _ : state)
        OvxLogInfo(host.logger, nullptr, 0, 0, "The disk is %1$d percent full", OVX_PARM_INT, 93,
                   0);
}
BENCHMARK(listeners)->RangeMultiplier(10)->Range(1, 100);

// Finding one object among many by its name, and giving it back.
void namedObjects(benchmark::State &state)
{
    Host host(state);
    for (long i = 0; i < state.range(0); ++i)
        host.addObject("growth.object" + std::to_string(i));
    const std::string last = "growth.object" + std::to_string(state.range(0) - 1);
    for (auto _ : state) {
        OvxReleaseObject(OvxGetObject(last.c_str(), nullptr));
        ++bytesDropped;
    }
}
BENCHMARK(namedObjects)->RangeMultiplier(10)->Range(10, 10000);

void messageLength(benchmark::State &state)
{
    const Host host(state);
    const std::string text(static_cast<std::size_t>(state.range(0)), 'x');
    for (auto _ : state)
        OvxLogInfo(host.logger, nullptr, 0, 0, "%1$s", OVX_PARM_STRING, text.c_str(), 0);
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(messageLength)->RangeMultiplier(10)->Range(10, 1000000);

} // namespace
