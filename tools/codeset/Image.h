// The bytes of a table file while they are being put together.
#pragma once

#include <map>
#include <string>

#include "codeset/CodeSets.h"
#include "codeset/Layout.h"
#include "codeset/Mapping.h"

namespace codeset {

// The table of a code set. Throws std::runtime_error when it does not fit the layout.
std::string makeTable(const CodeSet &codeSet, const Mapping &mapping);

// Numbers in the machine's byte order, one after the other.
class Words {
  public:
    Words &add(std::uint16_t word)
    {
        bytes_.append(reinterpret_cast<const char *>(&word), sizeof word);
        return *this;
    }
    const std::string &bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

class Image {
  public:
    explicit Image(const CodeSet &codeSet);

    void setByte(std::size_t at, unsigned char byte) { header_[at] = static_cast<char>(byte); }
    void set16(std::size_t at, std::uint16_t value);
    void set32(std::size_t at, std::uint32_t value);

    // Adds a row or node to the mapping data, or finds an equal one. The result counts units of
    // `unit` bytes.
    std::uint16_t add(const std::string &row, std::size_t unit = kRowUnit);

    // Header and mapping data.
    std::string bytes() const { return header_ + mapping_; }

  private:
    static constexpr std::size_t kRowUnit = 4;

    std::string header_ = std::string(kHeaderSize, '\0');
    std::string mapping_;
    std::map<std::string, std::size_t> known_; // where each row stands
};

// The section of ranges that GB18030 has in place of rows, to follow the header.
std::string makeRanges(const Mapping &mapping);

} // namespace codeset
