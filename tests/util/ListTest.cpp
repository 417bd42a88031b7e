// Lists: repeats, positions, sorting that moves elements between places, and the parameters of one
// event in an arena.
#include "logging/OvxParmList.h"
#include "util/collections/OvxStringList.h"

#include <olvex/ClassCollections.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

Strings contents(const StringList &list)
{
    Strings result;
    for (const StringListNode *node = list.first(); node; node = node->next())
        result.push_back(node->element());
    return result;
}

void fill(StringList &list, const Strings &texts)
{
    for (const std::string &text : texts)
        EXPECT_TRUE(list.append(text.c_str()));
}

int compareTexts(const void *one, const void *other)
{
    return std::strcmp(*static_cast<const char *const *>(one),
                       *static_cast<const char *const *>(other));
}

OvxParm stringParm(const char *text)
{
    OvxParm parm{};
    parm.type = OVX_PARM_STRING;
    parm.value.string = const_cast<char *>(text);
    return parm;
}

OvxParm intParm(int number)
{
    OvxParm parm{};
    parm.type = OVX_PARM_INT;
    parm.value.integer = number;
    return parm;
}

TEST(StringLists, TakeRepeatsAndFindPositions)
{
    StringList list;
    fill(list, {"a", "b", "a"});
    EXPECT_FALSE(list.append(nullptr));
    EXPECT_STREQ(OvxStringListGetIndex(&list, 2), "a");
    EXPECT_EQ(OvxStringListGetIndex(&list, 3), nullptr);
    EXPECT_EQ(OvxStringListGetIndex(&list, -1), nullptr);
    EXPECT_EQ(OvxStringListGetLink(&list, "a"), list.first());
    OvxStringListRemLink(&list, list.first());
    EXPECT_EQ(contents(list), (Strings{"b", "a"}));
    EXPECT_EQ(OvxStringListIterRem(list.last()), nullptr);
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(list.first(), list.last());
}

// Sorting moves the elements and leaves the places, so that a place and an element that were made
// together part ways; removing one must not take away the other's memory.
TEST(StringLists, PlacesAndElementsLiveOnAfterSortingAndRemoval)
{
    StringList list;
    OvxSortStringList(&list, compareTexts);
    fill(list, {"d", "c", "b", "a"});
    const StringListNode *second = list.first()->next();
    const char *d = list.at(0);
    OvxSortStringList(&list, compareTexts);
    EXPECT_STREQ(second->element(), "b");
    EXPECT_EQ(list.at(3), d);
    OvxStringListRemLink(&list, list.first());
    OvxStringListRemLink(&list, list.last());
    EXPECT_EQ(contents(list), (Strings{"b", "c"}));
    fill(list, {"a"});
    OvxSortStringList(&list, compareTexts);
    StringList *copy = OvxCopyStringList(&list);
    list.clear();
    EXPECT_EQ(contents(*copy), (Strings{"a", "b", "c"}));
    OvxFreeStringList(copy);
}

// The list is left to the arena: what it had from the heap, a leak check would report.
TEST(ParmLists, KeepTheirOwnTextsInAnArenaToo)
{
    olvex::Arena arena;
    const olvex::Memory memory(&arena);
    auto *list = memory.make<ParmList>(memory);
    for (int i = 0; i < 63; ++i) {
        const std::string text(static_cast<std::size_t>(i) * 20, 'x');
        const OvxParm parm = i % 2 ? intParm(i) : stringParm(i ? text.c_str() : nullptr);
        ASSERT_TRUE(ovxIntlParmListAppend(list, &parm));
    }
    const OvxParm number = intParm(3);
    EXPECT_EQ(OvxParmListGetLink(list, &number)->element()->value.integer, 3);
    OvxParm *parm = OvxParmListIterGet(list->last());
    ParmList *copy = ovxIntlCopyParmList(list);
    arena.discard();
    ASSERT_EQ(copy->size(), 63U);
    EXPECT_EQ(copy->at(0)->value.string, nullptr);
    EXPECT_EQ(std::strlen(copy->at(62)->value.string), 62U * 20);
    EXPECT_EQ(copy->at(61)->value.integer, 61);
    EXPECT_EQ(copy->at(63), nullptr);
    ovxIntlFreeParmList(copy);
    EXPECT_EQ(std::strlen(parm->value.string), 62U * 20);
    OvxFreeParm(parm);
}

} // namespace
