// The texts of a catalog's set in other code sets than UTF-8. Messages may share a text, or have
// the end of another's: each text is converted once.
#pragma once

#include "ucv/catalogs/CatalogFile.h"

namespace olvex::ucv {

// The size of the area that convertTexts needs for a block of texts.
std::uint64_t conversionSize(std::uint32_t textLength);

// Gives each message of a set that has a text its `local` and its `back`. `area` lives as long as
// the messages. False when memory runs out.
bool convertTexts(CatalogMessage *messages, std::uint32_t count, std::uint32_t textLength,
                  char *area);

// A message's text in any code set: converted into a block of its own, which the messages with the
// same text share; null when that would take too much memory.
const char *textInCodeSet(CatalogSet &set, CatalogMessage &message, uc_ch_t *codeSet);

// Frees those blocks.
void freeOtherTexts(CatalogSet &set);

} // namespace olvex::ucv
