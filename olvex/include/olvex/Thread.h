/* Mutexes and threads. Results as in <olvex/File.h>; none of these takes the toolkit's lock. */
#ifndef OLVEX_THREAD_H
#define OLVEX_THREAD_H

#include <olvex/Types.h>

#include <pthread.h>

OVX_BEGIN_DECLS

/** A mutex; NULL when not created. Not recursive. */
typedef struct CxMutexHandle *CxMutex;
/** A thread. */
typedef pthread_t CxThread;

/** Makes a mutex; code 12 when memory runs out. */
OVX_API CxResult CxMutexCreate(CxMutex *mutex);
/** Locks the mutex. */
OVX_API CxResult CxMutexLock(CxMutex mutex);
/** Unlocks the mutex. */
OVX_API CxResult CxMutexUnlock(CxMutex mutex);
/** Destroys the mutex; the variable becomes NULL. */
OVX_API CxResult CxMutexDestroy(CxMutex *mutex);

/** True: there are threads. */
OVX_API bool CxHasThreadSupport(void);
/** The calling thread's number, as the system counts threads. */
OVX_API uint64_t CxThreadGetCurrentID(void);
/** Starts a thread with a stack of `stackSize` bytes, 0 for the default. */
OVX_API CxResult CxThreadCreate(CxThread *thread, size_t stackSize, void *(*start)(void *),
                                void *argument);
/** Waits for the thread's end. */
OVX_API CxResult CxThreadJoin(CxThread thread);
/** Does nothing. */
OVX_API void CxThreadYield(void);
/** Sleeps to the nearest second: 500 to 1499 milliseconds are one second. */
OVX_API void CxThreadSleep(uint32_t milliseconds);

OVX_END_DECLS

#endif
