// Null-safe strings and memory, the tokenizer, growable arrays.
#include <olvex/Chars.h>
#include <olvex/Memory.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

Strings tokens(const char *text, const char *delimiters, int quotes)
{
    Strings all;
    CxStringTokIter place = CxStringTokIterator(text, delimiters, quotes);
    for (; CxStringTokIterHasNext(&place); CxStringTokIterNext(&place)) {
        char *token = CxStringTokIterGet(&place);
        all.emplace_back(token);
        BaxMemoryFree(token);
    }
    EXPECT_EQ(CxStringTokIterGet(&place), nullptr);
    EXPECT_EQ(place.tokStart, -9);
    EXPECT_EQ(place.tokEnd, -9);
    return all;
}

TEST(Tokenizer, SplitsAtRunsOfDelimiters)
{
    EXPECT_EQ(tokens("a, b,,c", ", ", 0), (Strings{"a", "b", "c"}));
    EXPECT_EQ(tokens(" ,, a , ", ", ", 0), Strings{"a"});
    EXPECT_EQ(tokens(", ,", ", ", 0), Strings());
    EXPECT_EQ(tokens("", ",", 0), Strings());
    EXPECT_EQ(tokens(nullptr, ",", 1), Strings());
    EXPECT_EQ(tokens("a b", "", 0), Strings{"a b"});
    EXPECT_EQ(tokens("a b", nullptr, 1), Strings{"a b"});
}

TEST(Tokenizer, QuotesKeepDelimitersWhenTheyCount)
{
    EXPECT_EQ(tokens(R"(x "y z" w)", " ", 1), (Strings{"x", "y z", "w"}));
    EXPECT_EQ(tokens(R"(x "y z" w)", " ", 0), (Strings{"x", "\"y", "z\"", "w"}));
    EXPECT_EQ(tokens(R"(a"b c"d "e"f)", " ", 1), (Strings{"ab cd", "ef"}));
    EXPECT_EQ(tokens(R"("" a "")", " ", 1), (Strings{"", "a", ""}));
    EXPECT_EQ(tokens(R"(a "b c )", " ", 1), (Strings{"a", "b c "})); // never closed
}

TEST(Strings, MissingOnesCompareAndCopyLikeNothing)
{
    EXPECT_EQ(BaxStringCmp(nullptr, "a"), 1);
    EXPECT_EQ(BaxStringCmp("a", nullptr), -1);
    EXPECT_EQ(BaxStringICmp(nullptr, nullptr), 1);
    EXPECT_EQ(BaxStringNCmp("abx", "aby", 2), 0);
    EXPECT_EQ(BaxStringNICmp("ABx", "aby", 2), 0);
    char text[16] = "old";
    EXPECT_STREQ(BaxStringNCat(text, "abcdef", 3), "oldabc");
    EXPECT_STREQ(BaxStringCat(text, nullptr), "oldabc");
    EXPECT_STREQ(BaxStringNCpy(text, nullptr, 3), "");
    EXPECT_STREQ(BaxStringCpy(text, "x"), "x");
    EXPECT_EQ(BaxStringSprintf(text, "%d-%s", 7, "b"), 3);
    EXPECT_STREQ(text, "7-b");
    EXPECT_EQ(BaxStringStrcspn("abc", nullptr), 3);
    EXPECT_EQ(BaxStringStrcspn(nullptr, "a"), -1);
    EXPECT_EQ(BaxStringStrspn("abc", "ba"), 2);
    EXPECT_EQ(BaxStringStrspn("abc", nullptr), 0);
}

TEST(Strings, EmptyBlocksAreNone)
{
    EXPECT_EQ(BaxMemoryMalloc(0), nullptr);
    EXPECT_EQ(BaxMemoryCalloc(3, 0), nullptr);
    auto *block = static_cast<char *>(BaxMemoryMalloc(4));
    std::strcpy(block, "abc");
    EXPECT_EQ(BaxMemoryRealloc(block, 0), nullptr);
    EXPECT_STREQ(block, "abc"); // still there
    BaxMemoryFree(block);
}

TEST(Strings, ArraysGrowInSteps)
{
    void *block = nullptr;
    std::int32_t capacity = 0, count = 7;
    EXPECT_EQ(CxListEnsureCapacity(&block, &capacity, &count, 5, 4), 1);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(capacity, 5);
    for (const auto &[needed, expected] :
         {std::pair{5, 5}, {6, 16}, {16, 16}, {17, 32}, {64, 128}}) {
        EXPECT_EQ(CxListEnsureCapacity(&block, &capacity, &count, needed, 4), 1);
        EXPECT_EQ(capacity, expected) << needed;
    }
    EXPECT_EQ(CxListEnsureCapacity(&block, &capacity, &count, INT32_MAX, SIZE_MAX / 2), 0);
    EXPECT_EQ(CxListEnsureCapacity(&block, &capacity, &count, -1, 4), 0);
    EXPECT_EQ(capacity, 128);
    CxListDiscard(&block, &capacity, &count);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(capacity, 0);
}

} // namespace
