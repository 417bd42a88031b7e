/*
 * Mutexes and threads. Results are those of <olvex/File.h>: kind '-' and code 0, or kind 'p' and an
 * error number. None of these functions takes the toolkit's lock.
 */
#ifndef OLVEX_THREAD_H
#define OLVEX_THREAD_H

#include <olvex/Types.h>

#include <pthread.h>

OVX_BEGIN_DECLS

/** A mutex; NULL when not created. A thread that locks it twice waits for ever. */
typedef struct CxMutexHandle *CxMutex;
/** A thread, as the platform's threads know it. */
typedef pthread_t CxThread;

/** Makes a mutex; CX_ENOMEM and NULL when memory runs out. */
OVX_API CxResult CxMutexCreate(CxMutex *mutex);
/** Locks the mutex, waiting while another thread has it. */
OVX_API CxResult CxMutexLock(CxMutex mutex);
/** Unlocks the mutex. */
OVX_API CxResult CxMutexUnlock(CxMutex mutex);
/** Destroys the mutex, which nobody may hold; the variable becomes NULL. */
OVX_API CxResult CxMutexDestroy(CxMutex *mutex);

/** Says whether there are threads: true. */
OVX_API bool CxHasThreadSupport(void);
/** The calling thread's number in the system, as gettid(2) gives it. */
OVX_API uint64_t CxThreadGetCurrentID(void);
/**
 * Starts a thread that runs `start(argument)`, with a stack of `stackSize` bytes, 0 for the
 * platform's default. Join it once.
 */
OVX_API CxResult CxThreadCreate(CxThread *thread, size_t stackSize, void *(*start)(void *),
                                void *argument);
/** Waits for the thread's end; what it returns is dropped. */
OVX_API CxResult CxThreadJoin(CxThread thread);
/** Does nothing. */
OVX_API void CxThreadYield(void);
/** Sleeps for whole seconds, to the nearest: 500 to 1499 milliseconds are one. */
OVX_API void CxThreadSleep(uint32_t milliseconds);

OVX_END_DECLS

#endif
