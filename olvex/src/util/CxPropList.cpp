// The flat table of keys and values. Reading one from a file is with the properties reader.
#include <olvex/PropList.h>

#include <olvex/Memory.h>

#include <utility>

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::int32_t kFirstCapacity = 32;
constexpr std::int32_t kNotFound = -1;

std::int32_t findKey(const CxPropList *list, const char *key)
{
    if (!list || !key) return kNotFound;
    for (std::int32_t i = 0; i < list->count; ++i)
        if (BaxStringCmp(list->entries[i].key, key) == 0) return i;
    return kNotFound;
}

bool isValid(const CxPropList *list, std::int32_t index)
{
    return list && index >= 0 && index < list->count;
}

bool resize(CxPropList *list, std::int64_t capacity)
{
    if (capacity > INT32_MAX) return false;
    const auto bytes = static_cast<std::size_t>(capacity) * sizeof(CxPropEntry);
    auto *entries = static_cast<CxPropEntry *>(
        list->entries ? BaxMemoryRealloc(list->entries, bytes) : BaxMemoryMalloc(bytes));
    if (!entries) return false;
    list->entries = entries;
    list->capacity = static_cast<std::int32_t>(capacity);
    return true;
}

// Room for `needed` more entries, and one to spare.
bool hasCapacity(CxPropList *list, std::int32_t needed)
{
    if (!list->entries) {
        if (!resize(list, kFirstCapacity)) return false;
        list->count = 0;
    }
    const std::int64_t wanted = std::int64_t{list->count} + needed + 1;
    if (list->capacity >= wanted) return true;
    std::int64_t capacity = list->capacity;
    while (capacity <= wanted)
        capacity *= 2;
    return resize(list, capacity);
}

bool append(CxPropList *list, const char *key, char *value)
{
    char *copy = hasCapacity(list, 1) ? BaxStringDup(key) : nullptr;
    if (!copy) return false;
    list->entries[list->count++] = {copy, value};
    return true;
}

void freeEntry(CxPropEntry &entry)
{
    BaxMemoryFree(std::exchange(entry.key, nullptr));
    BaxMemoryFree(std::exchange(entry.value, nullptr));
}

bool isNextValid(const CxPropListIter &iterator)
{
    return iterator.index < INT32_MAX && isValid(iterator.list, iterator.index + 1);
}

const CxPropEntry *current(const CxPropListIter *iterator)
{
    if (!iterator || !isValid(iterator->list, iterator->index)) return nullptr;
    return &iterator->list->entries[iterator->index];
}

} // namespace

bool CxPropListPutStr(CxPropList *list, const char *key, const char *value)
{
    char *copy = list && key ? BaxStringDup(value) : nullptr;
    if (!copy) return false;
    const std::int32_t index = findKey(list, key);
    if (index != kNotFound) {
        BaxMemoryFree(std::exchange(list->entries[index].value, copy));
        return true;
    }
    if (append(list, key, copy)) return true;
    BaxMemoryFree(copy);
    return false;
}

const char *CxPropListPeekStr(const CxPropList *list, const char *key, bool *found)
{
    const std::int32_t index = findKey(list, key);
    if (found) *found = index != kNotFound;
    return index == kNotFound ? nullptr : list->entries[index].value;
}

char *CxPropListCopyStr(const CxPropList *list, const char *key, bool *found)
{
    return BaxStringDup(CxPropListPeekStr(list, key, found));
}

bool CxPropListHasKey(const CxPropList *list, const char *key)
{
    return findKey(list, key) != kNotFound;
}

bool CxPropListRemove(CxPropList *list, const char *key)
{
    const std::int32_t index = findKey(list, key);
    if (index == kNotFound) return false;
    freeEntry(list->entries[index]);
    --list->count;
    if (index < list->count)
        list->entries[index] = std::exchange(list->entries[list->count], CxPropEntry{});
    return true;
}

void CxPropListDiscard(CxPropList *list)
{
    if (!list) return;
    for (std::int32_t i = 0; i < list->count; ++i)
        freeEntry(list->entries[i]);
    BaxMemoryFree(list->entries);
    *list = {};
}

CxPropListIter CxPropListIterator(CxPropList *list)
{
    return {list, 0};
}

bool CxPropListIterHasNext(const CxPropListIter *iterator)
{
    return iterator && iterator->index >= 0 && isNextValid(*iterator);
}

void CxPropListIterNext(CxPropListIter *iterator)
{
    if (!iterator) return;
    if (isNextValid(*iterator))
        ++iterator->index;
    else
        *iterator = {nullptr, 0};
}

const char *CxPropListIterPeekKey(const CxPropListIter *iterator)
{
    const CxPropEntry *entry = current(iterator);
    return entry ? entry->key : nullptr;
}

const char *CxPropListIterPeekVal(const CxPropListIter *iterator)
{
    const CxPropEntry *entry = current(iterator);
    return entry ? entry->value : nullptr;
}

char *CxPropListIterCopyKey(const CxPropListIter *iterator)
{
    return BaxStringDup(CxPropListIterPeekKey(iterator));
}

char *CxPropListIterCopyVal(const CxPropListIter *iterator)
{
    return BaxStringDup(CxPropListIterPeekVal(iterator));
}
