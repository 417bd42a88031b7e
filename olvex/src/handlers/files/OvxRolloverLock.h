// A lock on the active file of a shared log, beside the semaphore: when the semaphore's set is
// removed from the system, one process may still be in a rollover under the old set while others
// meet in a new one. Rollovers, and the first record that a process writes under a set, are made
// with this lock held. Called with the API mutex held.
#pragma once

#include <olvex/File.h>

namespace olvex {

class RolloverLock {
  public:
    RolloverLock() = default;
    ~RolloverLock()
    {
        if (file_ >= 0) release();
    }
    RolloverLock(const RolloverLock &) = delete;
    RolloverLock &operator=(const RolloverLock &) = delete;

    // Waits for the rollover of another process. Goes on without the lock where files cannot be
    // locked, or another program has locked the log for its own purposes.
    void take(CxFile file);

    // The descriptor has been closed, or is not the log's any more: nothing is to be released.
    void forget() { file_ = -1; }

  private:
    void release();

    CxFile file_ = -1;
};

} // namespace olvex
