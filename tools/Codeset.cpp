// `olvex codeset`: makes the tables of code sets that the library reads, and tells what is in them.
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <cstdio>

#include "Arguments.h"
#include "ReplaceFile.h"
#include "Verbs.h"
#include "Visible.h"
#include "codeset/CodeSets.h"
#include "codeset/Image.h"
#include "codeset/Inspect.h"

namespace tools {

namespace {

namespace fs = std::filesystem;
using codeset::CodeSet;

constexpr const char *kFooter =
    R"(Tables are made from what the platform's iconv says, corrected where the published code page
says something else. A table is a file with the name of its code set, an alias a file with another name that holds the table's. The library looks for them
in $UCVDIR/codeset, $UCVDIR, $BINDIR/../generic/codeset, the current directory, and where olvex is
installed. Characters that a table cannot hold (beyond U+FFFF, or several for one code) are left
unmapped and counted.

Exit status: 0 when all went well, 1 when a file could not be read or made, 2 for a mistake on the
command line.
)";

struct Options {
    std::vector<std::string> names;
    bool all = false;
    bool quiet = false;
    std::string directory;
    std::string file;
};

// make

void reportLosses(const CodeSet &codeSet, const codeset::Mapping &mapping)
{
    if (mapping.lostCodes + mapping.lostValues == 0) return;
    std::printf("%.*s: left unmapped: %d codes, %d characters\n",
                static_cast<int>(codeSet.name.size()), codeSet.name.data(), mapping.lostCodes,
                mapping.lostValues);
}

// Writes a table and its aliases.
void make(const CodeSet &codeSet, const Options &options)
{
    const codeset::Mapping mapping = codeset::readMapping(codeSet);
    const std::string base = options.directory + "/";
    replaceFile(base + std::string(codeSet.name), codeset::makeTable(codeSet, mapping));
    forEachAlias(codeSet, [&](std::string_view alias) {
        replaceFile(base + std::string(alias), std::string(codeSet.name) + "\n");
    });
    if (!options.quiet) reportLosses(codeSet, mapping);
}

// A code set that cannot be made is named and left out.
bool tryToMake(const CodeSet &codeSet, const Options &options)
{
    try {
        make(codeSet, options);
        return true;
    } catch (const std::exception &error) {
        complain("olvex codeset: " + std::string(codeSet.name) + " is left out: " + error.what());
        return false;
    }
}

std::vector<CodeSet> chosen(const Options &options)
{
    const auto known = codeset::knownCodeSets();
    if (options.all) return {known.begin(), known.end()};
    std::vector<CodeSet> codeSets;
    for (const std::string &name : options.names)
        codeSets.push_back(*codeset::findCodeSet(name));
    return codeSets;
}

int runMake(const Options &options)
{
    fs::create_directories(options.directory);
    const std::vector<CodeSet> codeSets = chosen(options);
    const auto made = std::count_if(codeSets.begin(), codeSets.end(), [&](const CodeSet &codeSet) {
        return tryToMake(codeSet, options);
    });
    if (!options.quiet) std::printf("%td tables in %s\n", made, visible(options.directory).c_str());
    return static_cast<std::size_t>(made) == codeSets.size() ? kOk : kTrouble;
}

// list

void listFile(const fs::path &path)
{
    const codeset::FileInfo info = codeset::inspect(path);
    const std::string name = visible(path.filename().native());
    if (info.isForeign)
        std::printf("%-22s %s\n", name.c_str(), "for machines of the other byte order");
    else if (info.isTable)
        std::printf("%-22s %-36s %7zu bytes\n", name.c_str(), codeset::familyText(info.family),
                    info.contents.size());
    else
        std::printf("%-22s the same as %s\n", name.c_str(), visible(info.name).c_str());
}

int runList(const Options &options)
{
    std::vector<fs::path> paths;
    for (const auto &entry : fs::directory_iterator(options.directory))
        if (entry.is_regular_file()) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    for (const fs::path &path : paths)
        listFile(path);
    return kOk;
}

// show

// How many characters of the Basic Multilingual Plane the library can write in a code set.
int countCharacters(uc_ch_t *handle)
{
    int count = 0;
    char target[16];
    for (unsigned value = 0; value < 0xFFFF; ++value) {
        const auto unit = static_cast<char16_t>(value);
        ucv_from_ucs2(handle, &unit, 1, target, sizeof target);
        count += ucv_check_subs(handle) == 0;
    }
    return count;
}

int showTable(const std::string &path, const codeset::FileInfo &info)
{
    uc_ch_t *handle = ucv_cs_new(fs::absolute(path).c_str());
    if (!handle) throw std::runtime_error(path + " is refused by the library");
    std::printf("Code set:   %s\nFamily:     %u, %s\nSize:       %zu bytes\nCharacters: %d\n",
                visible(info.name).c_str(), info.family, codeset::familyText(info.family),
                info.contents.size(), countCharacters(handle));
    ucv_cs_free(handle);
    return kOk;
}

int runShow(const Options &options)
{
    const codeset::FileInfo info = codeset::inspect(options.file);
    if (info.isForeign)
        throw std::runtime_error(
            options.file +
            " is a table for machines of the other byte order; make it anew on a "
            "machine of this kind with 'olvex codeset make " +
            info.name + " -o DIR'");
    if (info.isTable) return showTable(options.file, info);
    if (info.name.empty()) throw std::runtime_error(options.file + " is neither table nor alias");
    std::printf("Alias of:   %s\n", visible(info.name).c_str());
    return kOk;
}

// The command line

std::string checkName(const std::string &name)
{
    if (codeset::findCodeSet(name)) return {};
    return "there is no code set '" + name + "' to make; --all makes every one that there is";
}

void describeMake(Arguments &app, Options &options)
{
    Arguments verb = app.part("make", "Make tables and their aliases");
    const Argument names =
        verb.option("NAME", options.names, "Code sets, by any of their names").check(checkName);
    const Argument all = verb.flag("--all", options.all, "Every known code set").excludes(names);
    verb.option("-o,--output", options.directory, "Where the files go").typeName("DIR").required();
    verb.flag("-q,--quiet", options.quiet, "Say only what goes wrong");
    verb.whenChosen([names, all] {
        if (names.count() + all.count() == 0) refuseWithout("a NAME, or --all,");
    });
}

int run(const Arguments &app, const Options &options)
{
    if (app.isChosen("make")) return runMake(options);
    return app.isChosen("list") ? runList(options) : runShow(options);
}

void describe(Arguments &app, Options &options)
{
    app.footer(kFooter);
    app.requirePart();
    describeMake(app, options);
    app.part("list", "Tell what the files of a directory are")
        .option("DIR", options.directory, "A directory of tables")
        .required();
    app.part("show", "Tell what a table holds")
        .option("FILE", options.file, "A table or an alias")
        .required();
}

} // namespace

int runCodeset(int argc, char **argv)
{
    Options options;
    Arguments app("Makes and shows tables of code sets", "olvex codeset");
    describe(app, options);
    if (const auto code = app.read(argc, argv)) return *code;
    try {
        return run(app, options);
    } catch (const std::exception &error) {
        complain(std::string("olvex codeset: ") + error.what());
        return kTrouble;
    }
}

} // namespace tools
