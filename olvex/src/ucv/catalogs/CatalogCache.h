// The catalogs that are open in this process, by path. No locks: see <olvex/Catalog.h>.
#pragma once

#include <olvex/Catalog.h>

namespace olvex::ucv {

// Who a catalog is handed to. One that a host has had may be in use until the host closes it fully,
// even after the cache has forgotten it; the toolkit's own use ends with each binding.
enum class Borrower { kHost, kToolkit };

bool isCached(const char *path);

// The catalog of a path, from the cache or else from its file. A host's is marked open.
ucv_cat_t *openCached(const char *path, int flags, Borrower borrower);

// Marks the catalog as no longer open; false when it is no open one.
bool closeCached(const ucv_cat_t *catalog);

// Drops every entry. What only the toolkit has used is closed, but for `kept`.
void emptyCache(const ucv_cat_t *kept);

// Closes the catalogs that only the toolkit has used.
void closeToolkitCatalogs();

// Changes whenever a catalog comes or goes: what was found before may no longer hold.
unsigned long cacheGeneration();

} // namespace olvex::ucv
