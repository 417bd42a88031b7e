// Many threads at once on one toolkit: logging, reconfiguring, getting and releasing.
#include "Toolkit.h"

#include <atomic>
#include <pthread.h>
#include <thread>

using namespace olvex::test;

namespace {

class LockThreads : public OpenToolkit {};

std::atomic<int> received;

void count(OvxObject *, OvxEvent *)
{
    ++received;
}

TEST_F(LockThreads, EveryEventArrivesOnce)
{
    addHandlerClass("test_count", count);
    received = 0;
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("count", "test_count"));
    constexpr int kThreads = 4;
    constexpr int kEvents = 2000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([logger, t] {
            for (int i = 0; i < kEvents; ++i)
                OvxLogText(logger, "%1$d %2$s", OVX_PARM_INT, t, OVX_PARM_STRING, "x", 0);
        });
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(received, kThreads * kEvents);
}

TEST_F(LockThreads, LoggingAndReconfiguringDoNotDisturbEachOther)
{
    addHandlerClass("test_count", count);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxObject *counter = get("count", "test_count");
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        while (!stop) {
            if (OvxIsLoggable(logger, OVX_LEVEL_INFO)) OvxLogInfo(logger, nullptr, 0, 0, "i", 0);
            OVX_IF_LOGGABLE(logger, OVX_LEVEL_WARN) OvxLogWarn(logger, "c", 1, 1, "w", 0);
        }
    });
    std::thread reader([&] {
        while (!stop) {
            OvxObject *object = OvxGetObject("log", nullptr);
            BaxMemoryFree(OvxGetObjProp(object, "level", nullptr));
            OvxReleaseObject(object);
            OvxObject *passing = OvxGetObject("passing", "ovx_levelfilter");
            OvxReleaseObject(passing);
            OvxIsToolkitOpen();
        }
    });
    for (int i = 0; i < 2000; ++i) {
        OvxAddListener(logger, counter);
        OvxSetObjProp(logger, "level", i % 2 ? "WARN" : "ALL");
        OvxSetObjectEnabled(logger, i % 3 != 0);
        OvxRemListener(logger, counter);
    }
    stop = true;
    writer.join();
    reader.join();
    OvxSetObjectEnabled(logger, true);
    EXPECT_TRUE(OvxIsLoggable(logger, OVX_LEVEL_WARN));
}

std::atomic<bool> entered;
std::atomic<bool> cancelled;

// Ends in calls at which a thread that is cancelled would end.
void waitForCancel(OvxObject *, OvxEvent *)
{
    entered = true;
    while (!cancelled)
        usleep(100);
    usleep(100);
}

TEST_F(LockThreads, AThreadCancelledInAHandlerGivesTheLockBack)
{
    addHandlerClass("test_wait", waitForCancel);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("wait", "test_wait"));
    entered = cancelled = false;
    std::thread thread([logger] { OvxLogText(logger, "text", 0); });
    while (!entered)
        std::this_thread::yield();
    pthread_cancel(thread.native_handle());
    cancelled = true;
    thread.join();
    EXPECT_EQ(take(OvxGetObjectName(logger)), "log"); // hangs when nobody gave the lock back
}

TEST(OpenCloseThreads, OpeningAndClosingRunAgainstLogging)
{
    std::atomic<bool> stop = false;
    std::thread worker([&] {
        while (!stop) {
            OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
            OvxObject *sink = OvxGetObject("sink", "ovx_levelfilter");
            OvxAddListener(logger, sink);
            OvxLogText(logger, "text", 0);
            OvxReleaseObject(sink);
            OvxReleaseObject(logger);
        }
    });
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(OvxOpenToolkit(nullptr));
        OvxCloseToolkit();
    }
    stop = true;
    worker.join();
    OvxCloseToolkit();
    EXPECT_FALSE(OvxIsToolkitOpen());
}

} // namespace
