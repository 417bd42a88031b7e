// What all verbs share of reading their command line with CLI11.
#pragma once

#include <CLI/CLI.hpp>

#include <optional>

#include "Verbs.h"
#include "Visible.h"

namespace tools {

// Reads a verb's arguments. A value is the exit code with which the verb ends at once: after
// --help, or after a mistake, which has been explained on standard error by then.
inline std::optional<int> readArguments(CLI::App &app, int argc, char **argv)
{
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        complain(app.get_name() + ": " + error.what());
        complain("Try '" + app.get_name() + " --help'.");
        return kUsage;
    }
}

// Adds a part of a verb; `chosen` becomes its action when it is asked for.
template <class Action>
CLI::App *addCommand(CLI::App &app, const char *name, const char *help, Action &chosen,
                     Action action)
{
    CLI::App *command = app.add_subcommand(name, help);
    command->callback([&chosen, action] { chosen = action; });
    return command;
}

} // namespace tools
