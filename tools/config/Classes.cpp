// See Classes.h.
#include "config/Classes.h"

#include <algorithm>

namespace tools::config {

namespace {

// Whatever is neither true nor false counts as what holds while nothing is set.
constexpr Property flag(const char *name, const char *initial, const char *help)
{
    return {name, Type::Boolean, initial, help, {.fallback = initial}};
}

constexpr Property kClassName[] = {
    {"className",
     Type::Class,
     "",
     "Class of the object, read when it is made.",
     {.isRequired = true}},
};

constexpr Property kDescription[] = {
    {"logging", Type::Switch, "on",
     "Whether the object is enabled; a disabled one passes nothing on."},
    {"description", Type::Text, "", "Text that describes the class, for all objects of the class."},
    {"descriptionFile", Type::Text, "", "Message catalog in which the description is looked up."},
    {"descriptionSet",
     Type::Integer,
     "",
     "Set of the description in that catalog.",
     {.fallback = "0"}},
    {"descriptionKey", Type::Integer, "", "Key of the description in that set.", {.fallback = "0"}},
};

constexpr Property kListeners[] = {
    {"listenerNames", Type::Listeners, "",
     "Filters and handlers to which the object passes events, in this order."},
};

constexpr Property kLogger[] = {
    {"level", Type::Level, "DEBUG_MIN", "Least severe level of the events that the logger takes."},
};

constexpr Property kProblemLogger[] = {
    {"organization", Type::Text, "", "Organization that every event carries."},
    {"product", Type::Text, "", "Product that every event carries."},
    {"component", Type::Text, "", "Component that every event carries."},
    {"productInstance", Type::Text, "", "Instance of the product that every event carries."},
    {"client", Type::Text, "", "Client, the principal, that every event carries."},
    {"server", Type::Text, "the host's full name", "Server that every event carries."},
    {"serverFormat", Type::Text, "IP", "What kind of name the server's is."},
};

constexpr Property kLevelFilter[] = {
    {"level", Type::Level, "ALL", "Least severe level of the events that pass."},
};

constexpr Property kIdFilter[] = {
    {"mode",
     Type::AnyCase,
     "BLOCK",
     "Whether events with these identifiers are held back or pass alone.",
     {.choices = "BLOCK PASSTHRU", .fallback = "BLOCK"}},
    {"msgIds", Type::Text, "*W *I",
     "Patterns of message identifiers; * stands for any characters."},
    {"msgIdRepeatTime", Type::Long, "0",
     "Milliseconds during which an identifier that passed does not pass again."},
};

constexpr Property kHandler[] = {
    {"formatterName", Type::Formatter, "olvex.defaultFormatter",
     "Formatter that makes the text of the records."},
};

constexpr Property kFileHandler[] = {
    {"fileName", Type::LogFile, "default.log", "The active log file.", {.fallback = "default.log"}},
    {"maxFileBytes",
     Type::Integer,
     "1048576",
     "Bytes that the active file holds when it is rolled over.",
     {.least = 1, .fallback = "1024"}},
    {"maxFileSize",
     Type::Integer,
     "1048576",
     "Another name of maxFileBytes, taken even when it is 0.",
     {.fallback = "1024"}},
    {"maxFiles",
     Type::Integer,
     "3",
     "Files that are kept, the active one included; 1 never rolls over.",
     {.least = 1, .fallback = "3"}},
    {"filePermission", Type::Mode, "0744", "Mode of new files, under the process's mask."},
    {"dirPermission", Type::Mode, "0771", "Mode of directories that are made."},
    {"fileEncoding", Type::CodeSet, "UTF-8", "Code set of the file.", {.fallback = "UTF-8"}},
    flag("logInternalErrs", "true", "Whether problems with names, modes and copies are reported."),
};

constexpr Property kOwnFile[] = {
    flag("appending", "true", "Whether an existing file is kept when it is opened."),
};

constexpr Property kSharedFile[] = {
    {"MPFileSemKey",
     Type::Key,
     "31821",
     "Key of the System V semaphore of those that share the log.",
     {.fallback = "31821"}},
    flag("emptyUncopied", "true", "Whether a rollover empties the log even when its copy failed."),
};

constexpr Property kBasicFormatter[] = {
    {"separator", Type::Text, "a blank", "Text between the parts of a line."},
    {"dateTimeFormat", Type::Text, "date, time, milliseconds, zone",
     "Format of the time of an event, as of strftime."},
    {"locale", Type::Text, "the process's", "Locale into which messages are translated."},
};

constexpr Property kXmlFormatter[] = {
    flag("singleServer", "false", "Whether the server is written once for a file."),
    flag("singleProduct", "false", "Whether the product is written once for a file."),
    flag("singleComponent", "false", "Whether the component is written once for a file."),
    flag("singleProductId", "false",
         "Whether the instance of the product is written once for a file."),
    flag("forceAsMessage", "false", "Whether all events are written as messages."),
    flag("forceAsTrace", "false", "Whether all events are written as trace records."),
};

constexpr Property kTriggered[] = {
    {"triggerFilter",
     Type::Filter,
     "",
     "Filter that selects the events to act on.",
     {.isRequired = true}},
    {"triggerRepeatTime",
     Type::Long,
     "0",
     "Least number of milliseconds between two actions.",
     {.least = 1}},
    {"baseDir",
     Type::Path,
     "",
     "Directory below which the directories of each date are made.",
     {.isRequired = true}},
    {"maxDiskSpace",
     Type::Long,
     "10485760",
     "Bytes that everything below baseDir may take up.",
     {.least = 1}},
    {"quotaPolicy",
     Type::Choice,
     "QUOTA_AUTODELETE",
     "What happens when there is no room for an action.",
     {.choices = "QUOTA_IGNORE QUOTA_AUTODELETE QUOTA_SUSPEND"}},
    {"firstWarning", Type::Fraction, "0.75",
     "Part of maxDiskSpace at which the first warning is due, and to which files are deleted."},
    {"secondWarning", Type::Fraction, "0.9",
     "Part of maxDiskSpace at which the second warning is due."},
    {"warnOnDiskSpace", Type::Number, "0", "Whether these warnings are logged: 1 or 0."},
};

constexpr Property kFileCopy[] = {
    {"filesToCopy",
     Type::Text,
     "",
     "Files to copy, between blanks; a name with blanks stands in double quotes.",
     {.isRequired = true}},
    {"zipFileName", Type::Text, "", "Archive to make instead of copying the files one by one."},
    {"zipCmdPath", Type::Program, "", "Full path of the zip program that makes the archive."},
};

// Rows that classes share follow their own.
constexpr ClassInfo kClasses[] = {
    {"ovx_basiclogger",
     Category::Logger,
     "Logger for basic messages",
     "Takes events from its level upwards and passes them on.",
     {kClassName, kLogger, kListeners, kDescription}},
    {"ovx_pdlogger",
     Category::Logger,
     "Logger for messages with detailed problem data",
     "Adds product, server, process, thread and message identifier to each event.",
     {kClassName, kLogger, kProblemLogger, kListeners, kDescription}},
    {"ovx_levelfilter",
     Category::Filter,
     "Filters messages by level",
     "Lets events pass from its level upwards.",
     {kClassName, kLevelFilter, kListeners, kDescription}},
    {"ovx_msgidfilter",
     Category::Filter,
     nullptr,
     "Selects events by message identifier and holds back repetitions.",
     {kClassName, kIdFilter, kListeners, kDescription}},
    {"ovx_consolehandler",
     Category::Handler,
     "Handles output to the console",
     "Writes records to standard output.",
     {kClassName, kHandler, kListeners, kDescription}},
    {"ovx_stderrhandler",
     Category::Handler,
     nullptr,
     "Writes records to standard error.",
     {kClassName, kHandler, kListeners, kDescription}},
    {"ovx_filehandler",
     Category::Handler,
     "Handles output to local log files",
     "Writes records to a file of one process and rolls it over.",
     {kClassName, kFileHandler, kOwnFile, kHandler, kListeners, kDescription}},
    {"ovx_multiproc_filehandler",
     Category::Handler,
     nullptr,
     "Writes records to a file that processes share and roll over together.",
     {kClassName, kFileHandler, kSharedFile, kHandler, kListeners, kDescription}},
    {"ovx_basicformatter",
     Category::Formatter,
     "Formats a basic message summary.",
     "Makes one line of an event: time, source, product and text.",
     {kClassName, kBasicFormatter, kDescription}},
    {"ovx_xmlformatter",
     Category::Formatter,
     "Formats all message data as an XML record.",
     "Makes an XML record of all that an event carries.",
     {kClassName, kXmlFormatter, kBasicFormatter, kDescription}},
    {"ovx_mavtraceformatter",
     Category::Formatter,
     nullptr,
     "Makes a line of fixed fields of an event; takes no properties.",
     {kClassName}},
    {"ovx_ffdc_trigger_handler",
     Category::Handler,
     "Performs First Failure Data Capture (FFDC) actions based on the ZMS message ids of incoming "
     "events.",
     "Holds the settings of first failure data capture; the base of classes that act.",
     {kClassName, kTriggered, kHandler, kListeners, kDescription}},
    {"ovx_ffdc_filecopy_handler",
     Category::Handler,
     "Copies local files to a problem determination directory, based on the ZMS message ids of "
     "incoming events.",
     "Copies or packs files when its filter selects an event.",
     {kClassName, kFileCopy, kTriggered, kHandler, kListeners, kDescription}},
};

constexpr const char *kTypeNames[] = {
    "text",     "class",    "boolean", "switch", "level",  "integer", "integer",
    "fraction", "number",   "mode",    "choice", "choice", "path",    "path",
    "program",  "code set", "names",   "name",   "name",   "key",
};

constexpr const char *kCategoryNames[] = {"object", "logger", "filter", "handler", "formatter"};

// What a value must be, in the order of Type; nullptr where more is to be said or nothing.
constexpr const char *kValues[] = {
    nullptr,
    "the name of a class",
    "true or false",
    "on, true, off or false",
    "FATAL, ERROR, WARN, INFO, DEBUG_MIN, DEBUG_MID, DEBUG_MAX, ALL, OFF or a number",
    "a 32-bit integer",
    "a 64-bit integer",
    "between 0 and 1",
    "a number",
    "up to four octal digits",
    nullptr,
    nullptr,
    "at most 255 bytes",
    "at most 255 bytes",
    "a path without characters that a shell takes for its own",
    "the name of a code set",
    "filters and handlers",
    "a formatter",
    "a filter",
    "a 32-bit integer other than 0, also in hexadecimal",
};

std::string choicesOf(const Property &property)
{
    std::string text = property.rules.choices;
    for (std::size_t blank = text.rfind(' '); blank != std::string::npos && blank > 0;
         blank = text.rfind(' ', blank - 1))
        text.replace(blank, 1, text.find(" or ") == std::string::npos ? " or " : ", ");
    return text;
}

} // namespace

const char *nameOf(Type type)
{
    return kTypeNames[static_cast<std::size_t>(type)];
}

const char *nameOf(Category category)
{
    return kCategoryNames[static_cast<std::size_t>(category)];
}

const Property *ClassInfo::find(std::string_view property) const
{
    for (const auto &rows : properties)
        for (const Property &row : rows)
            if (row.name == property) return &row;
    return nullptr;
}

std::vector<const Property *> ClassInfo::all() const
{
    std::vector<const Property *> every;
    for (const auto &rows : properties)
        for (const Property &row : rows)
            every.push_back(&row);
    return every;
}

std::span<const ClassInfo> classes()
{
    return kClasses;
}

const ClassInfo *findClass(std::string_view name)
{
    const auto found = std::ranges::find(kClasses, name, &ClassInfo::name);
    return found == std::end(kClasses) ? nullptr : found;
}

const ClassInfo *classWith(std::string_view property)
{
    for (const ClassInfo &info : kClasses)
        if (info.find(property)) return &info;
    return nullptr;
}

const Property *findProperty(std::string_view name)
{
    const ClassInfo *info = classWith(name);
    return info ? info->find(name) : nullptr;
}

std::string valuesOf(const Property &property)
{
    if (property.rules.choices) return choicesOf(property);
    if (property.rules.least != INT64_MIN) return std::to_string(property.rules.least) + " or more";
    const char *values = kValues[static_cast<std::size_t>(property.type)];
    return values ? values : "";
}

} // namespace tools::config
