// Groups: each element once, in order of insertion, and walks that survive what listeners do.
#include "util/collections/OvxStringGroup.h"

#include <olvex/ClassCollections.h>
#include <olvex/Memory.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

Strings contents(const StringGroup &group)
{
    Strings result;
    for (const StringGroupNode *node = group.first(); node; node = node->next())
        result.push_back(node->element());
    return result;
}

TEST(StringGroups, KeepEachStringOnceInOrder)
{
    StringGroup group;
    for (const char *text : {"b", "a", "B", ""})
        EXPECT_TRUE(group.add(text));
    EXPECT_FALSE(group.add("b"));
    EXPECT_FALSE(group.add(nullptr));
    EXPECT_TRUE(group.remove("a"));
    EXPECT_FALSE(group.remove("a"));
    EXPECT_TRUE(group.add("a"));
    EXPECT_EQ(contents(group), (Strings{"b", "B", "", "a"}));
    // Removal by a borrowed element frees the very text that it was asked for with.
    while (group.first())
        EXPECT_TRUE(group.remove(group.last()->element()));
}

// A stand-in for objects: counts its references and says when it is dropped.
struct Element {
    std::string name;
    int references = 0;
    std::function<void()> whenDropped{};
};

Strings dropped;

Element *acquire(Element *element)
{
    ++element->references;
    return element;
}

void release(Element *element)
{
    --element->references;
    dropped.push_back(element->name);
    if (element->whenDropped) element->whenDropped();
}

using ElementPolicy = olvex::ReferencePolicy<Element, acquire, release>;
struct Elements;
struct ElementNode : olvex::GroupNode<Elements, ElementNode, ElementPolicy> {};
struct Elements : olvex::GroupShape<Elements, ElementNode, ElementPolicy> {};

TEST(ReferenceGroups, FindEachElementOnceHoweverMany)
{
    std::vector<Element> many(100);
    Elements group;
    for (Element &element : many)
        EXPECT_TRUE(group.add(&element));
    for (std::size_t i = 0; i < many.size(); i += 3)
        EXPECT_TRUE(group.remove(&many[i]));
    for (std::size_t i = 0; i < many.size(); ++i)
        EXPECT_EQ(group.add(&many[i]), i % 3 == 0) << i;
}

class SafeWalks : public ::testing::Test {
  protected:
    SafeWalks()
    {
        dropped.clear();
        for (Element *element : {&a, &b, &c})
            group->add(element);
    }
    ~SafeWalks() override { delete group; }

    // Walks the group, doing something at each of the named elements.
    Strings walk(const std::function<void(const std::string &)> &visit)
    {
        Strings visited;
        Elements::Walk walk(group);
        while (const ElementNode *node = walk.next()) {
            visited.push_back(node->element()->name);
            visit(visited.back());
            if (visited.size() > 20) break;
        }
        return visited;
    }

    Elements *group = new Elements;
    Element a{"a"}, b{"b"}, c{"c"}, d{"d"};
};

TEST_F(SafeWalks, GoOnAfterWhatIsRemovedAtAnyPlace)
{
    const auto removeAt = [&](const char *place, const std::vector<Element *> &removed) {
        group->clear();
        for (Element *element : {&a, &b, &c})
            group->add(element);
        return walk([=, this](const std::string &name) {
            if (name == place)
                for (Element *element : removed)
                    group->remove(element);
        });
    };
    EXPECT_EQ(removeAt("a", {&a}), (Strings{"a", "b", "c"}));
    EXPECT_EQ(removeAt("b", {&b, &c}), (Strings{"a", "b"}));
    EXPECT_EQ(removeAt("a", {&b, &a}), (Strings{"a", "c"}));
    EXPECT_EQ(removeAt("a", {&a, &b}), (Strings{"a", "c"}));
    EXPECT_EQ(removeAt("c", {&a, &b, &c}), (Strings{"a", "b", "c"}));
    EXPECT_EQ(a.references + b.references, 0);
}

TEST_F(SafeWalks, VisitWhatIsAppendedButEndWhenEverythingIsReplaced)
{
    EXPECT_EQ(walk([&](const std::string &name) {
                  if (name == "c") group->add(&d);
              }),
              (Strings{"a", "b", "c", "d"}));
    // Each visit replaces all elements by the same ones, which must not go on for ever.
    EXPECT_EQ(walk([&](const std::string &) {
                  group->clear();
                  group->add(&a);
                  group->add(&b);
              }),
              Strings{"a"});
}

TEST_F(SafeWalks, AreIndependentWhenNestedAndEndWithTheGroup)
{
    Strings inner;
    const Strings outer = walk([&](const std::string &name) {
        if (name != "a") return;
        inner = walk([&](const std::string &nested) {
            if (nested != "b") return;
            group->remove(&a);
            group->remove(&b);
        });
    });
    EXPECT_EQ(inner, (Strings{"a", "b", "c"}));
    EXPECT_EQ(outer, (Strings{"a", "c"}));
    const Strings last = walk([&](const std::string &) { delete std::exchange(group, nullptr); });
    EXPECT_EQ(last, Strings{"c"});
    EXPECT_EQ(c.references, 0);
}

TEST_F(SafeWalks, DroppingAnElementMayRemoveOthers)
{
    a.whenDropped = [&] {
        EXPECT_FALSE(group->remove(&a));
        group->remove(&b);
    };
    group->remove(&a);
    EXPECT_EQ(dropped, (Strings{"a", "b"}));
    ASSERT_EQ(group->first(), group->last());
    EXPECT_EQ(group->first()->element(), &c);
}

} // namespace
