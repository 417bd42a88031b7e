// What the C macros refuse in C11. The right form logs: every type, many arguments, properties, and
// nothing is evaluated when the logger does not take the level.
#include <olvex/olvex.h>

#include "app.h"

#include <limits.h>
#include <stdio.h>

struct Disk {
    int percent;
};

#define NUMBERS                                                                                    \
    1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, \
        27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48,    \
        49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59

static int evaluated = 0;

static const char *costly(const char *text)
{
    ++evaluated;
    return text;
}

int main(void)
{
    OvxOpenToolkit(NULL);
    OvxObject *const log = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *const console = OvxGetObject("console", "ovx_consolehandler");
    OvxAddListener(log, console);
    const struct Disk disk = {93};
    const signed char tiny = -128;
    const unsigned short small = 65535;
    const char letter = 'x', *none = NULL, own[] = "own";
#if WRONG == 1 // (requires 4 arguments, but only 3 given|too few arguments provided)
    APP_1_7(log, OVX_LEVEL_WARN, "/var");
#elif WRONG == 2 // 'char ?\*' .*(not compatible with any|association)
    APP_1_7(log, OVX_LEVEL_WARN, "/var", "93");
#elif WRONG == 3 // a logging macro takes at most 59 parameters
    OVX_LOG_INFO(log, "%1$d to %59$d", NUMBERS, 60);
#elif WRONG == 4 // 'struct Disk' .*(not compatible with any|association)
    OVX_LOG_WARN(log, "%1$d percent", disk);
#endif
    // prints c11.c main [0-9]+ Disk /var is 93 percent full
    APP_1_7(log, OVX_LEVEL_WARN, "/var", disk.percent);
    APP_1_9(log, OVX_LEVEL_WARN);                     // prints main [0-9]+ Nothing is left
    OVX_LOG_INFO(log, "%59$d down to %1$d", NUMBERS); // prints 59 down to 1
    // prints -128 65535 1 x y -2147483648
    OVX_LOG_INFO(log, "%d %d %d %c %c %d", tiny, small, (bool)1, letter, 'y', INT_MIN);
#if LONG_MAX > INT_MAX // elsewhere nothing is wider than an int
    OVX_LOG_INFO(log, "%u %ld %lu %lld %llx", UINT_MAX, LONG_MIN, ULONG_MAX, 5LL, ULLONG_MAX);
#else
    OVX_LOG_INFO(log, "%u %ld %lu", (unsigned)INT_MAX, LONG_MIN, (unsigned long)LONG_MAX);
#endif
    // prints (4294967295 -[0-9]{19} 18446744073709551615 5 f{16}|2147483647 -[0-9]+ [0-9]+)

    // prints 1.5 2.5 own text \(null\) 10
    OVX_LOG_INFO(log, "%.1f %g %s %s %s %p", 1.5F, 2.5, own, costly("text"), none, (void *)16);
    OVX_LOG_DEBUG_MAX(log, "%s", costly("not seen"));
    // prints storage 7 1 of two
    OVX_LOG_WITH(ERROR, log, (OVX_NAMED("component", costly("storage")), OVX_NAMED("client", 7)),
                 "%1$d of %2$s", 1, "two");
    OVX_LOG_WARN(log, "no arguments"); // prints main [0-9]+ no arguments
    OVX_LOG_MESSAGE(WARN, log, "no-catalog", 1, 2, "message %s", "two"); // prints message two
    OVX_LOG_DEBUG_MIN(log, "debug %d", 1);     // prints main [0-9]+ debug 1
    OVX_LOG_TEXT(log, "text %d", 1);           // prints :[0-9]{2} text 1
    printf("evaluated %d times\n", evaluated); // prints evaluated 2 times
    OvxReleaseObject(console);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
