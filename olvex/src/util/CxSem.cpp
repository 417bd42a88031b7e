// Locks between processes: System V semaphore sets of one semaphore, undone by the system when
// their holder ends. Trying some times without waiting first spares two busy processes the
// hand-over.
#include "util/CxSem.h"

#include "util/CxResult.h"

#include <sched.h>
#include <sys/sem.h>
#include <time.h>

using namespace olvex;

namespace {

constexpr int kRetries = 10;
constexpr int kSecondsUntilReady = 9;
constexpr int kTriesWithoutWaiting = 50;
constexpr int kMode = 0666;

union SemArgument {
    int value;
    semid_ds *status;
};

int operate(CxSem sem, int change, int flags)
{
    sembuf operation = {0, static_cast<short>(change), static_cast<short>(flags)};
    return semop(sem, &operation, 1);
}

// Frees a new set. The test for zero that follows finds it not to be zero, which proves that the
// set can be operated on and leaves its time of last operation alone: for others the set becomes
// ready with the first lock.
CxResult prepareNew(CxSem sem)
{
    if (semctl(sem, 0, SETVAL, SemArgument{1}) < 0) return failure(errno);
    if (operate(sem, 0, IPC_NOWAIT) == 0 || errno == EAGAIN) return success();
    return failure(errno);
}

// A set that cannot be made ready goes again: others would wait for it, at each of their events.
CxResult makeReady(CxSem sem)
{
    const CxResult result = prepareNew(sem);
    if (!ok(result)) semctl(sem, 0, IPC_RMID);
    return result;
}

// A stretch of time that passes in small steps, so that what is waited for is seen when it comes;
// signals do not shorten it.
class Rest {
  public:
    explicit Rest(int seconds) : end_(now() + seconds * kSecond) {}

    bool isOver() const { return now() >= end_; }
    static void step(long milliseconds)
    {
        const timespec time = {0, milliseconds * 1000000};
        nanosleep(&time, nullptr);
    }

  private:
    static constexpr long long kSecond = 1000000000;

    static long long now()
    {
        timespec time = {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec * kSecond + time.tv_nsec;
    }

    long long end_;
};

// Waits until the set was locked or unlocked for the first time, so that its maker is done with it.
// A set of several semaphores is not one of ours.
CxResult waitUntilReady(CxSem sem)
{
    const Rest patience(kSecondsUntilReady);
    for (;;) {
        semid_ds status = {};
        SemArgument argument;
        argument.status = &status;
        const bool isLast = patience.isOver();
        if (semctl(sem, 0, IPC_STAT, argument) < 0) return failure(errno);
        if (status.sem_nsems != 1) return badArgument();
        if (status.sem_otime != 0) return success();
        if (isLast) return failure(CX_ETIME);
        Rest::step(10);
    }
}

CxResult openExisting(CxSem *sem, int32_t key)
{
    *sem = semget(key, 1, 0);
    return *sem < 0 ? failure(errno) : waitUntilReady(*sem);
}

bool takeWithoutWaiting(CxSem sem)
{
    for (int i = 0; i < kTriesWithoutWaiting; ++i) {
        if (operate(sem, -1, SEM_UNDO | IPC_NOWAIT) == 0) return true;
        if (errno != EAGAIN) return false;
        sched_yield();
    }
    return false;
}

// Lets a second pass before the next waiting try, in which the semaphore is taken if it is free.
bool takeWithinASecond(CxSem sem)
{
    for (const Rest rest(1); !rest.isOver(); Rest::step(1)) {
        if (operate(sem, -1, SEM_UNDO | IPC_NOWAIT) == 0) return true;
        if (errno != EAGAIN && errno != EINTR && errno != ENOSPC) return false;
    }
    return false;
}

} // namespace

namespace olvex {

void useOnce(CxSem sem)
{
    sembuf takeAndGive[] = {{0, -1, IPC_NOWAIT}, {0, 1, IPC_NOWAIT}};
    semop(sem, takeAndGive, 2);
}

} // namespace olvex

CxResult CxSemOpen(CxSem *sem, int32_t key)
{
    if (!sem) return badArgument();
    *sem = semget(key, 1, IPC_CREAT | IPC_EXCL | kMode);
    if (*sem >= 0) return makeReady(*sem);
    return errno == EEXIST ? openExisting(sem, key) : failure(errno);
}

CxResult CxSemLock(CxSem *sem)
{
    if (!sem) return badArgument();
    if (takeWithoutWaiting(*sem)) return success();
    for (int retry = 0; operate(*sem, -1, SEM_UNDO) != 0; ++retry) {
        if (errno != EINTR && errno != ENOSPC) return failure(errno);
        if (retry == kRetries) return failure(CX_ETIME);
        if (takeWithinASecond(*sem)) return success();
    }
    return success();
}

CxResult CxSemUnlock(CxSem *sem)
{
    return sem ? resultOf(operate(*sem, 1, SEM_UNDO)) : badArgument();
}

CxResult CxSemClose(CxSem *sem)
{
    if (!sem) return badArgument();
    *sem = -1;
    return success();
}
