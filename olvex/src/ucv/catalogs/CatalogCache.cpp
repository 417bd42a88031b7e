// See CatalogCache.h.
#include "ucv/catalogs/CatalogCache.h"

#include "ucv/catalogs/CatalogFile.h"
#include "util/Memory.h"

#include <utility>

namespace olvex::ucv {

namespace {

constexpr std::size_t kFirstSize = 10;

struct Entry {
    char *path; // null in a free entry
    ucv_cat_t *catalog;
    unsigned long age;
    bool isOpen;
    bool wasLent; // to a host
};

Entry *cachedCats = nullptr;
std::size_t cacheSize = 0;
unsigned long counter = 0;
unsigned long generation = 0;

template <class Match>
Entry *findEntry(Match &&matches)
{
    for (Entry *entry = cachedCats; entry != cachedCats + cacheSize; ++entry)
        if (matches(*entry)) return entry;
    return nullptr;
}

Entry *findPath(const char *path)
{
    return findEntry(
        [&](const Entry &entry) { return entry.path && std::strcmp(entry.path, path) == 0; });
}

ucv_cat_t *lend(Entry &entry, Borrower borrower)
{
    entry.age = ++counter;
    if (borrower == Borrower::kHost) entry.isOpen = entry.wasLent = true;
    return entry.catalog;
}

void forget(Entry &entry)
{
    BaxMemoryFree(entry.path);
    entry = {};
    ++generation;
}

void closeAndForget(Entry &entry)
{
    closeCatalogFile(entry.catalog);
    forget(entry);
}

// The entry that is not open and was used least recently.
Entry *oldestClosed()
{
    Entry *oldest = nullptr;
    for (Entry *entry = cachedCats; entry != cachedCats + cacheSize; ++entry)
        if (!entry->isOpen && (!oldest || entry->age < oldest->age)) oldest = entry;
    return oldest;
}

bool enlarge()
{
    const std::size_t size = cacheSize ? 2 * cacheSize : kFirstSize;
    auto *entries = static_cast<Entry *>(BaxMemoryCalloc(size, sizeof(Entry)));
    if (!entries) return false;
    if (cachedCats) std::memcpy(entries, cachedCats, cacheSize * sizeof(Entry));
    BaxMemoryFree(std::exchange(cachedCats, entries));
    cacheSize = size;
    return true;
}

Entry *takeFreeEntry()
{
    const auto isFree = [](const Entry &entry) { return !entry.path; };
    if (Entry *entry = findEntry(isFree)) return entry;
    if (Entry *entry = oldestClosed()) {
        closeAndForget(*entry);
        return entry;
    }
    return enlarge() ? findEntry(isFree) : nullptr;
}

} // namespace

bool isCached(const char *path)
{
    return findPath(path) != nullptr;
}

ucv_cat_t *openCached(const char *path, int flags, Borrower borrower)
{
    if (Entry *entry = findPath(path)) return lend(*entry, borrower);
    ucv_cat_t *catalog = openCatalogFile(path, flags);
    if (!catalog) return nullptr;
    Text copy(Memory().duplicate(path));
    Entry *entry = copy ? takeFreeEntry() : nullptr;
    if (!entry) {
        closeCatalogFile(catalog);
        return nullptr;
    }
    *entry = {copy.release(), catalog, 0, false, false};
    ++generation;
    return lend(*entry, borrower);
}

bool closeCached(const ucv_cat_t *catalog)
{
    Entry *entry =
        findEntry([&](const Entry &each) { return each.isOpen && each.catalog == catalog; });
    if (entry) entry->isOpen = false;
    return entry != nullptr;
}

void emptyCache(const ucv_cat_t *kept)
{
    for (Entry *entry = cachedCats; entry != cachedCats + cacheSize; ++entry) {
        if (!entry->path) continue;
        if (entry->wasLent || entry->catalog == kept)
            forget(*entry);
        else
            closeAndForget(*entry);
    }
}

void closeToolkitCatalogs()
{
    bool isEmpty = true;
    for (Entry *entry = cachedCats; entry != cachedCats + cacheSize; ++entry) {
        if (entry->path && !entry->wasLent) closeAndForget(*entry);
        if (entry->path) isEmpty = false;
    }
    if (!isEmpty) return;
    BaxMemoryFree(std::exchange(cachedCats, nullptr));
    cacheSize = 0;
}

unsigned long cacheGeneration()
{
    return generation;
}

} // namespace olvex::ucv
