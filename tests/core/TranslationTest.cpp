// Messages bound from catalogs: by the process's language, by a formatter's locale, and how long a
// search is remembered.
#include "MadeEvent.h"
#include "Toolkit.h"

#include <chrono>
#include <thread>

#include "ucv/CatalogFiles.h"

using namespace olvex::test;

namespace {

class Translations : public OpenToolkit {
  protected:
    void SetUp() override
    {
        folder_.use();
        setenv("LANG", "de_DE.UTF-8", 1);
        OpenToolkit::SetUp();
    }
    void TearDown() override
    {
        OvxFreeI18Msg(msg_);
        closeToolkit();
    }

    std::string bound() { return take(OvxBindI18Msg(msg_)); }

    CatalogFolder folder_;
    OvxI18Msg *msg_ = OvxAllocI18Msg("app", 1, 1, "%1$s has %2$d");
};

TEST_F(Translations, AreBoundWithTheirParametersOrTheDefaultText)
{
    folder_.put("de/app.cat", catalogBytes({{1, {{1, "%2$d hat %1$s"}, {2, "%1$s %3$d"}}}}));
    OvxAddI18MsgParmString(msg_, "b\xC3\xA4r");
    OvxAddI18MsgParmInt(msg_, 3);
    EXPECT_EQ(bound(), "3 hat b\xC3\xA4r");
    OvxSetI18MsgKey(msg_, 2); // its translation wants more parameters than there are
    EXPECT_EQ(bound(), "%1$s has %2$d");
    OvxSetI18MsgKey(msg_, 3);
    EXPECT_EQ(bound(), "b\xC3\xA4r has 3");
    OvxSetI18MsgKey(msg_, 1);
    ovxSetI18MsgLocale(msg_, "it_IT");
    EXPECT_EQ(bound(), "b\xC3\xA4r has 3");
    OvxSetI18MsgTxt(msg_, nullptr);
    EXPECT_EQ(OvxBindI18Msg(msg_), nullptr);
}

// A catalog may ask for any width: what would fill the memory counts as what cannot be printed.
TEST_F(Translations, OfAnyWidthMakeNoHugeRecord)
{
    folder_.put("de/app.cat", catalogBytes({{1,
                                             {{1, "%1$1000000000s"},
                                              {2, "nun %3$2147483647a"},
                                              {3, "%3$2147483647a"},
                                              {4, "%2$.2000000000d"},
                                              {5, "%2$9000000d und %2$9000000d"}}}}));
    OvxAddI18MsgParmString(msg_, "es");
    OvxAddI18MsgParmInt(msg_, 3);
    OvxAddI18MsgParmDouble(msg_, 1.5);
    const std::pair<int, std::string> cases[] = {{1, "%1$s has %2$d"},
                                                 {2, "nun "},
                                                 {3, "%1$s has %2$d"},
                                                 {4, "%1$s has %2$d"},
                                                 {5, std::string(8999999, ' ') + "3 und "}};
    for (const auto &[key, text] : cases) {
        OvxSetI18MsgKey(msg_, key);
        EXPECT_TRUE(bound() == text) << key;
    }
}

TEST_F(Translations, FollowTheSearchPathAndTheLanguageAtOnce)
{
    folder_.putText("de/app.cat", "deutsch");
    folder_.putText("es/app.cat", "espa\xC3\xB1ol");
    folder_.putText("other/de/app.cat", "anders");
    EXPECT_EQ(bound(), "deutsch");
    setenv("LANG", "es_ES", 1);
    EXPECT_EQ(bound(), "espa\xC3\xB1ol");
    char assignment[] = "LANG=de_DE.UTF-8";
    putenv(assignment);
    EXPECT_EQ(bound(), "deutsch");
    assignment[5] = 'e', assignment[6] = 's'; // behind the environment's back
    EXPECT_EQ(bound(), "espa\xC3\xB1ol");
    setenv("LANG", "de", 1);
    folder_.use("other/%L/%N.cat");
    EXPECT_EQ(bound(), "anders");
    unsetenv("NLSPATH");
    EXPECT_EQ(bound(), "%1$s has %2$d");
}

// A catalog that appears is noticed soon, and at once when anything else about the search changed.
TEST_F(Translations, AppearSoonAfterTheirCatalog)
{
    EXPECT_EQ(bound(), "%1$s has %2$d");
    folder_.putText("de/app.cat", "deutsch");
    std::this_thread::sleep_for(std::chrono::milliseconds(101));
    EXPECT_EQ(bound(), "deutsch");
}

TEST_F(Translations, FollowTheLocaleOfTheFormatter)
{
    folder_.put("de/app.cat", catalogBytes({{1, {{1, "Platte %1$s"}}}}));
    folder_.put("fr/app.cat", catalogBytes({{1, {{1, "disque %1$s"}}}}));
    OvxObject *formatter = get("french", "ovx_basicformatter");
    const auto log = [&] {
        const MadeEvent event =
            eventAt(0, OVX_LEVEL_INFO, "app", 1, "disk %1$s", OVX_PARM_STRING, "sda", 0);
        const std::string line = take(OvxBasicFormatterFFormat(formatter, event.get()));
        return line.substr(line.find(' ', 11) + 1);
    };
    EXPECT_EQ(log(), "Platte sda\n");
    OvxSetObjProp(formatter, "locale", "fr_FR.UTF-8");
    EXPECT_EQ(log(), "disque sda\n");
    OvxSetObjProp(formatter, "locale", "it");
    EXPECT_EQ(log(), "disk sda\n");
}

// The toolkit's own use of a catalog leaves a host's alone, and ends with the toolkit.
TEST_F(Translations, DoNotDisturbCatalogsOfTheHost)
{
    const std::string path = folder_.putText("de/app.cat", "deutsch");
    ucv_cat_t *hosts = ucv_catopen(path.c_str(), 0, nullptr);
    EXPECT_EQ(bound(), "deutsch");
    EXPECT_EQ(ucv_catclose(hosts), 0);
    folder_.putText("es/app.cat", "espa\xC3\xB1ol");
    ovxSetI18MsgLocale(msg_, "es");
    EXPECT_EQ(bound(), "espa\xC3\xB1ol");
    EXPECT_EQ(ucv_catclose_fully(hosts), 0);
    EXPECT_EQ(bound(), "espa\xC3\xB1ol");
    ovxSetI18MsgLocale(msg_, nullptr);
    EXPECT_EQ(bound(), "deutsch");
}

} // namespace
