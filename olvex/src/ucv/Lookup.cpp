// Preparing a table for lookups. Its file is not trusted: whatever it says, conversions read within
// the image and its padding.
#include "ucv/Lookup.h"

#include "ucv/Handle.h"
#include "ucv/Unicode.h"
#include "ucv/tables/Ebcdic.h"

namespace olvex::ucv {

namespace {

constexpr unsigned char kInvalidClass = 255;

bool hasByteRows(std::uint16_t family)
{
    return family == kAsciiSingleByte || family == kEbcdicSingleByte;
}

// What is outside the file is unmapped: in rows of bytes that is the substitute.
void fillPadding(TableImage &image, std::uint16_t family)
{
    const int filler = hasByteRows(family) ? image.lookup.substitute : 0xFF;
    std::memset(image.bytes() + image.size, filler, TableImage::kPadding);
}

void findMapping(TableImage &image)
{
    std::uint32_t offset = 0;
    std::memcpy(&offset, image.bytes() + kMappingOffsetAt, sizeof offset);
    if (offset > image.size) offset = image.size;
    image.lookup.mapping = image.bytes() + offset;
    image.lookup.mappingSize = image.size - offset;
}

void findRows(TableImage &image)
{
    for (std::size_t at = 0; at < 256; ++at) {
        image.lookup.fromRows[at] = image.lookup.row(table16(image, kFromRowsAt + 2 * at));
        image.lookup.toRows[at] = image.lookup.row(table16(image, kToValuesAt + 2 * at));
    }
}

std::uint16_t valueOf(const TableImage &image, std::uint16_t family, std::size_t byte)
{
    if (family == kEbcdicSingleByte || family == kEbcdicDoubleByte) {
        if (invar_eb_to_ucs[byte]) return def_eb_to_ucs[byte];
    } else if (byte < 0x80) {
        return static_cast<std::uint16_t>(byte);
    }
    if (hasByteRows(family)) return table16(image, kToValuesAt + 2 * byte);
    if (family != kEbcdicDoubleByte && image.bytes()[kClassesAt + byte] != 1) return kHole;
    return static_cast<std::uint16_t>(load16(image.lookup.toRows[0] + 2 * byte));
}

unsigned char followingOf(const TableImage &image, std::uint16_t family, std::size_t byte)
{
    const unsigned char length = image.bytes()[kClassesAt + byte];
    if (byte < 0x80 || length == 0 || length == kInvalidClass) return 0;
    if (family == kAsciiDoubleByte && length != 2) return 0;
    return static_cast<unsigned char>(length - 1);
}

Utf8Bytes utf8Of(CodePoint value)
{
    Utf8Bytes utf8 = {};
    if (value != kUnmapped)
        utf8.length =
            static_cast<unsigned char>(Utf8::encode(value, utf8.bytes, sizeof utf8.bytes));
    return utf8;
}

void findCharacters(TableImage &image, std::uint16_t family)
{
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const std::uint16_t value = valueOf(image, family, byte);
        image.lookup.values[byte] = value == kHole ? kUnmapped : value;
        image.lookup.utf8[byte] = utf8Of(image.lookup.values[byte]);
        image.lookup.following[byte] = followingOf(image, family, byte);
    }
}

// The invariant characters go into the row of the values below 0x100.
void overlayInvariants(Lookup &lookup, std::uint16_t family)
{
    const std::size_t width = family == kEbcdicSingleByte ? 1 : 2;
    std::memcpy(lookup.lowRow, lookup.fromRows[0], 256 * width);
    for (std::size_t value = 0; value < 256; ++value) {
        const std::uint16_t code = def_ucs_to_eb[value];
        const auto byte = static_cast<unsigned char>(code);
        if (!invar_ucs_to_eb[value]) continue;
        if (width == 1)
            lookup.lowRow[value] = byte;
        else
            std::memcpy(lookup.lowRow + 2 * value, &code, sizeof code);
    }
    lookup.fromRows[0] = lookup.lowRow;
}

} // namespace

void prepareLookup(TableImage &image, std::uint16_t family)
{
    image.lookup.substitute = image.bytes()[kSubstituteAt];
    image.lookup.substituteValue = table16(image, kSubstituteValueAt);
    fillPadding(image, family);
    findMapping(image);
    findRows(image);
    findCharacters(image, family);
    if (family == kEbcdicSingleByte || family == kEbcdicDoubleByte)
        overlayInvariants(image.lookup, family);
}

} // namespace olvex::ucv
