// The properties of the library's classes, in groups that classes share. Everything that is known
// of a property stands in its row: `olvex config` checks files by it, docs/configuration.md is made
// from it, and the class applies it by the function `apply<"NAME">` beside its variables. The
// library reads these tables while it is compiled and keeps the names alone.
#pragma once

#include "schema/Property.h"

namespace olvex::schema {

// Whatever is neither true nor false counts as what holds while nothing is set.
constexpr Property flag(const char *name, const char *initial, const char *help)
{
    return {name, Type::Boolean, initial, help, {.fallback = initial}};
}

inline constexpr Property kClassName[] = {
    {"className",
     Type::Class,
     "",
     "Class of the object, read when it is made.",
     {.isRequired = true}},
};

inline constexpr Property kDescription[] = {
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

inline constexpr Property kListeners[] = {
    {"listenerNames", Type::Listeners, "",
     "Filters and handlers to which the object passes events, in this order."},
};

inline constexpr Property kLogger[] = {
    {"level", Type::Level, "DEBUG_MIN", "Least severe level of the events that the logger takes."},
};

inline constexpr Property kProblemLogger[] = {
    {"organization", Type::Text, "", "Organization that every event carries."},
    {"product", Type::Text, "", "Product that every event carries."},
    {"component", Type::Text, "", "Component that every event carries."},
    {"productInstance", Type::Text, "", "Instance of the product that every event carries."},
    {"client", Type::Text, "", "Client, the principal, that every event carries."},
    {"server", Type::Text, "the host's full name", "Server that every event carries."},
    {"serverFormat", Type::Text, "IP", "What kind of name the server's is."},
};

inline constexpr Property kLevelFilter[] = {
    {"level", Type::Level, "ALL", "Least severe level of the events that pass."},
};

inline constexpr Property kIdFilter[] = {
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

inline constexpr Property kHandler[] = {
    {"formatterName", Type::Formatter, "olvex.defaultFormatter",
     "Formatter that makes the text of the records."},
};

inline constexpr Property kFileHandler[] = {
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

inline constexpr Property kOwnFile[] = {
    flag("appending", "true", "Whether an existing file is kept when it is opened."),
};

inline constexpr Property kSharedFile[] = {
    {"MPFileSemKey",
     Type::Key,
     "31821",
     "Key of the System V semaphore of those that share the log.",
     {.fallback = "31821"}},
    flag("emptyUncopied", "true", "Whether a rollover empties the log even when its copy failed."),
};

inline constexpr Property kBasicFormatter[] = {
    {"separator", Type::Text, "a blank", "Text between the parts of a line."},
    {"dateTimeFormat", Type::Text, "date, time, milliseconds, zone",
     "Format of the time of an event, as of strftime."},
    {"locale", Type::Text, "the process's", "Locale into which messages are translated."},
};

inline constexpr Property kXmlFormatter[] = {
    flag("singleServer", "false", "Whether the server is written once for a file."),
    flag("singleProduct", "false", "Whether the product is written once for a file."),
    flag("singleComponent", "false", "Whether the component is written once for a file."),
    flag("singleProductId", "false",
         "Whether the instance of the product is written once for a file."),
    flag("forceAsMessage", "false", "Whether all events are written as messages."),
    flag("forceAsTrace", "false", "Whether all events are written as trace records."),
};

inline constexpr Property kTriggered[] = {
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

inline constexpr Property kFileCopy[] = {
    {"filesToCopy",
     Type::Text,
     "",
     "Files to copy, between blanks; a name with blanks stands in double quotes.",
     {.isRequired = true}},
    {"zipFileName", Type::Text, "", "Archive to make instead of copying the files one by one."},
    {"zipCmdPath", Type::Program, "", "Full path of the zip program that makes the archive."},
};

} // namespace olvex::schema
