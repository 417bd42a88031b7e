// The command that makes a locale for a test, in the byte order of the machine that the test is
// for, which need not be that of the program.
#pragma once

#include <bit>
#include <string>

namespace olvex::test {

inline std::string localedef()
{
    const bool isBig = std::endian::native == std::endian::big;
    return std::string("localedef -c ") + (isBig ? "--big-endian " : "--little-endian ");
}

} // namespace olvex::test
