// The API mutex: made at load time, never destroyed, so that no call can find it missing. It
// notices when its holder asks for it again, which is a public call from inside a class function.
// Held over a fork, so that a child finds everything in order.
#include "util/Locked.h"

#include <olvex/class.h>

#include <cerrno>
#include <pthread.h>

namespace {

pthread_mutex_t apiMutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
bool heldByForker = false;

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

// The child's only thread has another id than the one that took the mutex, so it starts anew.
void afterForkInChild()
{
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
    const int error = pthread_mutex_lock(&apiMutex);
    return error == 0 || refuse(error);
}

bool ovxAPIMutexLockUnlessHeld()
{
    return pthread_mutex_lock(&apiMutex) == 0;
}

void ovxAPIMutexUnlock()
{
    if (const int error = pthread_mutex_unlock(&apiMutex)) OvxReportPlatformErr('p', error);
}
