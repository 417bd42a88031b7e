// Texts of any bytes on their way into a code set: valid ones as the converters make them, others
// with a question mark for what is no character, and never without what stands behind it.
#include "ucv/WholeText.h"

#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Paths.h"

using namespace olvex::ucv;

namespace {

class WholeText : public testing::TestWithParam<const char *> {
  protected:
    void SetUp() override
    {
        ucv_set_dir(OLVEX_TABLES);
        handle_ = ucv_cs_new(GetParam());
        ASSERT_NE(handle_, nullptr);
    }
    void TearDown() override { ucv_cs_free(handle_); }

    std::string converted(const std::string &text, decltype(&ucv_from_utf8) convert, int size) const
    {
        std::string out(static_cast<std::size_t>(size), '\0');
        const int length = static_cast<int>(text.size());
        out.resize(
            static_cast<std::size_t>(convert(handle_, text.data(), length, out.data(), size)));
        return out;
    }
    std::string encoded(const std::string &text) const
    {
        return converted(text, encodeText, static_cast<int>(2 * text.size() + 1));
    }

    uc_ch_t *handle_ = nullptr;
};

TEST_P(WholeText, IsConvertedAsItIsWhenItIsValid)
{
    const std::string all = "Aé§ ΩЖ日本語、한국어 the quick brown fox jumps over it 😀\xEE\x80\x80"
                            "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xF0\x90\x80\x80"
                            "\xF4\x8F\xBF\xBF\n";
    for (int size = 1; size <= static_cast<int>(2 * all.size()); ++size)
        EXPECT_EQ(converted(all, encodeText, size), converted(all, ucv_from_utf8, size)) << size;
    char target[8];
    EXPECT_EQ(encodeText(handle_, "ab", -1, target, sizeof target),
              ucv_from_utf8(handle_, "ab", -1, target, sizeof target));
    EXPECT_EQ(encodeText(handle_, nullptr, -1, target, sizeof target), 0);
    EXPECT_EQ(encodeText(handle_, "ab", -1, target, 0), 0);
}

TEST_P(WholeText, HasAMarkForWhatIsNoCharacter)
{
    const std::pair<const char *, const char *> cases[] = {
        {"caf\xE9\n", "caf?\n"},
        {"\xE9t\xE9</a>\n", "?t?</a>\n"},
        {"\xC3\n", "?\n"},
        {"\xE2\x82\n", "?\n"}, // cut
        {"\xF0\x9F\x98\n", "?\n"},
        {"\xFF\xFE\n", "??\n"},
        {"\x80\xBF\n", "??\n"},                 // following nothing
        {"\xC0\x8A\n", "?\n"},                  // a line's end in a longer form
        {"\xC0\x80|\xE0\x80\x80|\n", "?|?|\n"}, // no zero byte comes of it
        {"\xED\xA0\x80\n", "?\n"},              // half of a pair
        {"\xF4\x90\x80\x80\n", "?\n"},          // beyond the last code point
        {"\xE2\x82\xE2\x82\n", "??\n"},
    };
    for (const auto &[text, whole] : cases) {
        EXPECT_EQ(encoded(text), encoded(whole)) << text;
        for (int size = 1; size < 16; ++size) // cut at a character as a whole text is
            EXPECT_EQ(converted(text, encodeText, size), converted(whole, ucv_from_utf8, size));
    }
}

// Random bytes, many of which lead or follow, in front of a mark.
TEST_P(WholeText, KeepsItsEndWhateverItHolds)
{
    std::mt19937 random(1);
    const std::string mark = "</a>\n";
    const std::string encodedMark = encoded(mark);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto count = random() % 40; count > 0; --count)
            text += static_cast<char>(random() % 3 ? 0x80 + random() % 128 : 1 + random() % 127);
        EXPECT_TRUE(encoded(text + mark).ends_with(encodedMark));
        const std::string whole = converted(text, encodeText, 100);
        const char *end = whole.data() + whole.size();
        const bool isUtf8 = GetParam() == std::string("UTF8");
        EXPECT_TRUE(!isUtf8 || findMalformed(whole.data(), end) == end);
    }
}

INSTANTIATE_TEST_SUITE_P(, WholeText,
                         testing::Values("UTF8", "ISO8859-1", "CP932", "EUC-TW", "GB18030",
                                         "IBM1047", "IBM939"),
                         [](const auto &test) {
                             std::string name = test.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(WholeTextAsBytes, GoesOutAsItIs)
{
    uc_ch_t *bytes = ucv_cs_new("INTERNAL37");
    char target[16];
    ASSERT_EQ(encodeText(bytes, "caf\xE9\n", -1, target, sizeof target), 6);
    EXPECT_STREQ(target, "caf\xE9\n");
    ucv_cs_free(bytes);
}

} // namespace
