// What the methods of loggers refuse where the compiler has consteval.
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#if WRONG == 1 // THE_TEXT_MIXES_CONVERSIONS_WITH_AND_WITHOUT_A_POSITION
    log.debugMax("%1$d % of the disk", 93);
#elif WRONG == 2 // THE_TEXT_HAS_A_PERCENT_SIGN_THAT_BEGINS_NO_CONVERSION
    log.debugMax("%1$d percent (50%)", 93);
#elif WRONG == 3 // A_CONVERSION_DOES_NOT_FIT_ITS_PARAMETER
    log.debugMax("Disk %1$s is %2$d percent full", "/var", "93");
#endif
    log.debugMax("%1$d %% of the disk", 93);
    log.debugMax("Disk %1$s is %2$d percent full", "/var", 93);
}
