/* The tracer that writes through the toolkit. */
#ifndef OLVEX_TRACE_OLVEXTRACER_H
#define OLVEX_TRACE_OLVEXTRACER_H

#include <olvex/trace/OlvLogWrapper.h>
#include <olvex/trace/Tracer.h>

inline namespace olvex_trace {

/** Writes through the component's trace handle; on an inactive one every operation does nothing. */
class OVX_API OlvexTracer : public Tracer {
  public:
    /** Takes the component's handle from createWrapper(). */
    explicit OlvexTracer(Component component);

    /** Levels 0 and 1 go to traceMIN(), 2 to traceMID(), 3 to traceMAX(), others nowhere. */
    void logMessage(Level level, const char *file, int line, const char *method,
                    const char *text) override;
    /** traceEntry(), whatever the level. */
    void logEntry(Level level, const char *file, int line, const char *method,
                  const char *text) override;
    /** traceExit(), whatever the level. */
    void logExit(Level level, const char *file, int line, const char *method,
                 const char *text) override;
    /** Does nothing: the toolkit's configuration says what is written. */
    void setLevel(Level level) override;
    /** 1 and 2 for a handle of that level, 3 for any other one. */
    Level getLevel() override;

  private:
    OlvLogWrapper *handle_;
};

} // namespace olvex_trace

#endif
