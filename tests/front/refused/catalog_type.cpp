// c++17: this parameter of the message is an int
// The twin logs through the header, in C++.
#include <olvex/olvex.hpp>

#include "app.h"

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
    log.addListener(olvex::Object("console", "ovx_consolehandler"));
#ifdef WRONG
    APP_1_7(log, olvex::Level::warn, "/var", 93.5);
#else
    APP_1_7(log, olvex::Level::warn, std::string_view("/variable", 4), 93);
    APP0008W(log, OVX_LEVEL_WARN, std::string("/var"), 1 << 20, 0.25);
    APP_1_9(log, OVX_LEVEL_FATAL);
#endif
}
