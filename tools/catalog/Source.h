// Message sources: numbered texts in sets, as message catalogs have been written since X/Open.
#pragma once

#include "catalog/Messages.h"

#include <vector>

namespace tools::catalog {

struct Source {
    std::string file;
    Messages messages;
    std::vector<std::string> problems; // each with file, line and column
};

// Reads a source in UTF-8, or in the code set that is named. Throws std::runtime_error when the
// file cannot be read or there is no such code set; what is wrong in the source is in `problems`.
Source readSource(const std::string &file, const std::string &codeSet);

// The same of a text that is UTF-8.
Source parseSource(const std::string &file, const std::string &text);

// "file:line:column: text".
std::string problemAt(const std::string &file, Place place, const std::string &text);

// The messages as a source in UTF-8 that gives the same messages when it is read. For a
// terminal, characters that are not visible (Visible.h) are written in octal.
std::string writeSource(const Messages &messages, bool isForTerminal = false);

} // namespace tools::catalog
