// What the tracing front end asks of its environment. Without locks; belongs to start-up.
#ifndef OLVEX_TRACE_OLVLOGCONFIG_H
#define OLVEX_TRACE_OLVLOGCONFIG_H

#include <cstddef>

namespace olvex {

/** The size of the buffers for paths and for trace texts. */
constexpr std::size_t kTraceBuffer = 1024;

/** Puts the product's home directory, as the product configuration file `path` names it, into
    `home`, a buffer of kTraceBuffer bytes; empty when there is none. */
void readHomeDirectory(const char *path, char *home);

/** Moves the file of the configuration "handlers.traceFile" into the user's home directory when it
    cannot be written where it is. The toolkit must be open. */
void relocateTraceFile();

} // namespace olvex

#endif
