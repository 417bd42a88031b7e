// Conversions of cut texts: whatever pieces the input comes in and however small the output areas
// are, the result is that of one call.
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Paths.h"

namespace {

constexpr const char kText[] =
    "Aé§ ΩЖ日本語、ｱ한국어 中文 ~\\ 漢B\n123 the quick brown fox jumps over the lazy dog "
    "😀 x日y本";

template <class In, class Out>
using Restartable = int (*)(uc_ch_t *, const In **, int *, Out **, int *);

// Converts a text piece by piece into areas of a size. An area is made larger only when a character
// did not fit, and a piece when it ended inside one.
template <class In, class Out>
std::basic_string<Out> inPieces(Restartable<In, Out> convert, uc_ch_t *handle,
                                const std::basic_string<In> &text, int piece, int area)
{
    convert(handle, nullptr, nullptr, nullptr, nullptr);
    std::basic_string<Out> result;
    const int size = static_cast<int>(text.size());
    int room = area;
    for (int begin = 0, end = std::min(piece, size); begin < size;) {
        // Exactly as large as it says, so that a sanitizer sees what is written behind it.
        std::vector<Out> output(static_cast<std::size_t>(room));
        const std::vector<In> input(text.begin() + begin, text.begin() + end);
        const In *in = input.data();
        Out *out = output.data();
        int inLeft = end - begin, outLeft = room;
        const int code = convert(handle, &in, &inLeft, &out, &outLeft);
        result.append(output.data(), out);
        const int consumed = static_cast<int>(in - input.data());
        EXPECT_EQ(inLeft, end - begin - consumed);
        EXPECT_EQ(code == 0, inLeft == 0);
        if (code == 2 && end == size) break;
        begin += consumed;
        room = code == 1 && consumed == 0 ? room + 1 : area;
        if (code != 1) end = std::min(size, end + piece);
    }
    return result;
}

// What ends a shift at the end of a text.
std::string ending(uc_ch_t *handle)
{
    char area[2];
    char *out = area;
    int none = 0;
    EXPECT_LE(ucv_from_utf8_r(handle, nullptr, nullptr, &out, &none), 1);
    int room = sizeof area;
    EXPECT_EQ(ucv_from_utf8_r(handle, nullptr, nullptr, &out, &room), 0);
    return {area, out};
}

template <class In, class Out>
void expectSameInPieces(Restartable<In, Out> convert, uc_ch_t *handle,
                        const std::basic_string<In> &text)
{
    const bool isFrom =
        sizeof(In) == 2 || convert == reinterpret_cast<Restartable<In, Out>>(ucv_from_utf8_r);
    const auto end = [&] { return isFrom ? ending(handle) : std::string(); };
    const int all = static_cast<int>(text.size()) * 4 + 8;
    const auto whole = inPieces(convert, handle, text, static_cast<int>(text.size()), all);
    const std::string wholeEnd = end();
    ASSERT_FALSE(whole.empty());
    for (int piece = 1; piece <= 4; ++piece)
        for (int area = 1; area <= 8; ++area) {
            EXPECT_EQ(inPieces(convert, handle, text, piece, area), whole)
                << ucv_get_cs_name(handle) << ": pieces of " << piece << ", areas of " << area;
            EXPECT_EQ(end(), wholeEnd);
        }
}

class CutText : public testing::TestWithParam<const char *> {
  protected:
    void SetUp() override
    {
        setenv("UCVDIR", OLVEX_TABLES, 1);
        handle_ = ucv_cs_new(GetParam());
        ASSERT_NE(handle_, nullptr);
    }
    void TearDown() override
    {
        ucv_cs_free(handle_);
        unsetenv("UCVDIR");
    }

    std::string encoded() const
    {
        std::string result(sizeof kText * 2, '\0');
        result.resize(static_cast<std::size_t>(
            ucv_from_utf8(handle_, kText, sizeof kText - 1, result.data(), sizeof kText * 2)));
        return result;
    }

    uc_ch_t *handle_ = nullptr;
};

TEST_P(CutText, IsConvertedAsInOneCall)
{
    const std::string utf8 = kText;
    std::u16string ucs2(sizeof kText, u'\0');
    ucs2.resize(static_cast<std::size_t>(
        ucv_to_ucs2(ucv_cs_new("UTF8"), kText, sizeof kText - 1, ucs2.data(), sizeof kText)));
    expectSameInPieces(ucv_to_utf8_r, handle_, encoded());
    expectSameInPieces(ucv_to_ucs2_r, handle_, encoded());
    // Bytes go through "OS" as they are, and so are cut where its areas end.
    if (ucv_get_cs_name(handle_) != std::string())
        expectSameInPieces(ucv_from_utf8_r, handle_, utf8);
    expectSameInPieces(ucv_from_ucs2_r, handle_, ucs2);
}

INSTANTIATE_TEST_SUITE_P(, CutText,
                         testing::Values("KOI8-R", "CP932", "BIG5", "EUC-JP", "EUC-TW", "IBM939",
                                         "UTF-8", "IBM1047", "INTERNAL37", "GB18030"),
                         [](const auto &test) {
                             std::string name = test.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
