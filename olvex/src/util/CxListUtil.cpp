// Growable arrays: a block, a capacity and a count in the caller's hands.
#include <olvex/Chars.h>
#include <olvex/Memory.h>

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::int64_t kStep = 16;

// 16, or the smallest 16 times a power of two above what is needed.
std::int64_t nextCapacity(std::int32_t needed)
{
    std::int64_t capacity = kStep;
    if (needed >= kStep)
        while (capacity <= needed)
            capacity *= 2;
    return capacity;
}

bool resize(void **block, std::int32_t *capacity, std::int64_t elements, std::size_t elementSize)
{
    std::size_t bytes = 0;
    if (elements > INT32_MAX ||
        __builtin_mul_overflow(static_cast<std::size_t>(elements), elementSize, &bytes))
        return false;
    void *resized = *block ? BaxMemoryRealloc(*block, bytes) : BaxMemoryMalloc(bytes);
    if (!resized) return false;
    *block = resized;
    *capacity = static_cast<std::int32_t>(elements);
    return true;
}

} // namespace

int CxListEnsureCapacity(void **block, int32_t *capacity, int32_t *count, int32_t needed,
                         size_t elementSize)
{
    if (!block || !capacity || !count || needed < 0 || elementSize == 0) return 0;
    if (!*block) {
        if (!resize(block, capacity, needed, elementSize)) return 0;
        *count = 0;
    }
    return *capacity >= needed || resize(block, capacity, nextCapacity(needed), elementSize);
}

void CxListDiscard(void **block, int32_t *capacity, int32_t *count)
{
    if (block) BaxMemoryFree(*block);
    if (block) *block = nullptr;
    if (capacity) *capacity = 0;
    if (count) *count = 0;
}
