/*
 * The whole tracing front end: plain functions, tracers, the trace stream, wrapper objects, and the
 * classes that the stream stands on. It is C++; for a C compiler this is <olvex/trace_c.h>.
 */
#ifndef OLVEX_TRACE_H
#define OLVEX_TRACE_H

#ifdef __cplusplus
#include <olvex/trace/OlvLogWrapper.h>
#include <olvex/trace/OlvexTracer.h>
#include <olvex/trace/OlvexTracerFactory.h>
#include <olvex/trace/OlvexWrapper.h>
#include <olvex/trace/StderrTracerFactory.h>
#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/StdoutTracerFactory.h>
#include <olvex/trace/Trace.h>
#include <olvex/trace/Tracer.h>
#include <olvex/trace/TracerFactory.h>
#include <olvex/trace/base/ErrorManager.h>
#include <olvex/trace/base/Object.h>
#include <olvex/trace/base/String.h>
#else
#include <olvex/trace_c.h>
#endif

#endif
