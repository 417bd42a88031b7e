/*
 * Tracers: the class-based side of the tracing front end. Code asks for the tracer of its component
 * and writes messages, method entries and exits through it, mostly by way of a Trace. Which kind of
 * tracer it gets is chosen once, by Tracer::initialize().
 */
#ifndef OLVEX_TRACE_TRACER_H
#define OLVEX_TRACE_TRACER_H

#include <olvex/trace/Allocation.h>

inline namespace olvex_trace {

class TracerFactory;

/** Where the trace of one component goes. Arguments of all operations are borrowed. */
class OVX_API Tracer {
  public:
    OVX_TRACE_ALLOCATION

    /** The components. The values are those of createWrapper(). */
    enum Component : int {
        COMPONENT_HARDWARE = 0,
        COMPONENT_VPD = 1,
        COMPONENT_COMMON = 2,
        COMPONENT_SIGEVAL = 3,
        COMPONENT_FILE_SCANNER = 4,
        COMPONENT_PLUGIN = 5
    };
    /** From least to most detailed. */
    enum Level : int { LEVEL_FATAL = 0, LEVEL_ERROR = 1, LEVEL_WARNING = 2, LEVEL_INFO = 3 };
    /** The kinds of tracers. */
    enum Type : int {
        TYPE_OLVEX = 0,  /**< through the toolkit */
        TYPE_STDOUT = 1, /**< lines on standard output */
        TYPE_STDERR = 2  /**< lines on standard error */
    };

    /** Writes a message. */
    virtual void logMessage(Level level, const char *file, int line, const char *method,
                            const char *text) = 0;
    /** Writes that a method was entered. */
    virtual void logEntry(Level level, const char *file, int line, const char *method,
                          const char *text) = 0;
    /** Writes that a method was left. */
    virtual void logExit(Level level, const char *file, int line, const char *method,
                         const char *text) = 0;
    /** Sets the most detailed level that is written. */
    virtual void setLevel(Level level) = 0;
    /** The most detailed level that is written. */
    virtual Level getLevel() = 0;
    virtual ~Tracer();

    /**
     * Chooses the kind of tracers; TYPE_OLVEX takes the trace properties file, none for the default
     * one. Later calls change nothing, until cleanup(). 0 when a kind is chosen, -1 when not: for
     * an unknown type.
     */
    static int initialize(Type type, const char *propertiesFile);
    /**
     * Deletes all tracers; another kind may be chosen then. Not while others trace. The toolkit
     * stays open and its handles stay.
     */
    static void cleanup();
    /**
     * The component's tracer, borrowed until cleanup(); none for another value. When no kind was
     * chosen, TYPE_OLVEX with the default trace properties file is.
     */
    static Tracer *getInstance(Component component);

  private:
    static TracerFactory *_tracerFactory;
    static bool _inited;
};

} // namespace olvex_trace

#endif
