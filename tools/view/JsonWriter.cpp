// Records as JSON lines. The keys are described in docs/view.md.
#include <charconv>

#include "Visible.h"
#include "view/Times.h"
#include "view/Utf8.h"
#include "view/Writers.h"

namespace tools::view {

namespace {

struct FieldKey {
    const char *key;
    bool isNumber;
};

// In the order of Field.
constexpr FieldKey kKeys[kFieldCount] = {
    {"sourceFile", false},      {"function", false}, {"line", true},
    {"organization", false},    {"product", false},  {"component", false},
    {"productInstance", false}, {"client", false},   {"server", false},
    {"serverFormat", false},    {"process", false},  {"thread", false},
    {"correlationId", false},   {"catalog", false},  {"messageSet", true},
    {"messageKey", true},       {"fields", false},
};

constexpr char kHex[] = "0123456789abcdef";
constexpr std::string_view kReplacement = "\\ufffd";

bool standsForItself(unsigned char byte)
{
    return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
}

void appendUnit(std::string &out, unsigned unit)
{
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kHex[unit >> shift & 15];
}

void appendEscape(std::string &out, char32_t character)
{
    switch (character) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\n': out += "\\n"; return;
    case '\t': out += "\\t"; return;
    default: break;
    }
    if (character < 0x10000) return appendUnit(out, character);
    appendUnit(out, 0xD800 + ((character - 0x10000) >> 10)); // a pair of surrogates
    appendUnit(out, 0xDC00 + (character & 0x3FF));
}

// Appends the character or stray byte at the front of a text; returns its length.
std::size_t appendFront(std::string &out, std::string_view text)
{
    const std::size_t length = characterLength(text);
    if (length == 0) {
        out += kReplacement;
        return 1;
    }
    const char32_t character = decode(text.substr(0, length));
    if (character < 0x80 || !isVisible(character))
        appendEscape(out, character);
    else
        out += text.substr(0, length);
    return length;
}

void appendNumber(std::string &out, std::int64_t number)
{
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    out.append(digits, result.ptr);
}

void appendKey(std::string &out, std::string_view key)
{
    out += out.ends_with('{') ? "" : ",";
    appendJsonString(out, key);
    out += ':';
}

void appendText(std::string &out, const char *key, std::string_view value)
{
    appendKey(out, key);
    appendJsonString(out, value);
}

void appendInteger(std::string &out, const char *key, std::int64_t value)
{
    appendKey(out, key);
    appendNumber(out, value);
}

// A number that is none, in a damaged record, stays a string.
void appendField(std::string &out, const FieldKey &key, std::string_view value)
{
    std::int64_t number = 0;
    const char *end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    if (key.isNumber && result.ec == std::errc() && result.ptr == end)
        appendInteger(out, key.key, number);
    else
        appendText(out, key.key, value);
}

void appendAttributes(std::string &out, const Record &record)
{
    if (record.attributes.empty()) return;
    appendKey(out, "attributes");
    out += '{';
    for (const Pair &pair : record.attributes) {
        appendKey(out, pair.key);
        appendJsonString(out, pair.value);
    }
    out += '}';
}

void appendParameters(std::string &out, const Record &record)
{
    if (record.parameters.empty()) return;
    appendKey(out, "parameters");
    out += '[';
    for (const std::string_view parameter : record.parameters) {
        out += out.ends_with('[') ? "" : ",";
        appendJsonString(out, parameter);
    }
    out += ']';
}

void appendRecord(std::string &out, const Record &record)
{
    out += '{';
    if (record.hasTime) {
        appendText(out, "time", writeStamp(record.millis));
        appendInteger(out, "millis", record.millis);
    }
    if (record.level != Level::kNone) appendText(out, "level", nameOf(record.level));
    if (!record.id.empty()) appendText(out, "id", record.id);
    appendText(out, "text", record.text);
    if (!record.kind.empty()) appendText(out, "kind", record.kind);
    for (std::size_t i = 0; i < kFieldCount; ++i)
        if (record.fields[i].data()) appendField(out, kKeys[i], record.fields[i]);
    appendAttributes(out, record);
    appendParameters(out, record);
    appendText(out, "format", nameOf(record.format));
    appendText(out, "file", *record.file);
    appendInteger(out, "offset", static_cast<std::int64_t>(record.offset));
    if (record.isCut) {
        appendKey(out, "cut");
        out += "true";
    }
    out += '}';
}

class JsonWriter : public Writer {
  public:
    explicit JsonWriter(FILE *stream) : stream_(stream) {}

    void write(const Record &record) override
    {
        line_.clear();
        appendRecord(line_, record);
        line_ += '\n';
        std::fwrite(line_.data(), 1, line_.size(), stream_);
    }

  private:
    FILE *stream_;
    std::string line_;
};

} // namespace

void appendJsonString(std::string &out, std::string_view text)
{
    out += '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && standsForItself(static_cast<unsigned char>(text[plain])))
            ++plain;
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (!text.empty()) text.remove_prefix(appendFront(out, text));
    }
    out += '"';
}

std::unique_ptr<Writer> makeJsonWriter(FILE *stream)
{
    return std::make_unique<JsonWriter>(stream);
}

} // namespace tools::view
