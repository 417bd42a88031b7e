// One character at a time: what the sides of a conversion have in common. A side decodes or encodes
// one character of UTF-8, UCS-2 or a family of code sets; the one loop of Skeleton.h runs a
// decoding and an encoding side against each other and knows about cutting, resuming and
// substitution.
//
// A side has
//   Place                      char, or char16_t for UCS-2
//   explicit Side(uc_ch_t &)   may keep the handle for its shift states and its table
//   copiesAscii()              whether characters below 0x80 are themselves
//   decode(in, size)           `size` is never 0
//   encode(value, out, room)   places written, kNoRoom or kNoCode
//   substitute(out, room)      a question mark: places written, or kNoRoom
// Neither encode nor a shift state changes anything when there is no room.
#pragma once

#include "ucv/Handle.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace olvex::ucv {

using CodePoint = std::uint32_t;

inline constexpr CodePoint kUnmapped = 0xFFFFFFFF; // these places are no character
inline constexpr CodePoint kShift = 0xFFFFFFFE;    // they only change the shift state
inline constexpr CodePoint kFirstSupplementary = 0x10000;
inline constexpr CodePoint kLastCodePoint = 0x10FFFF;

// How many places a character takes, 0 when the input ends inside it.
struct Decoded {
    std::size_t size;
    CodePoint value;
};
inline constexpr Decoded kCut = {0, kUnmapped};

inline constexpr int kNoRoom = 0;
inline constexpr int kNoCode = -1;

inline CodePoint byteOf(char c)
{
    return static_cast<unsigned char>(c);
}

template <class... Bytes>
int put(char *out, std::size_t room, Bytes... bytes)
{
    if (room < sizeof...(bytes)) return kNoRoom;
    ((*out++ = static_cast<char>(bytes)), ...);
    return static_cast<int>(sizeof...(bytes));
}

// The sections of a table's image. What lies outside the image reads as unmapped.
class Sections {
  public:
    static constexpr CodePoint kHole = 0xFFFF;

    explicit Sections(const uc_ch_t &handle)
        : image_(handle.table->bytes()), mapping_(image_), size_(handle.tableSize), mappingSize_(0)
    {
        std::uint32_t offset = 0;
        std::memcpy(&offset, image_ + kMappingOffsetAt, sizeof offset);
        if (offset > size_) return;
        mapping_ = image_ + offset;
        mappingSize_ = size_ - offset;
    }

    // In the header, which every image has.
    CodePoint byByte(CodePoint byte) const { return load(image_ + kToValuesAt + 2 * byte); }
    CodePoint rowOf(CodePoint value) const { return load(image_ + kFromRowsAt + 2 * (value >> 8)); }
    unsigned classOf(CodePoint byte) const { return image_[kClassesAt + byte]; }
    CodePoint substitute() const { return image_[kSubstituteAt]; }
    CodePoint substituteValue() const { return load(image_ + kSubstituteValueAt); }

    // In the mapping data, by byte positions.
    CodePoint mapping16(std::size_t at) const
    {
        return at + 2 <= mappingSize_ ? load(mapping_ + at) : kHole;
    }
    const unsigned char *mappingBytes(std::size_t at, std::size_t count) const
    {
        return at + count <= mappingSize_ ? mapping_ + at : nullptr;
    }
    // Anywhere in the image.
    const unsigned char *bytes(std::size_t at, std::size_t count) const
    {
        return at <= size_ && count <= size_ - at ? image_ + at : nullptr;
    }

    static CodePoint load(const unsigned char *at)
    {
        std::uint16_t value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }

  private:
    const unsigned char *image_;
    const unsigned char *mapping_;
    std::size_t size_;
    std::size_t mappingSize_;
};

inline Decoded mapped(std::size_t size, CodePoint value)
{
    return {size, value == Sections::kHole ? kUnmapped : value};
}

} // namespace olvex::ucv
