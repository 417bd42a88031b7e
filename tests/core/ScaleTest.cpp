// What grows with the size of what users give: eight times as much takes about eight times as long.
#include "Growth.h"
#include "Toolkit.h"

#include "toolkit/OvxReadProps.h"

#include <algorithm>

using namespace olvex::test;

namespace {

// As configurations and as a list.
void load(const std::string &content)
{
    const TemporaryFile file(content);
    ASSERT_TRUE(OvxOpenToolkit(file.path()));
    OvxCloseToolkit();
    CxPropList list = {};
    ASSERT_TRUE(CxPropListRead(file.path(), &list));
    CxPropListDiscard(&list);
}

// "a.a.a" with so many dots.
std::string deepName(int dots)
{
    std::string name = "a";
    for (int i = 0; i < dots; ++i)
        name += ".a";
    return name;
}

TEST(Scale, PropertiesFilesMayBeLong)
{
    expectLinear(2000, [](int count) {
        std::string content;
        // Those far below come first, those between take them over one by one.
        for (const char *end : {".far.name", ".name"})
            for (int i = 0; i < count; ++i)
                content += "wide.n" + std::to_string(i) + end + " = value of a line \\u00e9\n";
        load(content);
    });
}

// Nearly all of a line may be a name with as many dots as there is room for, with ancestors that
// are there and ancestors that are not.
TEST(Scale, NamesMayBeDeep)
{
    std::string others;
    for (int i = 0; i < 30; ++i)
        others += "other" + std::to_string(i) + ".p = 1\n";
    for (const std::string &before :
         {std::string(), std::string("a.p = 1\n"), others + "a.p = 1\n"})
        expectLinear(20000, [&](int dots) {
            std::string content = before;
            for (const char *end : {".b", ".c"})
                content += deepName(dots) + end + ".p = 1\n";
            load(content);
        });
}

TEST(Scale, ObjectsAndListenersMayBeMany)
{
    expectLinear(1000, [](int count) {
        ASSERT_TRUE(OvxOpenToolkit(nullptr));
        std::string names;
        std::vector<OvxObject *> objects;
        for (int i = 0; i < count; ++i) {
            const std::string name = "filter" + std::to_string(i);
            objects.push_back(OvxGetObject(name.c_str(), "ovx_levelfilter"));
            EXPECT_TRUE(objects.back());
            names += name + " ";
        }
        OvxObject *logger = OvxGetObject("log", "ovx_basiclogger");
        for (int round = 0; round < 2; ++round) {
            OvxSetObjProp(logger, "listenerNames", names.c_str());
            for (int i = 0; i < 20; ++i)
                OvxLogText(logger, "text", 0);
        }
        OvxReleaseObject(logger);
        for (std::size_t i = 0; i < objects.size(); i += 2) // the others go with the toolkit
            OvxReleaseObject(objects[i]);
        OvxCloseToolkit();
        for (std::size_t i = 1; i < objects.size(); i += 2)
            OvxReleaseObject(objects[i]);
    });
}

} // namespace
