// Maps: order, values replaced in their place, what is released when, the index over many names,
// and life in an arena.
#include "OvxObjConfig.h"
#include "util/OvxStringToObjCfgMap.h"
#include "util/OvxStringToStringMap.h"

#include <olvex/ClassCollections.h>

#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs contents(const StringToStringMap &map)
{
    Pairs result;
    for (const auto *node = map.first(); node; node = node->next())
        result.emplace_back(node->key(), node->value() ? node->value() : "(none)");
    return result;
}

TEST(StringMaps, ReplaceValuesInTheirPlace)
{
    StringToStringMap map;
    std::string key = "one", value = "1";
    EXPECT_TRUE(map.put(key.c_str(), value.c_str()));
    key = value = "overwritten";
    EXPECT_TRUE(map.put("two", "2"));
    EXPECT_TRUE(map.put("ONE", nullptr));
    EXPECT_TRUE(map.put("one", "a longer value than before"));
    EXPECT_TRUE(map.put("two", nullptr));
    EXPECT_FALSE(map.put(nullptr, "x"));
    EXPECT_EQ(contents(map),
              (Pairs{{"one", "a longer value than before"}, {"two", "(none)"}, {"ONE", "(none)"}}));
    EXPECT_TRUE(map.put("two", "again"));
    map.remove("one");
    map.remove("absent");
    EXPECT_EQ(contents(map), (Pairs{{"two", "again"}, {"ONE", "(none)"}}));
}

TEST(StringMaps, AValueMayBeStoredOverItselfOrUnderAnotherName)
{
    StringToStringMap map;
    map.put("a", "value");
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(map.put("a", map.find("a")->value()));
    EXPECT_TRUE(map.put("b", map.find("a")->value()));
    EXPECT_TRUE(map.put(map.find("a")->value(), map.find("b")->key()));
    map.remove(map.find("a")->key());
    EXPECT_EQ(contents(map), (Pairs{{"b", "value"}, {"value", "b"}}));
}

TEST(StringMaps, CopiesAreIndependent)
{
    StringToStringMap *map = OvxAllocStringToStringMap();
    OvxStringToStringMapPut(map, "a", "1");
    OvxStringToStringMapPut(map, "b", nullptr);
    StringToStringMap *copy = OvxCopyStringToStringMap(map);
    char *value = OvxStringToStringMapGet(copy, "a");
    char *key = OvxStringToStringMapIterGetKey(OvxStringToStringMapIterator(copy));
    OvxStringToStringMapPut(map, "a", "2");
    OvxFreeStringToStringMap(map);
    EXPECT_EQ(contents(*copy), (Pairs{{"a", "1"}, {"b", "(none)"}}));
    OvxFreeStringToStringMap(copy);
    EXPECT_STREQ(value, "1");
    EXPECT_STREQ(key, "a");
    BaxMemoryFree(value);
    BaxMemoryFree(key);
}

// A map against a plain list, over so few names that each is put and removed many times, and so
// many that the index comes, grows and shrinks again.
class Model {
  public:
    void put(const std::string &key, const std::string &value)
    {
        map_.put(key.c_str(), value.c_str());
        if (auto *found = find(key))
            found->second = value;
        else
            pairs_.emplace_back(key, value);
    }
    void remove(const std::string &key)
    {
        map_.remove(key.c_str());
        std::erase_if(pairs_, [&](const auto &pair) { return pair.first == key; });
    }
    void compareLookup(const std::string &key)
    {
        const auto *node = map_.find(key.c_str());
        const auto *expected = find(key);
        ASSERT_EQ(node != nullptr, expected != nullptr) << key;
        EXPECT_EQ(node ? node->value() : "", expected ? expected->second : "");
    }
    void compareAll() const { EXPECT_EQ(contents(map_), pairs_); }

  private:
    std::pair<std::string, std::string> *find(const std::string &key)
    {
        for (auto &pair : pairs_)
            if (pair.first == key) return &pair;
        return nullptr;
    }

    StringToStringMap map_;
    Pairs pairs_;
};

TEST(StringMaps, FindEveryNameHoweverManyComeAndGo)
{
    Model model;
    std::mt19937 random(1);
    for (const unsigned names : {10U, 17U, 60U, 700U, 20U}) {
        for (int step = 0; step < 4000; ++step) {
            const std::string key = "name" + std::to_string(random() % names);
            if (random() % 2)
                model.put(key, std::to_string(step));
            else
                model.remove(key);
            model.compareLookup("name" + std::to_string(random() % names));
        }
        model.compareAll();
    }
}

// The map is left to the arena: what it had from the heap, a leak check would report.
TEST(StringMaps, LiveInAnArenaWhole)
{
    olvex::Arena arena;
    const olvex::Memory memory(&arena);
    const char *low = static_cast<char *>(arena.allocate(1));
    auto *map = memory.make<StringToStringMap>(memory);
    for (int i = 0; i < 40; ++i)
        map->put(std::to_string(i).c_str(), "value");
    map->put("3", "another value");
    map->put("4", nullptr);
    map->remove("5");
    EXPECT_EQ(map->size(), 39U);
    const char *value = map->find("3")->value();
    EXPECT_STREQ(value, "another value");
    EXPECT_TRUE(value > low && value < low + 8192);
    StringToStringMap *copy = ovxIntlCopyStringToStringMap(map);
    ovxIntlFreeStringToStringMap(map);
    arena.discard();
    EXPECT_STREQ(copy->find("3")->value(), "another value");
    ovxIntlFreeStringToStringMap(copy);
}

class ReferenceMaps : public ::testing::Test {
  protected:
    ~ReferenceMaps() override
    {
        ovxIntlReleaseObjCfg(one);
        ovxIntlReleaseObjCfg(two);
    }
    OvxObjCfg *one = ovxIntlAllocObjCfg("one");
    OvxObjCfg *two = ovxIntlAllocObjCfg("two");
};

TEST_F(ReferenceMaps, CountWhatTheyHold)
{
    StringToObjCfgMap *map = OvxAllocStringToObjCfgMap();
    OvxStringToObjCfgMapPut(map, "x", one);
    OvxStringToObjCfgMapPut(map, "y", one);
    EXPECT_EQ(one->references, 3U);
    OvxStringToObjCfgMapPut(map, "x", two);
    EXPECT_EQ(one->references, 2U);
    OvxStringToObjCfgMapPut(map, "x", two);
    EXPECT_EQ(two->references, 2U);
    EXPECT_EQ(OvxStringToObjCfgMapGet(map, "x"), two);
    EXPECT_EQ(two->references, 3U);
    StringToObjCfgMap *copy = OvxCopyStringToObjCfgMap(map);
    EXPECT_EQ(one->references, 3U);
    OvxFreeStringToObjCfgMap(map);
    OvxFreeStringToObjCfgMap(copy);
    EXPECT_EQ(one->references, 1U);
    EXPECT_EQ(two->references, 2U);
    ovxIntlReleaseObjCfg(two);
}

// The map's reference may be the last one.
TEST_F(ReferenceMaps, StoreTheSameValueAgainWithoutLosingIt)
{
    StringToObjCfgMap map;
    OvxObjCfg *only = ovxIntlAllocObjCfg("only");
    map.put("x", only);
    ovxIntlReleaseObjCfg(only);
    map.put("x", map.find("x")->value());
    EXPECT_STREQ(map.find("x")->value()->name.get(), "only");
    ovxIntlStringToObjCfgMapRemNode(&map, ovxIntlStringToObjCfgMapGetNode(&map, "x"));
    EXPECT_EQ(map.first(), nullptr);
}

} // namespace
