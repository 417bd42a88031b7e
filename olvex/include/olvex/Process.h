/*
 * Processes, and locks between processes. Results as in <olvex/File.h>; none of these takes the
 * toolkit's lock.
 */
#ifndef OLVEX_PROCESS_H
#define OLVEX_PROCESS_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** A System V semaphore set of one semaphore; -1 when closed. The variable is the caller's. */
typedef int32_t CxSem;

/** How a child process ended. */
typedef struct CxProcessStatus {
    bool finished;    /**< it has ended and this is how */
    int32_t exitCode; /**< 0 to 255, when it ended by itself */
    bool signaled;    /**< a signal ended it */
    int32_t signal;   /**< that signal's number */
} CxProcessStatus;

/** Opens the set of a key, or makes it with value 1; code 62 when its maker does not get ready. */
OVX_API CxResult CxSemOpen(CxSem *sem, int32_t key);
/** Takes the semaphore, waiting while another has it; given back by the system at process end. */
OVX_API CxResult CxSemLock(CxSem *sem);
/** Gives the semaphore back. */
OVX_API CxResult CxSemUnlock(CxSem *sem);
/** Forgets the set, which stays in the system. */
OVX_API CxResult CxSemClose(CxSem *sem);

/** An environment variable's value, borrowed. */
OVX_API const char *CxProcessGetEnv(const char *name);
/** The process's number. */
OVX_API int64_t CxProcessGetCurrentID(void);
/** The working directory into `buffer` of `size` bytes; empty on failure. */
OVX_API CxResult CxProcessGetCwd(char *buffer, size_t size);
/** Starts the program at `path` with a NULL-terminated argument vector. */
OVX_API CxResult CxProcessCreate(int32_t *pid, const char *path, char *const *argv);
/** Collects how a child ended, waiting for that when `wait` is true. */
OVX_API CxResult CxProcessWaitFor(int32_t *pid, CxProcessStatus *status, bool wait);
/** Releases what belongs to a process number, which is nothing; code 22 for 0. */
OVX_API CxResult CxProcessRelease(int32_t pid);

OVX_END_DECLS

#endif
