// Eight threads that do everything at once to one toolkit. It runs for a second, or for as many as
// OLVEX_STRESS_SECONDS says; ThreadSanitizer and AddressSanitizer see what happens.
#include "core/LogDirectory.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <random>
#include <thread>

using namespace olvex::test;

namespace {

constexpr int kThreads = 8;
constexpr const char *kLoggers[] = {"app.one", "app.two", "app.two.deep"};
constexpr const char *kListeners[] = {"file", "levels", "ids", "xml", "own"};
constexpr const char *kClasses[] = {"ovx_filehandler", "ovx_levelfilter", "ovx_msgidfilter",
                                    "ovx_filehandler", "test_walker"};

std::atomic<long> received;

// Runs with the lock held, so it may walk what others change.
void walk(OvxObject *handler, OvxEvent *event)
{
    ++received;
    for (ListenerGroupNode *at =
             ovxIntlListenerGroupIterator(ovxFetchListenerGroup(handler, false));
         ovxIntlListenerGroupIterHasNext(at); at = ovxIntlListenerGroupIterNext(at)) {
    }
    OvxBasicObjectFLog(handler, event);
}

// One thread's share; everything it holds for longer than a step is an object or its own.
class Worker {
  public:
    Worker(int number, const LogDirectory &directory)
        : directory_(directory),
          random_(static_cast<unsigned>(number)),
          name_("worker" + std::to_string(number))
    {}

    void step()
    {
        static constexpr void (Worker::*kSteps[])() = {&Worker::log,
                                                       &Worker::log,
                                                       &Worker::logHeld,
                                                       &Worker::log,
                                                       &Worker::configure,
                                                       &Worker::hold,
                                                       &Worker::inspect,
                                                       &Worker::changeListeners,
                                                       &Worker::useConfigurations};
        (this->*kSteps[pick(std::size(kSteps))])();
    }

    // Closing and opening is rare: nothing else happens in between otherwise.
    void reopen()
    {
        if (pick(200) != 0) return;
        OvxCloseToolkit();
        open(directory_);
    }

    void drop() { OvxReleaseObject(std::exchange(held_, nullptr)); }

    static void open(const LogDirectory &directory)
    {
        OvxOpenToolkit((directory / "stress.properties").c_str());
        OvxAddHandlerClass("test_walker", nullptr, nullptr, nullptr, OvxBasicHandlerFCfgChange,
                           walk, nullptr, nullptr);
    }

  private:
    std::size_t pick(std::size_t count) { return random_() % count; }
    template <std::size_t Size>
    const char *pick(const char *const (&names)[Size])
    {
        return names[pick(Size)];
    }
    Held someLogger() { return Held(pick(kLoggers), "ovx_basiclogger"); }
    Held someListener()
    {
        const std::size_t which = pick(std::size(kListeners));
        return Held(kListeners[which], kClasses[which]);
    }

    void logTo(OvxObject *logger)
    {
        OvxLogError(logger, "stress", 1, 2, "STRXX0002E %1$s %2$d", OVX_PARM_STRING, name_.c_str(),
                    OVX_PARM_INT, ++count_, OVX_PROP, "correlationId", OVX_PARM_STRING, "c", 0);
        OVX_IF_LOGGABLE(logger, OVX_LEVEL_DEBUG_MID)
        OvxLogDebugMid(logger, "stress.c", "logTo", 1, "%1$.2f", OVX_PARM_DOUBLE, 1.5, 0);
    }
    void log() { logTo(someLogger()); }
    void logHeld() { logTo(held_); }

    void configure()
    {
        const Held logger = someLogger(), file("file", "ovx_filehandler");
        OvxSetObjProp(logger, "level", pick(2) ? "ALL" : "WARN");
        OvxSetObjProp(logger, "listenerNames", pick(2) ? "levels own" : "ids own file");
        OvxSetObjectEnabled(logger, pick(8) != 0);
        OvxSetObjProp(file, "fileName", (directory_ / (pick(2) ? "a.log" : "b.log")).c_str());
        OvxSetObjPropInt(file, "maxFileBytes", 2000);
        OvxSetObjProp(file, "formatterName", pick(2) ? "xmlFormat" : "lineFormat");
    }

    void changeListeners()
    {
        const Held logger = someLogger(), listener = someListener(), behind("own", "test_walker");
        OvxAddListener(logger, listener);
        OvxAddListener(listener, behind);
        if (pick(2)) OvxRemListener(logger, listener);
        if (pick(2)) OvxRemListener(listener, behind);
    }

    void hold()
    {
        OvxReleaseObject(held_);
        held_ = OvxGetObject(pick(kLoggers), "ovx_basiclogger");
        OvxReleaseObject(OvxAcquireObject(held_));
    }

    void inspect()
    {
        const Held object = someListener();
        BaxMemoryFree(OvxGetObjProp(object, "fileName", nullptr));
        BaxMemoryFree(OvxGetObjectDesc(object));
        BaxMemoryFree(OvxGetObjectName(held_));
        OvxReleaseObject(OvxHandlerGetFormatter(object));
        OvxIsObjectEnabled(object);
        OvxIsToolkitOpen();
    }

    void useConfigurations()
    {
        OvxObjCfg *cfg = OvxLogMgrGetCfg(pick(kLoggers));
        OvxSetObjCfgProp(cfg, "level", "INFO");
        BaxMemoryFree(OvxGetObjCfgProp(cfg, "level", nullptr));
        if (pick(4) == 0) OvxLogMgrRemCfg(cfg);
        OvxReleaseObjCfg(cfg);
    }

    const LogDirectory &directory_;
    std::mt19937 random_;
    std::string name_;
    OvxObject *held_ = nullptr;
    int count_ = 0;
};

// In its directory, since a handler made while no configuration is there writes default.log.
class StressThreads : public ::testing::Test {
  protected:
    void SetUp() override
    {
        std::filesystem::current_path(directory_.path());
        std::string text = "lineFormat.className=ovx_basicformatter\n"
                           "xmlFormat.className=ovx_xmlformatter\nxml.formatterName=xmlFormat\n"
                           "olvex.stderrHandler.logging=off\nxml.fileName=x.log\n";
        for (std::size_t i = 0; i < std::size(kListeners); ++i)
            text += std::string(kListeners[i]) + ".className=" + kClasses[i] + "\n";
        directory_.write("stress.properties", text);
        received = 0;
        Worker::open(directory_);
    }

    // The toolkit can be used afterwards.
    void TearDown() override
    {
        EXPECT_GT(received, 0);
        {
            const Held logger("after", "ovx_basiclogger"), file("afterFile", "ovx_filehandler");
            OvxSetObjProp(file, "fileName", "after.log");
            OvxAddListener(logger, file);
            OvxLogText(logger, "after", 0);
        }
        OvxCloseToolkit();
        EXPECT_NE(directory_.read("after.log").find("after\n"), std::string::npos);
        std::filesystem::current_path("/");
    }

    // Runs the workers, of which the first closes and opens the toolkit once in a while.
    void stress()
    {
        const char *seconds = std::getenv("OLVEX_STRESS_SECONDS");
        const auto end = std::chrono::steady_clock::now() +
                         std::chrono::seconds(seconds ? std::atoi(seconds) : 1);
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number)
            threads.emplace_back([=, this] {
                Worker worker(number, directory_);
                while (std::chrono::steady_clock::now() < end) {
                    worker.step();
                    if (number == 0) worker.reopen();
                }
                worker.drop();
            });
        for (std::thread &thread : threads)
            thread.join();
    }

    const LogDirectory directory_{"/dev/shm"};
};

TEST_F(StressThreads, WhileTheToolkitIsClosedAndOpened)
{
    stress();
    Worker::open(directory_);
}

} // namespace
