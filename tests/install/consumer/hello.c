/* Logs one line to standard output, in C11. */
#include <olvex/olvex.h>

int main(void)
{
    OvxOpenToolkit(NULL);
    OvxObject *log = OvxGetObject("hello", "ovx_basiclogger");
    OvxObject *console = OvxGetObject("console", "ovx_consolehandler");
    OvxAddListener(log, console);
    OvxLogInfo(log, NULL, 0, 0, "Hello from %1$s %2$d", OVX_PARM_STRING, "C", OVX_PARM_INT, 11, 0);
    OvxReleaseObject(console);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
