// Mutexes on the heap, with the platform's default attributes.
#include <olvex/Thread.h>

#include <utility>

#include "util/CxResult.h"
#include "util/Memory.h"

using namespace olvex;

struct CxMutexHandle {
    pthread_mutex_t mutex;
};

CxResult CxMutexCreate(CxMutex *mutex)
{
    if (!mutex) return badArgument();
    *mutex = Memory().make<CxMutexHandle>();
    if (!*mutex) return failure(CX_ENOMEM);
    const int code = pthread_mutex_init(&(*mutex)->mutex, nullptr);
    if (code) BaxMemoryFree(std::exchange(*mutex, nullptr));
    return resultOfCode(code);
}

CxResult CxMutexLock(CxMutex mutex)
{
    return mutex ? resultOfCode(pthread_mutex_lock(&mutex->mutex)) : badArgument();
}

CxResult CxMutexUnlock(CxMutex mutex)
{
    return mutex ? resultOfCode(pthread_mutex_unlock(&mutex->mutex)) : badArgument();
}

CxResult CxMutexDestroy(CxMutex *mutex)
{
    if (!mutex || !*mutex) return badArgument();
    const int code = pthread_mutex_destroy(&(*mutex)->mutex);
    BaxMemoryFree(std::exchange(*mutex, nullptr));
    return resultOfCode(code);
}
