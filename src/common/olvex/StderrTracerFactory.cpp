// Makes and owns the tracers that write to standard error.
#include <olvex/trace/StderrTracerFactory.h>

#include "TracerSlots.h"

StderrTracerFactory::StderrTracerFactory() : tracers_{} {}

StderrTracerFactory::~StderrTracerFactory()
{
    olvex::deleteTracers(tracers_);
}

Tracer *StderrTracerFactory::getTracer(Tracer::Component component)
{
    return olvex::tracerIn(tracers_, component, [&] { return new StdoutTracer(component, true); });
}
