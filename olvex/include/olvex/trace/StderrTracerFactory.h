/* The factory of tracers that write to standard error. */
#ifndef OLVEX_TRACE_STDERRTRACERFACTORY_H
#define OLVEX_TRACE_STDERRTRACERFACTORY_H

#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/TracerFactory.h>

inline namespace olvex_trace {

/** Makes one StdoutTracer for each component on the first request and owns it. */
class OVX_API StderrTracerFactory : public TracerFactory {
  public:
    StderrTracerFactory();
    ~StderrTracerFactory() override;
    StderrTracerFactory(const StderrTracerFactory &) = delete;
    StderrTracerFactory &operator=(const StderrTracerFactory &) = delete;

    Tracer *getTracer(Tracer::Component component) override;

  private:
    StdoutTracer *tracers_[kComponents];
};

} // namespace olvex_trace

#endif
