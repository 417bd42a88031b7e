// The code-set handle, the process-wide handles, and the image of a table that handles share. No
// locks: see <olvex/Ucv.h>.
#pragma once

#include <olvex/Ucv.h>

#include <atomic>

#include <cstddef>
#include <cstdint>

#include "ucv/Lookup.h"

namespace olvex::ucv {

// Converter families.
enum Family : std::uint16_t {
    kAsciiSingleByte = 1,
    kAsciiDoubleByte = 2,
    kAsciiMultiByte = 3,
    kEbcdicDoubleByte = 4,
    kUtf8 = 6,
    kEbcdicSingleByte = 8,
    kBytes = 9,
    kGb18030 = 10,
    kFamilyCount
};

// A table file in memory, shared by the handles made from one another, which may be in the hands of
// different threads. Behind the file's bytes stands padding, so that a row may begin wherever there
// is a byte of the file.
struct TableImage {
    static constexpr std::size_t kPadding = 1024; // the longest row

    std::atomic<std::uint32_t> references;
    std::uint32_t size; // of the file
    Lookup lookup;

    const unsigned char *bytes() const { return reinterpret_cast<const unsigned char *>(this + 1); }
    unsigned char *bytes() { return reinterpret_cast<unsigned char *>(this + 1); }
};

// Reads the table of a code set; null when there is none. `name` is a table name, or a path if it
// holds a separator.
TableImage *loadTable(const char *name);
void releaseTable(TableImage *table);

// Offsets of a table's header.
inline constexpr std::size_t kMappingOffsetAt = 0;
inline constexpr std::size_t kMagicAt = 8;
inline constexpr std::size_t kNameAt = 16;
inline constexpr std::size_t kNameSize = 32;
inline constexpr std::size_t kFamilyAt = 48;
inline constexpr std::size_t kEbcdicMarkAt = 50;
inline constexpr std::size_t kRangesOffsetAt = 38;
inline constexpr std::size_t kValue56At = 56;
inline constexpr std::size_t kSubstituteValueAt = 58;
inline constexpr std::size_t kSubstituteAt = 60;
inline constexpr std::size_t kValue62At = 62;
inline constexpr std::size_t kValue64At = 64;
inline constexpr std::size_t kFromRowsAt = 224;
inline constexpr std::size_t kToValuesAt = 736;
inline constexpr std::size_t kClassesAt = 1248;
inline constexpr std::size_t kHeaderSize = 1760;
inline constexpr std::uint16_t kEbcdicMark = 0x1100;

// A number of the header, or anywhere else in the file; 0 outside.
std::uint16_t table16(const TableImage &table, std::size_t offset);

// "KEL-1047" is "1047", "utf-8" is "UTF8", "OS" the name of the platform locale's code set. False
// when the name is too long.
inline constexpr std::size_t kTableNameSize = 128;
bool makeTableName(const char *name, char (&tableName)[kTableNameSize]);

} // namespace olvex::ucv

struct uc_ch_t {
    olvex::ucv::TableImage *table; // none for the built-in handles
    std::uint16_t type;            // a Family; any other value is treated as kBytes
    char name[olvex::ucv::kNameSize];
    std::uint16_t substCount;
    bool sharedTable; // made by duplicating another handle
    std::uint16_t tableValues[3];
    unsigned char tableBytes[16];
    bool inShift;
    bool outShift;
    std::uint32_t tableSize;
    bool keepsAscii; // the table maps every character below 0x80 to its own byte
};

namespace olvex::ucv {

extern uc_ch_t osHandle;
extern uc_ch_t utf8Handle;
extern uc_ch_t *defaultHandle;
extern uc_ch_t *osLocaleHandle;

inline bool isBuiltIn(const uc_ch_t *handle)
{
    return handle == &osHandle || handle == &utf8Handle;
}

// The handle itself, or the default one for none; initialises the services first.
inline uc_ch_t *orDefault(uc_ch_t *handle)
{
    if (handle) return handle;
    if (!ucv_initialized) ucv_init();
    return defaultHandle;
}

} // namespace olvex::ucv
