// Message catalogs as others see them.
#include <olvex/Catalog.h>

#include "ucv/Handle.h"
#include "ucv/catalogs/CatalogSearch.h"
#include "ucv/catalogs/CatalogTexts.h"

using namespace olvex::ucv;

namespace {

const char *textIn(const FoundMessage &found, uc_ch_t *codeSet)
{
    if (codeSet == &utf8Handle) return found.message->utf8;
    if (!codeSet) return found.message->local;
    return textInCodeSet(*found.set, *found.message, codeSet);
}

} // namespace

ucv_cat_t *ucv_catopen(const char *name, int flags, const char *locale)
{
    return searchCatalog(name, flags, locale, Borrower::kHost);
}

const char *ucv_catgets(ucv_cat_t *catalog, int set, int message, const char *defaultText,
                        uc_ch_t *codeSet)
{
    const FoundMessage found = catalog ? findMessage(catalog, set, message) : FoundMessage{};
    const char *text = found.message ? textIn(found, codeSet) : nullptr;
    return text ? text : defaultText;
}

int ucv_catclose(ucv_cat_t *catalog)
{
    return catalog && closeCached(catalog) ? 0 : -1;
}

int ucv_catclose_fully(ucv_cat_t *catalog)
{
    if (!catalog) return -1;
    emptyCache(catalog);
    closeCatalogFile(catalog);
    return 0;
}
