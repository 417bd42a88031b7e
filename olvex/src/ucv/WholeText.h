// Texts of any origin on their way into a code set. A text may hold bytes that are no UTF-8, and a
// converter takes a leading byte together with the bytes behind it, whatever these are: a line's
// end, or the mark that closes a record. So what is no character is replaced before it is
// converted.
#pragma once

#include <olvex/Ucv.h>

#include "util/CxStringBuff.h"

namespace olvex::ucv {

// The first place that is no character of UTF-8; `end` when there is none.
const char *findMalformed(const char *text, const char *end);

// As ucv_from_utf8, with a question mark for each sequence that is no character. Where UTF-8 goes
// out as it is, so do other bytes.
int encodeText(uc_ch_t *handle, const char *source, int length, char *target, int size);

// Appends a text in a code set; false when memory runs out.
bool appendEncoded(uc_ch_t *handle, const char *text, std::size_t size, CxStringBuff *buffer);

} // namespace olvex::ucv
