/*
 * A program whose addresses are fixed when it is linked: it has addresses of its own for the
 * library's functions and copies of its variables, and the library must see the same.
 */
#include <olvex/class.h>
#include <olvex/olvex.h>

#include <stdio.h>

static char *makeHeader(OvxObject *formatter)
{
    (void)formatter;
    return BaxStringDup("to standard error\n");
}

int main(void)
{
    OvxOpenToolkit(NULL);
    OvxAddHandlerClass("errors", NULL, OvxConsoleHandlerFAllocVars, OvxConsoleHandlerFFreeVars,
                       NULL, OvxStderrHandlerFProcess, OvxConsoleHandlerFOpen,
                       OvxConsoleHandlerFClose);
    OvxAddFormatterClass("headed", NULL, NULL, NULL, NULL, NULL, makeHeader, NULL, NULL);
    OvxObject *handler = OvxGetObject("err", "errors");
    OvxObject *formatter = OvxGetObject("fmt", "headed");
    OvxHandlerSetFormatter(handler, formatter);
    OvxConsoleHandlerFOpen(handler);
    printf("initialised: %d, catalog: %s\n", ucv_initialized, ovxmsg[0]);
    OvxReleaseObject(formatter);
    OvxReleaseObject(handler);
    OvxCloseToolkit();
    return 0;
}
