// Tracers and their factories: through the toolkit, and console lines to the byte.
#include "TraceToolkit.h"

#include <olvex/trace/OlvexTracer.h>
#include <olvex/trace/StderrTracerFactory.h>
#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/StdoutTracerFactory.h>

#include <thread>

using namespace olvex::test;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

namespace {

constexpr auto kInfo = Tracer::LEVEL_INFO;

// Lines without their time, which must have its form. `stamp` is the time that they end with.
std::string withoutTimes(const std::string &lines)
{
    std::string rest;
    std::istringstream in(lines);
    for (std::string line; std::getline(in, line);) {
        const std::string shape = "00/00/00 00:00:00 ";
        for (std::size_t i = 0; i < shape.size(); ++i)
            if (shape[i] == '0' ? !isdigit(line[i]) : shape[i] != line[i])
                return "no time: " + line;
        rest += line.substr(shape.size()) + "\n";
    }
    return rest;
}

std::string threadId()
{
    char text[32];
    snprintf(text, sizeof text, "[%04lu]", static_cast<unsigned long>(gettid()));
    return text;
}

// A line of the tracer of component 2 for the method "run".
std::string line(const char *rest)
{
    return "I [Com     ] run                            " + threadId() + " " + rest + "\n";
}

TEST(ConsoleTracer, IndentsByTheMethodsEntered)
{
    StdoutTracer tracer(Tracer::COMPONENT_COMMON);
    tracer.setLevel(kInfo);
    CaptureStdout();
    tracer.logExit(kInfo, "f", 1, "run", nullptr);
    tracer.logMessage(kInfo, "f", 1, "run", "outside");
    tracer.logEntry(kInfo, "f", 1, "run", "not shown");
    tracer.logMessage(kInfo, "f", 1, "run", "inside 100%d");
    tracer.logEntry(kInfo, "f", 1, "run", nullptr);
    tracer.logMessage(kInfo, "f", 1, "run", "deep");
    for (int i = 0; i < 3; ++i)
        tracer.logExit(kInfo, "f", 1, "run", "not shown");
    EXPECT_EQ(withoutTimes(GetCapturedStdout()),
              line("<-- EXIT") + line("outside") + line("--> ENTRY") + line("    inside 100%d") +
                  line("----> ENTRY") + line("      deep") + line("<---- EXIT") + line("<-- EXIT") +
                  line("<-- EXIT"));
    CaptureStdout();
    for (int i = 0; i < 300; ++i)
        tracer.logEntry(kInfo, "f", 1, "run", nullptr);
    EXPECT_TRUE(GetCapturedStdout().ends_with(line((std::string(600, '-') + "> ENTRY").c_str())));
}

TEST(ConsoleTracer, WritesWhatItsLevelTakesToItsStream)
{
    StdoutTracer tracer(Tracer::COMPONENT_FILE_SCANNER, true);
    CaptureStderr();
    for (int level = -1; level <= 4; ++level)
        tracer.logMessage(Tracer::Level(level), nullptr, 0, nullptr, "x");
    tracer.setLevel(Tracer::Level(9));
    for (int level = 1; level <= 4; ++level)
        tracer.logMessage(Tracer::Level(level), nullptr, 0, "m", "x");
    tracer.logMessage(kInfo, nullptr, 0, "m", nullptr);
    const auto head = [](char level, const std::string &method) {
        return std::string(1, level) + " [FileScan] " + method +
               std::string(31 - method.size(), ' ') + threadId() + " x\n";
    };
    EXPECT_EQ(withoutTimes(GetCapturedStderr()), head(' ', "") + head('F', "") + head('E', "m") +
                                                     head('W', "m") + head('I', "m") +
                                                     head(' ', "m"));
}

TEST(ConsoleTracer, CutsMethodNamesAndNamesComponents)
{
    StdoutTracer tracer(Tracer::Component(7));
    CaptureStdout();
    tracer.logMessage(Tracer::LEVEL_FATAL, "", 0, "1234567890123456789012345678901234", "x");
    EXPECT_EQ(withoutTimes(GetCapturedStdout()),
              "F [Unknown ] 123456789012345678901234567890 " + threadId() + " x\n");
    CaptureStdout();
    tracer.logMessage(Tracer::LEVEL_FATAL, "", 0, "12345678901234567890123456789\xC3\xA9", "x");
    EXPECT_EQ(withoutTimes(GetCapturedStdout()),
              "F [Unknown ] 12345678901234567890123456789  " + threadId() + " x\n");
    const char *symbols[] = {"Hardware", "Vpd     ", "Com     ",
                             "XSE     ", "FileScan", "Plugin  "};
    for (int i = 0; i < 6; ++i)
        EXPECT_STREQ(tracer.getComponentSymbol(Tracer::Component(i)), symbols[i]);
}

class Tracers : public TraceToolkit {
  protected:
    void TearDown() override { Tracer::cleanup(); }
};

TEST_F(Tracers, WithoutAChoiceGoThroughTheToolkitWithTheDefaultFile)
{
    std::filesystem::create_directory(directory_ / "config");
    directory_.write("config/ZetTrace.properties", traceProperties());
    setenv("ZET_TEST", (directory_ / "").c_str(), 1);
    EXPECT_EQ(Tracer::initialize(Tracer::Type(3), nullptr), -1);
    Tracer *tracer = Tracer::getInstance(Tracer::COMPONENT_HARDWARE);
    ASSERT_NE(dynamic_cast<OlvexTracer *>(tracer), nullptr);
    for (int level = -1; level <= 4; ++level)
        tracer->logMessage(Tracer::Level(level), "f", level, "m", "%d");
    tracer->logEntry(Tracer::LEVEL_FATAL, "f", 7, "m", nullptr);
    tracer->logExit(Tracer::LEVEL_FATAL, "f", 8, "m", "%s");
    EXPECT_EQ(traced, (std::vector<TraceRecord>{{3000, "f", 0, "m", "%d"},
                                                {3000, "f", 1, "m", "%d"},
                                                {2000, "f", 2, "m", "%d"},
                                                {1000, "f", 3, "m", "%d"},
                                                {1000, "f", 7, "Entry m", ""},
                                                {1000, "f", 8, "Exit m", "%s"}}));
    EXPECT_EQ(OlvexTracer(Tracer::COMPONENT_HARDWARE).getLevel(), 3);
    EXPECT_EQ(OlvexTracer(Tracer::COMPONENT_VPD).getLevel(), 2);
    EXPECT_EQ(OlvexTracer(Tracer::COMPONENT_COMMON).getLevel(), 1);
}

TEST_F(Tracers, AreOfTheKindThatWasChosenUntilCleanUp)
{
    EXPECT_EQ(Tracer::initialize(Tracer::TYPE_STDOUT, nullptr), 0);
    EXPECT_EQ(Tracer::initialize(Tracer::TYPE_STDERR, nullptr), 0);
    EXPECT_EQ(Tracer::initialize(Tracer::Type(9), nullptr), 0);
    Tracer *tracer = Tracer::getInstance(Tracer::COMPONENT_HARDWARE);
    EXPECT_NE(Tracer::getInstance(Tracer::COMPONENT_PLUGIN), tracer);
    EXPECT_EQ(Tracer::getInstance(Tracer::Component(6)), nullptr);
    EXPECT_EQ(Tracer::getInstance(Tracer::Component(-1)), nullptr);
    CaptureStdout();
    tracer->logMessage(kInfo, "f", 1, "m", "not yet");
    tracer->setLevel(kInfo);
    tracer->logMessage(kInfo, "f", 1, "m", "on standard output");
    EXPECT_NE(GetCapturedStdout().find("] on standard output\n"), std::string::npos);

    Tracer::cleanup();
    EXPECT_EQ(Tracer::initialize(Tracer::TYPE_STDERR, nullptr), 0);
    CaptureStderr();
    Tracer::getInstance(Tracer::COMPONENT_VPD)->logMessage(Tracer::LEVEL_FATAL, "", 0, "", "x");
    EXPECT_NE(GetCapturedStderr().find("F [Vpd     ] "), std::string::npos);
}

class TracerThreads : public TraceToolkit {};

TEST_F(TracerThreads, FirstRequestsAtOnceGetTheSameObjects)
{
    start();
    constexpr int kThreads = 4;
    OlvLogWrapper *handles[kThreads];
    Tracer *tracers[kThreads];
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            handles[t] = getOlvLogHw();
            Tracer::initialize(Tracer::TYPE_STDOUT, nullptr);
            tracers[t] = Tracer::getInstance(Tracer::COMPONENT_VPD);
            traceMAX(handles[t], t, "f", "m", "%d", t);
        });
    for (auto &thread : threads)
        thread.join();
    for (int t = 1; t < kThreads; ++t) {
        EXPECT_EQ(handles[t], handles[0]);
        EXPECT_EQ(tracers[t], tracers[0]);
    }
    EXPECT_EQ(traced.size(), 4u);
    Tracer::cleanup();
}

} // namespace
