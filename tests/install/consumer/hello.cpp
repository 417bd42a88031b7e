// Logs one line to standard output, in C++17.
#include <olvex/class.h>
#include <olvex/olvex.h>

int main()
{
    OvxOpenToolkit(nullptr);
    OvxObject *log = OvxGetObject("hello", "ovx_basiclogger");
    OvxObject *console = OvxGetObject("console", "ovx_consolehandler");
    OvxAddListener(log, console);
    OVX_IF_LOGGABLE(log, OVX_LEVEL_INFO)
    OvxLogInfo(log, nullptr, 0, 0, "Hello from %1$s %2$d", OVX_PARM_STRING, "C++", OVX_PARM_INT, 17,
               0);
    OvxReleaseObject(console);
    OvxReleaseObject(log);
    OvxCloseToolkit();
}
