// The C++ front: a host in C++ that logs with ordinary arguments, and has a handler and a formatter
// of its own.
//
//     front [FILE.properties]
#include <olvex/olvex.hpp>

#include <cstdio>
#include <map>
#include <string>
#include <string_view>

namespace {

// Counts events by component. Each handler of the class has a Tally of its own, which lives as long
// as the handler; its functions run with the toolkit's lock held, one at a time.
class Tally : public olvex::HandlerClass {
  public:
    ~Tally() override
    {
        for (const auto &[component, count] : counts_)
            std::printf("%s: %d\n", component.c_str(), count);
    }

    void process(olvex::Self, olvex::EventView event) override
    {
        ++counts_[event.property("component").value_or("(no component)")];
    }

  private:
    std::map<std::string, int> counts_;
};

// Lines without a time, for people at a terminal.
struct ShortLine : olvex::FormatterClass {
    std::string format(olvex::Self, olvex::EventView event) override
    {
        const bool isProblem = event.level() >= OVX_LEVEL_WARN;
        return (isProblem ? "! " : "  ") + event.text() + "\n";
    }
};

int stockOf(std::string_view)
{
    std::puts("(the stock is looked up)");
    return 3;
}

void sell(const olvex::Logger &log, int number, std::string_view customer)
{
    // The text is checked against the arguments: by the compiler from C++20 on.
    log.info("Order %1$d of %2$s is on its way", number, customer,
             olvex::prop("component", "shop"));

    // A macro checks in C++17 too, and evaluates nothing unless the logger takes the level.
    OVX_LOG_DEBUG_MIN(log, "%1$d left of it", stockOf("it"));
}

} // namespace

int main(int argc, char **argv)
{
    const olvex::Toolkit toolkit(argc > 1 ? argv[1] : nullptr);
    if (!toolkit) return 1;
    olvex::addHandlerClass<Tally>("tally", "Counts events by component");
    olvex::addFormatterClass<ShortLine>("short_line");

    olvex::Logger log("shop.log", "ovx_basiclogger");
    olvex::Handler screen("screen", "ovx_consolehandler");
    screen.setFormatter(olvex::Object("line", "short_line"));
    log.addListener(screen);
    log.addListener(olvex::Object("counts", "tally"));

    log.setProperty("level", "INFO");
    sell(log, 17, "Ada");
    log.setProperty("level", "ALL");
    sell(log, 18, "Grace");
    log.warn("The stock is at %1$.1f percent", 4.25, olvex::prop("component", "warehouse"));
}
