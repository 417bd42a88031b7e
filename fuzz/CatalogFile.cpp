// Catalog files: opening, look-ups in several code sets, and the command's own reader.
#include <olvex/olvex.h>

#include <cstring>
#include <stdexcept>

#include "Input.h"
#include "catalog/CatalogFile.h"
#include "ucv/catalogs/CatalogFile.h"

namespace {

unsigned long read = 0; // so that the texts are really read

void lookUp(ucv_cat_t *catalog, int set, int message)
{
    static uc_ch_t *const bytes = ucv_cs_new("INTERNAL37");
    for (uc_ch_t *codeSet : {static_cast<uc_ch_t *>(nullptr), ucv_cs_new("UTF8"), bytes})
        read += std::strlen(ucv_catgets(catalog, set, message, "", codeSet));
}

void lookUpAll(ucv_cat_t *catalog)
{
    for (std::uint32_t index = 0; index < catalog->setCount && index < 16; ++index)
        for (int message = 0; message < 8; ++message)
            lookUp(catalog, static_cast<int>(catalog->sets[index].record.setId), message);
    lookUp(catalog, 1, INT32_MAX);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes = fuzz::Input(data, size).rest();
    const fuzz::File file(bytes);
    if (ucv_cat_t *catalog = ucv_catopen(file.path(), 0, nullptr)) {
        lookUpAll(catalog);
        ucv_catclose_fully(catalog);
    }
    try {
        tools::catalog::readCatalog(bytes);
    } catch (const std::runtime_error &) { // which says what is wrong
    }
    return 0;
}
