/* The shortest useful life of a host: opens the toolkit with the properties file that it is given,
   writes one record and closes. */
#include <olvex/olvex.h>

int main(int argc, char **argv)
{
    if (argc != 2 || !OvxOpenToolkit(argv[1])) return 1;
    OvxObject *log = OvxGetObject("shop.log", NULL);
    OvxLogInfo(log, NULL, 0, 0, "Started with %1$s", OVX_PARM_STRING, argv[1], 0);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
