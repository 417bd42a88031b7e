/*
 * A small host. It opens the toolkit with a properties file, logs through a logger with a level
 * filter and two handlers, changes a property at run time, loads more properties and closes.
 *
 *     host FILE.properties MORE.properties
 */
#include <olvex/olvex.h>

#include <stdio.h>

static void sell(OvxObject *log, int number, const char *customer)
{
    /* The parameter list: a marker and a value for each parameter, closed by 0. In the text, %1$d
       is the first of them, whatever order a translation puts them in. */
    OvxLogInfo(log, NULL, 0, 0, "Order %1$d of %2$s is on its way", OVX_PARM_INT, number,
               OVX_PARM_STRING, customer, 0);

    /* Debugging text carries its place in the source. The macro leaves the whole call out,
       arguments and all, when the logger does not take the level. */
    OVX_IF_LOGGABLE(log, OVX_LEVEL_DEBUG_MIN)
    OvxLogDebugMin(log, "host.c", "sell", __LINE__, "stock after order: %1$ld", OVX_PARM_LONG,
                   1000L - number, 0);
}

static void reportStock(OvxObject *log, double level)
{
    /* OVX_PROP names a property of the event; the formatters know "component" and some others. */
    OvxLogWarn(log, NULL, 0, 0, "The stock is at %1$.1f percent", OVX_PARM_DOUBLE, level, OVX_PROP,
               "component", OVX_PARM_STRING, "warehouse", 0);
}

int main(int argc, char **argv)
{
    if (argc != 3) {
        fprintf(stderr, "usage: host FILE.properties MORE.properties\n");
        return 2;
    }
    setvbuf(stdout, NULL, _IOLBF, 0); /* keeps both streams in order when they end in one file */
    if (!OvxOpenToolkit(argv[1])) return 1;

    /* The class comes from the file, and so do the listeners: the host knows the name only. */
    OvxObject *log = OvxGetObject("shop.log", NULL);
    printf("-- as configured: everything on the screen, warnings on standard error too\n");
    sell(log, 17, "Ada");
    reportStock(log, 4.25);

    printf("-- the level filter, set to ERROR at run time, keeps warnings off standard error\n");
    OvxObject *alarms = OvxGetObject("alarms", NULL);
    OvxSetObjProp(alarms, "level", "ERROR");
    OvxReleaseObject(alarms);
    reportStock(log, 3.75);

    printf("-- more properties: no debugging text any more, and another separator\n");
    if (!OvxLoadAdditionalProperties(argv[2])) return 1;
    /* Applying "listenerNames" again makes the handlers anew, with what is configured now. */
    OvxLogMgrApplyCfg(log, "shop.log");
    sell(log, 18, "Grace");

    printf("-- a logger below the first one in name, which inherits its listeners\n");
    OvxObject *audit = OvxGetObject("shop.log.audit", NULL);
    OvxLogError(audit, NULL, 0, 0, "Order %1$d was paid %2$s", OVX_PARM_INT, 18, OVX_PARM_STRING,
                "twice", 0);
    OvxReleaseObject(audit);

    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
