// What the C macros refuse in C11.
#include "app.h"

struct Disk {
    int percent;
};

#define NUMBERS                                                                                    \
    1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, \
        27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48,    \
        49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59

int main(void)
{
    OvxObject *const log = NULL;
    const struct Disk disk = {93};
#if WRONG == 1 // (requires 4 arguments, but only 3 given|too few arguments provided)
    APP_1_7(log, OVX_LEVEL_WARN, "/var");
#elif WRONG == 2 // 'char ?\*' .*(not compatible with any|association)
    APP_1_7(log, OVX_LEVEL_WARN, "/var", "93");
#elif WRONG == 3 // a logging macro takes at most 59 parameters
    OVX_LOG_INFO(log, "%1$d to %59$d", NUMBERS, 60);
#elif WRONG == 4 // 'struct Disk' .*(not compatible with any|association)
    OVX_LOG_WARN(log, "%1$d percent", disk);
#endif
    APP_1_7(log, OVX_LEVEL_WARN, "/var", 93);
    APP_1_9(log, OVX_LEVEL_WARN);
    OVX_LOG_INFO(log, "%1$d to %59$d", NUMBERS);
    OVX_LOG_WARN(log, "%1$d percent", disk.percent);
    return 0;
}
