// Null-safe strings and the tokenizer.
#include <olvex/Chars.h>
#include <olvex/Memory.h>

#include <gtest/gtest.h>

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

TEST(Tokenizer, SplitsAtDelimitersOutsideQuotes)
{
    const struct {
        const char *text, *delimiters;
        int quotes;
        Strings tokens;
    } cases[] = {{" ,, a, b , ", ", ", 0, {"a", "b"}},
                 {", ,", ", ", 0, {}},
                 {"a b", "", 0, {"a b"}},
                 {"a b", nullptr, 1, {"a b"}},
                 {R"(x "y z" w)", " ", 1, {"x", "y z", "w"}},
                 {R"(x "y z" w)", " ", 0, {"x", "\"y", "z\"", "w"}},
                 {R"(a"b c"d "e"f)", " ", 1, {"ab cd", "ef"}},
                 {R"("" a "")", " ", 1, {"", "a", ""}},
                 {R"(a "b c )", " ", 1, {"a", "b c "}}}; // never closed
    for (const auto &entry : cases)
        EXPECT_EQ(tokens(entry.text, entry.delimiters, entry.quotes), entry.tokens) << entry.text;
}

// Those of the standard library, for which nothing stands for a text that is not there.
TEST(Strings, MissingOnesCompareAndCopyLikeNothing)
{
    EXPECT_EQ(BaxStringCmp(nullptr, "a"), 1);
    EXPECT_EQ(BaxStringCmp("a", nullptr), -1);
    EXPECT_EQ(BaxStringICmp(nullptr, nullptr), 1);
    EXPECT_EQ(BaxStringNICmp("ABx", "aby", 2), 0);
    char text[16] = "old";
    EXPECT_STREQ(BaxStringNCat(text, "abcdef", 3), "oldabc");
    EXPECT_STREQ(BaxStringCat(text, nullptr), "oldabc");
    EXPECT_STREQ(BaxStringNCpy(text, nullptr, 3), "");
    EXPECT_EQ(BaxStringSprintf(text, "%d-%s", 7, "b"), 3);
    EXPECT_STREQ(text, "7-b");
    EXPECT_EQ(BaxStringNCmp("abx", "aby", 2), 0);
    EXPECT_EQ(BaxStringStrspn("abc", nullptr), 0);
    EXPECT_EQ(BaxStringStrcspn("abc", nullptr), 3);
    EXPECT_EQ(BaxStringStrcspn(nullptr, "a"), -1);
    EXPECT_EQ(BaxStringStrspn("abc", "ba"), 2);
}

} // namespace
