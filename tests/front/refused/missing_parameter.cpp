// c++17: the text uses a parameter that is not given
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
#ifdef WRONG
    OVX_LOG_DEBUG_MAX(log, "%1$s of %2$s", "one");
#else
    OVX_LOG_DEBUG_MAX(log, "%1$s of %2$s", "one", std::string("two"));
#endif
}
