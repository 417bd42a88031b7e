// Lines of the trace formatter: fields between " - ", each of which may be empty.
#include "view/Formats.h"
#include "view/Times.h"

namespace tools::view {

namespace {

constexpr std::string_view kSeparator = " - ";
constexpr std::size_t kHeadLength = kStampLength + 3; // mark, bracket, time, bracket

// The fields of a line from left to right.
class Fields {
  public:
    explicit Fields(std::string_view line) : rest_(line) {}

    std::string_view next()
    {
        const std::size_t end = rest_.find(kSeparator);
        const std::string_view field = rest_.substr(0, end);
        skip(field.size() + kSeparator.size());
        return field;
    }

    // A function's name may hold the separator; an identifier behind it, or none, shows where the
    // field really ends.
    std::string_view nextBeforeId()
    {
        for (std::size_t end = rest_.find(kSeparator); end != std::string_view::npos;
             end = rest_.find(kSeparator, end + 1)) {
            const std::string_view behind = rest_.substr(end + kSeparator.size());
            if (!behind.substr(idLength(behind)).starts_with(kSeparator)) continue;
            const std::string_view field = rest_.substr(0, end);
            skip(end + kSeparator.size());
            return field;
        }
        return next();
    }

    std::string_view rest() const { return rest_; }

  private:
    void skip(std::size_t length) { rest_.remove_prefix(std::min(length, rest_.size())); }

    std::string_view rest_;
};

std::string_view trimmed(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

void setUnlessEmpty(Record &record, Field field, std::string_view value)
{
    if (!value.empty()) record[field] = value;
}

void parseIds(Record &record, std::string_view ids)
{
    const std::size_t thread = ids.find('t');
    if (thread != std::string_view::npos)
        setUnlessEmpty(record, Field::kThread, ids.substr(thread + 1));
    if (ids.starts_with('p'))
        setUnlessEmpty(record, Field::kProcess, ids.substr(1, ids.find(':') - 1));
}

// file:function(line), of which any may be missing.
void parseSource(Record &record, std::string_view source)
{
    const std::size_t open = source.rfind('(');
    if (source.ends_with(')') && open != std::string_view::npos) {
        const std::string_view line = source.substr(open + 1, source.size() - open - 2);
        if (!line.empty() && line.find_first_not_of("-0123456789") == std::string_view::npos) {
            record[Field::kLine] = line;
            source = source.substr(0, open);
        }
    }
    const std::size_t colon = source.find(':');
    setUnlessEmpty(record, Field::kSourceFile, source.substr(0, colon));
    if (colon != std::string_view::npos) record[Field::kFunction] = source.substr(colon + 1);
}

} // namespace

Begins traceBegins(std::string_view bytes, bool isLast)
{
    if (bytes.size() < kHeadLength && !isLast) return Begins::kUnclear;
    const bool begins = bytes.size() >= kHeadLength && bytes[0] == kTraceMark && bytes[1] == '[' &&
                        beginsWithStamp(bytes.substr(2)) && bytes[kHeadLength - 1] == ']';
    return begins ? Begins::kYes : Begins::kNo;
}

void parseTrace(Record &record)
{
    record.time = record.raw.substr(2, kStampLength);
    const auto millis = readStamp(record.time);
    record.hasTime = millis.has_value();
    record.millis = millis.value_or(0);
    std::string_view rest = record.raw.substr(kHeadLength);
    if (rest.starts_with(kSeparator)) rest.remove_prefix(kSeparator.size());
    Fields fields(rest);
    const std::string_view word = trimmed(fields.next());
    record.level = word.empty() ? Level::kNone : levelOfWord(word);
    setUnlessEmpty(record, Field::kServer, fields.next());
    parseIds(record, fields.next());
    parseSource(record, fields.nextBeforeId());
    record.id = fields.next();
    record.text = fields.rest();
}

} // namespace tools::view
