// The environment as privileged processes may use it, children that get nothing but the standard
// descriptors, and the trace texts for debugging.
#pragma once

#include <olvex/Export.h>
#include <olvex/Process.h>

// Whether the process has rights that whoever started it has not: what it reads must not come from
// the environment or the directory that it was started in.
bool cxIsPrivileged();

// An environment variable that says where files are; null in a process with raised privileges.
const char *cxTrustedEnv(const char *name);

// CxProcessCreate, the child with no other descriptors than 0, 1 and 2.
CxResult cxProcessCreateAlone(int32_t *pid, const char *path, char *const *argv);

void cxIntlTraceEnter(const char *format, ...) OVX_PRINTF_LIKE(1, 2);
void cxIntlTraceLeave(const char *format, ...) OVX_PRINTF_LIKE(1, 2);
void cxIntlTracePoint(const char *format, ...) OVX_PRINTF_LIKE(1, 2);
