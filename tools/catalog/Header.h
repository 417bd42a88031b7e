// A header of a source's messages: identifiers, and calls whose parameters have types.
#pragma once

#include "catalog/Source.h"

#include <string>
#include <vector>

namespace tools::catalog {

struct Header {
    std::string text;
    std::vector<std::string> problems; // each with file, line and column
};

// "app" of "messages/app.de.msg": the name under which programs find the catalog.
std::string catalogNameOf(const std::string &sourceFile);

// The default prefix of a catalog's identifiers: "APP_X" of "app-x".
std::string prefixOf(const std::string &catalogName);

// Makes the header. Every name begins with the prefix.
Header makeHeader(const Source &source, const std::string &prefix);

} // namespace tools::catalog
