// Tells people about classes and about what a configuration amounts to.
#pragma once

#include <cstdio>
#include <string>

#include "config/Model.h"
#include "config/Report.h"

namespace tools::config {

// The properties that an object gets, where each one comes from, and the tree of its listeners,
// drawn in ASCII or with the line characters of UTF-8. `withDefaults`: also what is not set.
void explain(FILE *stream, const Model &model, const Report &report, const std::string &name,
             bool withDefaults, bool isUtf8);

// One class or, for no name, all of them.
void printClasses(FILE *stream, const std::string &name);

// The same as sections of a document in Markdown.
void printMarkdown(FILE *stream, const std::string &name);

} // namespace tools::config
