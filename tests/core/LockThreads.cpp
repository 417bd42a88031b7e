// Many threads at once on one toolkit, threads that are cancelled, and threads that fork.
#include "Toolkit.h"
#include "util/Locked.h"

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

class LockInForks : public OpenToolkit {};

std::vector<std::thread> forkers;
bool lostTheLock;

void forkOnce()
{
    EXPECT_EQ(inChild([] { return 0; }), 0);
}

// Forks while it holds the lock, and others fork at the same time.
void forkAmongForks(OvxObject *, OvxEvent *)
{
    for (int i = 0; i < 20; ++i) {
        forkers.emplace_back(forkOnce);
        forkOnce();
    }
    lostTheLock = ovxAPIMutexLockUnlessHeld();
}

TEST_F(LockInForks, AHandlerThatForksKeepsTheLockWhileOthersFork)
{
    addHandlerClass("test_fork", forkAmongForks);
    OvxObject *logger = get("log", "ovx_basiclogger");
    OvxAddListener(logger, get("fork", "test_fork"));
    OvxLogText(logger, "text", 0);
    for (auto &forker : forkers)
        forker.join();
    forkers.clear();
    EXPECT_FALSE(lostTheLock);
}

} // namespace
