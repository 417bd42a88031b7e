// Conversion with the built-in code sets: results, pointer positions, substitution, whole strings.
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <string>

#include "ucv/Handle.h"

namespace {

using Bytes = std::string;
using Units = std::u16string;

uc_ch_t *utf8()
{
    return ucv_cs_new("UTF8");
}

// A handle of plain bytes with a count of its own.
class BytesHandle {
  public:
    BytesHandle() : handle_(ucv_cs_new("INTERNAL37")) {}
    ~BytesHandle() { ucv_cs_free(handle_); }
    uc_ch_t *get() const { return handle_; }

  private:
    uc_ch_t *handle_;
};

TEST(Convert, TextsThatAreNoneAreMended)
{
    const struct {
        Bytes input;
        int room;
        Bytes output;
    } cases[] = {{"a\xe2\x82\xac", 3, "a"}, // one byte short of the euro sign
                 {"a\xe2\x82\xac", 4, "a\xe2\x82\xac"},
                 {"a\xe2\x82", 9, "a"},           // cut inside it
                 {"\xc0\x80", 9, Bytes(1, '\0')}, // overlong forms become the shortest
                 {"\xe0\x81\x81", 9, "A"},
                 {"x\x80y\xffz", 9, "x?y?z"}};
    char target[16] = {};
    for (const auto &[input, room, output] : cases) {
        const int size = ucv_to_utf8(utf8(), input.data(), int(input.size()), target, room);
        EXPECT_EQ(Bytes(target, std::size_t(size)), output) << input;
    }
}

TEST(Convert, PairsSurrogates)
{
    const std::pair<Units, Bytes> cases[] = {{u"\U0001f600", "\xf0\x9f\x98\x80"},
                                             {Units(1, 0xDE00), "?"},
                                             {Units{0xD83D, u'a'}, "?"},
                                             {Units{u'a', 0xD83D}, "a"}};
    char target[16] = {};
    for (const auto &[input, output] : cases) {
        const int size = ucv_from_ucs2(utf8(), input.data(), int(input.size()), target, 16);
        EXPECT_EQ(Bytes(target, std::size_t(size)), output) << output;
    }
    char16_t units[4] = {};
    EXPECT_EQ(ucv_to_ucs2(utf8(), "\xf0\x9f\x98\x80", 4, units, 1), 0); // a pair or nothing
    EXPECT_EQ(ucv_to_ucs2(utf8(), "\xf0\x9f\x98\x80", 4, units, 2), 2);
    EXPECT_EQ(Units(units), u"\U0001f600");
}

TEST(Convert, PlainBytesAreTheFirstCodePoints)
{
    const BytesHandle handle;
    char target[16] = {};
    EXPECT_EQ(ucv_to_utf8(handle.get(), "\xe9!", -1, target, sizeof target), 4);
    EXPECT_STREQ(target, "\xc3\xa9!");
    EXPECT_EQ(ucv_from_ucs2(handle.get(), u"\u20ac\u00e9", 2, target, sizeof target), 2);
    EXPECT_EQ(Bytes(target, 2), "?\xe9");
    EXPECT_EQ(handle.get()->substCount, 1);
    EXPECT_EQ(ucv_from_utf8(handle.get(), "\xe2\x82\xac", 3, target, sizeof target), 3);
    EXPECT_EQ(Bytes(target, 3), "\xe2\x82\xac"); // UTF-8 goes through as it is
    EXPECT_EQ(ucv_from_utf8(handle.get(), "a\xe2\x82\xac", 4, target, 3), 1); // at a character
    EXPECT_EQ(ucv_from_utf8(handle.get(), "a\xf0\x9f\x98\x80", 5, target, 4), 1);
    const Bytes noUtf8(20, '\x80'); // cut anywhere, rather than never read
    EXPECT_EQ(ucv_from_utf8(handle.get(), noUtf8.data(), 20, target, 8), 8);
}

TEST(Convert, WholeStringsAreTerminatedWhenTheirSourceIs)
{
    char target[10] = {};
    EXPECT_EQ(ucv_to_utf8(utf8(), "abc", -1, target, 10), 4);
    EXPECT_EQ(ucv_to_utf8(utf8(), "abcdef", -1, target, 4), 4);
    EXPECT_STREQ(target, "abc");
    EXPECT_EQ(ucv_to_utf8(utf8(), "abcdef", 6, target, 4), 4);
    EXPECT_EQ(Bytes(target, 4), "abcd");
    int length = -1;
    char *block = ucv_tou_alloc(utf8(), "a\xc3\xa9", -1, &length);
    EXPECT_STREQ(block, "a\xc3\xa9");
    EXPECT_EQ(length, 4);
    ucv_free(block);
}

TEST(Convert, LongAsciiRunsWithOthersBetween)
{
    Bytes input;
    for (int i = 0; i < 200; ++i)
        input +=
            Bytes(static_cast<std::size_t>(i % 23), static_cast<char>('a' + i % 26)) + "\xc3\xa9";
    Bytes target(input.size(), '.');
    EXPECT_EQ(ucv_to_utf8(utf8(), input.data(), static_cast<int>(input.size()), target.data(),
                          static_cast<int>(target.size())),
              static_cast<int>(input.size()));
    EXPECT_EQ(target, input);
}

} // namespace
