// c++20: A_CONVERSION_DOES_NOT_FIT_ITS_PARAMETER
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#ifdef WRONG
    log.debugMax("Disk %1$s is %2$d percent full", "/var", "93");
#else
    log.debugMax("Disk %1$s is %2$d percent full", "/var", 93);
#endif
}
