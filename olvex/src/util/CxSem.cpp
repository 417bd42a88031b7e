// Locks between processes: System V semaphore sets of one semaphore, undone by the system when
// their holder ends. Trying some times without waiting first spares two busy processes the
// hand-over.
#include "util/CxSem.h"

#include "util/CxResult.h"

#include <atomic>
#include <iterator>

#include <sched.h>
#include <sys/sem.h>
#include <time.h>
#include <unistd.h>

using namespace olvex;

namespace {

constexpr int kRetries = 10;
constexpr int kPatience = 9000;      // milliseconds, until a new set is ready
constexpr int kLittlePatience = 100; // where that was in vain before
constexpr int kSecondsUntilAbandoned = 10;
constexpr int kTriesWithoutWaiting = 50;
constexpr int kTriesToOpen = 20; // while sets are removed as they are opened
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

// A set that is not there any more: the system calls it invalid to those who come later.
CxResult failureOnSet()
{
    return failure(errno == EINVAL ? EIDRM : errno);
}

// Frees a new set. The test for zero that follows finds it not to be zero, which proves that the
// set can be operated on and leaves its time of last operation alone: for others the set becomes
// ready with the first lock.
CxResult prepareNew(CxSem sem)
{
    if (semctl(sem, 0, SETVAL, SemArgument{1}) < 0) return failureOnSet();
    if (operate(sem, 0, IPC_NOWAIT) == 0 || errno == EAGAIN) return success();
    return failureOnSet();
}

// A set that cannot be made ready goes again: others would wait for it, at each of their events.
CxResult makeReady(CxSem sem)
{
    const CxResult result = prepareNew(sem);
    if (!ok(result)) semctl(sem, 0, IPC_RMID);
    return result;
}

// A wait of limited time in short sleeps, so that its condition can be checked between them.
// Signals do not shorten it.
class Rest {
  public:
    explicit Rest(int milliseconds) : end_(now() + milliseconds * kMillisecond) {}

    bool isOver() const { return now() >= end_; }
    static void step(long milliseconds)
    {
        const timespec time = {0, milliseconds * 1000000};
        nanosleep(&time, nullptr);
    }

  private:
    static constexpr long long kMillisecond = 1000000;

    static long long now()
    {
        timespec time = {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec * 1000 * kMillisecond + time.tv_nsec;
    }

    long long end_;
};

// A set that was not ready in time, and its key: no later wait for either of them is a long one.
struct Wait {
    std::atomic<CxSem> sem = -1;
    std::atomic<std::int32_t> key = 0;
};
Wait vainWaits[8];
std::atomic<unsigned> waits = 0;

// In milliseconds.
int patienceFor(CxSem sem, std::int32_t key)
{
    int patience = kPatience;
    for (const Wait &wait : vainWaits) {
        if (wait.sem == sem) return 0;
        if (wait.sem >= 0 && wait.key == key) patience = kLittlePatience;
    }
    return patience;
}

CxResult giveUp(CxSem sem, std::int32_t key)
{
    if (patienceFor(sem, key) == 0) return failure(CX_ETIME);
    Wait &wait = vainWaits[waits++ % std::size(vainWaits)];
    wait.key = key;
    wait.sem = sem;
    return failure(CX_ETIME);
}

// Whether this user's set was made so long ago that its maker is not going to use it any more. The
// times of sets are whole seconds.
bool isAbandoned(const semid_ds &status)
{
    return status.sem_otime == 0 && status.sem_perm.uid == geteuid() &&
           time(nullptr) - status.sem_ctime > kSecondsUntilAbandoned;
}

CxResult readStatus(CxSem sem, semid_ds &status)
{
    SemArgument argument;
    argument.status = &status;
    if (semctl(sem, 0, IPC_STAT, argument) < 0) return failureOnSet();
    return status.sem_nsems == 1 ? success() : badArgument();
}

// Makes an abandoned set ready. One that its maker did not get to free is removed, to be made anew:
// of several processes that come to this at once only the first finds it, none frees a semaphore
// that another has taken in the meantime. The set is looked at again, since 0 is also what one is
// that was taken over and locked a moment ago.
CxResult takeOver(CxSem sem)
{
    const bool isFreed = semctl(sem, 0, GETVAL) != 0;
    semid_ds status = {};
    const CxResult read = readStatus(sem, status);
    if (!ok(read) || status.sem_otime != 0) return read;
    if (isFreed) {
        useOnce(sem);
        return success();
    }
    semctl(sem, 0, IPC_RMID);
    return failure(EIDRM);
}

// Waits until the set was locked or unlocked for the first time, so that its maker is done with it;
// for long only once in a process for each key. A set of several semaphores is not one of ours.
CxResult waitUntilReady(CxSem sem, std::int32_t key)
{
    const Rest patience(patienceFor(sem, key));
    for (;; Rest::step(10)) {
        semid_ds status = {};
        const bool isLast = patience.isOver();
        const CxResult read = readStatus(sem, status);
        if (!ok(read) || status.sem_otime != 0) return read;
        if (isAbandoned(status)) return takeOver(sem);
        if (isLast) return giveUp(sem, key);
    }
}

CxResult openExisting(CxSem *sem, int32_t key)
{
    *sem = semget(key, 1, 0);
    return *sem < 0 ? failure(errno) : waitUntilReady(*sem, key);
}

CxResult tryToOpen(CxSem *sem, int32_t key)
{
    *sem = semget(key, 1, IPC_CREAT | IPC_EXCL | kMode);
    if (*sem >= 0) return makeReady(*sem);
    return errno == EEXIST ? openExisting(sem, key) : failure(errno);
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
    for (const Rest rest(1000); !rest.isOver(); Rest::step(1)) {
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

bool isRemoved(CxSem sem)
{
    return semctl(sem, 0, GETVAL) < 0 && (errno == EIDRM || errno == EINVAL);
}

} // namespace olvex

CxResult CxSemOpen(CxSem *sem, int32_t key)
{
    if (!sem) return badArgument();
    for (int n = 1;; ++n) {
        const CxResult opened = tryToOpen(sem, key);
        const bool wentAway = opened.code == EIDRM || opened.code == ENOENT;
        if (!wentAway || n == kTriesToOpen) return opened;
    }
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
