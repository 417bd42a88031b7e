/*
 * Processes, and locks between processes. Results are those of <olvex/File.h>: kind '-' and code 0,
 * or kind 'p' and an error number. None of these functions takes the toolkit's lock.
 */
#ifndef OLVEX_PROCESS_H
#define OLVEX_PROCESS_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** A System V semaphore set of one semaphore; -1 when closed. The variable is the caller's. */
typedef int32_t CxSem;

/** How a child process ended; all zero while it runs. */
typedef struct CxProcessStatus {
    bool finished;    /**< it has ended, and this is how */
    int32_t exitCode; /**< 0 to 255, when it ended by itself */
    bool signaled;    /**< a signal ended it */
    int32_t signal;   /**< that signal's number */
} CxProcessStatus;

/**
 * Opens the semaphore set of a System V key, or makes it, free and with mode 0666. A set that
 * another process made is waited for until it was used once, for up to 9 seconds; then CX_ETIME,
 * and at once when this process tries again. This user's own set that nobody has used for ten
 * seconds is taken over. A set of several semaphores is another program's: CX_EINVAL.
 */
OVX_API CxResult CxSemOpen(CxSem *sem, int32_t key);
/**
 * Takes the semaphore, waiting while another process has it; the system gives it back when this
 * process ends. CX_ETIME when signals or a full undo table prevented that 11 times. A set that was
 * removed gives the platform's error number: close and open it again.
 */
OVX_API CxResult CxSemLock(CxSem *sem);
/** Gives the semaphore back. */
OVX_API CxResult CxSemUnlock(CxSem *sem);
/** Forgets the set, which stays in the system; the variable becomes -1. */
OVX_API CxResult CxSemClose(CxSem *sem);

/** The value of an environment variable, borrowed; NULL when there is none. */
OVX_API const char *CxProcessGetEnv(const char *name);
/** The process's number. */
OVX_API int64_t CxProcessGetCurrentID(void);
/** Puts the working directory into `buffer` of `size` bytes; on failure that is empty. */
OVX_API CxResult CxProcessGetCwd(char *buffer, size_t size);
/**
 * Starts the program at `path`, which is not searched for, with a NULL-terminated argument vector
 * whose first entry is the program's own name; all borrowed. `pid` receives the child's number, -1
 * when there is none. A program that cannot be started ends the child with exit code 127.
 */
OVX_API CxResult CxProcessCreate(int32_t *pid, const char *path, char *const *argv);
/**
 * Collects how the child `pid` ended, waiting for that when `wait` is true; else success with
 * `finished` false means that it runs. A child can be collected once.
 */
OVX_API CxResult CxProcessWaitFor(int32_t *pid, CxProcessStatus *status, bool wait);
/** Releases what belongs to a process number, which is nothing; CX_EINVAL for 0. */
OVX_API CxResult CxProcessRelease(int32_t pid);

OVX_END_DECLS

#endif
