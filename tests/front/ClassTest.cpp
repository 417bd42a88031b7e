// Handlers, filters and formatters written as C++ classes: their life, their properties, and
// exceptions, which must not cross into C.
#include "core/Toolkit.h"

#include <olvex/olvex.hpp>

#include <stdexcept>

using namespace olvex::test;

namespace {

using Strings = std::vector<std::string>;

Strings steps; // what the classes below did

struct Watcher : olvex::HandlerClass {
    Watcher() { steps.emplace_back("made"); }
    ~Watcher() override { steps.emplace_back("gone"); }
    void open(olvex::Self self) override { steps.push_back("open " + self.name()); }
    void close(olvex::Self self) override { steps.push_back("close " + self.name()); }
    void process(olvex::Self self, olvex::EventView event) override
    {
        steps.push_back(std::to_string(++count) + " " + event.text() + " of " + self.format(event));
        if (event.text() == "throw") throw std::runtime_error("too much");
        if (event.text() == "throw 1") throw 1;
    }
    bool configure(olvex::Self self, const char *name) override
    {
        if (std::string_view(name) == "broken") throw std::logic_error("no good");
        if (std::string_view(name) != "first") return false;
        count = self.property<int>(name).value_or(-1);
        return true;
    }
    int count = 0;
};

struct Odd : olvex::FilterClass {
    bool passes(olvex::Self, olvex::EventView event) override
    {
        const auto number = event.property<int>("n");
        if (!number) throw std::runtime_error("no number");
        return *number % 2 == 1;
    }
};

struct Brackets : olvex::FormatterClass {
    std::string format(olvex::Self self, olvex::EventView event) override
    {
        if (event.level() == OVX_LEVEL_FATAL) throw std::bad_alloc();
        return self.property("mark").value_or("[") + event.text() + "]";
    }
};

struct Unmakeable : Watcher {
    Unmakeable() { throw std::runtime_error("cannot be made"); }
};

class FrontClasses : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        olvex::addHandlerClass<Watcher>("watcher", "Watches");
        olvex::addFilterClass<Odd>("odd");
        olvex::addFormatterClass<Brackets>("brackets");
        olvex::addHandlerClass<Unmakeable>("unmakeable");
        steps.clear();
    }
};

TEST_F(FrontClasses, AHandlerLivesWithItsObject)
{
    {
        const olvex::Handler handler("w", "watcher");
        EXPECT_EQ(handler.description(), "Watches");
        olvex::Logger log("log", "ovx_basiclogger");
        log.addListener(handler);
        olvex::Handler(handler).setFormatter(olvex::Object("f", "brackets"));
        olvex::Object(handler).setProperty("first", 41);
        log.info("one");
        olvex::Object(handler).setEnabled(false);
        log.info("not seen");
        olvex::Object(handler).setProperty("logging", "on"); // the base's property
        log.info("two");
    }
    EXPECT_EQ(steps,
              (Strings{"made", "open w", "42 one of [one]", "43 two of [two]", "close w", "gone"}));
}

TEST_F(FrontClasses, ClosingTheToolkitDestroysWhatIsLeft)
{
    olvex::Logger log("log", "ovx_basiclogger");
    log.addListener(olvex::Object("w", "watcher"));
    log.info("one");
    closeToolkit();
    EXPECT_EQ(steps.back(), "gone");
    log.info("into nothing");
    EXPECT_EQ(steps.size(), 4U);
}

TEST_F(FrontClasses, ExceptionsAreReportedAndStopThere)
{
    olvex::Logger log("log", "ovx_basiclogger");
    olvex::Object filter("odd", "odd"), formatter("f", "brackets");
    olvex::Handler handler("w", "watcher");
    filter.addListener(olvex::Object("behindFilter", "test_recorder"));
    handler.addListener(olvex::Object("behindHandler", "test_recorder"));
    handler.setFormatter(formatter);
    log.addListener(handler);
    log.addListener(filter);
    formatter.setProperty("mark", "<");
    formatter.setProperty("separator", "!"); // the base's property
    log.recordPlaces(false);
    for (int i = 1; i < 4; ++i)
        log.info("%d", i, olvex::prop("n", i));
    log.info("throw", olvex::prop("n", 0));
    log.info("throw 1", olvex::prop("n", 0));
    log.fatal("passes the filter that fails, and has the basic line");
    handler.setProperty("broken", 1);
    log.addListener(olvex::Object("u", "unmakeable"));
    log.info("to the one that was not made", olvex::prop("n", 0));

    EXPECT_EQ(recordedBy("behindFilter"),
              (Strings{"1", "3", "passes the filter that fails, and has the basic line"}));
    EXPECT_EQ(recordedBy("behindHandler").size(), 7U);
    EXPECT_EQ(steps[2], "1 1 of <1]");
    EXPECT_NE(steps[7].find("!passes the filter"), std::string::npos) << steps[7];
    EXPECT_EQ(reports(),
              (Strings{"An exception left the function process of w: too much",
                       "An exception left the function process of w: of unknown type",
                       "An exception left the function format of f: std::bad_alloc",
                       "An exception left the function passes of odd: no number",
                       "An exception left the function configure of w: no good",
                       "An exception left the function constructor of an object: cannot be made"}));
}

// The toolkit's own reports may go to a handler that fails as well.
TEST_F(FrontClasses, AFailingHandlerOfReportsDoesNotCallItself)
{
    olvex::Logger reportsLog("olvex.errorLogger");
    reportsLog.addListener(olvex::Object("w", "watcher"));
    reportsLog.error("throw");
    EXPECT_EQ(steps, (Strings{"made", "open w", steps[2]}));
    EXPECT_EQ(reports().back(), "An exception left the function process of w: too much");
}

} // namespace
