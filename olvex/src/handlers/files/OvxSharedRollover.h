// The rollover of a log that several processes write, in which the active file is copied and
// emptied in place. Its caller holds the semaphore.
#pragma once

#include "handlers/OvxFileHandler.h"
#include "handlers/files/OvxFileFailures.h"

namespace olvex {

// Finishes a rollover whose process ended in the middle of it, if one is left behind.
void finishCutRollover(OvxFileHandlerVars &vars, Failures &failures);

} // namespace olvex

// Shifts the numbered files, copies the active file to number 1 and empties it.
void ovxMultiProcFileHandlerDoRollover(OvxFileHandlerVars &vars, olvex::Failures &failures);
