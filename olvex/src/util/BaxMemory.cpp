// The allocator of everything that crosses the interface. No locks of ours.
#include <olvex/Memory.h>

#include <cstdlib>

void *BaxMemoryMalloc(size_t size)
{
    return size ? std::malloc(size) : nullptr;
}

void *BaxMemoryCalloc(size_t count, size_t size)
{
    return count && size ? std::calloc(count, size) : nullptr;
}

void *BaxMemoryRealloc(void *block, size_t size)
{
    return size ? std::realloc(block, size) : nullptr;
}

void BaxMemoryFree(void *block)
{
    std::free(block);
}
