// Configurations: the tree of dotted names, inheritance, applying them to objects, and what is left
// of all that when the toolkit is closed.
#include "Toolkit.h"

#include "OvxLogManager.h"
#include "OvxObjConfig.h"

using namespace olvex;
using namespace olvex::test;

namespace {

Strings childrenOf(const char *name)
{
    const CfgHandle cfg(OvxLogMgrGetCfg(name));
    return namesFrom(OvxObjCfgChildrenNames(cfg.get()));
}

std::string parentOf(const char *name)
{
    const CfgHandle cfg(OvxLogMgrGetCfg(name));
    return take(ovxLogMgrGetParentConfigName(cfg.get()));
}

std::string inherited(const char *name, const char *property)
{
    const CfgHandle cfg(OvxLogMgrGetCfg(name));
    return take(OvxGetObjCfgProp(cfg.get(), property, nullptr));
}

void set(const char *name, const char *property, const char *value)
{
    const CfgHandle cfg(OvxLogMgrGetCfg(name));
    OvxSetObjCfgProp(cfg.get(), property, value);
}

Strings seen;                 // what the class was told: "name=value"
void (*whenSeen)() = nullptr; // what it does then

void see(OvxObject *object, const char *name)
{
    seen.push_back(std::string(name) + "=" + take(ovxIntlGetObjProp(object, name, nullptr)));
    if (whenSeen) whenSeen();
}

class Configurations : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        seen.clear();
        whenSeen = nullptr;
        OvxAddLoggerClass("test_seeing", nullptr, nullptr, nullptr, see, nullptr);
        object_ = get("object", "test_seeing");
        before_ = namesFrom(OvxLogMgrConfigNames()).size();
    }

    static void create(std::initializer_list<const char *> cfgNames)
    {
        for (const char *name : cfgNames)
            CfgHandle(OvxLogMgrGetCfg(name));
    }

    // The names that the test added.
    Strings added() const
    {
        Strings all = namesFrom(OvxLogMgrConfigNames());
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before_));
        return all;
    }

    OvxObject *object_ = nullptr;

  private:
    std::size_t before_ = 0;
};

TEST_F(Configurations, ArePlacedBetweenAncestorsAndDescendants)
{
    create({"a", "a.b.c", "a.bc.d", "a.x", "a.b.d"});
    EXPECT_EQ(parentOf("a"), "/");
    EXPECT_EQ(parentOf("a.b.c"), "a");
    set("a", "p", "of a");
    EXPECT_EQ(inherited("a.b.c", "p"), "of a");
    set("a.b", "p", "of a.b");
    EXPECT_EQ(parentOf("a.b"), "a");
    EXPECT_EQ(childrenOf("a"), (Strings{"a.bc.d", "a.x", "a.b"}));
    EXPECT_EQ(childrenOf("a.b"), (Strings{"a.b.c", "a.b.d"}));
    EXPECT_EQ(inherited("a.b.c", "p"), "of a.b");
    EXPECT_EQ(inherited("a.bc.d", "p"), "of a");
    EXPECT_EQ(inherited("a.b.c", "q"), "(none)");
    EXPECT_EQ(added(), (Strings{"a", "a.b.c", "a.bc.d", "a.x", "a.b.d", "a.b"}));
}

TEST_F(Configurations, MayFillGapsOfSeveralNamesInAnyOrder)
{
    create({"a", "a.b.c.d", "a.b.e.f", "a.g.h"});
    create({"a.b.e"});
    EXPECT_EQ(childrenOf("a"), (Strings{"a.b.c.d", "a.g.h", "a.b.e"}));
    const CfgHandle far(OvxLogMgrGetCfg("a.b.c.d"));
    OvxLogMgrRemCfg(far.get());
    create({"a.b.c"});
    EXPECT_EQ(childrenOf("a.b.c"), Strings{});
    OvxLogMgrAddCfg(far.get());
    create({"a.b"});
    EXPECT_EQ(childrenOf("a"), (Strings{"a.g.h", "a.b"}));
    EXPECT_EQ(childrenOf("a.b"), (Strings{"a.b.e", "a.b.c"}));
    EXPECT_EQ(childrenOf("a.b.c"), Strings{"a.b.c.d"});
}

TEST_F(Configurations, TakeOverOnlyWhatLiesBelowFromAParentOfAnotherName)
{
    create({"a", "a.b", "x.y"});
    const CfgHandle parent(OvxLogMgrGetCfg("a")), child(OvxLogMgrGetCfg("x.y"));
    OvxObjCfgAddChild(parent.get(), child.get());
    const CfgHandle cfg(OvxAllocObjCfg("x"));
    OvxObjCfgSetParent(cfg.get(), parent.get());
    OvxLogMgrAddCfg(cfg.get());
    EXPECT_EQ(childrenOf("a"), (Strings{"a.b", "x"}));
    EXPECT_EQ(childrenOf("x"), Strings{"x.y"});
    EXPECT_EQ(parentOf("x.y"), "x");
}

TEST_F(Configurations, PassTheirChildrenToTheirParentWhenRemoved)
{
    create({"a", "a.b", "a.b.c", "a.b.c.d", "a.b.e"});
    const CfgHandle ab(OvxLogMgrGetCfg("a.b"));
    OvxLogMgrRemCfg(ab.get());
    OvxLogMgrRemCfg(ab.get());
    EXPECT_FALSE(OvxLogMgrHasCfg("a.b"));
    EXPECT_EQ(ab->references, 1U);
    EXPECT_EQ(childrenOf("a"), (Strings{"a.b.c", "a.b.e"}));
    EXPECT_EQ(parentOf("a.b.c"), "a");
    EXPECT_EQ(parentOf("a.b.c.d"), "a.b.c");
    EXPECT_EQ(ab->children.first(), nullptr);
    OvxLogMgrAddCfg(ab.get());
    EXPECT_EQ(childrenOf("a.b"), (Strings{"a.b.c", "a.b.e"}));
    const CfgHandle a(OvxLogMgrGetCfg("a"));
    OvxLogMgrRemCfg(a.get());
    EXPECT_EQ(parentOf("a.b"), "/");
    EXPECT_EQ(added(), (Strings{"a.b.c", "a.b.c.d", "a.b.e", "a.b"}));
}

// A configuration that came before its ancestor has no parent until it is looked for or updated.
TEST_F(Configurations, FindALateAncestorWhenUpdatedOrApplied)
{
    create({"a.b", "a.c", "a"});
    set("a", "p", "1");
    EXPECT_EQ(inherited("a.b", "p"), "(none)");
    EXPECT_EQ(childrenOf("a"), Strings{});
    const CfgHandle ab(OvxLogMgrGetCfg("a.b"));
    OvxLogMgrUpdateCfg(ab.get());
    EXPECT_EQ(childrenOf("a"), Strings{"a.b"});
    EXPECT_EQ(inherited("a.b", "p"), "1");
    EXPECT_EQ(added(), (Strings{"a.c", "a", "a.b"}));
    EXPECT_TRUE(OvxLogMgrApplyCfg(object_, "a.c"));
    EXPECT_EQ(seen, Strings{"p=1"});
    EXPECT_EQ(inherited("a.c", "p"), "1");
}

TEST_F(Configurations, AreCreatedByLookingThemUpExceptTheRoot)
{
    EXPECT_FALSE(OvxLogMgrHasCfg("new"));
    create({"new"});
    EXPECT_TRUE(OvxLogMgrHasCfg("new"));
    EXPECT_EQ(OvxLogMgrGetCfg("/"), nullptr);
    const CfgHandle root(OvxAllocObjCfg("/"));
    OvxLogMgrAddCfg(root.get());
    EXPECT_FALSE(OvxLogMgrHasCfg("/"));
    // A parent that was set is created as well, when it is followed.
    const CfgHandle cfg(OvxLogMgrGetCfg("new"));
    const CfgHandle other(OvxAllocObjCfg("other"));
    OvxObjCfgSetParent(cfg.get(), other.get());
    EXPECT_FALSE(OvxLogMgrHasCfg("other"));
    const CfgHandle parent(OvxObjCfgGetParent(cfg.get()));
    EXPECT_NE(parent, other);
    EXPECT_EQ(added(), (Strings{"new", "other"}));
    // A name is taken once.
    OvxLogMgrAddCfg(other.get());
    EXPECT_EQ(CfgHandle(OvxLogMgrGetCfg("other")), parent);
    EXPECT_EQ(other->references, 1U);
}

TEST_F(Configurations, ConvertWhatTheyInherit)
{
    create({"a", "a.b"});
    const CfgHandle a(OvxLogMgrGetCfg("a")), ab(OvxLogMgrGetCfg("a.b"));
    OvxSetObjCfgPropBool(a.get(), "bool", true);
    OvxSetObjCfgPropInt(a.get(), "int", -7);
    OvxSetObjCfgPropLong(a.get(), "long", 5000000000);
    OvxSetObjCfgPropFloat(a.get(), "float", 1.5F);
    OvxSetObjCfgPropDouble(a.get(), "double", 2.5);
    bool found = false;
    EXPECT_TRUE(OvxGetObjCfgPropBool(ab.get(), "bool", &found));
    EXPECT_TRUE(found);
    EXPECT_EQ(OvxGetObjCfgPropInt(ab.get(), "int", nullptr), -7);
    EXPECT_EQ(OvxGetObjCfgPropLong(ab.get(), "long", nullptr), 5000000000);
    EXPECT_EQ(OvxGetObjCfgPropFloat(ab.get(), "float", nullptr), 1.5F);
    EXPECT_EQ(OvxGetObjCfgPropDouble(ab.get(), "double", nullptr), 2.5);
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "double", &found)), "2.500000");
    EXPECT_EQ(OvxGetObjCfgPropInt(ab.get(), "bool", &found), 0);
    EXPECT_FALSE(found);
    EXPECT_EQ(take(OvxGetInheritedObjCfgProp(ab.get(), "absent", &found)), "(none)");
    EXPECT_FALSE(found);
    // A value of none counts as set and hides the ancestor's.
    OvxSetObjCfgProp(ab.get(), "int", nullptr);
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "int", &found)), "(none)");
    EXPECT_TRUE(found);
}

TEST_F(Configurations, ReachAnObjectOutermostFirst)
{
    set("a", "level", "1");
    set("a", "other", "of a");
    set("a.b", "level", "2");
    EXPECT_TRUE(OvxLogMgrApplyCfg(object_, "a.b"));
    EXPECT_EQ(seen, (Strings{"level=1", "other=of a", "level=2"}));
    EXPECT_FALSE(OvxLogMgrApplyCfg(object_, "/"));
    EXPECT_FALSE(OvxLogMgrApplyCfg(nullptr, "created.by.nobody"));
    EXPECT_FALSE(OvxLogMgrHasCfg("created.by.nobody"));
    EXPECT_TRUE(OvxLogMgrApplyCfg(object_, "created.by.this"));
    EXPECT_TRUE(OvxLogMgrHasCfg("created.by.this"));
}

// The class is told of a property while the configuration is walked.
TEST_F(Configurations, MayBeChangedAndRemovedWhileTheyAreApplied)
{
    set("a", "first", "1");
    set("a", "second", "2");
    whenSeen = [] {
        whenSeen = nullptr;
        const CfgHandle cfg(ovxIntlLogMgrGetCfg("a"));
        for (int i = 0; i < 30; ++i)
            ovxIntlSetObjCfgProp(cfg.get(), ("more" + std::to_string(i)).c_str(), "x");
        ovxIntlSetObjCfgProp(cfg.get(), "first", "a value that replaces the one in use");
        ovxIntlSetObjCfgProp(cfg.get(), "second", "changed");
        ovxIntlLogMgrRemCfg(cfg.get());
    };
    EXPECT_TRUE(OvxLogMgrApplyCfg(object_, "a"));
    ASSERT_EQ(seen.size(), 32U);
    EXPECT_EQ(seen[0], "first=1");
    EXPECT_EQ(seen[1], "second=changed");
    EXPECT_FALSE(OvxLogMgrHasCfg("a"));
}

TEST_F(Configurations, EndWhereParentsFormACircle)
{
    create({"a", "b", "self"});
    const CfgHandle a(OvxLogMgrGetCfg("a")), b(OvxLogMgrGetCfg("b")), self(OvxLogMgrGetCfg("self"));
    OvxObjCfgAddChild(a.get(), b.get());
    OvxObjCfgAddChild(b.get(), a.get());
    OvxObjCfgAddChild(self.get(), self.get());
    set("a", "p", "1");
    set("b", "q", "2");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(inherited("b", "p"), "1");
        EXPECT_EQ(inherited("a", "absent"), "(none)");
        EXPECT_EQ(inherited("self", "absent"), "(none)");
    }
    EXPECT_TRUE(OvxLogMgrApplyCfg(object_, "a"));
    EXPECT_EQ(seen, (Strings{"q=2", "p=1"}));
    OvxLogMgrUpdateCfg(a.get());
    EXPECT_EQ(childrenOf("b"), Strings{});
    for (OvxObjCfg *cfg : {self.get(), a.get(), b.get()}) {
        OvxLogMgrUpdateCfg(cfg);
        EXPECT_EQ(CfgHandle(OvxLogMgrGetCfg(cfg->name.get())).get(), cfg);
        OvxLogMgrRemCfg(cfg);
        EXPECT_EQ(cfg->children.first(), nullptr);
        EXPECT_FALSE(OvxLogMgrHasCfg(cfg->name.get()));
    }
    EXPECT_EQ(added(), Strings{});
}

TEST_F(Configurations, RememberWhetherAFileCreatedThem)
{
    create({"byHost"});
    EXPECT_TRUE(ovxLogMgrAddCfgFromFile("byHost", "p", "1"));
    EXPECT_TRUE(ovxLogMgrAddCfgFromFile("byFile", "p", "1"));
    EXPECT_TRUE(ovxLogMgrAddCfgFromFile("byFile", "p", ""));
    const CfgHandle byHost(OvxLogMgrGetCfg("byHost")), byFile(OvxLogMgrGetCfg("byFile"));
    EXPECT_FALSE(OvxObjCfgIsFromFile(byHost.get()));
    EXPECT_TRUE(OvxObjCfgIsFromFile(byFile.get()));
    EXPECT_EQ(inherited("byFile", "p"), "");
    OvxObjCfgSetFromFile(byFile.get(), false);
    EXPECT_FALSE(OvxObjCfgIsFromFile(byFile.get()));
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("", "p", "1"));
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("/", "p", "1"));
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("x", "", "1"));
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("x", "p", nullptr));
    EXPECT_EQ(added(), (Strings{"byHost", "byFile"}));
}

TEST_F(Configurations, AreFoundNoMoreAfterClose)
{
    create({"a", "a.b"});
    set("a", "p", "1");
    const CfgHandle ab(OvxLogMgrGetCfg("a.b"));
    OvxSetObjCfgProp(ab.get(), "own", "2");
    const CfgHandle fresh(OvxAllocObjCfg("fresh"));
    TearDown();
    held_.clear();
    EXPECT_EQ(ab->references, 1U);
    EXPECT_EQ(OvxLogMgrGetCfg("a"), nullptr);
    EXPECT_EQ(OvxObjCfgGetParent(ab.get()), nullptr);
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "p", nullptr)), "(none)");
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "own", nullptr)), "2");
    OvxLogMgrAddCfg(fresh.get());
    OvxLogMgrUpdateCfg(ab.get());
    OvxLogMgrRemCfg(ab.get());
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("a", "p", "1"));
    EXPECT_FALSE(OvxLogMgrHasCfg("fresh"));
    EXPECT_EQ(OvxLogMgrConfigNames(), nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_FALSE(OvxLogMgrHasCfg("a"));
    OvxLogMgrAddCfg(ab.get());
    EXPECT_EQ(inherited("a.b", "own"), "2");
}

TEST_F(Configurations, AreQuickToMakeByTheThousand)
{
    constexpr int kCount = 20000;
    const std::clock_t start = std::clock();
    create({"wide"});
    // Twice as many: those far below come first, those between take them over one by one.
    for (const char *end : {".far", ""})
        for (int i = 0; i < kCount; ++i) {
            const std::string name = "wide." + std::to_string(i) + end;
            ASSERT_TRUE(ovxLogMgrAddCfgFromFile(name.c_str(), "p", "1"));
        }
    EXPECT_EQ(childrenOf("wide").size(), std::size_t{kCount});
    for (int i = 0; i < kCount; ++i) {
        const CfgHandle cfg(OvxLogMgrGetCfg(("wide." + std::to_string(i)).c_str()));
        OvxLogMgrRemCfg(cfg.get());
    }
    EXPECT_EQ(parentOf("wide.7.far"), "wide");
    EXPECT_LT(std::clock() - start, 2 * CLOCKS_PER_SEC); // of this process alone
}

} // namespace
