// c++17: a parameter is not used by the text
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#ifdef WRONG
    OVX_LOG_DEBUG_MAX(log, "%1$d of %3$d", 1, 2, 3, olvex::prop("name", 4));
#else
    OVX_LOG_DEBUG_MAX(log, "%1$d of %3$d and %2$d", 1, 2, 3, olvex::prop("name", 4));
#endif
}
