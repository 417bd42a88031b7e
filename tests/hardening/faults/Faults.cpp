#include "Faults.h"

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <sys/types.h>

namespace olvex::test {

bool Plan::fails()
{
    ++made;
    if (first == 0 || made < first || made - first >= count) return false;
    ++failed;
    errno = error;
    return true;
}

namespace {

bool callFails(const char *name)
{
    return callPlan.call && std::strcmp(callPlan.call, name) == 0 && callPlan.fails();
}

void *counted(void *block)
{
    if (block) ++blocksAlive;
    return block;
}

template <class Result>
Result failure()
{
    return static_cast<Result>(-1);
}
template <>
void *failure<void *>()
{
    return nullptr;
}

} // namespace

} // namespace olvex::test

using namespace olvex::test;

#define FAULT_CALL(name, result, parameters, arguments)                                            \
    extern "C" result __real_##name parameters;                                                    \
    extern "C" result __wrap_##name parameters;                                                    \
    result __wrap_##name parameters                                                                \
    {                                                                                              \
        return callFails(#name) ? failure<result>() : __real_##name arguments;                     \
    }
#include "calls.def"
#undef FAULT_CALL

extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size)
{
    return allocationPlan.fails() ? nullptr : counted(__real_malloc(size));
}

void *__wrap_calloc(std::size_t count, std::size_t size)
{
    return allocationPlan.fails() ? nullptr : counted(__real_calloc(count, size));
}

void *__wrap_realloc(void *block, std::size_t size)
{
    if (allocationPlan.fails()) return nullptr;
    return block ? __real_realloc(block, size) : counted(__real_realloc(block, size));
}

void __wrap_free(void *block)
{
    if (block) --blocksAlive;
    __real_free(block);
}
}
