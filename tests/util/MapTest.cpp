// Maps: order, values replaced in their place, what is released when, the index over many names,
// and life in an arena.
#include "toolkit/OvxObjConfig.h"
#include "toolkit/collections/OvxStringToObjCfgMap.h"
#include "util/collections/OvxStringToStringMap.h"

#include <olvex/ClassCollections.h>

#include <gtest/gtest.h>

#include <algorithm>
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

TEST(StringMaps, AValueMayBeNoneOrStoredOverItselfOrUnderAnotherName)
{
    StringToStringMap map;
    std::string value = "value";
    map.put("a", value.c_str());
    value = "overwritten";
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(map.put("a", map.find("a")->value()));
    EXPECT_TRUE(map.put("b", map.find("a")->value()));
    EXPECT_TRUE(map.put("A", "x"));
    EXPECT_TRUE(map.put("A", nullptr));
    EXPECT_FALSE(map.put(nullptr, "x"));
    EXPECT_TRUE(map.put(map.find("a")->value(), map.find("b")->key()));
    map.remove(map.find("a")->key());
    EXPECT_EQ(contents(map), (Pairs{{"b", "value"}, {"A", "(none)"}, {"value", "b"}}));
}

// A map against a plain list, over so few names that each is put and removed many times, and so
// many that the index comes, grows and shrinks again.
TEST(StringMaps, FindEveryNameHoweverManyComeAndGo)
{
    StringToStringMap map;
    Pairs expected;
    const auto find = [&](const std::string &key) {
        return std::ranges::find(expected, key, &Pairs::value_type::first);
    };
    std::mt19937 random(1);
    for (const unsigned names : {10U, 17U, 60U, 700U, 20U}) {
        for (int step = 0; step < 4000; ++step) {
            const std::string key = "name" + std::to_string(random() % names);
            const std::string value = std::to_string(step);
            const auto place = find(key);
            const bool isKnown = place != expected.end();
            if (random() % 2) {
                map.put(key.c_str(), value.c_str());
                isKnown ? place->second = value : expected.emplace_back(key, value).second;
            } else {
                map.remove(key.c_str());
                if (isKnown) expected.erase(place);
            }
            const std::string sought = "name" + std::to_string(random() % names);
            const auto *node = map.find(sought.c_str());
            const auto wanted = find(sought);
            ASSERT_EQ(node ? node->value() : "", wanted == expected.end() ? "" : wanted->second)
                << sought;
        }
        EXPECT_EQ(contents(map), expected);
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

TEST(ReferenceMaps, CountWhatTheyHold)
{
    OvxObjCfg *one = ovxIntlAllocObjCfg("one"), *two = ovxIntlAllocObjCfg("two");
    StringToObjCfgMap *map = OvxAllocStringToObjCfgMap();
    OvxStringToObjCfgMapPut(map, "x", one);
    OvxStringToObjCfgMapPut(map, "y", one);
    EXPECT_EQ(one->references, 3U);
    for (int i = 0; i < 2; ++i)
        OvxStringToObjCfgMapPut(map, "x", two);
    EXPECT_EQ(one->references, 2U);
    EXPECT_EQ(two->references, 2U);
    EXPECT_EQ(OvxStringToObjCfgMapGet(map, "x"), two);
    EXPECT_EQ(two->references, 3U);
    StringToObjCfgMap *copy = OvxCopyStringToObjCfgMap(map);
    EXPECT_EQ(one->references, 3U);
    OvxFreeStringToObjCfgMap(map);
    OvxFreeStringToObjCfgMap(copy);
    EXPECT_EQ(one->references, 1U);
    EXPECT_EQ(two->references, 2U);
    for (OvxObjCfg *held : {one, two, two})
        ovxIntlReleaseObjCfg(held);
}

// The map's reference may be the last one.
TEST(ReferenceMaps, StoreTheSameValueAgainWithoutLosingIt)
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
