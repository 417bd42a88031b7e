/* What can be put into a trace stream as text. */
#ifndef OLVEX_TRACE_BASE_OBJECT_H
#define OLVEX_TRACE_BASE_OBJECT_H

#include <olvex/trace/base/String.h>

inline namespace olvex_trace {

/** The base of classes whose objects have a text of their own. */
class OVX_API Object {
  public:
    OVX_TRACE_ALLOCATION

    virtual ~Object();

    /** The object's text. */
    virtual String toString() const = 0;
};

} // namespace olvex_trace

#endif
