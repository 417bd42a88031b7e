// Many threads at once on one toolkit, threads that are cancelled, and threads that fork.
#include "Toolkit.h"
#include "util/Locked.h"

#include <atomic>
#include <pthread.h>
#include <thread>

using namespace olvex::test;

namespace {

class LockThreads : public OpenToolkit {};

std::atomic<bool> entered;
std::atomic<bool> cancelled;

TEST_F(LockThreads, AThreadCancelledInAHandlerGivesTheLockBack)
{
    // Ends in calls at which a thread that is cancelled would end.
    OvxObject *logger = loggerWith("wait", [](OvxObject *, OvxEvent *) {
        entered = true;
        while (!cancelled)
            usleep(100);
        usleep(100);
    });
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

TEST_F(LockInForks, AHandlerThatForksKeepsTheLockWhileOthersFork)
{
    // Forks while it holds the lock, and others fork at the same time.
    OvxObject *logger = loggerWith("fork", [](OvxObject *, OvxEvent *) {
        for (int i = 0; i < 20; ++i) {
            forkers.emplace_back(forkOnce);
            forkOnce();
        }
        lostTheLock = ovxAPIMutexLockUnlessHeld();
    });
    OvxLogText(logger, "text", 0);
    for (auto &forker : forkers)
        forker.join();
    forkers.clear();
    EXPECT_FALSE(lostTheLock);
}

} // namespace
