// Catalog files, in the layout of <olvex/Catalog.h>.
#pragma once

#include "catalog/Messages.h"

#include <string_view>

namespace tools::catalog {

// The bytes of a catalog file. Throws std::runtime_error when there are no messages, or more than a
// file can hold.
std::string makeCatalog(const Messages &messages);

// The messages of a catalog file. Throws std::runtime_error when the bytes are none.
Messages readCatalog(std::string_view bytes);

} // namespace tools::catalog
