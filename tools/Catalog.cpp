// `olvex catalog`: makes message catalogs and headers of their messages, prints them, and compares
// translations.
#include <olvex/olvex.h>

#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "Arguments.h"
#include "ReplaceFile.h"
#include "Verbs.h"
#include "Visible.h"
#include "catalog/Bytes.h"
#include "catalog/CatalogFile.h"
#include "catalog/Check.h"
#include "catalog/Header.h"
#include "catalog/Source.h"

namespace tools {

namespace {

using catalog::Messages;
using catalog::Source;

constexpr const char *kFooter =
    R"(A source has one message in a line: its number, a blank, its text.
  $set N          the messages that follow belong to set N; before the first, to set 1
  $delset N       drops the messages of set N that were read so far
  $quote C        texts may stand between two C; without C, no longer
  $ TEXT          a comment
A backslash at the end of a line lets the text go on in the next line. \n \t \v \b \r \f \\ and \ddd
(a byte in octal) mean what they do in C; before any other character a backslash is dropped. A number
without a blank behind it takes the message away.

Programs find NAME.cat along NLSPATH, for example with NLSPATH=/opt/app/messages/%L/%N.cat, and the
messages of olvex itself where it is installed.

Exit status: 0 when all went well, 1 when a file could not be read or written or something was found
wrong in it, 2 for a mistake on the command line.
)";

struct Options {
    std::string source;
    std::vector<std::string> translations;
    std::string codeSet;
    std::string output;
    std::string prefix;
    bool allowSame = false;
};

ExitCode printProblems(const std::vector<std::string> &problems)
{
    for (const std::string &problem : problems)
        complain(problem);
    return problems.empty() ? kOk : kTrouble;
}

ExitCode write(const std::string &output, const std::string &contents)
{
    if (output.empty())
        std::fwrite(contents.data(), 1, contents.size(), stdout);
    else
        replaceFile(output, contents);
    return kOk;
}

bool isForTerminal(const Options &options)
{
    return options.output.empty() && ::isatty(STDOUT_FILENO) == 1;
}

ExitCode compile(const Options &options)
{
    const Source source = catalog::readSource(options.source, options.codeSet);
    if (!source.problems.empty()) return printProblems(source.problems);
    if (source.messages.empty()) throw std::runtime_error(options.source + " holds no messages");
    return write(options.output, catalog::makeCatalog(source.messages));
}

ExitCode dump(const Options &options)
{
    const std::string bytes = catalog::readFile(options.source);
    try {
        return write(options.output,
                     catalog::writeSource(catalog::readCatalog(bytes), isForTerminal(options)));
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(options.source + ": " + error.what());
    }
}

ExitCode check(const Options &options)
{
    const Source base = catalog::readSource(options.source, options.codeSet);
    ExitCode code = printProblems(base.problems);
    for (const std::string &file : options.translations) {
        const Source translation = catalog::readSource(file, options.codeSet);
        if (printProblems(translation.problems) != kOk) code = kTrouble;
        if (printProblems(checkTranslation(base, translation, options.allowSame)) != kOk)
            code = kTrouble;
    }
    return code;
}

bool isIdentifier(const std::string &text)
{
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
    return kLetters.find(text.front()) != std::string_view::npos &&
           text.find_first_not_of(std::string(kLetters) + "0123456789") == std::string::npos;
}

ExitCode header(const Options &options)
{
    const std::string prefix = options.prefix.empty()
                                   ? catalog::prefixOf(catalog::catalogNameOf(options.source))
                                   : options.prefix;
    if (!isIdentifier(prefix))
        throw std::runtime_error("'" + prefix + "' cannot begin a name of C");
    const Source source = catalog::readSource(options.source, options.codeSet);
    if (!source.problems.empty()) return printProblems(source.problems);
    if (source.messages.empty()) throw std::runtime_error(options.source + " holds no messages");
    const catalog::Header made = catalog::makeHeader(source, prefix);
    if (!made.problems.empty()) return printProblems(made.problems);
    return write(options.output, made.text);
}

// The toolkit's own messages; numbers that are free hold a filler.
ExitCode builtIn(const Options &options)
{
    Messages messages;
    for (std::uint32_t key = 1; key < std::size(ovxmsg); ++key)
        if (!std::string_view(ovxmsg[key]).starts_with("unused"))
            messages[{1, key}] = {ovxmsg[key], {}};
    return write(options.output, catalog::writeSource(messages));
}

using Action = ExitCode (*)(const Options &);

void describe(Arguments &app, Options &options, Action &chosen)
{
    app.footer(kFooter);
    app.requirePart();

    Arguments command = addCommand(app, "compile", "Make a catalog of a source", chosen, compile);
    command.option("SOURCE", options.source, "The source").required();
    command.option("-o,--output", options.output, "The catalog to write").required();
    command.option("--codeset", options.codeSet, "The source's code set; UTF-8 if not given");

    command = addCommand(app, "dump", "Print a catalog as a source in UTF-8", chosen, dump);
    command.option("CATALOG", options.source, "The catalog").required();
    command.option("-o,--output", options.output, "Write this file instead of printing");

    command =
        addCommand(app, "check", "Compare translations with the source they are of", chosen, check);
    command.option("BASE", options.source, "The source that was translated").required();
    command.option("TRANSLATION", options.translations, "Its translations").required();
    command.option("--codeset", options.codeSet, "The sources' code set");
    command.flag("--allow-same", options.allowSame, "Accept texts that are those of the base");

    command =
        addCommand(app, "header", "Make a C and C++ header of typed calls for a source's messages",
                   chosen, header);
    command.option("SOURCE", options.source, "The source").required();
    command.option("-o,--output", options.output, "The header to write").required();
    command.option("--codeset", options.codeSet, "The source's code set; UTF-8 if not given");
    command.option("--prefix", options.prefix,
                   "What names begin with; the source's name in capitals if not given");

    command = addCommand(app, "builtin", "Print the messages of olvex itself as a source", chosen,
                         builtIn);
    command.option("-o,--output", options.output, "Write this file instead of printing");
}

} // namespace

int runCatalog(int argc, char **argv)
{
    Arguments app("Makes message catalogs, prints them, and compares translations.",
                  "olvex catalog");
    Options options;
    Action action = nullptr;
    describe(app, options, action);
    if (const auto code = app.read(argc, argv)) return *code;
    try {
        return action(options);
    } catch (const std::exception &error) {
        complain(std::string("olvex catalog: ") + error.what());
        return kTrouble;
    }
}

} // namespace tools
