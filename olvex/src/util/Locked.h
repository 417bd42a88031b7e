// The toolkit's one lock, as every public function takes it. A public function is one line:
// `return locked([&] { return ovxIntl...(...); });`. The lock itself is in
// OvxApiMutex.cpp; all other files use it through this one.
#pragma once

#include <type_traits>

bool ovxAPIMutexLock();
// Takes the mutex unless the calling thread has it; true when the caller is to give it back.
bool ovxAPIMutexLockUnlessHeld();
void ovxAPIMutexUnlock();

namespace olvex {

// Runs `work` with the API mutex held; the type's empty value when the mutex cannot be taken.
template <class Work>
std::invoke_result_t<Work> locked(Work &&work)
{
    using Result = std::invoke_result_t<Work>;
    if (!ovxAPIMutexLock()) return Result();
    struct Unlock {
        ~Unlock() { ovxAPIMutexUnlock(); }
    } unlock;
    return work();
}

// The same for a lookup that tells through `found` (optional) whether there was anything.
template <class Work>
std::invoke_result_t<Work> lockedLookup(bool *found, Work &&work)
{
    if (found) *found = false;
    return locked(work);
}

} // namespace olvex
