/*
 * The current error of a thread: where a program records what went wrong, and where the trace
 * stream's error dump finds it.
 */
#ifndef OLVEX_TRACE_BASE_ERRORMANAGER_H
#define OLVEX_TRACE_BASE_ERRORMANAGER_H

#include <olvex/Export.h>

inline namespace olvex_trace {

/** Each thread has one current error of its own, none at first. Nothing here may be called from a
    signal handler. */
class OVX_API ErrorManager {
  public:
    /**
     * Makes `code` the current error of this thread, with its place in the source (`file` is
     * copied, at most 255 bytes) and the call stack of the caller, at most 64 calls deep. It
     * replaces the error recorded before.
     */
    static void setError(long code, const char *file, int line);
    /** Forgets the current error of this thread. */
    static void clear();

    /**
     * The call stack of the current error as text, a line for each call. Without a buffer, `size`
     * receives the bytes needed, terminator included; 0 when there is no error. With one, `size`
     * says how large the buffer is; what does not fit is cut.
     */
    static void getStackDump(char *buffer, long *size);
    /** The code of the current error, 0 when there is none. */
    static void getError(long *code);
    /** Its source file, borrowed until the next error of this thread; null when there is none. */
    static void getFile(const char **file);
    /** Its source line, 0 when there is none. */
    static void getLine(int *line);
};

} // namespace olvex_trace

/** Records `code` as the current error, with this place in the source. */
#define OVX_SET_ERROR(code) (::ErrorManager::setError((code), __FILE__, __LINE__))

#endif
