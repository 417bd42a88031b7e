// Threads: their numbers, starting, joining, sleeping.
#include <olvex/Thread.h>

#include "util/CxResult.h"

#include <unistd.h>

using namespace olvex;

namespace {

// Asked for once a thread; forgotten by the one thread that a fork leaves in a child. Of the model
// that the compiler takes by itself: a quicker one needs room that a program which loads the
// library while it runs does not have.
thread_local pid_t currentId = 0;

void forgetId()
{
    currentId = 0;
}

[[gnu::constructor]] void renewAfterForks()
{
    pthread_atfork(nullptr, nullptr, forgetId);
}

} // namespace

bool CxHasThreadSupport(void)
{
    return true;
}

uint64_t CxThreadGetCurrentID(void)
{
    if (currentId == 0) currentId = gettid();
    return static_cast<std::uint64_t>(currentId);
}

CxResult CxThreadCreate(CxThread *thread, size_t stackSize, void *(*start)(void *), void *argument)
{
    if (!thread || !start) return badArgument();
    pthread_attr_t attributes;
    if (const int code = pthread_attr_init(&attributes)) return failure(code);
    int code = stackSize ? pthread_attr_setstacksize(&attributes, stackSize) : 0;
    if (code == 0) code = pthread_create(thread, &attributes, start, argument);
    pthread_attr_destroy(&attributes);
    return resultOfCode(code);
}

CxResult CxThreadJoin(CxThread thread)
{
    return thread ? resultOfCode(pthread_join(thread, nullptr)) : badArgument();
}

void CxThreadYield(void) {}

void CxThreadSleep(uint32_t milliseconds)
{
    sleep(static_cast<unsigned>((std::uint64_t{milliseconds} + 500) / 1000));
}
