// What all verbs share of reading their command line. CLI11, which does it, is seen by one source
// only: it costs seconds for each.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Verbs.h"

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tools {

// One option, flag or operand, while it is described.
class Argument {
  public:
    // What is wrong with a value; empty if nothing is.
    using Checker = std::string (*)(const std::string &);

    explicit Argument(CLI::Option *option) : option_(option) {}

    Argument &required();
    Argument &typeName(const char *name);
    Argument &check(Checker checker);
    Argument &oneOf(const std::vector<std::string> &values);
    Argument &oneValueEach(); // what follows the value is no further one
    Argument &atLeast(int count);
    Argument &showDefault();
    Argument &excludes(const Argument &other);
    std::size_t count() const; // how often it was given

  private:
    CLI::Option *option_;
};

// The command line of a verb, or of one of its parts.
class Arguments {
  public:
    Arguments(const char *help, const char *name);

    Argument option(const char *names, std::string &value, const char *help);
    Argument option(const char *names, std::vector<std::string> &values, const char *help);
    Argument flag(const char *names, bool &value, const char *help);
    void footer(const char *text);

    Arguments part(const char *name, const char *help);
    void requirePart();
    bool isChosen(const char *part) const;
    void whenChosen(const std::function<void()> &action);

    std::size_t count(const char *option) const;

    // A value is the exit code with which the verb ends at once: after --help, or after a mistake,
    // which has been explained on standard error by then.
    std::optional<int> read(int argc, char **argv);

  private:
    explicit Arguments(std::shared_ptr<CLI::App> app) : app_(std::move(app)) {}

    std::shared_ptr<CLI::App> app_;
};

// Adds a part of a verb; `chosen` becomes its action when it is asked for.
template <class Action>
Arguments addCommand(Arguments &verb, const char *name, const char *help, Action &chosen,
                     Action action)
{
    Arguments command = verb.part(name, help);
    command.whenChosen([&chosen, action] { chosen = action; });
    return command;
}

// Ends the reading of a command line, from an action of `whenChosen`: "<what> is required".
[[noreturn]] void refuseWithout(const char *what);

} // namespace tools
