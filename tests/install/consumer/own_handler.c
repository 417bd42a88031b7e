/*
 * A host with a handler class of its own: each object counts what it received in private variables
 * and prints each record as its formatter makes it.
 */
#include <olvex/class.h>
#include <olvex/olvex.h>

#include <stdio.h>
#include <stdlib.h>

static void *allocVars(void)
{
    return calloc(1, sizeof(int));
}

static void freeVars(void *variables)
{
    if (variables) printf("received %d events\n", *(int *)variables);
    free(variables);
}

/* Runs with the toolkit's lock held: calls only what <olvex/class.h> declares, and what takes no
   lock. */
static void process(OvxObject *handler, OvxEvent *event)
{
    int *received = ovxIntlGetObjectVars(handler);
    char *message = OvxBindEventMsg(event, ovxIntlBindI18Msg);
    char *record = ovxIntlHandlerDoFmt(handler, event);
    ++*received;
    printf("%s got level %d: %s\n", ovxIntlGetObjectName(handler), OvxGetEventLevel(event),
           message);
    printf("as a record: %s", record);
    BaxMemoryFree(message);
    BaxMemoryFree(record);
    OvxBasicObjectFLog(handler, event);
}

int main(void)
{
    OvxOpenToolkit(NULL);
    OvxAddHandlerClass("counting_handler", NULL, allocVars, freeVars, NULL, process, NULL, NULL);
    OvxObject *log = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *handler = OvxGetObject("counter", "counting_handler");
    OvxAddListener(log, handler);
    OvxLogWarn(log, NULL, 0, 0, "%1$d of %2$d", OVX_PARM_INT, 1, OVX_PARM_INT, 2, 0);
    OvxLogError(log, NULL, 0, 0, "the last", 0);
    OvxReleaseObject(handler);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
