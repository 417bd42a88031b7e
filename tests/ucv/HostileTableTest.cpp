// Tables that lie: whatever numbers a file holds, conversions with it end and stay in its memory.
// What this leaves out of sight, a sanitizer sees.

#include <cstring>
#include <random>

#include "Paths.h"
#include "core/LogDirectory.h"
#include "ucv/Handle.h"

namespace {

namespace fs = std::filesystem;
using namespace olvex::ucv;

std::string readTable(const std::string &name)
{
    std::ifstream file(OLVEX_TABLES "/codeset/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void put16(std::string &table, std::size_t at, unsigned value)
{
    const auto number = static_cast<std::uint16_t>(value);
    std::memcpy(table.data() + at, &number, sizeof number);
}

void convertEverything(uc_ch_t *handle)
{
    std::string bytes;
    for (int lead = 0; lead < 256; ++lead)
        for (int trail = 5; trail < 256; trail += 50)
            bytes += {static_cast<char>(lead), static_cast<char>(trail)};
    bytes += "\x0E\x45\x62\x81\x30\x81\x30\x8E\xA2\xA1\xA1\x8F\xA1\xA1";
    std::u16string units(1024, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<char16_t>(i * 67);
    const int size = static_cast<int>(bytes.size()), count = static_cast<int>(units.size());
    std::string target(units.size() * 20, '\0');
    const int room = static_cast<int>(target.size());
    EXPECT_LE(ucv_to_utf8(handle, bytes.data(), size, target.data(), room), room);
    EXPECT_LE(ucv_from_utf8(handle, bytes.data(), size, target.data(), room), room);
    EXPECT_LE(ucv_from_ucs2(handle, units.data(), count, target.data(), room), room);
    EXPECT_LE(ucv_to_ucs2(handle, bytes.data(), size, units.data(), count), count);
}

class HostileTable : public testing::TestWithParam<const char *> {};

TEST_P(HostileTable, MayBeCutPointAndHoldAnything)
{
    const olvex::test::LogDirectory directory;
    const auto use = [&](const std::string &table) {
        uc_ch_t *handle = ucv_cs_new(directory.write("TABLE", table).c_str());
        ASSERT_NE(handle, nullptr);
        convertEverything(handle);
        ucv_cs_free(handle);
    };
    const std::string whole = readTable(GetParam());
    ASSERT_GE(whole.size(), kHeaderSize);
    for (const std::size_t size :
         {kHeaderSize, kHeaderSize + 1, kHeaderSize + 33, whole.size() / 2, whole.size() - 1})
        use(whole.substr(0, std::max(size, kHeaderSize)));
    for (const unsigned value : {0u, 1u, 0x7FFFu, 0xFFFEu, 0xFFFFu}) {
        for (const auto &[begin, end] : {std::pair{kFromRowsAt, kClassesAt},
                                         {kHeaderSize, whole.size() - 1},
                                         {kMappingOffsetAt + 2, kMappingOffsetAt + 4},
                                         {kRangesOffsetAt, kRangesOffsetAt + 2}}) {
            std::string table = whole;
            for (std::size_t at = begin; at < end; at += 2)
                put16(table, at, value);
            use(table);
        }
    }
    std::minstd_rand random(7);
    for (int round = 0; round < 20; ++round) {
        std::string table = whole;
        for (int change = 0; change < 200; ++change)
            table[48 + random() % (table.size() - 48)] = static_cast<char>(random());
        use(table);
    }
}

INSTANTIATE_TEST_SUITE_P(, HostileTable,
                         testing::Values("KOI8R", "EUCKR", "EUCJP", "EUCTW", "IBM935", "IBM1047",
                                         "GB18030"),
                         [](const auto &test) { return std::string(test.param); });

} // namespace
