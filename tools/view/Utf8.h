// UTF-8: whether a text is in it, and where it is not.
#pragma once

#include <string_view>

namespace tools::view {

// The length of the character at the front of a text, 0 when that is none.
std::size_t characterLength(std::string_view text);

// The number of a character, of which the text is exactly the bytes.
char32_t decode(std::string_view character);

bool isUtf8(std::string_view text);

} // namespace tools::view
