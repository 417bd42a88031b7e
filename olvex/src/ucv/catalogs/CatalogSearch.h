// Finding the catalog of a name and a locale. No locks: see <olvex/Catalog.h>.
#pragma once

#include <olvex/Catalog.h>

#include "ucv/catalogs/CatalogCache.h"

namespace olvex::ucv {

// Searches as ucv_catopen describes.
ucv_cat_t *searchCatalog(const char *name, int flags, const char *locale, Borrower borrower);

// The catalog for the binding of one message, valid until the next call of this module; null for
// none. What a search has found is remembered for less than 100 ms, and until NLSPATH or the locale
// changes, so that an event costs no look-up of files. Runs with the API mutex held.
ucv_cat_t *catalogForBinding(const char *name, const char *locale);

// Frees what is remembered of searches.
void forgetSearches();

} // namespace olvex::ucv
