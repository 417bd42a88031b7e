/* Opening and closing the toolkit. */
#ifndef OLVEX_TOOLKIT_H
#define OLVEX_TOOLKIT_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/**
 * Opens the toolkit: registers the built-in classes, reads the properties file (a path, or NULL for
 * none) and builds the logger "olvex.errorLogger" to which the toolkit reports its own problems.
 * True when the toolkit is open afterwards; an open toolkit stays as it is and reads nothing. False
 * when the file cannot be read or is malformed: a message on standard error says so and the toolkit
 * is closed.
 */
OVX_API bool OvxOpenToolkit(const char *propertiesFile);

/**
 * Reads one more properties file into the configurations; objects that exist keep what they have.
 * Opens the toolkit when it is not open. False when the file cannot be read or is malformed; what
 * stood before the fault stays stored.
 */
OVX_API bool OvxLoadAdditionalProperties(const char *propertiesFile);

/**
 * Closes the toolkit: handlers are closed, objects, configurations and classes freed. What the host
 * still holds becomes an empty shell that it may release later. The toolkit can be opened again.
 */
OVX_API void OvxCloseToolkit(void);

/** Says whether the toolkit is open. Takes no lock. */
OVX_API bool OvxIsToolkitOpen(void);

OVX_END_DECLS

#endif
