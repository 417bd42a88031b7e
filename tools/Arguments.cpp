#include "Arguments.h"

#include <CLI/CLI.hpp>

#include "Visible.h"

namespace tools {

Argument &Argument::required()
{
    option_->required();
    return *this;
}

Argument &Argument::typeName(const char *name)
{
    option_->type_name(name);
    return *this;
}

Argument &Argument::check(Checker checker)
{
    option_->check(checker);
    return *this;
}

Argument &Argument::oneOf(const std::vector<std::string> &values)
{
    option_->check(CLI::IsMember(values));
    return *this;
}

Argument &Argument::oneValueEach()
{
    option_->allow_extra_args(false);
    return *this;
}

Argument &Argument::atLeast(int count)
{
    option_->expected(count, CLI::detail::expected_max_vector_size);
    return *this;
}

Argument &Argument::showDefault()
{
    option_->capture_default_str();
    return *this;
}

Argument &Argument::excludes(const Argument &other)
{
    option_->excludes(other.option_);
    return *this;
}

std::size_t Argument::count() const
{
    return option_->count();
}

Arguments::Arguments(const char *help, const char *name)
    : app_(std::make_shared<CLI::App>(help, name))
{}

Argument Arguments::option(const char *names, std::string &value, const char *help)
{
    return Argument(app_->add_option(names, value, help));
}

Argument Arguments::option(const char *names, std::vector<std::string> &values, const char *help)
{
    return Argument(app_->add_option(names, values, help));
}

Argument Arguments::flag(const char *names, bool &value, const char *help)
{
    return Argument(app_->add_flag(names, value, help));
}

void Arguments::footer(const char *text)
{
    app_->footer(text);
}

Arguments Arguments::part(const char *name, const char *help)
{
    // The whole lives as long as any of its parts is held.
    return Arguments(std::shared_ptr<CLI::App>(app_, app_->add_subcommand(name, help)));
}

void Arguments::requirePart()
{
    app_->require_subcommand(1);
}

bool Arguments::isChosen(const char *part) const
{
    return app_->got_subcommand(part);
}

void Arguments::whenChosen(const std::function<void()> &action)
{
    app_->callback(action);
}

std::size_t Arguments::count(const char *option) const
{
    return app_->count(option);
}

std::optional<int> Arguments::read(int argc, char **argv)
{
    try {
        app_->parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0) return app_->exit(error);
        complain(app_->get_name() + ": " + error.what());
        complain("Try '" + app_->get_name() + " --help'.");
        return kUsage;
    }
}

void refuseWithout(const char *what)
{
    throw CLI::RequiredError(what);
}

} // namespace tools
