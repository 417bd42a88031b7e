// What semaphores offer inside the library beyond their public functions.
#pragma once

#include <olvex/Process.h>

namespace olvex {

// Takes a semaphore and gives it back in one step if it is free. Others wait for the first use of a
// new set; if its maker ended before that, they would wait for ever.
void useOnce(CxSem sem);

// Whether the set was removed from the system, so that others may have made another one.
bool isRemoved(CxSem sem);

} // namespace olvex
