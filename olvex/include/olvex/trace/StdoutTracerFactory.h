/* The factory of tracers that write to standard output. */
#ifndef OLVEX_TRACE_STDOUTTRACERFACTORY_H
#define OLVEX_TRACE_STDOUTTRACERFACTORY_H

#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/TracerFactory.h>

inline namespace olvex_trace {

/** Makes one StdoutTracer for each component on the first request and owns it. */
class OVX_API StdoutTracerFactory : public TracerFactory {
  public:
    StdoutTracerFactory();
    ~StdoutTracerFactory() override;
    StdoutTracerFactory(const StdoutTracerFactory &) = delete;
    StdoutTracerFactory &operator=(const StdoutTracerFactory &) = delete;

    Tracer *getTracer(Tracer::Component component) override;

  private:
    StdoutTracer *tracers_[kComponents];
};

} // namespace olvex_trace

#endif
