// The string buffer: how it grows, what appends write, and what stays when they fail.
#include "util/CxStringBuff.h"

#include <olvex/Memory.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include <malloc.h>

namespace {

class StringBuff : public testing::Test {
  protected:
    ~StringBuff() override { CxStringBuffDiscard(&buffer_); }

    // The text since the last call.
    std::string take()
    {
        EXPECT_TRUE(!buffer_.str || buffer_.str[buffer_.length] == '\0');
        std::string text(buffer_.str ? buffer_.str : "", buffer_.length);
        CxStringBuffRestart(&buffer_);
        return text;
    }

    CxStringBuff buffer_ = {};
};

TEST_F(StringBuff, GrowsByDoublingAndPacksToItsText)
{
    EXPECT_EQ(CxStringBuffAppendChar(&buffer_, 'a'), 1);
    EXPECT_EQ(CxStringBuffAppendStr(&buffer_, std::string(1022, 'b').c_str()), 1);
    EXPECT_EQ(buffer_.capacity, 1024u);
    EXPECT_EQ(CxStringBuffAppendChar(&buffer_, 'c'), 1);
    EXPECT_EQ(buffer_.capacity, 2048u);
    // 4096 bytes in all: the capacity must be greater than what is needed.
    EXPECT_EQ(CxStringBuffAppendStr(&buffer_, std::string(4096 - 1 - 1024, 'd').c_str()), 1);
    EXPECT_EQ(buffer_.capacity, 8192u);
    EXPECT_EQ(take(), "a" + std::string(1022, 'b') + "c" + std::string(4096 - 1 - 1024, 'd'));
    CxStringBuffAppendStr(&buffer_, "abc");
    EXPECT_EQ(CxStringBuffPack(&buffer_), 1);
    EXPECT_EQ(buffer_.capacity, 4u);
    EXPECT_EQ(CxStringBuffPack(&buffer_), 0);
    CxStringBuffAppendStr(&buffer_, "defgh");
    EXPECT_EQ(buffer_.capacity, 16u);
    EXPECT_EQ(take(), "abcdefgh");
    EXPECT_EQ(CxStringBuffPack(&buffer_), 1); // nothing in it: given back
    EXPECT_EQ(buffer_.str, nullptr);
}

TEST_F(StringBuff, WritesIntegers)
{
    for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-12}, INT64_MIN}) {
        EXPECT_EQ(CxStringBuffAppendInt64(&buffer_, value), 1);
        EXPECT_EQ(take(), std::to_string(value));
    }
    CxStringBuffAppendInt32(&buffer_, INT32_MIN);
    EXPECT_EQ(take(), "-2147483648");
    CxStringBuffAppendUInt64(&buffer_, UINT64_MAX);
    EXPECT_EQ(take(), "18446744073709551615");
}

TEST_F(StringBuff, WritesCodePointsInOneToSixBytes)
{
    const std::pair<std::int32_t, const char *> cases[] = {
        {-1, "\x7f"},
        {0x80, "\xc2\x80"},
        {0x7ff, "\xdf\xbf"},
        {0x800, "\xe0\xa0\x80"},
        {0xffff, "\xef\xbf\xbf"},
        {0x10000, "\xf0\x90\x80\x80"},
        {0x1fffff, "\xf7\xbf\xbf\xbf"},
        {0x200000, "\xf8\x88\x80\x80\x80"},
        {0x3ffffff, "\xfb\xbf\xbf\xbf\xbf"},
        {0x4000000, "\xfc\x84\x80\x80\x80\x80"},
        {0x7fffffff, "\xfd\xbf\xbf\xbf\xbf\xbf"},
    };
    for (const auto &[codePoint, bytes] : cases) {
        EXPECT_EQ(CxStringBuffAppendUTF32Char(&buffer_, codePoint), 1);
        EXPECT_EQ(take(), bytes) << codePoint;
    }
}

TEST_F(StringBuff, AppendsPartsAndInserts)
{
    CxStringBuffAppendStrN(&buffer_, "abc", 5);
    CxStringBuffAppendStrN(&buffer_, "defg", 1);
    CxStringBuffAppendStrN(&buffer_, "hij", -1);
    CxStringBuffAppendStrN(&buffer_, "klm", 0);
    EXPECT_EQ(CxStringBuffInsertStr(&buffer_, "<", 0), 1);
    EXPECT_EQ(CxStringBuffInsertStr(&buffer_, ">", 8), 1);
    EXPECT_EQ(CxStringBuffInsertStr(&buffer_, std::string(2000, '-').c_str(), 4), 1);
    EXPECT_EQ(CxStringBuffInsertStr(&buffer_, "x", 2010), 0);
    EXPECT_EQ(CxStringBuffInsertStr(&buffer_, "x", -1), 0);
    EXPECT_EQ(take(), "<abc" + std::string(2000, '-') + "dhij>");
}

TEST_F(StringBuff, RefusesSizesBeyondTheRangeAndKeepsItsText)
{
    CxStringBuffAppendStr(&buffer_, "text");
    for (const std::size_t extra : {std::size_t{INT32_MAX} - 5, std::size_t{INT32_MAX},
                                    std::size_t{UINT32_MAX} - 3, SIZE_MAX})
        EXPECT_EQ(cxStringBuffHasCapacity(&buffer_, extra), 0);
    EXPECT_EQ(buffer_.capacity, 1024u);
    EXPECT_EQ(take(), "text");
}

TEST_F(StringBuff, ARefusedChangeOfCodeSetLeavesNothingBehind)
{
    char text[] = "";
    CxStringBuff large = {0x30000000, 0x30000001, text}; // too large to be changed, so never read
    const auto before = mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(CxStringBuffChangeFromUTF8(nullptr, &large), 0);
        EXPECT_EQ(CxStringBuffChangeToUTF8(nullptr, &large), 0);
    }
    EXPECT_LT(mallinfo2().uordblks, before + 100000);
    EXPECT_EQ(large.str, text);
    EXPECT_EQ(large.length, 0x30000000u);
}

} // namespace
