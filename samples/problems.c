/*
 * A host that captures data when a problem is met. Its logger stamps events with product and
 * process; they go into a text log, an XML log and a trace log. When an event arrives whose
 * identifier ends in "E", as the ones of errors do, the files that help to find the cause are
 * saved: copied by one handler, packed into a zip archive by another. All of that is in the
 * properties file; the host only logs.
 *
 *     problems FILE.properties
 *
 * It works in the directory that it is started in.
 */
#include <olvex/olvex.h>

#include <stdio.h>

static const char *const kCatalog = "shopmsg"; /* where translations would be found */

/* What a real host has lying about: its configuration, and a list that it works on. */
static int writeFile(const char *name, const char *content)
{
    FILE *file = fopen(name, "w");
    if (!file) return 0;
    fputs(content, file);
    return fclose(file) == 0;
}

static void work(OvxObject *log)
{
    OvxLogInfo(log, kCatalog, 1, 1, "SHPOR0001I Order %1$d of %2$s is on its way", OVX_PARM_INT, 17,
               OVX_PARM_STRING, "Ada", 0);
    OvxLogDebugMin(log, "problems.c", "work", __LINE__, "looking into %1$s", OVX_PARM_STRING,
                   "order list.txt", 0);
    OvxLogWarn(log, kCatalog, 1, 12, "SHPST0012W The stock is at %1$.1f percent", OVX_PARM_DOUBLE,
               4.25, 0);
    /* The identifier at the start of this text is what the trigger looks for. */
    OvxLogError(log, kCatalog, 1, 20, "SHPDB0020E Order %1$d is listed twice in %2$s", OVX_PARM_INT,
                18, OVX_PARM_STRING, "order list.txt", OVX_PROP, "correlationId", OVX_PARM_STRING,
                "order-18", OVX_PROP, "shelf", OVX_PARM_STRING, "B7", 0);
    /* Within the trigger's repeat time: logged, but nothing is captured again. */
    OvxLogError(log, kCatalog, 1, 20, "SHPDB0020E Order %1$d is listed twice in %2$s", OVX_PARM_INT,
                18, OVX_PARM_STRING, "order list.txt", 0);
}

int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: problems FILE.properties\n");
        return 2;
    }
    if (!writeFile("shop.conf", "warehouse = north\n")) return 1;
    if (!writeFile("order list.txt", "17 Ada\n18 Grace\n18 Grace\n")) return 1;
    if (!OvxOpenToolkit(argv[1])) return 1;
    OvxObject *log = OvxGetObject("shop.problems", NULL);
    work(log);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
