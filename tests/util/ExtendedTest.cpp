// The ten bytes in which the formatted-output engine holds a floating-point number, on every
// processor.
#include "util/print/CxPrintExtended.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <string>

namespace {

using namespace olvex;

using Limits = std::numeric_limits<long double>;

std::string encoded(long double value)
{
    CxPrintfValue area = {};
    encodeExtended(area, value);
    return {reinterpret_cast<const char *>(area.bytes), kExtendedSize};
}

long double decoded(const std::string &bytes)
{
    CxPrintfValue area = {};
    std::memcpy(area.bytes, bytes.data(), bytes.size());
    return decodeExtended(area);
}

std::string bytesOf(std::array<unsigned char, kExtendedSize> bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

TEST(Extended, IsTheSameOnEveryProcessor)
{
    const struct {
        long double value;
        std::array<unsigned char, kExtendedSize> bytes;
    } cases[] = {
        {0, {}},
        {-0.0L, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0x80}},
        {1, {0, 0, 0, 0, 0, 0, 0, 0x80, 0xFF, 0x3F}},
        {-2.5L, {0, 0, 0, 0, 0, 0, 0, 0xA0, 0x00, 0xC0}},
        {0.1, {0, 0xD0, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xFB, 0x3F}},
        {5e-324, {0, 0, 0, 0, 0, 0, 0, 0x80, 0xCD, 0x3B}},
        {1.7976931348623157e308, {0, 0xF8, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x43}},
        {Limits::infinity(), {0, 0, 0, 0, 0, 0, 0, 0x80, 0xFF, 0x7F}},
    };
    for (const auto &[value, bytes] : cases) {
        EXPECT_EQ(encoded(value), bytesOf(bytes)) << value;
        EXPECT_EQ(decoded(bytesOf(bytes)), value);
    }
    EXPECT_TRUE(std::isnan(decoded(encoded(Limits::quiet_NaN()))));
    EXPECT_TRUE(std::signbit(decoded(encoded(-0.0L))));
}

// Where the machine has that format, its own bytes are those that arithmetic finds.
TEST(Extended, IsTheLongDoubleOfMachinesThatHaveIt)
{
    if (!kLongDoubleIsExtended) GTEST_SKIP() << "long double has another format here";
    std::mt19937_64 random;
    for (int i = 0; i < 100000; ++i) {
        unsigned char bytes[sizeof(long double)] = {};
        const std::uint64_t significand = random();
        const auto high = static_cast<std::uint16_t>(random());
        const bool isNormal = (high & 0x7FFF) != 0;
        const std::uint64_t top = std::uint64_t{1} << 63;
        const std::uint64_t valid = isNormal ? significand | top : significand & ~top;
        if ((high & 0x7FFF) == 0x7FFF) continue;
        std::memcpy(bytes, &valid, sizeof valid);
        std::memcpy(bytes + sizeof valid, &high, sizeof high);
        long double value = 0;
        std::memcpy(&value, bytes, sizeof value);
        const std::string image(reinterpret_cast<const char *>(bytes), kExtendedSize);
        ASSERT_EQ(encoded(value), image) << value;
        ASSERT_EQ(decoded(image), value);
    }
    for (const long double value :
         {Limits::denorm_min(), Limits::min(), Limits::max(), -1e-4940L}) {
        CxPrintfValue area = {};
        storeExtended(area, value);
        EXPECT_EQ(encoded(value), std::string(reinterpret_cast<char *>(area.bytes), kExtendedSize));
        EXPECT_EQ(loadExtended(area), value);
    }
}

// What has more bits is rounded to the nearest, of two the even one, and may reach the next power.
TEST(Extended, RoundsWhatHasMoreBits)
{
    if (Limits::digits < 70) GTEST_SKIP() << "long double has no more bits here";
    const long double last = std::ldexp(1.0L, -63); // the last bit of 1
    const struct {
        long double value;
        long double rounded;
    } cases[] = {
        {1 + last / 2, 1},
        {1 + last / 2 + last / 32, 1 + last},
        {1 + last + last / 2, 1 + 2 * last},
        {2 - last / 4, 2},
        {-(2 - last / 4), -2},
        {Limits::max(), Limits::infinity()},
        {std::ldexp(1.0L, -16445), std::ldexp(1.0L, -16445)},
        {std::ldexp(1.0L, -16446), 0},
        {std::ldexp(1.5L, -16446), std::ldexp(1.0L, -16445)},
    };
    for (const auto &[value, rounded] : cases)
        EXPECT_EQ(decoded(encoded(value)), rounded) << value;
}

} // namespace
