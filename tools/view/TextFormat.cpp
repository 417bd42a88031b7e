// Lines of the basic formatter: time, values of properties, message. The line does not say which
// properties it has, nor the level.
#include "view/Formats.h"
#include "view/Times.h"

namespace tools::view {

namespace {

constexpr std::size_t kLongestLayout = 128;
constexpr std::size_t kMostProperties = 8;
constexpr std::size_t kFieldsWithLine = 3; // source file, function, line

bool isWordEnd(std::string_view text, std::size_t end)
{
    if (end >= text.size()) return true;
    const char c = text[end];
    return c == ' ' || c == ':' || c == '\n' || c == '\t' || c == ',' || c == '.';
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The separator that a line seems to have: one that was configured shows when it is no blank.
std::string_view separatorOf(std::string_view rest, const LogOptions &options)
{
    if (!options.separator.empty()) return options.separator;
    return rest.empty() || rest.front() == '\n' ? std::string_view(" ") : rest.substr(0, 1);
}

// Gives the fields that the user named their values, as far as the line has them.
void splitKnown(Record &record, std::string_view separator, const LogOptions &options)
{
    for (const Field field : options.fields) {
        const std::size_t end = record.text.find(separator);
        if (end == std::string_view::npos) return;
        record[field] = record.text.substr(0, end);
        record.text.remove_prefix(end + separator.size());
    }
}

// What stands before an identifier must be values of properties. Three that end with a number are
// the place in the source.
void takePrefix(Record &record, std::size_t length, std::string_view separator)
{
    std::string_view prefix = record.text.substr(0, length - separator.size());
    record[Field::kPrefix] = prefix;
    record.text.remove_prefix(length);
    std::string_view words[kFieldsWithLine];
    for (std::string_view &word : words) {
        const std::size_t end = prefix.find(separator);
        word = prefix.substr(0, end);
        prefix.remove_prefix(end == std::string_view::npos ? prefix.size()
                                                           : end + separator.size());
    }
    if (!isNumber(words[2])) return;
    record[Field::kSourceFile] = words[0];
    record[Field::kFunction] = words[1];
    record[Field::kLine] = words[2];
}

// Finds the identifier at the beginning of the text or behind at most eight values.
void findId(Record &record, std::string_view separator)
{
    const std::string_view line = record.text.substr(0, record.text.find('\n'));
    std::size_t place = 0;
    for (std::size_t count = 0; count <= kMostProperties; ++count) {
        const std::string_view word = line.substr(place);
        const std::size_t length = idLength(word);
        if (length > 0 && (count == 0 || isWordEnd(word, length))) {
            record.id = word.substr(0, length);
            if (place > 0) takePrefix(record, place, separator);
            return;
        }
        const std::size_t end = line.find(separator, place);
        if (end == std::string_view::npos) return;
        place = end + separator.size();
    }
}

std::size_t readTime(Record &record, const LogOptions &options)
{
    FoundTime time{kStampLength, {}};
    if (beginsWithStamp(record.raw))
        time.millis = readStamp(record.raw);
    else if (const auto found = readTimeAs(options.timeLayout, record.raw))
        time = *found;
    record.hasTime = time.millis.has_value();
    record.millis = time.millis.value_or(0);
    record.time = record.raw.substr(0, time.length);
    return record.time.size();
}

} // namespace

Begins textBegins(std::string_view bytes, bool isLast, const LogOptions &options)
{
    const std::size_t longest = options.timeLayout.empty() ? kStampLength : kLongestLayout;
    const bool isShort = bytes.size() < longest && !isLast;
    if (isShort && bytes.find('\n') == std::string_view::npos) return Begins::kUnclear;
    if (beginsWithStamp(bytes)) return Begins::kYes;
    if (options.timeLayout.empty()) return Begins::kNo;
    return readTimeAs(options.timeLayout, bytes) ? Begins::kYes : Begins::kNo;
}

void parseText(Record &record, const LogOptions &options)
{
    record.text = record.raw.substr(readTime(record, options));
    const std::string_view separator = separatorOf(record.text, options);
    if (record.text.starts_with(separator)) record.text.remove_prefix(separator.size());
    if (options.knowsFields) {
        splitKnown(record, separator, options);
        record.id = record.text.substr(0, idLength(record.text));
    } else {
        findId(record, separator);
    }
    record.level = levelOfId(record.id);
}

} // namespace tools::view
