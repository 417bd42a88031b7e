// The flat table of keys and values. Reading one from a file is with the properties reader.
#include "util/CxPropList.h"

#include <olvex/Memory.h>

#include <cstdint>
#include <cstring>
#include <utility>

#include "util/shapes/KeyIndex.h"

using namespace olvex;

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

// Replaces the value at `index`, or appends the pair when that is none.
bool putAt(CxPropList *list, std::int32_t index, const char *key, const char *value)
{
    char *copy = BaxStringDup(value);
    if (!copy) return false;
    if (index != kNotFound) {
        BaxMemoryFree(std::exchange(list->entries[index].value, copy));
        return true;
    }
    if (append(list, key, copy)) return true;
    BaxMemoryFree(copy);
    return false;
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

PropListFiller::~PropListFiller()
{
    BaxMemoryFree(slots_);
}

bool PropListFiller::put(const char *key, const char *value)
{
    makeRoom();
    if (!slots_ || !key) return CxPropListPutStr(list_, key, value);
    std::int32_t *slot = slotOf(key);
    if (!putAt(list_, *slot - 1, key, value)) return false;
    if (*slot == 0) *slot = list_->count;
    return true;
}

// A few keys are looked through as quickly; without memory for an index all are. An index that is
// half full is made anew.
void PropListFiller::makeRoom()
{
    constexpr std::int32_t kLookedThrough = 16;
    const auto count = static_cast<std::size_t>(list_->count);
    if (list_->count < kLookedThrough || (slots_ && count * 2 <= mask_)) return;
    std::size_t size = 64;
    while (size < count * 4)
        size *= 2;
    BaxMemoryFree(slots_);
    slots_ = static_cast<std::int32_t *>(BaxMemoryCalloc(size, sizeof *slots_));
    mask_ = size - 1;
    for (std::int32_t i = 0; slots_ && i < list_->count; ++i) {
        const char *key = list_->entries[i].key; // null only if the host put it there itself
        std::int32_t *slot = key ? slotOf(key) : nullptr;
        if (slot && *slot == 0) *slot = i + 1;
    }
}

// The slot of the key, or the free one for it.
std::int32_t *PropListFiller::slotOf(const char *key) const
{
    std::size_t place = hashKey(key) & mask_;
    while (slots_[place] != 0 && std::strcmp(list_->entries[slots_[place] - 1].key, key) != 0)
        place = (place + 1) & mask_;
    return &slots_[place];
}

bool CxPropListPutStr(CxPropList *list, const char *key, const char *value)
{
    return list && key && putAt(list, findKey(list, key), key, value);
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
