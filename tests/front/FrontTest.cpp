// The C++ front: what reaches the toolkit from ordinary arguments, what is evaluated, what a check
// of a text finds, and handles that keep their counts.
#include "core/Toolkit.h"

#include <olvex/olvex.hpp>

#include <climits>
#include <filesystem>

using namespace olvex::test;

namespace {

using Strings = std::vector<std::string>;
using olvex::detail::checkText;
using olvex::detail::Problem;

std::string lastPlace; // of the event that the handler below saw last

void keepPlace(OvxObject *, OvxEvent *event)
{
    const olvex::EventView view(event);
    lastPlace = view.property("ovx_prop_srcfile").value_or("-") + "|" +
                view.property("ovx_prop_srcfunction").value_or("-") + "|" +
                view.property("ovx_prop_srcline").value_or("-") + "|" +
                view.property("a").value_or("-") + "|" + view.property("b").value_or("-");
}

class Front : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        log = olvex::Logger(olvex::Object::adopt(OvxAcquireObject(loggerWithRecorder("log"))));
        OvxAddHandlerClass("place_keeper", nullptr, nullptr, nullptr, nullptr, keepPlace, nullptr,
                           nullptr);
        log.addListener(olvex::Object("keeper", "place_keeper"));
        lastPlace.clear();
    }
    void TearDown() override
    {
        log = olvex::Logger();
        OpenToolkit::TearDown();
    }

    static Strings logged() { return recordedBy("logRecorder"); }

    olvex::Logger log;
};

// Where a line of this file stands, as a handler sees it.
std::string placeOf(int line, const char *function, const char *more = "|-|-")
{
    return std::string(__FILE__) + "|" + function + "|" + std::to_string(line) + more;
}

enum Plain : unsigned char { kPlain = 200 };

TEST_F(Front, EveryTypeKeepsItsWholeValue)
{
    log.info("%d %d %d %d", true, static_cast<signed char>(-128),
             static_cast<unsigned short>(65535), INT_MIN);
    // No parameter is wider than a long, and where that has 32 bits the greatest without a sign do
    // not fit.
    using Widest = std::conditional_t<sizeof(long) == 8, long long, long>;
    constexpr std::size_t kMost = sizeof(long) == 8 ? SIZE_MAX : SIZE_MAX / 2;
    log.info("%u %ld %d %s", static_cast<unsigned>(kMost), LONG_MIN, Widest{LONG_MAX}, nullptr);
    log.info("%lu %llu %zu", static_cast<unsigned long>(kMost),
             static_cast<std::make_unsigned_t<Widest>>(kMost), kMost);
    log.info("%.2f %g %c %d", 1.5F, -2.5, 'x', kPlain);
    log.info("%p %p", static_cast<void *>(nullptr), reinterpret_cast<const void *>(0xabcdL));
    const std::string most = std::to_string(kMost);
    EXPECT_EQ(logged(),
              (Strings{"1 -128 65535 -2147483648",
                       std::to_string(static_cast<unsigned>(kMost)) + " " +
                           std::to_string(LONG_MIN) + " " + std::to_string(LONG_MAX) + " (null)",
                       most + " " + most + " " + most, "1.50 -2.5 x 200", "0 abcd"}));
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(Front, TextOfEveryKindEndsWhereItEnds)
{
    const std::string whole = "0123456789", large(5000, 'y');
    char own[] = "own";
    const std::string_view part = std::string_view(whole).substr(2, 3);
    log.info("%s|%s|%s|%s", whole, part, static_cast<char *>(own), std::filesystem::path("/a"));
    for (const std::size_t size : {0U, 63U, 64U, 65U, 4999U})
        log.info("%s|", std::string_view(large).substr(0, size));
    log.info("%s|", std::string_view());
    EXPECT_EQ(logged(), (Strings{"0123456789|234|own|/a", "|", std::string(63, 'y') + "|",
                                 std::string(64, 'y') + "|", std::string(65, 'y') + "|",
                                 std::string(4999, 'y') + "|", "|"}));
}

TEST_F(Front, CallsHaveTheirLevelKindAndPlace)
{
    log.setProperty("level", "ALL");
    const int line = __LINE__ + 1;
    log.info("info");
    EXPECT_EQ(lastPlace, placeOf(line, "TestBody"));
    log.debugMid("mid", olvex::prop("a", 1), olvex::prop("b", std::string("text")));
    EXPECT_EQ(lastPlace, placeOf(line + 2, "TestBody", "|1|text"));
    log.error(olvex::unchecked("error"), olvex::prop("a", -2.5));
    EXPECT_EQ(lastPlace, placeOf(line + 4, "TestBody", "|-2.500000|-"));
    log.recordPlaces(false);
    log.fatal("fatal");
    EXPECT_EQ(lastPlace, "-|-|-|-|-");
    log.log(olvex::Level::warn, "warn");
    log.log(olvex::Level::debugMax, "max");
    log.debugMin("min");
    log.text("text %d", 1);
    log.message(olvex::Level::warn, {"no-such-catalog", 1, 7}, "message %1$d", 7);
    Strings levels;
    for (const Record &entry : records)
        levels.push_back(entry.text + " " + std::to_string(entry.level) +
                         (entry.isMessage ? " message" : ""));
    EXPECT_EQ(levels, (Strings{"info 4000 message", "mid 2000", "error 6000 message",
                               "fatal 7000 message", "warn 5000 message", "max 1000", "min 3000",
                               "text 1 -9999", "message 7 5000 message"}));
}

// Counts how often it is read as text.
struct Costly {
    int *reads;
    const char *c_str() const
    {
        ++*reads;
        return "costly";
    }
};

TEST_F(Front, ADisabledCallConvertsNothingAndAMacroEvaluatesNothing)
{
    int reads = 0, calls = 0;
    const auto next = [&] { return ++calls; };
    log.setProperty("level", "WARN");
    log.info("%s", Costly{&reads});
    OVX_LOG_INFO(log, "%s %d", Costly{&reads}, next());
    OVX_LOG_DEBUG_MIN(log, "%d", next());
    OVX_LOG_WITH(INFO, log, (OVX_NAMED("a", next())), "text");
    log.when(olvex::Level::info, [&](const olvex::Logger &) { next(); });
    EXPECT_EQ(reads + calls, 0);
    EXPECT_EQ(logged(), Strings{});

    const int line = __LINE__ + 1;
    OVX_LOG_WARN(log, "%s %d", Costly{&reads}, next());
    EXPECT_EQ(lastPlace, placeOf(line, "TestBody"));
    OVX_LOG_WITH(ERROR, log.get(), (OVX_NAMED("a", next()), OVX_NAMED("b", "x")), "with");
    EXPECT_EQ(lastPlace, placeOf(line + 2, "TestBody", "|2|x"));
    log.when(olvex::Level::error, [&](const olvex::Logger &it) { it.error("%d", next()); });
    EXPECT_EQ(logged(), (Strings{"costly 1", "with", "3"}));
    EXPECT_EQ(reads, 1);
    OVX_LOG_FATAL(olvex::Logger(), "%d", next()); // no logger takes nothing
    EXPECT_EQ(calls, 3);
}

TEST(FrontTexts, AreCheckedAsTheyWillBePrinted)
{
    EXPECT_EQ((checkText<>("100%% and no more")), Problem::none);
    EXPECT_EQ((checkText<int, char[3]>("%2$-8s %1$+'05d")), Problem::none);
    EXPECT_EQ((checkText<int, int, double>("%*.*f")), Problem::none);
    EXPECT_EQ((checkText<double, int, int>("%1$*2$.*3$Lf")), Problem::none);
    EXPECT_EQ((checkText<long, long>("%I64d %lld")), Problem::none);
    EXPECT_EQ((checkText<olvex::Prop<int>, int>("%d")), Problem::none);
    for (const char *text : {"%", "%1$", "%k", "%5.", "%n", "%Ld", "%ll"})
        EXPECT_EQ((checkText<int>(text)), Problem::unknownConversion) << text;
    EXPECT_EQ((checkText<int>("%d %d")), Problem::missingParameter);
    EXPECT_EQ((checkText<int>("%99999999999999999999$d")), Problem::missingParameter);
    EXPECT_EQ((checkText<int>("%0$d")), Problem::unknownConversion);
    EXPECT_EQ((checkText<olvex::Prop<int>>("%d")), Problem::missingParameter);
    EXPECT_EQ((checkText<int, int>("%2$d")), Problem::unusedParameter);
    EXPECT_EQ((checkText<int, int>("%1$d %d")), Problem::mixedPositions);
    EXPECT_EQ((checkText<int>("%s")), Problem::wrongConversion);
    EXPECT_EQ((checkText<char[2]>("%ls")), Problem::wrongConversion);
    EXPECT_EQ((checkText<double>("%d")), Problem::wrongConversion);
    EXPECT_EQ((checkText<double, int>("%*d")), Problem::wrongConversion);
    EXPECT_EQ((checkText<bool>("%c")), Problem::wrongConversion);
    EXPECT_EQ((checkText<std::size_t>("%d")), Problem::wrongConversion);
    EXPECT_EQ((checkText<void *>("%x")), Problem::wrongConversion);
}

// What the check accepts must print whole: each kind of parameter with each of its conversions.
TEST_F(Front, WhatTheCheckAcceptsIsPrinted)
{
    const auto tryEach = [&](auto value, const char *kind) {
        for (const char *conversion = "diouxXcCsSpeEfFgGaA"; *conversion; ++conversion) {
            const std::string text = std::string("<%1$") + *conversion + ">";
            if (checkText<decltype(value)>(text.c_str()) != Problem::none) continue;
            records.clear();
            log.info(olvex::unchecked(text.c_str()), value);
            ASSERT_EQ(logged().size(), 1U);
            EXPECT_EQ(logged()[0].back(), '>') << kind << ' ' << text;
        }
    };
    tryEach(true, "bool");
    tryEach('x', "char");
    tryEach(65, "int");
    tryEach(65L, "long");
    tryEach(std::size_t{65}, "size");
    tryEach(1.5, "double");
    tryEach("text", "text");
    tryEach(static_cast<const void *>(&records), "pointer");
}

TEST_F(Front, HandlesCountAndReadWhatTheyStandFor)
{
    olvex::Handler handler("screen", "test_recorder");
    OvxObject *const object = handler.get();
    {
        const olvex::Object copy = handler;
        olvex::Object moved = std::move(handler);
        EXPECT_FALSE(handler); // NOLINT(bugprone-use-after-move)
        handler = olvex::Handler(moved);
        EXPECT_EQ(copy, moved);
    }
    EXPECT_EQ(olvex::Object("screen").get(), object);
    EXPECT_EQ(handler.formatter().name(), "olvex.defaultFormatter");
    handler.setProperty("n", LONG_MAX);
    handler.setProperty("t", true);
    EXPECT_EQ(handler.property<long>("n"), LONG_MAX);
    EXPECT_EQ(handler.property<bool>("t"), true);
    EXPECT_EQ(handler.property("none"), std::nullopt);
    EXPECT_EQ(handler.property<int>("t"), std::nullopt);
    log.addListener(handler);
    EXPECT_EQ(log.listeners().back(), handler);
    log.removeListener(handler);
    EXPECT_EQ(log.listeners().size(), 2U);

    olvex::Configuration configuration("a.b");
    configuration.setProperty("x", "7");
    EXPECT_EQ(olvex::Configuration("a.b.c").property<int>("x"), 7);
    EXPECT_FALSE(olvex::Configuration::exists("a.z"));
    EXPECT_TRUE(configuration.applyTo(handler));
    EXPECT_EQ(handler.property("x"), "7");
}

TEST(FrontToolkit, IsClosedByWhoOpenedIt)
{
    {
        const olvex::Toolkit outer;
        EXPECT_TRUE(outer);
        {
            const olvex::Toolkit inner;
            EXPECT_TRUE(inner);
        }
        EXPECT_TRUE(OvxIsToolkitOpen());
    }
    EXPECT_FALSE(OvxIsToolkitOpen());
}

} // namespace
