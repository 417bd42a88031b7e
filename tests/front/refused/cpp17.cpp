// What the C++ front and headers made of catalogs refuse in C++17. The right form logs.
#include <olvex/olvex.hpp>

#include "app.h"

#include <vector>

#define TEN 1, 2, 3, 4, 5, 6, 7, 8, 9, 10
#define FORTY_NINE TEN, TEN, TEN, TEN, 1, 2, 3, 4, 5, 6, 7, 8, 9
#define TEN_TEXT "%d%d%d%d%d%d%d%d%d%d"

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
    const std::string text = "text";
    const std::vector<int> numbers{1, 2};
#if WRONG == 1 // this parameter of the message is an int
    APP_1_7(log, olvex::Level::warn, "/var", 93.5);
#elif WRONG == 2 // the text uses a parameter that is not given
    OVX_LOG_DEBUG_MAX(log, "%1$s of %2$s", "one");
#elif WRONG == 3 // a parameter list has at most 62 entries
    log.info(TEN_TEXT TEN_TEXT TEN_TEXT TEN_TEXT TEN_TEXT "%d%d%d%d%d%d%d%d%d", TEN, FORTY_NINE,
             olvex::prop("name", 60));
#elif WRONG == 4 // a conversion of the text does not fit its parameter
    OVX_LOG_DEBUG_MAX(log, "%d bytes, %.*f percent", text.size(), 1, 2.5);
#elif WRONG == 5 // a logging call takes bool, char, integers, float, double
    log.debugMax("%1$d", numbers);
#elif WRONG == 6 // a parameter is not used by the text
    OVX_LOG_DEBUG_MAX(log, "%1$d of %3$d", 1, 2, 3, olvex::prop("name", 4));
#endif
    OVX_LOG_DEBUG_MAX(log, "%zu bytes, %.*f percent", text.size(), 1, 2.5);
    log.debugMax("%1$d", numbers[1]);
    OVX_LOG_DEBUG_MAX(log, "%1$d of %3$d and %2$d", 1, 2, 3, olvex::prop("name", 4));
    log.addListener(olvex::Object("console", "ovx_consolehandler"));
    // prints main [0-9]+ (12345678910){5}123456789
    log.info(TEN_TEXT TEN_TEXT TEN_TEXT TEN_TEXT TEN_TEXT "%d%d%d%d%d%d%d%d%d", TEN, FORTY_NINE);
    // prints cpp17.cpp main 39 Disk /var is 93 percent full
    APP_1_7(log, olvex::Level::warn, std::string_view("/variable", 4), 93);
    // prints main 41 APP0008W Only 1048576 bytes are left on "/var", that is 0.3%
    APP0008W(log, OVX_LEVEL_WARN, std::string("/var"), 1 << 20, 0.25);
    APP_1_9(log, OVX_LEVEL_FATAL); // prints main 42 Nothing is left
}
