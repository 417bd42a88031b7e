// `olvex view`: shows, searches and counts the records of logs.
#include <olvex/Level.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

#include "Arguments.h"
#include "Verbs.h"
#include "view/Filter.h"
#include "view/Merge.h"
#include "view/Times.h"
#include "view/Writers.h"

namespace tools {

namespace {

using namespace view;

constexpr const char *kFooter = R"(Files:
  app.log stands for the whole log: app2.log, app1.log and app.log, all numbered files there are, the
  oldest first. A file whose name ends in a number is read alone. Several logs are merged in the order
  of time. - is standard input.

Formats are told apart record by record: text lines that begin with a timestamp (lines without one
belong to the record before them), XML records, trace lines and the lines of console tracers.

Times are ISO 8601: 2008-04-01, 2008-04-01T13:05, "2008-04-01 13:05:09.042+02:00"; without a zone they
are local. --since is shown, --until not any more. --id and --component take patterns with *. Options
that may be repeated show what fits any of their values.

What text lines do not say: their level, which is taken from the identifier (I, W, E), and which
properties stand before the message; --fields names those, in their order: file, function, line,
organization, product, component, client, server. Without it the message is looked for by its
identifier. FATAL is written as ERROR by all formatters; --level FATAL shows ERROR too.

Stretches that are no records are reported with file and offset, once each, and reading goes on.

Exit status: 0 when all went well, 1 when something could not be read or was damaged, 2 for a mistake
on the command line.
)";

constexpr std::timespec kLookInterval = {0, 100'000'000};
constexpr std::size_t kOutputBuffer = 256 * 1024;

struct Options {
    std::string since, until, level, fields;
    std::vector<std::string> formats;
    Filter filter;
    LogOptions log;
    bool follow = false;
    bool json = false;
    bool summary = false;
    bool only = false;
    std::vector<std::string> logs;
};

// The command line

struct FieldName {
    const char *name;
    Field field;
};

constexpr FieldName kFieldNames[] = {
    {"file", Field::kSourceFile}, {"function", Field::kFunction},
    {"line", Field::kLine},       {"organization", Field::kOrganization},
    {"product", Field::kProduct}, {"component", Field::kComponent},
    {"client", Field::kClient},   {"server", Field::kServer},
};

struct LevelValue {
    int value;
    Level level;
};

constexpr LevelValue kLevelValues[] = {
    {OVX_LEVEL_ALL, Level::kNone},           {OVX_LEVEL_DEBUG_MAX, Level::kDebugMax},
    {OVX_LEVEL_DEBUG_MID, Level::kDebugMid}, {OVX_LEVEL_DEBUG_MIN, Level::kDebugMin},
    {OVX_LEVEL_INFO, Level::kInfo},          {OVX_LEVEL_WARN, Level::kWarn},
    {OVX_LEVEL_ERROR, Level::kError},        {OVX_LEVEL_FATAL, Level::kFatal},
};

// The least level that passes a threshold.
const LevelValue *findLevel(const std::string &text)
{
    const int threshold = OvxGetLevelFromString(text.c_str());
    if (threshold == OVX_LEVEL_NONE) return nullptr;
    for (const LevelValue &entry : kLevelValues)
        if (threshold <= entry.value) return &entry;
    return nullptr;
}

std::string checkLevel(const std::string &text)
{
    if (findLevel(text)) return {};
    return "'" + text +
           "' is no level that records have; take FATAL, ERROR, WARN, INFO, DEBUG_MIN, DEBUG_MID "
           "or "
           "DEBUG_MAX";
}

std::string checkTime(const std::string &text)
{
    return readIsoTime(text) ? std::string() : "'" + text + "' is no time such as 2008-04-01T13:05";
}

// Reads names between commas; the name that is none, if there is one.
std::string readFields(const std::string &text, std::vector<Field> &fields)
{
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        std::string name = text.substr(begin, end - begin);
        const auto *found =
            std::find_if(std::begin(kFieldNames), std::end(kFieldNames),
                         [&](const FieldName &entry) { return name == entry.name; });
        if (found == std::end(kFieldNames)) return name;
        fields.push_back(found->field);
        begin = end + 1;
    }
    return {};
}

std::string checkFields(const std::string &text)
{
    std::vector<Field> fields;
    const std::string wrong = readFields(text, fields);
    return wrong.empty() ? std::string() : "there is no field '" + wrong + "'";
}

void addList(Arguments &app, const char *name, std::vector<std::string> &values, const char *help,
             const char *type)
{
    app.option(name, values, help).typeName(type).oneValueEach();
}

void describeFilter(Arguments &app, Options &options)
{
    Filter &filter = options.filter;
    app.option("--since", options.since, "Records from this time on")
        .typeName("TIME")
        .check(checkTime);
    app.option("--until", options.until, "Records before this time")
        .typeName("TIME")
        .check(checkTime);
    app.option("--level", options.level, "Records of at least this level")
        .typeName("LEVEL")
        .check(checkLevel);
    addList(app, "--id", filter.ids, "Records with such an identifier; repeatable", "PATTERN");
    addList(app, "--component", filter.components, "Records of such a component; repeatable",
            "PATTERN");
    addList(app, "--thread", filter.threads, "Records of this thread; repeatable", "ID");
    addList(app, "--text", filter.texts, "Records whose text holds this; repeatable", "TEXT");
}

void describe(Arguments &app, Options &options)
{
    app.footer(kFooter);
    describeFilter(app, options);
    app.flag("-f,--follow", options.follow, "Go on with what is written, until interrupted");
    app.flag("--json", options.json, "Write JSON, one record a line");
    app.flag("--summary", options.summary, "Count by identifier and level");
    app.flag("--only", options.only, "Read the named files without their numbered ones");
    app.option("--format", options.formats, "Look for this format only; repeatable")
        .typeName("FORMAT")
        .oneValueEach()
        .oneOf({"text", "xml", "trace", "console"});
    app.option("--fields", options.fields, "Properties that text lines have; \"\" for none")
        .typeName("NAMES")
        .check(checkFields);
    app.option("--separator", options.log.separator, "Separator of text lines").typeName("TEXT");
    app.option("--time-format", options.log.timeLayout,
               "Layout of the time of text lines, as for strptime")
        .typeName("LAYOUT");
    app.option("LOG", options.logs, "Logs to read").typeName("").required();
}

void readFormats(Options &options)
{
    if (options.formats.empty()) return;
    for (std::size_t i = 0; i < kFormatCount; ++i)
        options.log.formats[i] = std::find(options.formats.begin(), options.formats.end(),
                                           nameOf(static_cast<Format>(i))) != options.formats.end();
}

void interpret(const Arguments &app, Options &options)
{
    if (!options.since.empty()) options.filter.since = readIsoTime(options.since);
    if (!options.until.empty()) options.filter.until = readIsoTime(options.until);
    if (!options.level.empty()) options.filter.least = findLevel(options.level)->level;
    options.log.knowsFields = app.count("--fields") > 0;
    readFields(options.fields, options.log.fields);
    readFormats(options);
}

// One run

volatile std::sig_atomic_t isInterrupted = 0;

void interrupt(int)
{
    isInterrupted = 1;
}

void catchInterrupts()
{
    struct sigaction action {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND); // a second one ends the command at once
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

// All files of the logs are open at the same time.
void allowManyFiles()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

class Run {
  public:
    explicit Run(const Options &options) : options_(options), reports_(showsProgress(options))
    {
        if (options.summary)
            writer_ = makeSummary(stdout, options.json);
        else if (options.json)
            writer_ = makeJsonWriter(stdout);
        else
            writer_ = makeTextWriter(stdout, ::isatty(STDOUT_FILENO) == 1);
    }

    // Whole logs are opened before single files, which may be part of them.
    void open()
    {
        for (const bool whole : {true, false})
            for (const std::string &path : options_.logs)
                if (isWhole(path) == whole) openLog(realName(path), whole);
    }

    int show()
    {
        while (!std::ferror(stdout)) {
            if (const Record *record = merge_.next()) {
                if (options_.filter.accepts(*record)) writer_->write(*record);
            } else if (merge_.isAtEnd()) {
                break;
            } else {
                waitForMore();
            }
        }
        writer_->finish();
        return reports_.hasTrouble() ? kTrouble : kOk;
    }

  private:
    static bool showsProgress(const Options &options)
    {
        return ::isatty(STDERR_FILENO) == 1 && !options.follow &&
               (options.summary || ::isatty(STDOUT_FILENO) == 0);
    }

    bool isWhole(const std::string &path) const
    {
        return path != "-" && !options_.only && !LogName(realName(path)).isNumbered();
    }

    bool isOpen(const LogFile &file) const
    {
        return std::find(opened_.begin(), opened_.end(), file.id) != opened_.end();
    }

    // The files of a log, opened from the newest on: a rollover meanwhile makes one appear twice.
    void openLog(const std::string &path, bool whole)
    {
        const LogName name(path);
        std::vector<unsigned long> numbers;
        if (whole) numbers = name.findNumbers();
        std::vector<LogFile> files;
        addFile(files, path);
        for (const unsigned long number : numbers)
            addFile(files, name.pathOf(number));
        std::reverse(files.begin(), files.end());
        addSource(path, std::move(files));
    }

    void addFile(std::vector<LogFile> &files, const std::string &path)
    {
        LogFile file = openFile(path);
        const bool isAwaited = options_.follow && errno == ENOENT;
        if (!file.descriptor.isOpen()) {
            if (!isAwaited) reports_.fileTrouble(path, errno);
            return;
        }
        if (isOpen(file)) return;
        opened_.push_back(file.id);
        reports_.expect(file.size);
        files.push_back(std::move(file));
    }

    void addSource(const std::string &path, std::vector<LogFile> files)
    {
        const bool needsAll = !options_.summary || options_.filter.needsAll();
        const bool follows = options_.follow && path != "-";
        if (files.empty() && !follows) return;
        auto source = std::make_unique<LogSource>(path, std::move(files), options_.log,
                                                  needsAll ? Depth::kAll : Depth::kHead, reports_);
        if (follows) source->follow();
        merge_.add(std::move(source));
    }

    void waitForMore()
    {
        std::fflush(stdout);
        if (isInterrupted)
            merge_.stopFollowing();
        else
            ::nanosleep(&kLookInterval, nullptr);
    }

    const Options &options_;
    Reports reports_;
    std::unique_ptr<Writer> writer_;
    Merge merge_;
    std::vector<FileId> opened_;
};

} // namespace

int runView(int argc, char **argv)
{
    std::setlocale(LC_ALL, "");
    Options options;
    Arguments app("Shows, searches and counts the records of logs.", "olvex view");
    describe(app, options);
    if (const auto code = app.read(argc, argv)) return *code;
    interpret(app, options);

    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone shows as an error of standard output
    static char buffer[kOutputBuffer];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    if (options.follow) catchInterrupts();
    allowManyFiles();
    Run run(options);
    run.open();
    return run.show();
}

} // namespace tools
