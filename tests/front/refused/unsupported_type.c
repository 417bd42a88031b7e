// c11: 'struct Disk' .*(not compatible with any|association)
#include <olvex/LogMacros.h>

struct Disk {
    int percent;
};

int main(void)
{
    OvxObject *const log = NULL;
    const struct Disk disk = {93};
#ifdef WRONG
    OVX_LOG_WARN(log, "%1$d percent", disk);
#else
    OVX_LOG_WARN(log, "%1$d percent", disk.percent);
#endif
    return 0;
}
