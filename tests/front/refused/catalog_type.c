// c11: 'char ?\*' .*(not compatible with any|association)
#include "app.h"

int main(void)
{
    OvxObject *const log = NULL;
#ifdef WRONG
    APP_1_7(log, OVX_LEVEL_WARN, "/var", "93");
#else
    APP_1_7(log, OVX_LEVEL_WARN, "/var", 93);
#endif
    return 0;
}
