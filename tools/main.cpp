// The `olvex` command: finds the verb and runs it.
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include <fcntl.h>
#include <unistd.h>

#include "Verbs.h"
#include "Visible.h"

namespace {

using tools::Verb;

constexpr Verb kVerbs[] = {
    {"catalog", "Make, print and check message catalogs", tools::runCatalog},
    {"codeset", "Make and show tables of code sets", tools::runCodeset},
    {"config", "Check and explain properties files", tools::runConfig},
    {"log", "Log lines of text as events", tools::runLog},
    {"view", "Show, search and count the records of logs", tools::runView},
};

const Verb *findVerb(const char *name)
{
    for (const Verb &verb : kVerbs)
        if (std::strcmp(name, verb.name) == 0) return &verb;
    return nullptr;
}

void printUsage(FILE *stream)
{
    std::fputs("Usage: olvex VERB [ARGUMENTS]\n\nVerbs:\n", stream);
    for (const Verb &verb : kVerbs)
        std::fprintf(stream, "  %-10s %s\n", verb.name, verb.help);
    std::fputs("\n  olvex VERB --help    what the verb does and takes\n"
               "  olvex --help         this text\n"
               "  olvex --version      the version\n",
               stream);
}

bool isOneOf(const char *argument, const char *shortForm, const char *longForm)
{
    return std::strcmp(argument, shortForm) == 0 || std::strcmp(argument, longForm) == 0;
}

int refuse(const char *argument)
{
    if (argument)
        tools::complain(std::string("olvex: there is no verb '") + argument + "'");
    else
        tools::complain("olvex: a verb is missing");
    std::fputs("\n", stderr);
    printUsage(stderr);
    return tools::kUsage;
}

int finish(int code)
{
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return code;
    std::fputs("olvex: standard output could not be written\n", stderr);
    return code == tools::kOk ? tools::kTrouble : code;
}

// Fills closed standard streams with what fails when it is used. Otherwise a log file could be
// opened under the number of standard output and receive what is written there.
void holdStandardStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

// What a verb does not expect, above all that memory runs out, ends it with a plain sentence.
int run(const Verb &verb, int argc, char **argv)
{
    try {
        return verb.run(argc, argv);
    } catch (const std::bad_alloc &) {
        std::fprintf(stderr, "olvex %s: memory ran out\n", verb.name);
    } catch (const std::exception &error) {
        tools::complain(std::string("olvex ") + verb.name + ": " + error.what());
    }
    return tools::kTrouble;
}

} // namespace

int main(int argc, char **argv)
{
    holdStandardStreams();
    if (argc < 2) return refuse(nullptr);
    if (isOneOf(argv[1], "-h", "--help")) {
        printUsage(stdout);
        return finish(tools::kOk);
    }
    if (isOneOf(argv[1], "-V", "--version")) {
        std::puts("olvex " OLVEX_VERSION);
        return finish(tools::kOk);
    }
    const Verb *verb = findVerb(argv[1]);
    return verb ? finish(run(*verb, argc - 1, argv + 1)) : refuse(argv[1]);
}
