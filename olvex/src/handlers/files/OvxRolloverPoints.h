// Named places in the rollover of a shared log at which a test may end the process, to see that the
// others go on. In a program nothing is set and nothing happens.
#pragma once

namespace olvex {

inline void (*rolloverPointHook)(const char *point) = nullptr;

inline void rolloverPoint(const char *point)
{
    if (rolloverPointHook) [[unlikely]]
        rolloverPointHook(point);
}

} // namespace olvex
