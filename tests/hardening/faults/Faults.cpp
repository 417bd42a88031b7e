#include "Faults.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace olvex::test {

namespace {

Call calls[] = {
#define FAULT_CALL(name, result, parameters, arguments) {#name, 0, 0, 0, 0},
#include "calls.def"
#undef FAULT_CALL
};

long failed = 0;

bool isDue(long number, long first, long count)
{
    return first > 0 && number >= first && number - first < count;
}

bool fails(Call &row)
{
    if (!isDue(++row.made, row.failFrom, row.failCount)) return false;
    ++failed;
    errno = row.error;
    return true;
}

struct Allocations {
    long made;
    long failFrom;
    long failCount;
    long failed;
    long alive;
} allocations = {};

bool allocationFails()
{
    if (!isDue(++allocations.made, allocations.failFrom, allocations.failCount)) return false;
    ++allocations.failed;
    errno = ENOMEM;
    return true;
}

void *counted(void *block)
{
    if (block) ++allocations.alive;
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

Call &call(const char *name)
{
    for (Call &row : calls)
        if (std::strcmp(row.name, name) == 0) return row;
    std::fprintf(stderr, "no such call: %s\n", name);
    std::abort();
}

void failCalls(const char *name, long first, long count, int error)
{
    failNoCalls();
    failed = 0;
    Call &row = call(name);
    row.failFrom = first;
    row.failCount = count;
    row.error = error;
}

void failNoCalls()
{
    for (Call &row : calls)
        row.made = row.failFrom = 0;
}

long callsFailed()
{
    return failed;
}

void failAllocations(long first, long count)
{
    allocations.made = allocations.failed = 0;
    allocations.failFrom = first;
    allocations.failCount = count;
}

long allocationsMade()
{
    return allocations.made;
}
long allocationsFailed()
{
    return allocations.failed;
}
long blocksAlive()
{
    return allocations.alive;
}

} // namespace olvex::test

using namespace olvex::test;

#define FAULT_CALL(name, result, parameters, arguments)                                            \
    extern "C" result __real_##name parameters;                                                    \
    extern "C" result __wrap_##name parameters;                                                    \
    result __wrap_##name parameters                                                                \
    {                                                                                              \
        static Call &row = call(#name);                                                            \
        return fails(row) ? olvex::test::failure<result>() : __real_##name arguments;              \
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
    return allocationFails() ? nullptr : counted(__real_malloc(size));
}

void *__wrap_calloc(std::size_t count, std::size_t size)
{
    return allocationFails() ? nullptr : counted(__real_calloc(count, size));
}

void *__wrap_realloc(void *block, std::size_t size)
{
    if (allocationFails()) return nullptr;
    return block ? __real_realloc(block, size) : counted(__real_realloc(block, size));
}

void __wrap_free(void *block)
{
    if (block) --allocations.alive;
    __real_free(block);
}
}
