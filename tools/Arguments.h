// What all verbs share of reading their command line with CLI11.
#pragma once

#include <CLI/CLI.hpp>

#include <iostream>
#include <optional>

#include "Verbs.h"

namespace tools {

// Reads a verb's arguments. A value is the exit code with which the verb ends at once: after
// --help, or after a mistake, which has been explained on standard error by then.
inline std::optional<int> readArguments(CLI::App &app, int argc, char **argv)
{
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        return app.exit(error, std::cout, std::cerr) == 0 ? kOk : kUsage;
    }
}

} // namespace tools
