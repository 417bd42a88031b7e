/* The factory of tracers that write through the toolkit. */
#ifndef OLVEX_TRACE_OLVEXTRACERFACTORY_H
#define OLVEX_TRACE_OLVEXTRACERFACTORY_H

#include <olvex/trace/OlvexTracer.h>
#include <olvex/trace/TracerFactory.h>

inline namespace olvex_trace {

/** Makes one OlvexTracer for each component on the first request and owns it. */
class OVX_API OlvexTracerFactory : public TracerFactory {
  public:
    /** Calls initializeWrapper() with the trace properties file, none for the default one. */
    explicit OlvexTracerFactory(const char *propertiesFile);
    ~OlvexTracerFactory() override;
    OlvexTracerFactory(const OlvexTracerFactory &) = delete;
    OlvexTracerFactory &operator=(const OlvexTracerFactory &) = delete;

    Tracer *getTracer(Tracer::Component component) override;

  private:
    OlvexTracer *tracers_[kComponents];
};

} // namespace olvex_trace

#endif
