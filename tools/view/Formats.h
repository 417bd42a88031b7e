// What the formats have in common and in what they differ: how a record of each begins, and how its
// bytes are taken apart. One file a format; Framing.cpp finds the records' ends.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "view/Record.h"

namespace tools::view {

// Whether a record begins at a place. kUnclear: more bytes are needed to say.
enum class Begins : std::uint8_t { kNo, kYes, kUnclear };

// How much of a record is wanted.
enum class Depth : std::uint8_t {
    kHead, // time, level and identifier; text records give their text too
    kAll,
};

// What the user said of the logs.
struct LogOptions {
    bool formats[kFormatCount] = {true, true, true, true}; // those that are looked for
    std::string timeLayout;    // of text records, for strptime(3); empty: the formatters' own
    std::string separator;     // of text records; empty: a blank, or the sign behind the time
    bool knowsFields = false;  // whether `fields` says what a text record has
    std::vector<Field> fields; // between the time and the message, in the order of the line
};

// `isLast`: nothing follows the bytes that are given.
Begins textBegins(std::string_view bytes, bool isLast, const LogOptions &options);
Begins traceBegins(std::string_view bytes, bool isLast);
Begins consoleBegins(std::string_view bytes, bool isLast);
Begins xmlBegins(std::string_view bytes, bool isLast);

// Takes a record apart; `record.raw` is set and everything else is clear.
void parseText(Record &record, const LogOptions &options);
void parseTrace(Record &record);
void parseConsole(Record &record);
void parseXml(Record &record, Depth depth);

// The character before each trace record.
inline constexpr char kTraceMark = '\x1e';

// XML: the line with the time is the second of each record, and what gives its first line away when
// that does not begin a line.
inline constexpr std::string_view kXmlTimeLine = " <Time Millis=\"";

// Elements of an XML record. A line that begins with one reaches to the line that ends with `end`.
struct XmlElement {
    std::string_view begin;
    std::string_view end;
    Field field;
    bool isProduct; // may stand once before the records of a stream
};
const XmlElement *xmlElementAt(std::string_view bytes);

// Where in a line the opening tag of a record stands that reaches to the end of the line.
std::size_t findXmlOpening(std::string_view line);

// Reads lines of product information that stand before a record.
void parseXmlProduct(std::string_view bytes, Record &record);

} // namespace tools::view
