// Properties: the grammar of properties files, where their pairs go, and the typed view of text
// values.
#include "Toolkit.h"

#include "toolkit/OvxProps.h"

using namespace olvex::test;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

using namespace std::string_literals;

// What reading a file into a list gives: its pairs as "key=value;", and "failed" where it stopped.
std::string readIntoList(const std::string &content)
{
    const TemporaryFile file(content);
    CxPropList list = {};
    const bool complete = CxPropListRead(file.path(), &list);
    std::string result;
    for (int i = 0; i < list.count; ++i)
        result += list.entries[i].key + "="s + list.entries[i].value + ";";
    CxPropListDiscard(&list);
    return complete ? result : result + "failed";
}

TEST(PropertiesFiles, FollowTheGrammar)
{
    const std::pair<std::string, const char *> cases[] = {
        // Keys and values.
        {"", ""},
        {"a.b.level = WARN\n", "a.b.level=WARN;"},
        {"k:x\nl x\nm\tx\nn \f=\v x\no =: x\n", "k=x;l=x;m=x;n=x;o=: x;"},
        {"k==x\nl=x=y:z \t\n", "k==x;l=x=y:z \t;"},
        {"k=\nl:\nm= \t\n", "k=;l=;m=;"},
        {"  k = x\n\t\v\f l=y\n", "k=x;l=y;"},
        {"=k=x\n:l=y\n!=z\n", "=k=x;:l=y;"}, // a separator may begin a line, but not after blanks
        {"\\k=x\n", "\\k=x;"},               // and so may a backslash
        {"k=1\n\t:x=1\nl=2\n", "k=1;failed"},
        {"k=1\nl\nm=2\n", "k=1;failed"},
        {"l \nm=2\n", "failed"},
        {"k=1\nk=2\nl=3\nk=4\n", "k=4;l=3;"},
        {"caf\xc3\xa9=\xff\x80\n", "caf\xc3\xa9=\xff\x80;"},
        // Lines and their ends.
        {"a=1\r\nb=2\rc=3\r", "a=1;b=2;c=3;"},
        {"\n\r\n\na=1\n\n\n \t \nb=2\n\n", "a=1;b=2;"},
        {"# c\n! c\n  # c = d\n\t!\na=1\n#", "a=1;"},
        {"#c \\\na=1\n", "a=1;"}, // comments do not go on
        {"a=1\nb=2", "a=1;b=2;"},
        {"b ", "b=;"},
        {"b=x\\", "b=x;"},
        {"b=x\\u12", "b=x;"},
        {"b\\", "b=;"},
        // Escapes.
        {"a\\=b\\:c\\ d\\\\\\\t=1\n", "a=b:c d\\\t=1;"},
        {"a\\n=1\n", "failed"},
        {"a=\\ x\\\"y\\'z\\\\\\\t\n", "a= x\"y'z\\\t;"},
        {"a=one\\\r\n\ttwo\\\n \\\n\\ three\n", "a=onetwo three;"},
        {"a=\\\n#x\n", "a=#x;"},
        {"a \\ x\n", "a= x;"}, // an escape may begin a value behind blanks
        {"a \\\nb=c\n", "a=b=c;"},
        {"a=\\u00e9\\U00E9\n", "a=\xc3\xa9\xc3\xa9;"},
        {"a=\\u20ACx\\u0041\n", "a=\xe2\x82\xacxA;"},
        {"a=\\u00g9\n", "failed"},
        {"a=\\u12.x=1\n", "failed"}, // and not a new line behind the dot
    };
    for (const auto &[content, result] : cases)
        EXPECT_EQ(readIntoList(content), result) << content;
}

TEST(PropertiesFiles, NameThePropertyWithABadEscape)
{
    for (const char *bad : {"t", "=", "n", "0", "\x80"}) {
        CaptureStderr();
        EXPECT_EQ(readIntoList("x=1\npath.dir=C:\\"s + bad + "emp\ny=2\n"), "x=1;failed");
        EXPECT_EQ(GetCapturedStderr(),
                  "OVX0052E The value of property 'path.dir' in the properties file could not be "
                  "parsed, because it contains a backslash character that is not part of a valid "
                  "escape sequence.\n");
    }
}

// Longer than any block that the reader takes at once, with a line end across its border.
TEST(PropertiesFiles, MayBeLongerThanTheReadersBlock)
{
    for (const std::size_t length : {4090u, 4091u, 4092u, 4093u, 70000u}) {
        const std::string value(length, 'v');
        EXPECT_EQ(readIntoList("k=" + value + "\r\nl=1\r\n"), "k=" + value + ";l=1;");
    }
}

// Keys are found in another way when there are many.
TEST(PropertiesFiles, MaySetManyKeysAgain)
{
    std::string content, result;
    for (int round = 0; round < 2; ++round)
        for (int i = 0; i < 200; ++i)
            content += "key" + std::to_string(i) + "=" + std::to_string(i * round) + "\n";
    for (int i = 0; i < 200; ++i)
        result += "key" + std::to_string(i) + "=" + std::to_string(i) + ";";
    EXPECT_EQ(readIntoList(content), result);
}

class Properties : public OpenToolkit {
  protected:
    // The value of a property of a configuration that exists; nothing is made by asking.
    static std::string stored(const char *cfgName, const char *property)
    {
        if (!OvxLogMgrHasCfg(cfgName)) return "no configuration";
        OvxObjCfg *cfg = OvxLogMgrGetCfg(cfgName);
        const std::string value = take(OvxGetObjCfgProp(cfg, property, nullptr));
        OvxReleaseObjCfg(cfg);
        return value;
    }

    static bool load(const std::string &content)
    {
        return OvxLogMgrReadProps(TemporaryFile(content).path());
    }
};

TEST_F(Properties, GoToTheConfigurationBeforeTheLastDot)
{
    EXPECT_TRUE(load("a.b.level = WARN\na.b\\=c=1\n.x.y=2\nlast.one"));
    EXPECT_EQ(stored("a.b", "level"), "WARN");
    EXPECT_EQ(stored("a", "b=c"), "1");
    EXPECT_EQ(stored(".x", "y"), "2");
    EXPECT_EQ(stored("last", "one"), "");
    EXPECT_TRUE(load("a.b.level = INFO\n"));
    EXPECT_EQ(stored("a.b", "level"), "INFO");
    for (const char *bad : {"level", ".level", "level.", "/.level"}) {
        EXPECT_FALSE(load("before.p=1\n"s + bad + "=x\nafter.p=1\n")) << bad;
        EXPECT_EQ(stored("before", "p"), "1");
        EXPECT_EQ(stored("after", "p"), "no configuration") << bad;
    }
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(Properties, ReportFilesThatCannotBeRead)
{
    EXPECT_FALSE(OvxLogMgrReadProps("/nonexistent/file"));
    EXPECT_FALSE(OvxLogMgrReadProps("/tmp"));
    EXPECT_EQ(reports(), (Strings{"No such file or directory", "Is a directory"}));
}

TEST_F(Properties, ConvertTheirText)
{
    StringToStringMap *map = OvxAllocStringToStringMap();
    // What a text gives, and whether it serves.
    const auto read = [&](auto function, const char *text) {
        bool ok = false;
        OvxSetMapProp(map, "p", text);
        const auto value = function(map, "p", &ok);
        return std::pair(value, ok);
    };
    const struct {
        const char *text;
        std::int32_t number;
        bool ok;
    } numbers[] = {
        {" 42 ", 42, true},  {"4.9", 4, true},
        {"12abc", 12, true}, {"0x1F", 0, true},
        {"+7", 7, true},     {"-2147483649", INT32_MIN, true},
        {"WARN", 0, false},  {"99999999999999999999", INT32_MAX, true},
        {"", 0, false},      {nullptr, 0, false},
    };
    for (const auto &entry : numbers)
        EXPECT_EQ(read(OvxGetMapPropInt, entry.text), std::pair(entry.number, entry.ok))
            << (entry.text ? entry.text : "(none)");
    EXPECT_EQ(read(OvxGetMapPropLong, "99999999999999999999"), (std::pair{INT64_MAX, true}));
    EXPECT_EQ(read(OvxGetMapPropBool, "TrUe"), (std::pair{true, true}));
    EXPECT_EQ(read(OvxGetMapPropBool, "true "), (std::pair{false, false}));
    EXPECT_EQ(read(OvxGetMapPropBool, "False"), (std::pair{false, true}));
    EXPECT_EQ(read(OvxGetMapPropDouble, " -2.5e3x"), (std::pair{-2500.0, true}));
    const auto stored = [&](auto set, auto value) {
        set(map, "p", value);
        return take(OvxGetMapProp(map, "p", nullptr));
    };
    EXPECT_EQ(stored(OvxSetMapPropBool, true), "true");
    EXPECT_EQ(stored(OvxSetMapPropLong, INT64_MIN), "-9223372036854775808");
    EXPECT_EQ(stored(OvxSetMapPropFloat, -0.5F), "-0.500000");
    OvxFreeStringToStringMap(map);
}

} // namespace
