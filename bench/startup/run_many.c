/*
 * Runs a program many times and prints the median of its elapsed time and of its peak memory. It is
 * small and in C because a child's peak counts from the memory of the process that started it.
 *
 *     run_many TIMES PROGRAM ARGUMENTS...
 */
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>

extern char **environ;

enum { kMostRuns = 1000 };

static int compare(const void *a, const void *b)
{
    const double left = *(const double *)a, right = *(const double *)b;
    return (left > right) - (left < right);
}

static double median(double *values, int count)
{
    qsort(values, (size_t)count, sizeof *values, compare);
    return values[count / 2];
}

static double now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec * 1e3 + (double)time.tv_nsec / 1e6;
}

/* Runs the program once with its output thrown away; false when it did not end well. */
static int run(char **command, double *milliseconds, double *megabytes)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child;
    int status = -1;
    struct rusage usage = {0};
    const double begin = now();
    if (posix_spawn(&child, command[0], &actions, NULL, command, environ) == 0)
        wait4(child, &status, 0, &usage);
    *milliseconds = now() - begin;
    *megabytes = (double)usage.ru_maxrss / 1024;
    posix_spawn_file_actions_destroy(&actions);
    return status == 0;
}

int main(int argc, char **argv)
{
    static double milliseconds[kMostRuns], megabytes[kMostRuns];
    const int times = argc > 2 ? atoi(argv[1]) : 0;
    if (times < 1 || times > kMostRuns) {
        fprintf(stderr, "usage: run_many TIMES PROGRAM ARGUMENTS...\n");
        return 2;
    }
    for (int i = 0; i < times; ++i) {
        if (run(argv + 2, &milliseconds[i], &megabytes[i])) continue;
        fprintf(stderr, "run_many: %s failed\n", argv[2]);
        return 1;
    }
    printf("%8.2f ms  %6.2f MB peak  (median of %d runs)\n", median(milliseconds, times),
           median(megabytes, times), times);
    return 0;
}
