// Where things stand in a table file; numbers are in the machine's byte order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace codeset {

inline constexpr std::size_t kMappingOffsetAt = 0; // 32 bits
inline constexpr std::size_t kMagicAt = 8;
inline constexpr std::size_t kNameAt = 16;
inline constexpr std::size_t kNameSize = 32;
inline constexpr std::size_t kRangesOffsetAt = 38; // GB18030 only, inside the name's place
inline constexpr std::size_t kFamilyAt = 48;
inline constexpr std::size_t kEbcdicMarkAt = 50;
inline constexpr std::size_t kSubstituteValueAt = 58;
inline constexpr std::size_t kSubstituteAt = 60;
inline constexpr std::size_t kFromRowsAt = 224;
inline constexpr std::size_t kToValuesAt = 736;
inline constexpr std::size_t kClassesAt = 1248;
inline constexpr std::size_t kHeaderSize = 1760;

inline constexpr char kMagic[] = "ucv";
inline constexpr std::uint16_t kEbcdicMark = 0x1100;
inline constexpr std::uint16_t kHole = 0xFFFF;
inline constexpr unsigned char kInvalidClass = 255;

} // namespace codeset
