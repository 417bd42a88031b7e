// Files that the command writes: whole, or not at all.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// Writes a temporary file beside the path and renames it to it. Throws std::runtime_error with a
// sentence for the user.
void replaceFile(const std::string &path, std::string_view contents);

} // namespace tools
