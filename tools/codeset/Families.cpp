// How each family lays its mapping out.
#include <algorithm>

#include "codeset/Image.h"

namespace codeset {

namespace {

unsigned byteAt(const std::string &code, std::size_t at)
{
    return static_cast<unsigned char>(code[at]);
}

// The values of codes by their bytes.
class Values {
  public:
    explicit Values(const Mapping &mapping) : values_(mapping.values) {}

    std::uint16_t of(const std::string &code) const
    {
        const auto found = from(code);
        return found != values_.end() && found->first == code ? found->second : kNoValue;
    }

    // The values of the 256 codes that begin with these bytes and have one more.
    std::string rowBehind(const std::string &prefix) const
    {
        Words row;
        for (int byte = 0; byte < 256; ++byte)
            row.add(of(prefix + static_cast<char>(byte)));
        return row.bytes();
    }

    // The bytes that follow a prefix in any code: the first, and the one behind the last.
    std::pair<unsigned, unsigned> bytesBehind(const std::string &prefix) const
    {
        unsigned first = 256, last = 0;
        for (auto at = from(prefix); at != values_.end() && at->first.starts_with(prefix); ++at) {
            if (at->first.size() == prefix.size()) continue;
            first = std::min(first, byteAt(at->first, prefix.size()));
            last = byteAt(at->first, prefix.size()) + 1;
        }
        return first < last ? std::pair(first, last) : std::pair(0u, 0u);
    }

  private:
    std::vector<std::pair<std::string, char16_t>>::const_iterator
    from(const std::string &code) const
    {
        return std::lower_bound(
            values_.begin(), values_.end(), code,
            [](const auto &entry, const std::string &wanted) { return entry.first < wanted; });
    }

    const std::vector<std::pair<std::string, char16_t>> &values_;
};

std::string oneByte(unsigned byte)
{
    return std::string(1, static_cast<char>(byte));
}

// The last one or two bytes of a code as a number.
std::uint16_t numberOf(const std::string &code)
{
    if (code.empty()) return kHole;
    const unsigned last = byteAt(code, code.size() - 1);
    const unsigned before = code.size() > 1 ? byteAt(code, code.size() - 2) : 0;
    return static_cast<std::uint16_t>(before << 8 | last);
}

// Sets the rows of the from-direction; `rowFrom` makes the row that begins with a value.
template <class RowFrom>
void addFromRows(Image &image, RowFrom rowFrom)
{
    for (unsigned high = 0; high < 256; ++high)
        image.set16(kFromRowsAt + 2 * high, image.add(rowFrom(high << 8)));
}

void addSingleByte(Image &image, const Mapping &mapping, std::uint16_t substituteValue)
{
    constexpr char kSubstitute = 0x3F;
    const Values values(mapping);
    for (unsigned byte = 0; byte < 256; ++byte)
        image.set16(kToValuesAt + 2 * byte, values.of(oneByte(byte)));
    addFromRows(image, [&](unsigned first) {
        std::string row(256, kSubstitute);
        for (unsigned low = 0; low < 256; ++low)
            if (const std::string &code = mapping.codes[first + low]; !code.empty())
                row[low] = code[0];
        return row;
    });
    image.set16(kSubstituteValueAt, substituteValue);
    image.setByte(kSubstituteAt, kSubstitute);
}

void addDoubleByte(Image &image, const Mapping &mapping)
{
    const Values values(mapping);
    image.set16(kToValuesAt, image.add(values.rowBehind({})));
    for (unsigned lead = 1; lead < 256; ++lead)
        image.set16(kToValuesAt + 2 * lead, image.add(values.rowBehind(oneByte(lead))));
    addFromRows(image, [&](unsigned first) {
        Words row;
        for (unsigned low = 0; low < 256; ++low)
            row.add(numberOf(mapping.codes[first + low]));
        return row.bytes();
    });
}

void addClasses(Image &image, const Mapping &mapping)
{
    for (unsigned byte = 0; byte < 256; ++byte)
        image.setByte(kClassesAt + byte,
                      mapping.lengths[byte] ? mapping.lengths[byte] : kInvalidClass);
}

// The node of the trie behind a prefix, for characters of `length` bytes: how many bytes may
// follow, the first of them, and for each the next node or the value.
std::uint16_t addNode(Image &image, const Values &values, const std::string &prefix,
                      std::size_t length)
{
    const auto [first, last] = values.bytesBehind(prefix);
    Words node;
    node.add(static_cast<std::uint16_t>(last - first)).add(static_cast<std::uint16_t>(first));
    for (unsigned byte = first; byte < last; ++byte) {
        const std::string code = prefix + oneByte(byte);
        node.add(code.size() == length ? values.of(code) : addNode(image, values, code, length));
    }
    return image.add(node.bytes());
}

// What stands before the last two bytes of a code, and how many bytes that are.
std::uint16_t addPrefix(Image &image, const std::string &code)
{
    constexpr std::size_t kPrefixSize = 16;
    std::string record(kPrefixSize - 2, '\0');
    const std::size_t count = code.size() - 2;
    record.replace(0, count, code, 0, count);
    return image.add(record + Words().add(static_cast<std::uint16_t>(count)).bytes(), kPrefixSize);
}

std::string pairOf(Image &image, const std::string &code)
{
    std::uint16_t prefix = kHole;
    if (code.size() == 1) prefix = 0;
    if (code.size() > 1) prefix = addPrefix(image, code);
    return Words().add(prefix).add(numberOf(code)).bytes();
}

void addMultiByte(Image &image, const Mapping &mapping)
{
    const Values values(mapping);
    for (const std::string &code : mapping.codes) // first, so that they stand at their places
        if (code.size() > 1) addPrefix(image, code);
    image.set16(kToValuesAt, image.add(values.rowBehind({})));
    for (unsigned lead = 1; lead < 256; ++lead)
        image.set16(kToValuesAt + 2 * lead,
                    addNode(image, values, oneByte(lead), mapping.lengths[lead]));
    addFromRows(image, [&](unsigned first) {
        std::string row;
        for (unsigned low = 0; low < 256; ++low)
            row += pairOf(image, mapping.codes[first + low]);
        return row;
    });
}

} // namespace

std::string makeTable(const CodeSet &codeSet, const Mapping &mapping)
{
    Image image(codeSet);
    switch (codeSet.family) {
    case kAsciiSingleByte: addSingleByte(image, mapping, u'?'); break;
    case kEbcdicSingleByte:
        addSingleByte(image, mapping, u'\x1A');
        image.set16(kEbcdicMarkAt, kEbcdicMark);
        break;
    case kAsciiMultiByte:
        addClasses(image, mapping);
        addMultiByte(image, mapping);
        break;
    case kAsciiDoubleByte: addClasses(image, mapping); [[fallthrough]];
    case kEbcdicDoubleByte: addDoubleByte(image, mapping); break;
    default: image.set16(kRangesOffsetAt, kHeaderSize); return image.bytes() + makeRanges(mapping);
    }
    return image.bytes();
}

} // namespace codeset
