// The API mutex: made at load time, never destroyed, so that no call can find it missing. It
// notices when its holder asks for it again, which is a public call from inside a class function.
// Held over a fork, so that a child finds everything in order. A thread that holds it cannot be
// cancelled: one that ended in the middle of a write would leave all others waiting for ever.
#include "util/Locked.h"

#include <olvex/class.h>

#include <cerrno>
#include <pthread.h>

namespace {

pthread_mutex_t apiMutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
bool heldByForker = false;
int cancelStateBefore = PTHREAD_CANCEL_ENABLE; // of the thread that holds the mutex

int take()
{
    int before = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    const int error = pthread_mutex_lock(&apiMutex);
    if (error == 0)
        cancelStateBefore = before;
    else
        pthread_setcancelstate(before, nullptr);
    return error;
}

// The refused caller is inside a class function and so holds the lock that reporting needs.
[[gnu::cold]] bool refuse(int error)
{
    if (error == EDEADLK) OvxReportPlatformErr('p', error);
    return false;
}

void beforeFork()
{
    heldByForker = pthread_mutex_lock(&apiMutex) == EDEADLK;
}

void afterForkInParent()
{
    if (!heldByForker) pthread_mutex_unlock(&apiMutex);
}

// The child's only thread has another id than the one that took the mutex, so it starts anew. For
// the same reason giving it back changes nothing, but tools that watch locks learn of it.
void afterForkInChild()
{
    pthread_mutex_unlock(&apiMutex);
    apiMutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
    if (heldByForker) pthread_mutex_lock(&apiMutex);
}

[[gnu::constructor]] void holdOverForks()
{
    pthread_atfork(beforeFork, afterForkInParent, afterForkInChild);
}

} // namespace

bool ovxAPIMutexLock()
{
    const int error = take();
    return error == 0 || refuse(error);
}

bool ovxAPIMutexLockUnlessHeld()
{
    return take() == 0;
}

void ovxAPIMutexUnlock()
{
    const int before = cancelStateBefore;
    if (const int error = pthread_mutex_unlock(&apiMutex)) return OvxReportPlatformErr('p', error);
    pthread_setcancelstate(before, nullptr);
}
