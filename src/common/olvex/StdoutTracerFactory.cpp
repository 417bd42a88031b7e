// Makes and owns the tracers that write to standard output.
#include <olvex/trace/StdoutTracerFactory.h>

#include "TracerSlots.h"

StdoutTracerFactory::StdoutTracerFactory() : tracers_{} {}

StdoutTracerFactory::~StdoutTracerFactory()
{
    olvex::deleteTracers(tracers_);
}

Tracer *StdoutTracerFactory::getTracer(Tracer::Component component)
{
    return olvex::tracerIn(tracers_, component, [&] { return new StdoutTracer(component, false); });
}
