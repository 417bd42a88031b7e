#include "codeset/Mapping.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <string_view>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iconv.h>

namespace codeset {

namespace {

constexpr char kShiftOut = 0x0E;
constexpr char kShiftIn = 0x0F;

// Code points as the machine keeps them.
constexpr bool kIsLittleEndian = std::endian::native == std::endian::little;
constexpr const char *kCodePoints = kIsLittleEndian ? "UTF-32LE" : "UTF-32BE";

class Converter {
  public:
    Converter(const char *to, const char *from) : handle_(iconv_open(to, from))
    {
        if (handle_ == iconv_t(-1))
            throw std::runtime_error("the platform cannot convert " + std::string(from) + " to " +
                                     to);
    }
    ~Converter() { iconv_close(handle_); }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    // Converts one whole text; 0 or the error.
    int convert(std::string_view text, std::string &result)
    {
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        char area[64];
        char *out = area;
        std::size_t room = sizeof area;
        char *in = const_cast<char *>(text.data());
        std::size_t size = text.size();
        const bool ok = iconv(handle_, &in, &size, &out, &room) != std::size_t(-1) &&
                        iconv(handle_, nullptr, nullptr, &out, &room) != std::size_t(-1);
        const int error = ok ? 0 : errno;
        result.assign(area, out);
        return error;
    }

  private:
    iconv_t handle_;
};

enum class Outcome { kValue, kLost, kIncomplete, kInvalid };

class Decoder {
  public:
    explicit Decoder(const char *source) : converter_(kCodePoints, source) {}

    Outcome decode(std::string_view code, char16_t &value)
    {
        const int error = converter_.convert(code, text_);
        if (error == EINVAL) return Outcome::kIncomplete;
        if (error != 0 || text_.empty()) return Outcome::kInvalid;
        std::uint32_t point = 0;
        std::memcpy(&point, text_.data(), sizeof point);
        if (text_.size() != sizeof point || point >= kValueCount) return Outcome::kLost;
        value = static_cast<char16_t>(point);
        return Outcome::kValue;
    }

  private:
    Converter converter_;
    std::string text_;
};

// Walks through the codes of one code set.
class Reader {
  public:
    Reader(const CodeSet &codeSet, Mapping &mapping)
        : family_(codeSet.family), decoder_(codeSet.source), mapping_(mapping)
    {}

    void read()
    {
        for (unsigned byte = 0; byte < 256; ++byte)
            if (!isShift(byte)) visit(std::string(1, static_cast<char>(byte)));
        if (family_ == kEbcdicDoubleByte) readShifted();
        if (family_ == kGb18030) readFourBytes();
        std::sort(mapping_.values.begin(), mapping_.values.end());
    }

  private:
    static constexpr std::size_t kLongest = 4;

    bool isShift(unsigned byte) const
    {
        return family_ == kEbcdicDoubleByte && (byte == kShiftOut || byte == kShiftIn);
    }

    // Bytes that may follow: in characters of more than two, only those that do.
    unsigned firstTrail(std::size_t length) const { return length > 1 ? 0xA0 : 0; }

    void visit(const std::string &code)
    {
        char16_t value = kNoValue;
        const Outcome outcome = decoder_.decode(code, value);
        if (outcome == Outcome::kIncomplete) return visitLonger(code);
        if (outcome != Outcome::kInvalid) note(code, code, outcome, value);
    }

    void visitLonger(const std::string &code)
    {
        // Four bytes of GB18030 are counted through elsewhere.
        if (code.size() == kLongest || (family_ == kGb18030 && code.size() == 2)) return;
        auto &length = mapping_.lengths[static_cast<unsigned char>(code[0])];
        length = std::max<unsigned char>(length, static_cast<unsigned char>(code.size() + 1));
        for (unsigned byte = firstTrail(code.size()); byte < 256; ++byte)
            visit(code + static_cast<char>(byte));
    }

    void note(const std::string &code, const std::string &key, Outcome outcome, char16_t value)
    {
        auto &length = mapping_.lengths[static_cast<unsigned char>(code[0])];
        length = std::max<unsigned char>(length, static_cast<unsigned char>(code.size()));
        if (outcome == Outcome::kValue)
            mapping_.values.emplace_back(key, value);
        else
            ++mapping_.lostCodes;
    }

    void readShifted()
    {
        for (int lead = 0x40; lead <= 0xFE; ++lead)
            for (int trail = 0x40; trail <= 0xFE; ++trail) {
                const std::string code = {static_cast<char>(lead), static_cast<char>(trail)};
                char16_t value = kNoValue;
                const Outcome outcome = decoder_.decode(kShiftOut + code + kShiftIn, value);
                if (outcome == Outcome::kValue || outcome == Outcome::kLost)
                    note(code, code, outcome, value);
            }
    }

    // The numbers of four bytes that lie before the supplementary planes.
    void readFourBytes()
    {
        constexpr int kFourByteValues = 39420;
        for (int number = 0; number < kFourByteValues; ++number) {
            const std::string code = {static_cast<char>(number / 12600 + 0x81),
                                      static_cast<char>(number / 1260 % 10 + 0x30),
                                      static_cast<char>(number / 10 % 126 + 0x81),
                                      static_cast<char>(number % 10 + 0x30)};
            visit(code);
        }
    }

    Family family_;
    Decoder decoder_;
    Mapping &mapping_;
};

// The code with which the source writes what it does not have.
std::string substituteOf(Family family)
{
    const bool hasOne =
        family == kAsciiSingleByte || family == kEbcdicSingleByte || family == kEbcdicDoubleByte;
    return hasOne ? "\x3f" : "";
}

char16_t substituteValueOf(Family family)
{
    return family == kAsciiSingleByte ? u'\x3f' : u'\x1a';
}

std::string withoutShifts(const std::string &code)
{
    const bool isShifted = code.size() == 4 && code[0] == kShiftOut && code[3] == kShiftIn;
    return isShifted ? code.substr(1, 2) : code;
}

std::size_t longestCode(Family family)
{
    switch (family) {
    case kAsciiSingleByte:
    case kEbcdicSingleByte: return 1;
    case kAsciiDoubleByte:
    case kEbcdicDoubleByte: return 2;
    default: return 4;
    }
}

void readCodes(const CodeSet &codeSet, Mapping &mapping)
{
    Converter encoder(codeSet.source, "UTF-16LE");
    const std::string substitute = substituteOf(codeSet.family);
    std::string code;
    for (std::size_t value = 0; value < kValueCount; ++value) {
        const char unit[] = {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
        if (encoder.convert({unit, sizeof unit}, code) != 0 || code.empty()) continue;
        if (codeSet.family == kEbcdicDoubleByte) code = withoutShifts(code);
        if (code == substitute && value != substituteValueOf(codeSet.family)) continue;
        if (code.size() > longestCode(codeSet.family))
            ++mapping.lostValues;
        else
            mapping.codes[value] = code;
    }
}

// Six codes stand for characters beyond the plane, which ranges cannot say; they keep the private
// values that they had before those characters were added.
void keepPrivateValues(Mapping &mapping)
{
    static constexpr std::pair<std::string_view, char16_t> kPrivate[] = {
        {"\xFE\x51", 0xE816}, {"\xFE\x52", 0xE817}, {"\xFE\x53", 0xE818},
        {"\xFE\x6C", 0xE831}, {"\xFE\x76", 0xE83B}, {"\xFE\x91", 0xE855}};
    for (const auto &[code, value] : kPrivate) {
        if (!mapping.codes[value].empty()) continue;
        mapping.values.emplace_back(code, value);
        mapping.codes[value] = code;
        --mapping.lostCodes;
    }
    std::sort(mapping.values.begin(), mapping.values.end());
}

// A code of one byte whose value the published code page says.
struct Published {
    std::string_view codeSet;
    unsigned char code;
    char16_t value; // kNoValue: there is nothing
};

constexpr Published kPublished[] = {
#define PUBLISHED(name, code, value, reason) {name, code, value},
#include <published.def>
#undef PUBLISHED
};

std::string codeOf(const Published &row)
{
    return std::string(1, static_cast<char>(row.code));
}

void correctValue(const Published &row, Mapping &mapping)
{
    const std::string code = codeOf(row);
    std::erase_if(mapping.values, [&](const auto &entry) { return entry.first == code; });
    mapping.lengths[row.code] = row.value != kNoValue;
    if (row.value == kNoValue) return;
    mapping.values.emplace_back(code, row.value);
    if (mapping.codes[row.value].empty()) mapping.codes[row.value] = code;
}

// All wrong codes are taken away first, since rows may exchange two of them.
void correctAsPublished(const CodeSet &codeSet, Mapping &mapping)
{
    std::vector<Published> rows;
    for (const Published &row : kPublished)
        if (row.codeSet == codeSet.name) rows.push_back(row);
    for (const Published &row : rows)
        std::replace(mapping.codes.begin(), mapping.codes.end(), codeOf(row), std::string());
    for (const Published &row : rows)
        correctValue(row, mapping);
    std::sort(mapping.values.begin(), mapping.values.end());
}

// Where the platform writes an ASCII character as a code that it reads as another character, that
// character gets the code of one byte that is read as it, or none. Shift bytes are no codes.
void keepAsciiApart(Mapping &mapping)
{
    std::array<std::string, 128> readAs;
    for (const auto &[code, value] : mapping.values)
        if (code.size() == 1 && value < readAs.size() && readAs[value].empty())
            readAs[value] = code;
    const auto isReadAs = [&](const std::string &code, char16_t value) {
        return std::binary_search(mapping.values.begin(), mapping.values.end(),
                                  std::pair(code, value));
    };
    for (char16_t value = 0; value < readAs.size(); ++value)
        if (std::string &code = mapping.codes[value]; !code.empty() && !isReadAs(code, value))
            code = readAs[value];
}

} // namespace

Mapping readMapping(const CodeSet &codeSet)
{
    Mapping mapping;
    Reader(codeSet, mapping).read();
    readCodes(codeSet, mapping);
    if (codeSet.family == kGb18030) keepPrivateValues(mapping);
    correctAsPublished(codeSet, mapping);
    keepAsciiApart(mapping);
    return mapping;
}

} // namespace codeset
