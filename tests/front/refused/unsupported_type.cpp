// c++17: a logging call takes bool, char, integers, float, double, strings and void pointers
#include <olvex/olvex.hpp>

int main()
{
    olvex::Toolkit toolkit;
    olvex::Logger log("log", "ovx_basiclogger");
    const std::vector<int> numbers{1, 2};
#ifdef WRONG
    log.debugMax("%1$d", numbers);
#else
    log.debugMax("%1$d", numbers[1]);
#endif
}
