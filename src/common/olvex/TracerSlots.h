// How the factories keep their tracers: one slot for each component. No locks.
#ifndef OLVEX_TRACE_TRACERSLOTS_H
#define OLVEX_TRACE_TRACERSLOTS_H

#include "Publish.h"

#include <olvex/trace/Tracer.h>

#include <cstddef>

namespace olvex {

/** The tracer in the component's slot, made by make() on the first request; none without a slot. */
template <typename T, std::size_t count, typename Make>
T *tracerIn(T *(&slots)[count], Tracer::Component component, Make make)
{
    const bool hasSlot = component >= 0 && static_cast<std::size_t>(component) < count;
    return hasSlot ? publishedIn(slots[component], make) : nullptr;
}

template <typename T, std::size_t count>
void deleteTracers(T *(&slots)[count])
{
    for (T *tracer : slots)
        delete tracer;
}

} // namespace olvex

#endif
