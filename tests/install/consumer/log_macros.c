/*
 * The logging macros as a C11 program outside the tree uses them: every type, more than 16
 * arguments, properties, and nothing evaluated when the logger does not take the level.
 */
#include <olvex/LogMacros.h>
#include <olvex/olvex.h>

#include <limits.h>
#include <stdio.h>

static int evaluated = 0;

static const char *costly(const char *text)
{
    ++evaluated;
    return text;
}

static void logTypes(OvxObject *log)
{
    const signed char tiny = -128;
    const unsigned short small = 65535;
    const bool yes = true;
    const char letter = 'x', *none = NULL, own[] = "own";
    OVX_LOG_INFO(log, "%1$d %2$d %3$d %4$c %5$c %6$d", tiny, small, yes, letter, 'y', INT_MIN);
#if LONG_MAX > INT_MAX // elsewhere nothing is wider than an int
    OVX_LOG_INFO(log, "%u %ld %lu %lld %llx", UINT_MAX, LONG_MIN, ULONG_MAX, 5LL, ULLONG_MAX);
#else
    OVX_LOG_INFO(log, "%u %ld %lu", (unsigned)INT_MAX, LONG_MIN, (unsigned long)LONG_MAX);
#endif
    OVX_LOG_INFO(log, "%.1f %g %s %s %s %p", 1.5F, 2.5, own, costly("text"), none, (void *)16);
}

int main(void)
{
    OvxOpenToolkit(NULL);
    OvxObject *log = OvxGetObject("log", "ovx_basiclogger");
    OvxObject *console = OvxGetObject("console", "ovx_consolehandler");
    OvxAddListener(log, console);
    logTypes(log);
    OVX_LOG_DEBUG_MAX(log, "%s", costly("not seen"));
    OVX_LOG_WITH(ERROR, log, (OVX_NAMED("component", costly("storage")), OVX_NAMED("client", 7)),
                 "%1$d of %2$s", 1, "two");
    OVX_LOG_WARN(log, "no arguments");
    OVX_LOG_FATAL(log, "%18$d down to %1$d", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16,
                  17, 18);
    OVX_LOG_MESSAGE(WARN, log, "no-catalog", 1, 2, "message %1$s", "two");
    OVX_LOG_DEBUG_MIN(log, "debug %1$d", 1);
    OVX_LOG_TEXT(log, "text %1$d", 1);
    printf("evaluated %d times\n", evaluated);
    OvxReleaseObject(console);
    OvxReleaseObject(log);
    OvxCloseToolkit();
    return 0;
}
