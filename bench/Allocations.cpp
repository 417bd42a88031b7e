// The C library's allocator with a counter before it: a definition in the program takes precedence
// over the C library's for every shared library in the process.
#include "Allocations.h"

#include <atomic>
#include <cstddef>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
}

namespace {

std::atomic<long> allocations{0};

void count()
{
    allocations.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

extern "C" void *malloc(std::size_t size)
{
    count();
    return __libc_malloc(size);
}

extern "C" void *calloc(std::size_t number, std::size_t size)
{
    count();
    return __libc_calloc(number, size);
}

extern "C" void *realloc(void *memory, std::size_t size)
{
    count();
    return __libc_realloc(memory, size);
}

long allocationCount()
{
    return allocations.load(std::memory_order_relaxed);
}
