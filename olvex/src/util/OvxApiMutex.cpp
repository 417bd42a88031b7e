// The API mutex: made at load time, never destroyed, so that no call can find it missing. It
// knows its holder, who may ask for it again: that is a public call from inside a class function.
// Held over a fork, so that a child finds everything in order. A thread that holds it cannot be
// cancelled: one that ended in the middle of a write would leave all others waiting for ever.
#include "util/HotPath.h"
#include "util/Locked.h"

#include <olvex/class.h>

#include <atomic>

#include <cerrno>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

namespace {

pthread_mutex_t apiMutex = PTHREAD_MUTEX_INITIALIZER;
std::atomic<pthread_t> holder{}; // 0: nobody
bool heldByForker = false;
int cancelStateBefore = PTHREAD_CANCEL_ENABLE; // of the thread that holds the mutex

bool isMine()
{
    return holder.load(std::memory_order_relaxed) == pthread_self();
}

// A waiting thread spins for the time of some events and backs off exponentially, so as not to
// disturb the holder's cache line. Then it sleeps for fixed times, spinning between them. Only then
// it blocks in the mutex: while a thread is blocked, each release costs a system call to wake it,
// mostly for nothing, since the running thread takes the mutex again before the other one runs.
constexpr int kLongestRest = 64;  // pauses between two looks, about a microsecond
constexpr int kMostPauses = 1024; // pauses between two sleeps
constexpr useconds_t kNap = 50;   // length of a sleep in microseconds
constexpr int kMostNaps = 20;

// The processor's hint for spin loops.
void pause()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

// With one processor the holder cannot run, and release the mutex, while another thread spins.
bool hasProcessors()
{
    static std::atomic<int> several{-1};
    if (several.load(std::memory_order_relaxed) < 0) {
        cpu_set_t usable;
        const int error = sched_getaffinity(0, sizeof usable, &usable);
        several.store(error != 0 || CPU_COUNT(&usable) > 1, std::memory_order_relaxed);
    }
    return several.load(std::memory_order_relaxed) > 0;
}

bool lockWhileAwake()
{
    int rest = 4;
    for (int pauses = 0; pauses < kMostPauses; pauses += rest) {
        if (rest < kLongestRest) rest *= 2;
        for (int i = 0; i < rest; ++i)
            pause();
        if (holder.load(std::memory_order_relaxed) == 0 && pthread_mutex_trylock(&apiMutex) == 0)
            return true;
    }
    return false;
}

[[gnu::cold, gnu::noinline]] void waitForMutex()
{
    for (int naps = 0; hasProcessors() && naps < kMostNaps; ++naps) {
        if (lockWhileAwake()) return;
        usleep(kNap);
    }
    pthread_mutex_lock(&apiMutex);
}

void lockFor(pthread_t self)
{
    if (pthread_mutex_trylock(&apiMutex) != 0) waitForMutex();
    holder.store(self, std::memory_order_relaxed);
}

void unlockNow()
{
    holder.store(0, std::memory_order_relaxed);
    pthread_mutex_unlock(&apiMutex);
}

OVX_HOT bool take()
{
    const pthread_t self = pthread_self();
    if (holder.load(std::memory_order_relaxed) == self) return false;
    int before = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    lockFor(self);
    cancelStateBefore = before;
    return true;
}

// The refused caller is inside a class function and so holds the lock that reporting needs.
[[gnu::cold]] bool refuse()
{
    OvxReportPlatformErr('p', EDEADLK);
    return false;
}

void beforeFork()
{
    const bool isHeld = isMine();
    if (!isHeld) {
        pthread_mutex_lock(&apiMutex);
        holder.store(pthread_self(), std::memory_order_relaxed);
    }
    heldByForker = isHeld; // only now: its holder may be forking too
}

// In the child too: its only thread is a copy of the one that took the mutex.
void afterFork()
{
    if (!heldByForker) unlockNow();
}

[[gnu::constructor]] void holdOverForks()
{
    pthread_atfork(beforeFork, afterFork, afterFork);
}

} // namespace

OVX_HOT bool ovxAPIMutexLock()
{
    return take() || refuse();
}

bool ovxAPIMutexLockUnlessHeld()
{
    return take();
}

OVX_HOT void ovxAPIMutexUnlock()
{
    if (!isMine()) return OvxReportPlatformErr('p', EPERM);
    const int before = cancelStateBefore;
    unlockNow();
    pthread_setcancelstate(before, nullptr);
}
