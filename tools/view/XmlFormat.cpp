// Message and Trace elements of the XML formatter. Nothing in them is escaped, so a value ends
// where its closing mark is followed by what can stand behind it, and not at the first mark.
#include "view/Formats.h"

#include <charconv>
#include <cstring>

namespace tools::view {

namespace {

constexpr std::string_view kMessageTag = "<Message Id=\"";
constexpr std::string_view kTraceTag = "<Trace>";
constexpr std::string_view kTraceLevelTag = "<Trace Level=\"";
constexpr std::string_view kSeverity = "\" Severity=\"";
constexpr std::string_view kTagEnd = "\">";
constexpr std::string_view kTextBegin = "<![CDATA[";
constexpr std::string_view kNoId = "None";
constexpr std::string_view kTraceKind = "Trace";
constexpr std::size_t kLongestOpening = 4096;

// Fields that are parsed by functions of their own have kPrefix here.
constexpr XmlElement kElements[] = {
    {" <Time Millis=\"", "</Time>", Field::kPrefix, false},
    {" <Server Format=\"", "</Server>", Field::kServer, true},
    {" <ProductId>", "</ProductId>", Field::kProduct, true},
    {" <Component>", "</Component>", Field::kComponent, true},
    {" <ProductInstance>", "</ProductInstance>", Field::kProductInstance, true},
    {" <LogText>", "]]></LogText>", Field::kPrefix, false},
    {" <LogAttribs>", "</LogAttribs>", Field::kPrefix, false},
    {" <Source FileName=\"", "\"/>", Field::kSourceFile, false},
    {" <TranslationInfo ", "</TranslationInfo>", Field::kCatalog, false},
    {" <Thread>", "</Thread>", Field::kThread, false},
    {" <Process>", "</Process>", Field::kProcess, false},
    {" <CorrelationId>", "</CorrelationId>", Field::kCorrelation, false},
    {" <Principal>", "</Principal>", Field::kClient, false},
};

bool takePrefix(std::string_view &text, std::string_view prefix)
{
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool takeSuffix(std::string_view &text, std::string_view suffix)
{
    if (!text.ends_with(suffix)) return false;
    text.remove_suffix(suffix.size());
    return true;
}

// The text up to a mark, which is dropped with it; the whole text when it has none.
std::string_view takeUntil(std::string_view &text, std::string_view mark)
{
    const std::size_t end = text.find(mark);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + mark.size());
    return taken;
}

void parseOpening(Record &record, std::string_view line)
{
    takeSuffix(line, ">");
    takeSuffix(line, "\"");
    if (takePrefix(line, kMessageTag)) {
        record.kind = "Message";
        const std::size_t severity = line.rfind(kSeverity);
        record.id = line.substr(0, severity);
        if (record.id == kNoId) record.id = {};
        if (severity == std::string_view::npos) return;
        record.level = levelOfWord(line.substr(severity + kSeverity.size()));
        return;
    }
    record.kind = kTraceKind;
    if (takePrefix(line, kTraceLevelTag)) record.level = levelOfWord(line);
}

void parseTime(Record &record, std::string_view value)
{
    const auto result = std::from_chars(value.data(), value.data() + value.size(), record.millis);
    record.hasTime = result.ec == std::errc();
    if (!record.hasTime) return;
    value.remove_prefix(static_cast<std::size_t>(result.ptr - value.data()));
    if (takePrefix(value, kTagEnd)) record.time = value;
}

void parseServer(Record &record, std::string_view value)
{
    record[Field::kServerFormat] = takeUntil(value, kTagEnd);
    record[Field::kServer] = value;
}

void parseAttributes(Record &record, std::string_view value)
{
    while (takePrefix(value, "<Key>")) {
        Pair pair;
        pair.key = takeUntil(value, "</Key><Value>");
        std::size_t end = value.find("</Value><Key>");
        if (end == std::string_view::npos) end = value.rfind("</Value>");
        pair.value = value.substr(0, end);
        value.remove_prefix(std::min(value.size(), pair.value.size() + 8));
        record.attributes.push_back(pair);
    }
}

// The line is a number and stands last, the function before it; quotes in the values do no harm.
void parseSource(Record &record, std::string_view value)
{
    constexpr std::string_view kLine = "\" Line=\"";
    constexpr std::string_view kMethod = "\" Method=\"";
    if (const std::size_t line = value.rfind(kLine); line != std::string_view::npos) {
        record[Field::kLine] = value.substr(line + kLine.size());
        value = value.substr(0, line);
    }
    if (const std::size_t method = value.find(kMethod); method != std::string_view::npos) {
        record[Field::kFunction] = value.substr(method + kMethod.size());
        value = value.substr(0, method);
    }
    record[Field::kSourceFile] = value;
    if (value != kNoId || record[Field::kFunction] != kNoId || record.has(Field::kLine)) return;
    record[Field::kSourceFile] = record[Field::kFunction] = {}; // what a trace without source has
}

void parseParameters(Record &record, std::string_view value)
{
    constexpr std::string_view kEnd = "]]></Param>";
    while (takePrefix(value, "<Param><![CDATA[")) {
        std::size_t end = value.find("]]></Param><Param><![CDATA[");
        if (end == std::string_view::npos) end = value.rfind(kEnd);
        const std::string_view parameter = value.substr(0, end);
        record.parameters.push_back(parameter);
        value.remove_prefix(std::min(value.size(), parameter.size() + kEnd.size()));
    }
}

void parseTranslation(Record &record, std::string_view value)
{
    takePrefix(value, "Type=\"XPG4\" Catalog=\"");
    record[Field::kCatalog] = takeUntil(value, "\" MsgKey=\"");
    record[Field::kMessageKey] = takeUntil(value, "\" SetId=\"");
    record[Field::kMessageSet] = takeUntil(value, kTagEnd);
    parseParameters(record, value);
}

void parseElement(Record &record, const XmlElement &element, std::string_view value)
{
    switch (element.begin[2]) {
    case 'L':
        if (element.begin == " <LogAttribs>") return parseAttributes(record, value);
        takePrefix(value, kTextBegin);
        record.text = value;
        return;
    case 'S':
        if (element.isProduct) return parseServer(record, value);
        return parseSource(record, value);
    case 'T':
        if (element.field == Field::kCatalog) return parseTranslation(record, value);
        if (element.field == Field::kPrefix) return parseTime(record, value);
        break;
    default: break;
    }
    record[element.field] = value;
}

// True at what can stand behind an element.
bool canFollow(std::string_view rest)
{
    return rest.empty() || rest.starts_with("</") || rest.starts_with(kMessageTag) ||
           rest.starts_with("<Trace") || xmlElementAt(rest);
}

// The length of an element's value; the whole text when the end is missing.
std::size_t valueLength(std::string_view text, std::string_view mark)
{
    for (std::size_t end = text.find(mark); end != std::string_view::npos;
         end = text.find(mark, end + 1)) {
        const std::string_view behind = text.substr(end + mark.size());
        if (behind.empty() || (behind.front() == '\n' && canFollow(behind.substr(1)))) return end;
    }
    return text.size();
}

// Reads one element or skips one line.
void takeElement(Record &record, std::string_view &rest)
{
    const XmlElement *element = xmlElementAt(rest);
    if (!element) {
        takeUntil(rest, "\n");
        return;
    }
    rest.remove_prefix(element->begin.size());
    const std::size_t length = valueLength(rest, element->end);
    parseElement(record, *element, rest.substr(0, length));
    rest.remove_prefix(std::min(rest.size(), length + element->end.size() + 1));
}

} // namespace

const XmlElement *xmlElementAt(std::string_view bytes)
{
    if (bytes.size() < 3 || bytes[1] != '<') return nullptr;
    for (const XmlElement &element : kElements)
        if (element.begin[2] == bytes[2] && bytes.starts_with(element.begin)) return &element;
    return nullptr;
}

std::size_t findXmlOpening(std::string_view line)
{
    if (!line.ends_with('>')) return std::string_view::npos;
    std::size_t place = line.rfind(kMessageTag);
    if (place != std::string_view::npos && line.ends_with(kTagEnd)) return place;
    place = line.rfind(kTraceTag);
    if (place != std::string_view::npos && place + kTraceTag.size() == line.size()) return place;
    return line.ends_with(kTagEnd) ? line.rfind(kTraceLevelTag) : std::string_view::npos;
}

Begins xmlBegins(std::string_view bytes, bool isLast)
{
    const std::size_t shortTag = std::min(bytes.size(), kTraceTag.size() - 1);
    const std::string_view begin = bytes.substr(0, shortTag);
    if (!kMessageTag.starts_with(begin) && !kTraceTag.starts_with(begin)) return Begins::kNo;
    const Begins tooShort = isLast ? Begins::kNo : Begins::kUnclear;
    const std::string_view head = bytes.substr(0, kLongestOpening);
    const std::size_t end = head.find('\n');
    if (end == std::string_view::npos)
        return head.size() == kLongestOpening ? Begins::kNo : tooShort;
    if (findXmlOpening(head.substr(0, end)) != 0) return Begins::kNo;
    const std::string_view second = bytes.substr(end + 1, kXmlTimeLine.size());
    if (second == kXmlTimeLine) return Begins::kYes;
    return kXmlTimeLine.starts_with(second) ? tooShort : Begins::kNo;
}

// A trace has no identifier of its own; what its text begins with takes the place.
void parseXml(Record &record, Depth depth)
{
    std::string_view rest = record.raw;
    parseOpening(record, takeUntil(rest, "\n"));
    takeElement(record, rest); // the time
    const bool isTrace = record.kind == kTraceKind;
    const auto isEnough = [&] {
        return depth == Depth::kHead && (!isTrace || record.text.data() != nullptr);
    };
    while (!rest.empty() && !isEnough())
        takeElement(record, rest);
    if (isTrace) record.id = record.text.substr(0, idLength(record.text));
}

void parseXmlProduct(std::string_view bytes, Record &record)
{
    while (!bytes.empty())
        takeElement(record, bytes);
}

} // namespace tools::view
