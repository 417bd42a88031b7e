// The property list: growth, replacement, removal and walks. Reading files is with the reader.
#include <olvex/Memory.h>
#include <olvex/PropList.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

class PropList : public testing::Test {
  protected:
    ~PropList() override { CxPropListDiscard(&list_); }

    bool put(const std::string &key, const std::string &value)
    {
        return CxPropListPutStr(&list_, key.c_str(), value.c_str());
    }

    // The entries as "key=value", in the order of a walk.
    Strings walk()
    {
        Strings pairs;
        CxPropListIter place = CxPropListIterator(&list_);
        for (; CxPropListIterPeekKey(&place); CxPropListIterNext(&place)) {
            EXPECT_EQ(CxPropListIterHasNext(&place), place.index + 1 < list_.count);
            pairs.push_back(std::string(CxPropListIterPeekKey(&place)) + "=" +
                            CxPropListIterPeekVal(&place));
        }
        return pairs;
    }

    CxPropList list_ = {};
};

TEST_F(PropList, GrowsReplacesInPlaceAndRemovesWithTheLast)
{
    for (const char *key : {"a.b", "A.b", "c"})
        put(key, "1");
    EXPECT_TRUE(put("a.b", "2"));
    EXPECT_EQ(walk(), (Strings{"a.b=2", "A.b=1", "c=1"}));
    EXPECT_TRUE(CxPropListRemove(&list_, "a.b"));
    EXPECT_FALSE(CxPropListRemove(&list_, "a.b"));
    EXPECT_EQ(walk(), (Strings{"c=1", "A.b=1"}));
    EXPECT_TRUE(CxPropListRemove(&list_, "c"));
    EXPECT_TRUE(put("d", ""));
    EXPECT_EQ(walk(), (Strings{"A.b=1", "d="}));
    CxPropListDiscard(&list_);
    EXPECT_EQ(walk(), Strings());
    for (int i = 0; i < 64; ++i) {
        EXPECT_TRUE(put("key" + std::to_string(i), "value"));
        EXPECT_EQ(list_.capacity, i < 31 ? 32 : i < 63 ? 64 : 128) << i;
    }
    EXPECT_STREQ(CxPropListPeekStr(&list_, "key63", nullptr), "value");
}

TEST_F(PropList, TellsMissingFromEmpty)
{
    put("empty", "");
    bool found = false;
    char *copy = CxPropListCopyStr(&list_, "empty", &found);
    EXPECT_STREQ(copy, "");
    EXPECT_TRUE(found);
    BaxMemoryFree(copy);
    EXPECT_EQ(CxPropListPeekStr(&list_, "none", &found), nullptr);
    EXPECT_FALSE(found);
}

} // namespace
