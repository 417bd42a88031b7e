// c++17: a conversion of the text does not fit its parameter
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
    const std::string text = "text";
#ifdef WRONG
    OVX_LOG_DEBUG_MAX(log, "%d bytes, %.*f percent", text.size(), 1, 2.5);
#else
    OVX_LOG_DEBUG_MAX(log, "%zu bytes, %.*f percent", text.size(), 1, 2.5);
#endif
}
