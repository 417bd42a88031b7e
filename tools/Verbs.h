// The verbs of the `olvex` command. A new verb is a function, its declaration and a row of kVerbs
// in main.cpp; main dispatches on the first argument and prints the table for `--help`.
#pragma once

namespace tools {

// How the command ends, whatever the verb.
enum ExitCode : int { kOk = 0, kTrouble = 1, kUsage = 2 };

struct Verb {
    const char *name;
    const char *help;                  // one line, no full stop
    int (*run)(int argc, char **argv); // argv[0] is the verb; returns an exit code
};

// Makes and checks message catalogs (Catalog.cpp).
int runCatalog(int argc, char **argv);

// Makes and shows tables of code sets (Codeset.cpp).
int runCodeset(int argc, char **argv);

// Checks and explains properties files (Config.cpp).
int runConfig(int argc, char **argv);

// Logs lines of text as events (Log.cpp).
int runLog(int argc, char **argv);

// Shows the records of logs (View.cpp).
int runView(int argc, char **argv);

} // namespace tools
