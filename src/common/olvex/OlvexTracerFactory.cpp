// Makes and owns the tracers that write through the toolkit.
#include <olvex/trace/OlvexTracerFactory.h>

#include "TracerSlots.h"

OlvexTracerFactory::OlvexTracerFactory(const char *propertiesFile) : tracers_{}
{
    initializeWrapper(propertiesFile);
}

OlvexTracerFactory::~OlvexTracerFactory()
{
    olvex::deleteTracers(tracers_);
}

Tracer *OlvexTracerFactory::getTracer(Tracer::Component component)
{
    return olvex::tracerIn(tracers_, component, [&] { return new OlvexTracer(component); });
}
