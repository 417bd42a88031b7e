/* What makes the tracers of one kind. */
#ifndef OLVEX_TRACE_TRACERFACTORY_H
#define OLVEX_TRACE_TRACERFACTORY_H

#include <olvex/trace/Tracer.h>

inline namespace olvex_trace {

/** Owns one tracer for each component. */
class OVX_API TracerFactory {
  public:
    OVX_TRACE_ALLOCATION

    virtual ~TracerFactory();

    /** The component's tracer, borrowed, made on the first request; none for another value. */
    virtual Tracer *getTracer(Tracer::Component component) = 0;

  protected:
    /** Components that have a tracer: 0 to 5. */
    static constexpr int kComponents = 6;
};

} // namespace olvex_trace

#endif
