// `olvex config`: checks properties files, explains what they amount to, lists the classes.
#include <olvex/Config.h>
#include <olvex/Toolkit.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include "Arguments.h"
#include "Verbs.h"
#include "Visible.h"
#include "config/Check.h"
#include "config/Explain.h"
#include "config/Names.h"

namespace tools {

namespace {

using namespace config;

constexpr std::size_t kLargestFile = 16u << 20;
constexpr std::size_t kHugeKey = 4096;

constexpr const char *kFooter =
    R"(Several files are taken in the order in which a program loads them.

An error is what makes the toolkit give up a file or leave out an object: a mistake in the syntax, a
class that does not exist, a name that leads nowhere or to an object that cannot serve. A warning is
what it puts up with: a property without effect, a value that it replaces, a circle of listeners, a
value that is set again, an object that nothing uses. An advice names a setting that is worth a
thought, and never counts. Each problem is one line,
  FILE:LINE:COLUMN: error: WHAT IS WRONG [KIND]
or with --json one object with the members file, line, column, severity, code and message.

Exit status: 0 when there are no errors, 1 when there are, 2 for a mistake on the command line.
)";

struct Options {
    std::vector<std::string> files;
    std::vector<std::string> hostClasses;
    std::string name;
    bool isStrict = false;
    bool isJson = false;
    bool withDefaults = false;
    bool isMarkdown = false;
};

// Files

class Descriptor {
  public:
    explicit Descriptor(const std::string &path) : number_(open(path.c_str(), O_RDONLY | O_CLOEXEC))
    {}
    ~Descriptor()
    {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return number_; }

  private:
    int number_;
};

// Why the file cannot be read; empty when `bytes` holds it.
std::string readFile(const std::string &path, std::string &bytes)
{
    const Descriptor file(path);
    char block[65536];
    ssize_t count = file.number() < 0 ? -1 : 1;
    while (count > 0 && bytes.size() <= kLargestFile) {
        count = read(file.number(), block, sizeof block);
        if (count > 0) bytes.append(block, static_cast<std::size_t>(count));
    }
    if (count < 0) return std::strerror(errno);
    return bytes.size() > kLargestFile ? "larger than 16 MiB" : "";
}

HostClasses hostClassesOf(const Options &options)
{
    HostClasses classes;
    for (const std::string &text : options.hostClasses) {
        const auto equals = text.find('=');
        Category category = Category::None;
        for (const Category known :
             {Category::Logger, Category::Filter, Category::Handler, Category::Formatter})
            if (equals != std::string::npos && text.substr(equals + 1) == nameOf(known))
                category = known;
        classes[text.substr(0, equals)] = category;
    }
    return classes;
}

// All files of a command line, and what is wrong with them.
class Input {
  public:
    explicit Input(const Options &options) : model_(hostClassesOf(options))
    {
        for (const std::string &path : options.files)
            add(path);
        model_.finish();
        if (report_.count(Severity::Error) == 0 && !hasHugeKey()) confirm(options.files);
    }

    const Model &model() const { return model_; }
    Report &report() { return report_; }

  private:
    void add(const std::string &path)
    {
        const std::size_t file = files_++;
        report_.addFile(path);
        std::string bytes;
        if (const std::string fault = readFile(path, bytes); !fault.empty())
            return fail(file, "unreadable", "the file cannot be read: " + fault);
        const Scan &scan = scans_.emplace_back(scanProperties(bytes));
        for (const Finding &finding : scan.findings)
            report_.add({file, finding.severity, finding.place, finding.code, finding.text});
        model_.add(file, scan, report_);
    }

    // The library has the last word on whether files can be read.
    void confirm(const std::vector<std::string> &paths)
    {
        OvxOpenToolkit(nullptr);
        for (std::size_t file = 0; file < paths.size(); ++file)
            if (!OvxLogMgrReadProps(paths[file].c_str()))
                fail(file, "unreadable", "the toolkit cannot read this file");
        OvxCloseToolkit();
    }

    // The library looks for every part of a name in turn, which takes it minutes for a huge one.
    bool hasHugeKey() const
    {
        return std::ranges::any_of(scans_, [](const Scan &scan) {
            return std::ranges::any_of(scan.pairs,
                                       [](const Pair &pair) { return pair.key.size() > kHugeKey; });
        });
    }

    void fail(std::size_t file, const char *code, std::string text)
    {
        report_.add({file, Severity::Error, {}, code, std::move(text)});
    }

    std::size_t files_ = 0;
    std::deque<Scan> scans_; // stay where they are: the model points into them
    Report report_;
    Model model_;
};

// Commands

ExitCode check(const Options &options)
{
    Input input(options);
    checkSettings(input.model(), input.report());
    checkReferences(input.model(), input.report());
    if (options.isStrict) input.report().makeStrict();
    input.report().print(stdout, options.isJson);
    return input.report().count(Severity::Error) == 0 ? kOk : kTrouble;
}

ExitCode complainAboutName(const Model &model, const std::string &name)
{
    NearestName nearest(name);
    for (const Configuration *configuration : model.all())
        nearest.offer(configuration->name);
    complain("olvex config: nothing is set for '" + name + "'" + nearest.hint());
    return kTrouble;
}

// The name is the last of the arguments.
ExitCode explainObject(const Options &given)
{
    Options options = given;
    const std::string name = options.files.back();
    options.files.pop_back();
    Input input(options);
    if (input.report().count(Severity::Error) > 0) input.report().print(stderr, false);
    if (!input.model().nearest(name) && !isOfToolkit(name))
        return complainAboutName(input.model(), name);
    const bool isUtf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    explain(stdout, input.model(), input.report(), name, options.withDefaults, isUtf8);
    return input.report().count(Severity::Error) == 0 ? kOk : kTrouble;
}

ExitCode listClasses(const Options &options)
{
    if (!options.name.empty() && !findClass(options.name)) {
        NearestName nearest(options.name);
        for (const ClassInfo &info : classes())
            nearest.offer(info.name);
        complain("olvex config: there is no class '" + options.name + "'" + nearest.hint());
        return kTrouble;
    }
    (options.isMarkdown ? printMarkdown : printClasses)(stdout, options.name);
    return kOk;
}

using Action = ExitCode (*)(const Options &);

std::string checkHostClass(const std::string &text)
{
    const auto equals = text.find('=');
    if (equals == std::string::npos && !text.empty()) return {};
    for (const Category category :
         {Category::Logger, Category::Filter, Category::Handler, Category::Formatter})
        if (equals != 0 && equals != std::string::npos &&
            text.substr(equals + 1) == nameOf(category))
            return {};
    return "'" + text + "' is not NAME, NAME=logger, NAME=filter, NAME=handler or NAME=formatter";
}

void addFileOptions(Arguments &command, Options &options)
{
    command.option("--class", options.hostClasses, "A class that the program registers; repeatable")
        .typeName("NAME[=CATEGORY]")
        .oneValueEach()
        .check(checkHostClass);
}

void describe(Arguments &app, Options &options, Action &chosen)
{
    app.footer(kFooter);
    app.requirePart();

    Arguments command =
        addCommand(app, "check", "Report what is wrong in properties files", chosen, check);
    command.option("FILE", options.files, "The files").required().typeName("");
    command.flag("--strict", options.isStrict, "Take warnings for errors");
    command.flag("--json", options.isJson, "Print a JSON object for each problem");
    addFileOptions(command, options);

    command = addCommand(app, "explain", "Show what an object gets, and who listens to it", chosen,
                         explainObject);
    command.option("FILE... NAME", options.files, "The files, and the name of the object")
        .required()
        .atLeast(2)
        .typeName("");
    command.flag("--all", options.withDefaults, "Show defaults as well");
    addFileOptions(command, options);

    command =
        addCommand(app, "classes", "List the classes and their properties", chosen, listClasses);
    command.option("CLASS", options.name, "Only this class").typeName("");
    command.flag("--markdown", options.isMarkdown, "Print the sections of a document");
}

} // namespace

int runConfig(int argc, char **argv)
{
    Arguments app("Checks properties files, explains them, lists the classes.", "olvex config");
    Options options;
    Action action = nullptr;
    describe(app, options, action);
    if (const auto code = app.read(argc, argv)) return *code;
    std::setlocale(LC_ALL, "");
    return action(options);
}

} // namespace tools
