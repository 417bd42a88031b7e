// Configurations: the tree of dotted names, inheritance, applying them to objects, and what is left
// of all that when the toolkit is closed.
#include "Toolkit.h"

#include "toolkit/OvxLogManager.h"
#include "toolkit/OvxObjConfig.h"

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

TEST_F(Configurations, MayFillGapsOfSeveralNamesInAnyOrder)
{
    create({"a", "a.b.c.d", "a.b.e.f", "a.bc.h"});
    create({"a.b.e"});
    EXPECT_EQ(childrenOf("a"), (Strings{"a.b.c.d", "a.bc.h", "a.b.e"}));
    const CfgHandle far(OvxLogMgrGetCfg("a.b.c.d"));
    OvxLogMgrRemCfg(far.get());
    create({"a.b.c"});
    EXPECT_EQ(childrenOf("a.b.c"), Strings{});
    OvxLogMgrAddCfg(far.get());
    set("a", "p", "of a");
    EXPECT_EQ(inherited("a.b.c.d", "p"), "of a");
    set("a.b", "p", "of a.b");
    EXPECT_EQ(childrenOf("a"), (Strings{"a.bc.h", "a.b"}));
    EXPECT_EQ(childrenOf("a.b"), (Strings{"a.b.e", "a.b.c"}));
    EXPECT_EQ(childrenOf("a.b.c"), Strings{"a.b.c.d"});
    EXPECT_EQ(inherited("a.b.c.d", "p"), "of a.b");
    EXPECT_EQ(inherited("a.bc.h", "p"), "of a");
}

// With too many names between for each of them to be noted.
TEST_F(Configurations, FarBelowAreTakenOverLikeOthers)
{
    std::vector<std::string> deep{"a"};
    while (deep.size() <= 40)
        deep.push_back(deep.back() + ".a");
    for (const std::string &name : {deep[0], deep[40], deep[3] + ".x", deep[20], deep[2]})
        create({name.c_str()});
    EXPECT_EQ(parentOf(deep[40].c_str()), deep[20]);
    EXPECT_EQ(parentOf(deep[20].c_str()), deep[2]);
    EXPECT_EQ(parentOf((deep[3] + ".x").c_str()), deep[2]);
    EXPECT_EQ(parentOf(deep[2].c_str()), "a");
}

TEST_F(Configurations, PassTheirChildrenToTheirParentWhenRemoved)
{
    create({"a", "a.b", "a.b.c", "a.b.e"});
    const CfgHandle ab(OvxLogMgrGetCfg("a.b"));
    for (int i = 0; i < 2; ++i)
        OvxLogMgrRemCfg(ab.get());
    EXPECT_FALSE(OvxLogMgrHasCfg("a.b"));
    EXPECT_EQ(ab->references, 1U);
    EXPECT_EQ(childrenOf("a"), (Strings{"a.b.c", "a.b.e"}));
    EXPECT_EQ(parentOf("a.b.c"), "a");
    EXPECT_EQ(ab->children.first(), nullptr);
    OvxLogMgrAddCfg(ab.get());
    EXPECT_EQ(childrenOf("a.b"), (Strings{"a.b.c", "a.b.e"}));
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
    const CfgHandle cfg(OvxLogMgrGetCfg("new")), root(OvxAllocObjCfg("/"));
    EXPECT_EQ(OvxLogMgrGetCfg("/"), nullptr);
    OvxLogMgrAddCfg(root.get());
    EXPECT_FALSE(OvxLogMgrHasCfg("/"));
    const CfgHandle other(OvxAllocObjCfg("new")); // a name is taken once
    OvxLogMgrAddCfg(other.get());
    EXPECT_EQ(CfgHandle(OvxLogMgrGetCfg("new")), cfg);
    EXPECT_EQ(added(), Strings{"new"});
}

TEST_F(Configurations, ConvertWhatTheyInherit)
{
    create({"a", "a.b"});
    const CfgHandle a(OvxLogMgrGetCfg("a")), ab(OvxLogMgrGetCfg("a.b"));
    OvxSetObjCfgPropDouble(a.get(), "number", 1.5);
    EXPECT_EQ(OvxGetObjCfgPropInt(ab.get(), "number", nullptr), 1);
    bool found = false;
    // A value of none counts as set and hides the ancestor's.
    OvxSetObjCfgProp(ab.get(), "number", nullptr);
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "number", &found)), "(none)");
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
    for (OvxObjCfg *cfg : {self.get(), a.get(), b.get()}) {
        OvxLogMgrUpdateCfg(cfg);
        OvxLogMgrRemCfg(cfg);
    }
    EXPECT_EQ(added(), Strings{});
}

TEST_F(Configurations, RememberWhetherAFileCreatedThem)
{
    create({"byHost"});
    for (const char *name : {"byHost", "byFile"})
        EXPECT_TRUE(ovxLogMgrAddCfgFromFile(name, "p", ""));
    EXPECT_FALSE(OvxObjCfgIsFromFile(CfgHandle(OvxLogMgrGetCfg("byHost")).get()));
    EXPECT_TRUE(OvxObjCfgIsFromFile(CfgHandle(OvxLogMgrGetCfg("byFile")).get()));
    EXPECT_EQ(inherited("byFile", "p"), "");
    for (const char *name : {"", "/"})
        EXPECT_FALSE(ovxLogMgrAddCfgFromFile(name, "p", "1"));
    EXPECT_EQ(added(), (Strings{"byHost", "byFile"}));
}

TEST_F(Configurations, AreFoundNoMoreAfterClose)
{
    create({"a", "a.b"});
    set("a", "p", "1");
    set("a.b", "own", "2");
    const CfgHandle ab(OvxLogMgrGetCfg("a.b"));
    closeToolkit();
    EXPECT_EQ(ab->references, 1U);
    EXPECT_EQ(OvxLogMgrGetCfg("a"), nullptr);
    EXPECT_EQ(OvxObjCfgGetParent(ab.get()), nullptr);
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "p", nullptr)), "(none)");
    EXPECT_EQ(take(OvxGetObjCfgProp(ab.get(), "own", nullptr)), "2");
    OvxLogMgrAddCfg(ab.get());
    OvxLogMgrUpdateCfg(ab.get());
    OvxLogMgrRemCfg(ab.get());
    EXPECT_FALSE(ovxLogMgrAddCfgFromFile("a", "p", "1"));
    EXPECT_EQ(OvxLogMgrConfigNames(), nullptr);
    ASSERT_TRUE(OvxOpenToolkit(nullptr));
    EXPECT_FALSE(OvxLogMgrHasCfg("a"));
    OvxLogMgrAddCfg(ab.get());
    EXPECT_EQ(inherited("a.b", "own"), "2");
}

} // namespace
