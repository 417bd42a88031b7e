// c++20: THE_TEXT_HAS_A_PERCENT_SIGN_THAT_BEGINS_NO_CONVERSION
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#ifdef WRONG
    log.debugMax("%1$d percent (50%)", 93);
#else
    log.debugMax("%1$d percent (50%%)", 93);
#endif
}
