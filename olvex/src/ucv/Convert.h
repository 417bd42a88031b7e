// The conversions of each family: which decoder and encoder serve it in each direction.
#pragma once

#include "ucv/Characters.h"

namespace olvex::ucv {

// Results of a restartable conversion.
enum Result : int { kAllConsumed = 0, kOutputFull = 1, kInputCut = 2 };

struct FamilyRow {
    std::uint16_t type;
    bool asciiIsItself;      // runs of ASCII are copied as they are
    bool copiesUtf8;         // from UTF-8 the bytes go through unchanged
    Decode<char> decode;     // code set to characters
    Encode<char> encode;     // characters to code set
    Decode<char> decodeUtf8; // the UTF-8 side when converting to the code set
    Decode<char16_t> decodeUcs2;
    Encode<char16_t> encodeUcs2;
    bool (*endShift)(uc_ch_t &handle, char *&out, std::size_t &room); // none: no shifts
};

// The row of the handle's family; a family without one is treated as plain bytes.
const FamilyRow &familyOf(const uc_ch_t &handle);

} // namespace olvex::ucv
