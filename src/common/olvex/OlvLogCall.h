// What one trace call needs: which call it is, from where it comes, and the writing of it.
#ifndef OLVEX_TRACE_OLVLOGCALL_H
#define OLVEX_TRACE_OLVLOGCALL_H

#include <olvex/Log.h>
#include <olvex/trace/OlvLogWrapper.h>

#include <cstdarg>

namespace olvex {

/** A kind of trace call. */
struct TraceKind {
    int minimum;        // level that the handle must have
    const char *prefix; // before the method's name
    decltype(&OvxLogDebugMax) log;
};

inline constexpr TraceKind kTraceMin{1, "", OvxLogDebugMin};
inline constexpr TraceKind kTraceMid{2, "", OvxLogDebugMid};
inline constexpr TraceKind kTraceMax{4, "", OvxLogDebugMax};
inline constexpr TraceKind kTraceEntry{4, "Entry ", OvxLogDebugMax};
inline constexpr TraceKind kTraceExit{4, "Exit ", OvxLogDebugMax};

/** The place that a trace call names. */
struct TracePlace {
    int line;
    const char *file;
    const char *method;
};

// The level comes first: it is what mostly says no, and then costs next to nothing.
inline bool takesTrace(const OlvLogWrapper *handle, const TraceKind &kind)
{
    if (__builtin_expect(!handle, 0)) return false;
    return __builtin_expect(handle->level >= kind.minimum, 0) && handle->initialized;
}

/** Writes a trace that the handle takes; kept out of the way of those that write nothing. */
[[gnu::cold]] void writeTrace(const OlvLogWrapper &handle, const TraceKind &kind,
                              const TracePlace &place, const char *format, va_list arguments);

} // namespace olvex

/* The body of a trace call. A macro, because only the function that has a variable list of
   arguments can open it. */
#define OLVEX_TRACE_CALL(handle, kind)                                                             \
    if (__builtin_expect(!olvex::takesTrace(handle, kind), 1)) return;                             \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    olvex::writeTrace(*(handle), kind, {line, file, method}, format, arguments);                   \
    va_end(arguments)

#endif
