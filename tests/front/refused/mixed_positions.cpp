// c++20: THE_TEXT_MIXES_CONVERSIONS_WITH_AND_WITHOUT_A_POSITION
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#ifdef WRONG
    log.debugMax("%1$d % of the disk", 93); // "% o" prints octal
#else
    log.debugMax("%1$d %% of the disk", 93);
#endif
}
