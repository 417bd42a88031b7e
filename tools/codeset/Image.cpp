#include "codeset/Image.h"

#include <stdexcept>

#include <cstring>

namespace codeset {

Image::Image(const CodeSet &codeSet)
{
    set32(kMappingOffsetAt, kHeaderSize);
    header_.replace(kMagicAt, sizeof kMagic - 1, kMagic);
    header_.replace(kNameAt, codeSet.name.size(), codeSet.name);
    set16(kFamilyAt, codeSet.family);
}

void Image::set16(std::size_t at, std::uint16_t value)
{
    std::memcpy(header_.data() + at, &value, sizeof value);
}

void Image::set32(std::size_t at, std::uint32_t value)
{
    std::memcpy(header_.data() + at, &value, sizeof value);
}

std::uint16_t Image::add(const std::string &row, std::size_t unit)
{
    const std::size_t end = (mapping_.size() + unit - 1) / unit * unit;
    const auto [place, isNew] = known_.try_emplace(row, end);
    if (isNew) {
        mapping_.resize(end);
        mapping_ += row;
    }
    const std::size_t index = place->second / unit;
    if (index >= kHole) throw std::runtime_error("it has more rows than a table can number");
    return static_cast<std::uint16_t>(index);
}

} // namespace codeset
