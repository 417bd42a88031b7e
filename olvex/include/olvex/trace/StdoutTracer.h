/* The tracer that writes lines straight to standard output or standard error. */
#ifndef OLVEX_TRACE_STDOUTTRACER_H
#define OLVEX_TRACE_STDOUTTRACER_H

#include <olvex/trace/Tracer.h>

#include <cstdio>

inline namespace olvex_trace {

/**
 * Writes what is at most as detailed as its level, one flushed line a call:
 *
 *     24/05/01 13:05:09 I [Com     ] run                            [4711] --> ENTRY
 *
 * Time, level, component, method, thread, and a text that is indented by the number of methods
 * entered. That number is shared by all tracers of the class; it makes sense for one tracing
 * thread at a time.
 */
class OVX_API StdoutTracer : public Tracer {
  public:
    /** A tracer of level 0 on standard output. */
    explicit StdoutTracer(Component component);
    /** A tracer of level 0 on standard error, or else on standard output. */
    StdoutTracer(Component component, bool standardError);

    /** Writes the text, if there is one. */
    void logMessage(Level level, const char *file, int line, const char *method,
                    const char *text) override;
    /** Writes the entry, without the text, and indents what follows. */
    void logEntry(Level level, const char *file, int line, const char *method,
                  const char *text) override;
    /** Takes the indent of one entry back, if there is one, and writes the exit. */
    void logExit(Level level, const char *file, int line, const char *method,
                 const char *text) override;
    void setLevel(Level level) override;
    Level getLevel() override;

    /** The calling thread's number in the system. */
    unsigned long getThreadId();
    /** Puts the local time into `buffer` of `size` bytes, at least 18, and returns it; empty when
        that fails. */
    char *getTimeString(char *buffer, unsigned size);
    /** 'F', 'E', 'W' and 'I' for the levels 0 to 3, else a blank. */
    char getLevelSymbol(Level level);
    /** The component's name in eight characters. */
    const char *getComponentSymbol(Component component);

  private:
    struct Line;
    bool takes(Level level);
    void write(const Line &line);

    Level level_;
    Component component_;
    std::FILE *stream_;

    static unsigned _nestingLevel;
};

} // namespace olvex_trace

#endif
