// c11: (requires 4 arguments, but only 3 given|too few arguments provided)
#include "app.h"

int main(void)
{
    OvxObject *const log = NULL;
#ifdef WRONG
    APP_1_7(log, OVX_LEVEL_WARN, "/var");
#else
    APP_1_7(log, OVX_LEVEL_WARN, "/var", 93);
    APP_1_9(log, OVX_LEVEL_WARN);
#endif
    return 0;
}
