// `olvex log`: logs each line of its input as one event.
#include <olvex/olvex.h>

#include <cerrno>
#include <charconv>
#include <clocale>
#include <csignal>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "Arguments.h"
#include "LineReader.h"
#include "Tally.h"
#include "Verbs.h"
#include "Visible.h"

namespace tools {

namespace {

constexpr const char *kStandardInput = "-";
constexpr const char *kDefaultLogger = "olvex.log";
constexpr const char *kConsoleHandler = "olvexConsole";

constexpr const char *kFooter = R"(What becomes of a line:
  The end of the line, LF or CR LF, is dropped; the last line needs none. Text is taken as UTF-8
  and never as a format. A NUL byte inside a line is logged as the two characters \0. The console
  handler writes at most 4095 bytes of a record. A line of 64 MiB or more ends its input, as one
  that cannot be read.

Without --config, records go to standard output when their level is INFO or more severe. With it,
the logger must be described in that file: its class, and where it writes.

--stats counts a line as logged when it reached at least one handler, and as filtered when the
logger's level or something behind it, such as a filter or a disabled handler, stopped it. What a
handler then failed to write is reported by the toolkit, and shows in the exit status.

Exit status: 0 when all went well, 1 when some input could not be read or the toolkit reported a
problem, 2 for a mistake on the command line.
)";

struct Options {
    std::string config;
    std::string logger = kDefaultLogger;
    std::string levelText = "INFO";
    int level = OVX_LEVEL_INFO;
    std::string file;
    std::string function;
    std::string line;
    std::vector<std::string> properties;
    bool stats = false;
    std::vector<std::string> inputs;
};

// The command line

// The levels that a logging call can give an event.
constexpr int kEventLevels[] = {OVX_LEVEL_NONE,      OVX_LEVEL_DEBUG_MAX, OVX_LEVEL_DEBUG_MID,
                                OVX_LEVEL_DEBUG_MIN, OVX_LEVEL_INFO,      OVX_LEVEL_WARN,
                                OVX_LEVEL_ERROR,     OVX_LEVEL_FATAL,     OVX_LEVEL_OFF};

bool isEventLevel(int level)
{
    for (const int known : kEventLevels)
        if (level == known) return true;
    return false;
}

// Reads a whole text as a number.
bool readNumber(const std::string &text, int &number)
{
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

std::string checkLevel(const std::string &text)
{
    int level = 0;
    if (!readNumber(text, level)) {
        level = OvxGetLevelFromString(text.c_str());
        if (level == OVX_LEVEL_NONE) return "there is no level called '" + text + "'";
    }
    if (isEventLevel(level)) return {};
    return "no event can have the level " + text +
           "; take FATAL, ERROR, WARN, INFO, DEBUG_MIN, DEBUG_MID or DEBUG_MAX";
}

int levelOf(const std::string &text)
{
    int level = 0;
    return readNumber(text, level) ? level : OvxGetLevelFromString(text.c_str());
}

std::string checkProperty(const std::string &text)
{
    const auto equals = text.find('=');
    if (equals == std::string::npos || equals == 0) return "'" + text + "' is not NAME=VALUE";
    return {};
}

std::string checkLine(const std::string &text)
{
    int number = 0;
    return readNumber(text, number) ? std::string() : "'" + text + "' is not a number";
}

void describe(Arguments &app, Options &options)
{
    app.footer(kFooter);
    app.option("--config", options.config, "Properties file that says where records go")
        .typeName("FILE");
    app.option("--logger", options.logger, "Name of the logger").typeName("NAME").showDefault();
    app.option("--level", options.levelText, "Level of the events, by name or number")
        .typeName("LEVEL")
        .showDefault()
        .check(checkLevel);
    app.option("--file", options.file, "Source file that the events name").typeName("NAME");
    app.option("--function", options.function, "Source function that the events name")
        .typeName("NAME");
    app.option("--line", options.line, "Source line that the events name")
        .typeName("NUMBER")
        .check(checkLine);
    app.option("--prop", options.properties, "Property of the events; repeatable")
        .typeName("NAME=VALUE")
        .check(checkProperty)
        .oneValueEach();
    app.flag("--stats", options.stats, "Say at the end how many lines were logged");
    app.option("INPUT", options.inputs, "Files to read; - and none are standard input")
        .typeName("");
}

// Events

// One property in the typed parameter list: four arguments.
struct Property {
    int marker = 0; // OVX_PROP, or 0 for one that is not there: it ends the list
    const char *name = nullptr;
    const char *value = nullptr;
};

// A list holds 62 entries, of which the level and the text take one each.
constexpr std::size_t kMostProperties = 60;
constexpr std::size_t kFewProperties = 8;

// The argument at place `Place` of the list that `properties` makes.
template <std::size_t Place>
auto argumentOf(const Property *properties)
{
    const Property &property = properties[Place / 4];
    if constexpr (Place % 4 == 0)
        return property.marker;
    else if constexpr (Place % 4 == 1)
        return property.name;
    else if constexpr (Place % 4 == 2)
        return static_cast<int>(OVX_PARM_STRING);
    else
        return property.value;
}

// What every line of this run is logged with.
class EventMaker {
  public:
    EventMaker(OvxObject *logger, const Options &options) : logger_(logger), level_(options.level)
    {
        if (!options.file.empty()) add("ovx_prop_srcfile", options.file.c_str());
        if (!options.function.empty()) add("ovx_prop_srcfunction", options.function.c_str());
        if (!options.line.empty()) add("ovx_prop_srcline", options.line.c_str());
        for (const std::string &property : options.properties)
            addPair(property);
        properties_.resize(kMostProperties);
    }

    static std::size_t countOf(const Options &options)
    {
        return options.properties.size() + !options.file.empty() + !options.function.empty() +
               !options.line.empty();
    }

    void log(const char *text) const
    {
        if (count_ <= kFewProperties)
            log(text, std::make_index_sequence<4 * kFewProperties>());
        else
            log(text, std::make_index_sequence<4 * kMostProperties>());
    }

  private:
    void add(const char *name, const char *value)
    {
        properties_.push_back({OVX_PROP, name, value});
        ++count_;
    }

    void addPair(const std::string &pair)
    {
        const auto equals = pair.find('=');
        names_.push_back(std::make_unique<std::string>(pair, 0, equals));
        add(names_.back()->c_str(), pair.c_str() + equals + 1);
    }

    // A text without characters prints nothing, and would leave the format standing in the record.
    template <std::size_t... Places>
    void log(const char *text, std::index_sequence<Places...>) const
    {
        const char *format = *text ? "%1$s" : "";
        const Property *list = properties_.data();
        if (level_ >= OVX_LEVEL_INFO)
            OvxLogMsg(logger_, nullptr, 0, 0, format, level_, OVX_PARM_STRING, text,
                      argumentOf<Places>(list)..., 0);
        else
            OvxLogText(logger_, format, level_, OVX_PARM_STRING, text, argumentOf<Places>(list)...,
                       0);
    }

    OvxObject *logger_;
    int level_;
    std::size_t count_ = 0;
    std::vector<Property> properties_;
    std::vector<std::unique_ptr<std::string>> names_;
};

// One run

struct Counts {
    long lines = 0;
    long logged = 0;
    long stoppedByLogger = 0;
};

class Run {
  public:
    Run(OvxObject *logger, const Options &options)
        : logger_(logger), options_(options), maker_(logger, options)
    {}

    // Logs every line of a file; false when it could not be read to its end.
    bool readInput(const std::string &name)
    {
        if (name == kStandardInput) return readDescriptor(STDIN_FILENO, "standard input");
        const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) return failToRead(name, errno);
        const bool whole = readDescriptor(descriptor, name.c_str());
        ::close(descriptor);
        return whole;
    }

    void printStats() const
    {
        const long behind = counts_.lines - counts_.stoppedByLogger - counts_.logged;
        const std::string counts[] = {std::to_string(counts_.lines), std::to_string(counts_.logged),
                                      std::to_string(counts_.stoppedByLogger + behind),
                                      std::to_string(counts_.stoppedByLogger),
                                      std::to_string(behind)};
        complain("olvex log: " + counts[0] + " lines, " + counts[1] + " logged, " + counts[2] +
                 " filtered (" + counts[3] + " by the level of '" + options_.logger + "', " +
                 counts[4] + " behind it)");
    }

  private:
    static bool failToRead(const std::string &name, int error)
    {
        complain("olvex log: " + name + ": " + std::strerror(error));
        return false;
    }

    bool readDescriptor(int descriptor, const char *name)
    {
        LineReader reader(descriptor);
        std::string_view line;
        while (!std::ferror(stdout) && reader.next(line))
            logLine(line);
        return reader.error() == 0 || failToRead(name, reader.error());
    }

    void logLine(std::string_view line)
    {
        ++counts_.lines;
        if (!OvxIsLoggable(logger_, options_.level)) {
            ++counts_.stoppedByLogger;
            return;
        }
        const long before = recordCount();
        maker_.log(withoutNul(line));
        if (recordCount() != before) ++counts_.logged;
    }

    const char *withoutNul(std::string_view line)
    {
        if (line.find('\0') == std::string_view::npos) return line.data();
        spelled_.clear();
        for (const char character : line) {
            if (character == '\0')
                spelled_ += "\\0";
            else
                spelled_ += character;
        }
        return spelled_.c_str();
    }

    OvxObject *logger_;
    const Options &options_;
    EventMaker maker_;
    Counts counts_;
    std::string spelled_;
};

// The toolkit

void configure(const std::string &name,
               std::initializer_list<std::pair<const char *, const char *>> properties)
{
    OvxObjCfg *configuration = OvxAllocObjCfg(name.c_str());
    for (const auto &[property, value] : properties)
        OvxSetObjCfgProp(configuration, property, value);
    OvxLogMgrAddCfg(configuration);
    OvxReleaseObjCfg(configuration);
}

// The configuration that is built in: a logger that writes to standard output. The handler is
// described first and not below the logger, from which it would inherit.
void configureConsole(const std::string &logger)
{
    configure(kConsoleHandler, {{"className", "ovx_consolehandler"}});
    configure(
        logger,
        {{"className", "ovx_basiclogger"}, {"level", "INFO"}, {"listenerNames", kConsoleHandler}});
}

bool openToolkit(const Options &options)
{
    if (!OvxOpenToolkit(options.config.empty() ? nullptr : options.config.c_str())) return false;
    watchReports();
    if (options.config.empty()) configureConsole(options.logger);
    return true;
}

// The logger that the options name; explains itself when there is none.
OvxObject *getLogger(const Options &options)
{
    OvxObject *logger = OvxGetObject(options.logger.c_str(), nullptr);
    const char *problem = nullptr;
    if (!logger)
        problem = "is not described in the configuration";
    else if (OvxIsObjectEnabled(logger) && !OvxLoggerGetFLog(logger))
        problem = "is not a logger";
    if (!problem) return logger;
    complain("olvex log: '" + options.logger + "' " + problem + "; name the logger with --logger");
    OvxReleaseObject(logger);
    return nullptr;
}

int logInputs(const Options &options)
{
    OvxObject *logger = getLogger(options);
    if (!logger) return kTrouble;
    if (options.stats) watchRecords(logger);
    Run run(logger, options);
    bool whole = true;
    for (const std::string &input : options.inputs)
        whole = run.readInput(input) && whole;
    if (options.stats) run.printStats();
    OvxReleaseObject(logger);
    return whole && reportCount() == 0 ? kOk : kTrouble;
}

} // namespace

int runLog(int argc, char **argv)
{
    Options options;
    Arguments app("Logs each line of its input as one event.", "olvex log");
    describe(app, options);
    if (const auto code = app.read(argc, argv)) return *code;
    if (EventMaker::countOf(options) > kMostProperties) {
        std::fprintf(stderr, "olvex log: an event takes at most %zu properties\n", kMostProperties);
        return kUsage;
    }
    options.level = levelOf(options.levelText);
    if (options.inputs.empty()) options.inputs.push_back(kStandardInput);

    std::setlocale(LC_ALL, "");
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone shows as an error of standard output
    const int code = openToolkit(options) ? logInputs(options) : kTrouble;
    OvxCloseToolkit();
    return code;
}

} // namespace tools
