// Conversion with the built-in code sets: results, pointer positions, substitution, whole strings.
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <cstring>
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

struct Outcome {
    int result;
    std::size_t consumed;
    Bytes output;
};

template <class In>
using Restartable = int (*)(uc_ch_t *, const In **, int *, char **, int *);

template <class In, class Text>
Outcome toBytes(Restartable<In> convert, uc_ch_t *handle, const Text &input, int room)
{
    Bytes output(static_cast<std::size_t>(room), '.');
    const In *in = input.data();
    int inLeft = static_cast<int>(input.size());
    char *out = output.data();
    int outLeft = room;
    const int result = convert(handle, &in, &inLeft, &out, &outLeft);
    EXPECT_EQ(in + inLeft, input.data() + input.size());
    EXPECT_EQ(out + outLeft, output.data() + output.size());
    output.resize(static_cast<std::size_t>(out - output.data()));
    return {result, static_cast<std::size_t>(in - input.data()), output};
}

TEST(Convert, StopsExactlyWhereRoomOrInputEnds)
{
    const struct {
        Bytes input;
        int room;
        int result;
        std::size_t consumed;
        Bytes output;
    } cases[] = {
        {"abc", 3, 0, 3, "abc"},
        {"abc", 2, 1, 2, "ab"},
        {"a\xe2\x82\xac", 3, 1, 1, "a"}, // one byte short of the euro sign
        {"a\xe2\x82\xac", 4, 0, 4, "a\xe2\x82\xac"},
        {"a\xe2\x82", 9, 2, 1, "a"},           // cut inside it
        {"\xc0\x80", 9, 0, 2, Bytes(1, '\0')}, // overlong forms become the shortest
        {"\xe0\x81\x81", 9, 0, 3, "A"},
        {"x\x80y\xffz", 9, 0, 5, "x?y?z"},
    };
    for (const auto &entry : cases) {
        const Outcome outcome = toBytes<char>(ucv_to_utf8_r, utf8(), entry.input, entry.room);
        EXPECT_EQ(outcome.result, entry.result) << entry.input;
        EXPECT_EQ(outcome.consumed, entry.consumed) << entry.input;
        EXPECT_EQ(outcome.output, entry.output) << entry.input;
    }
}

TEST(Convert, PairsSurrogates)
{
    const struct {
        Units input;
        int result;
        std::size_t consumed;
        Bytes output;
    } cases[] = {
        {u"\u20ac", 0, 1, "\xe2\x82\xac"}, {u"\U0001f600", 0, 2, "\xf0\x9f\x98\x80"},
        {Units(1, 0xDE00), 0, 1, "?"},     {Units{0xD83D, u'a'}, 0, 2, "?"},
        {Units{u'a', 0xD83D}, 2, 1, "a"},
    };
    for (const auto &entry : cases) {
        const Outcome outcome = toBytes<char16_t>(ucv_from_ucs2_r, utf8(), entry.input, 16);
        EXPECT_EQ(outcome.result, entry.result);
        EXPECT_EQ(outcome.consumed, entry.consumed);
        EXPECT_EQ(outcome.output, entry.output);
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

TEST(Convert, SingleCharacters)
{
    char target[8] = {};
    EXPECT_EQ(ucv_wctomb(utf8(), target, u'\u00e9'), 2);
    const BytesHandle bytes;
    EXPECT_EQ(ucv_wctomb(bytes.get(), target, u'\u00e9'), 1);
    EXPECT_EQ(ucv_wctomb(bytes.get(), target, u'\u4e00'), 1);
    EXPECT_EQ(target[0], '?');
}

} // namespace
