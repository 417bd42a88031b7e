// `olvex catalog` as a user runs it: sources and their mistakes, files, translations.
#include "Command.h"

#include "catalog/CatalogFile.h"
#include "catalog/Check.h"
#include "catalog/Source.h"
#include "ucv/CatalogFiles.h"

using namespace tools_test;
using olvex::test::CatalogFolder;
using tools::catalog::Messages;

namespace {

namespace fs = std::filesystem;

TEST(CatalogSource, IsReadAsItHasAlwaysBeen)
{
    const tools::catalog::Source source = tools::catalog::parseSource(
        "app.msg", "$ a comment\n$\n\n"
                   "2 before any set\r\n"
                   "$set 7 the seventh\n"
                   "1  one blank is dropped \n"
                   "2 goes \\\non\\n\\t\\v\\b\\r\\f\\\\\\q\\303\\251\\60\n"
                   "3 \"no quotes yet\"\n"
                   "4 \n"
                   "5 goes away\n"
                   "5\n"
                   "$quote \"\n"
                   "6 \" kept \\\" \"  \n"
                   "7 \"\"\n"
                   "8 bare \"word\"\n"
                   "$quote\n"
                   "9 \"again\n"
                   "$set 8\n1 x\n$delset 8\n"
                   "2 the last line");
    EXPECT_EQ(source.problems, std::vector<std::string>{});
    EXPECT_EQ(tools::catalog::writeSource(source.messages),
              "$quote \"\n$set 1\n2 \"before any set\"\n"
              "$set 7\n1 \" one blank is dropped \"\n"
              "2 \"goes on\\n\\t\\v\\b\\r\\f\\\\q\xC3\xA9\x30\"\n"
              "3 \"\\\"no quotes yet\\\"\"\n"
              "4 \"\"\n"
              "6 \" kept \\\" \"\n"
              "7 \"\"\n"
              "8 \"bare \\\"word\\\"\"\n"
              "9 \"\\\"again\"\n"
              "$set 8\n2 \"the last line\"\n");
}

TEST(CatalogCommand, NamesThePlaceOfEachMistake)
{
    const std::pair<const char *, const char *> lines[] = {
        {"1 fine", ""},
        {"word", ":2:1: a line begins with a number or with '$'"},
        {"$sett 3", ":3:1: there is no directive '$sett'"},
        {"$set 0", ":4:6: a set's number is from 1 to 2147483647"},
        {"2x text", ":5:2: a message's number ends with a blank"},
        {"$quote '", ""},
        {"3 'open", ":7:3: the closing quote is missing"},
        {"4 'closed' more", ":8:12: there is text behind the closing quote"},
        {"5 \xC3\xA4\xC3\xA4\\400", ":9:6: a byte in octal is from 001 to 377"},
        {"6 \\000", ":10:4: a byte in octal is from 001 to 377"},
        {"7 \\303", ":11:4: these bytes are no characters"},
        {"8 \xC3\xA4\xFF", ":12:4: this is not UTF-8"},
        {"1 again", ":13:1: message 1 of set 1 is in line 1 already"},
        {"99999999999 far", ":14:1: a message's number is from 1 to 2147483647"},
    };
    Folder folder;
    std::string source, expected;
    for (const auto &[line, problem] : lines) {
        source += std::string(line) + "\n";
        if (*problem) expected += folder / "bad.msg" + problem + "\n";
    }
    folder.put("bad.msg", source);
    const Outcome outcome =
        run({"catalog", "compile", folder / "bad.msg", "-o", folder / "bad.cat"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, expected);
    EXPECT_FALSE(fs::exists(folder / "bad.cat"));
}

TEST(CatalogCommand, MakesFilesThatTheLibraryReadsAndDumpPrintsBack)
{
    const CatalogFolder folder;
    const std::string source = folder.put(
        "app.msg", "$set 3\n9 nine\\n\\001\n2 \xE6\x97\xA5 \"two\" \\\\\n$set 1\n4 four\n");
    const std::string catalog = folder.path() + "/app.cat", copy = folder.path() + "/copy";
    ASSERT_EQ(run({"catalog", "compile", source, "-o", catalog}).code, 0);
    ucv_cat_t *open = ucv_catopen(catalog.c_str(), 0, nullptr);
    uc_ch_t *utf8 = ucv_cs_new("UTF8");
    EXPECT_STREQ(ucv_catgets(open, 1, 4, "-", utf8), "four");
    EXPECT_STREQ(ucv_catgets(open, 3, 2, "-", utf8), "\xE6\x97\xA5 \"two\" \\");
    EXPECT_STREQ(ucv_catgets(open, 3, 9, "-", utf8), "nine\n\1");
    ucv_catclose_fully(open);

    const Outcome dump = run({"catalog", "dump", catalog});
    EXPECT_EQ(dump.out, "$quote \"\n$set 1\n4 \"four\"\n$set 3\n"
                        "2 \"\xE6\x97\xA5 \\\"two\\\" \\\\\"\n9 \"nine\\n\\001\"\n");
    const std::string again = folder.put("again.msg", dump.out);
    ASSERT_EQ(run({"catalog", "compile", again, "-o", copy}).code, 0);
    EXPECT_EQ(folder.read("copy"), folder.read("app.cat"));
    EXPECT_EQ(run({"catalog", "dump", catalog, "-o", copy}).code, 0);
    EXPECT_EQ(folder.read("copy"), dump.out);
}

TEST(CatalogCommand, RefusesWhatItCannotUse)
{
    const CatalogFolder folder;
    const std::string source = folder.put("app.msg", "1 text\n");
    const std::string empty = folder.put("empty.msg", "$ nothing\n");
    const std::string bad = folder.put("bad.cat", std::string(100, 'x'));
    const std::string target = folder.path() + "/app.cat";
    const struct {
        std::vector<std::string> arguments;
        int code;
        const char *says;
    } cases[] = {
        {{"compile", "nowhere.msg", "-o", target}, 1, "nowhere.msg cannot be read: No such file"},
        {{"compile", folder.path(), "-o", target}, 1, "cannot be read: Is a directory"},
        {{"compile", empty, "-o", target}, 1, "holds no messages"},
        {{"compile", source, "-o", "/nowhere/app.cat"}, 1, "cannot be written"},
        {{"compile", source, "-o", target, "--codeset", "none"}, 1, "there is no code set 'none'"},
        {{"dump", bad}, 1, "no valid catalog: it lacks the magic"},
        {{"compile", source}, 2, "--output is required"},
        {{"bake"}, 2, "--help"},
        {{}, 2, "--help"},
    };
    for (const auto &entry : cases) {
        std::vector<std::string> arguments = entry.arguments;
        arguments.insert(arguments.begin(), "catalog");
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, entry.code) << entry.says;
        EXPECT_NE(outcome.err.find(entry.says), std::string::npos) << outcome.err;
    }
}

TEST(CatalogCommand, ReadsOnlyWhatLiesInsideAFile)
{
    const std::string whole =
        tools::catalog::makeCatalog({{{1, 1}, {"one", {}}}, {{2, 5}, {"two", {}}}});
    EXPECT_EQ(tools::catalog::readCatalog(whole).size(), 2u);
    for (std::size_t size = 0; size < whole.size() - 1; ++size)
        EXPECT_THROW(tools::catalog::readCatalog(whole.substr(0, size)), std::runtime_error)
            << size;
    const std::string circle =
        olvex::test::headerBytes(1) +
        olvex::test::bytesOf<MCSetTDisk>({1, 28, 0, 0, 0, 0, 1}, hton_MCSetTDisk);
    EXPECT_THROW(tools::catalog::readCatalog(circle), std::runtime_error);
}

TEST(CatalogCheck, ComparesPlaceholdersByArgument)
{
    const struct {
        const char *base, *translation, *problem;
    } cases[] = {
        {"%s has %d", "%2$d: %1$s", ""},
        {"%1s and %2s", "%s %1s", ""}, // widths, not numbers
        {"%*d", "%2$*1$d", ""},
        {"%s has %d", "%d hat %s", "prints argument 1 as %d instead of %s"},
        {"%ld x", "%d y", "prints argument 1 as %d instead of %ld"},
        {"%s %s", "%s", "lacks argument 2 (%s)"},
        {"%s x", "%s %2$s", "mixes placeholders with and without a number"},
        {"%1$s x", "%1$s %2$d", "has argument 2, which the base does not use"},
        {"%1$s x", "%1$s %1$d", "uses argument 1 in two ways"},
        {"100%% x", "100% y", "has a '%' that begins no placeholder"},
        {"same", "same", "is not translated"},
        {"%s: %d", "%s: %d", ""}, // nothing to translate
    };
    for (const auto &entry : cases) {
        tools::catalog::Source base, translation;
        translation.file = "de.msg";
        base.messages[{1, 4}].text = entry.base;
        translation.messages[{1, 4}] = {entry.translation, {3, 1}};
        const std::string problem =
            *entry.problem ? "de.msg:3:1: message 4 of set 1 " + std::string(entry.problem) : "";
        const auto problems = tools::catalog::checkTranslation(base, translation, false);
        EXPECT_EQ(problems.empty() ? "" : problems[0], problem) << entry.translation;
    }
}

TEST(CatalogCheck, ReportsWhatIsMissingAndWhatIsTooMuch)
{
    Folder folder;
    const std::string base = folder.put("en.msg", "1 one\n2 two\n3 OK\n");
    const std::string german = folder.put("de.msg", "1 eins\n3 OK\n4 vier\n");
    const Outcome outcome = run({"catalog", "check", base, german, "--allow-same"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, german + ":1:1: message 2 of set 1 is missing (" + base + ":2)\n" +
                               german + ":3:1: message 4 of set 1 is not in the base\n");
    EXPECT_EQ(run({"catalog", "check", base, base, "--allow-same"}).code, 0);
    EXPECT_EQ(run({"catalog", "check", base, base}).code, 1);
}

// The toolkit's own messages: every translation has every message, with the same placeholders and
// under the same identifier.
TEST(CatalogsOfTheToolkit, AgreeWithItsMessages)
{
    Folder folder;
    const std::string builtIn = folder.put("base.msg", run({"catalog", "builtin"}).out);
    const tools::catalog::Source base = tools::catalog::readSource(builtIn, "");
    ASSERT_GT(base.messages.size(), 50u);
    int languages = 0;
    for (const auto &entry : fs::directory_iterator(OLVEX_CATALOG_SOURCES)) {
        if (!entry.is_directory()) continue;
        ++languages;
        const std::string file = entry.path().string() + "/ovxmsg.msg";
        const Outcome outcome = run({"catalog", "check", builtIn, file});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        for (const auto &[key, message] : tools::catalog::readSource(file, "").messages) {
            const std::string wanted = base.messages.at(key).text;
            if (!wanted.starts_with("OVX")) continue;
            EXPECT_TRUE(message.text.starts_with(wanted.substr(0, wanted.find(' ') + 1)))
                << file << ':' << message.place.line;
        }
    }
    EXPECT_EQ(languages, 6);
}

// A program with the rights of another group takes catalogs neither from where the environment
// says nor from where it was started.
TEST(CatalogsOfTheToolkit, AreNotReplacedInAProgramWithRaisedPrivileges)
{
    const CatalogFolder folder;
    folder.put("C/ovxmsg.cat", tools::catalog::makeCatalog({{{1, 51}, {"replaced %s", {}}}}));
    const auto say = [](const std::string &command) {
        return run({"log", "--config", "missing.properties"}, "", command).err.substr(0, 8);
    };
    expectPrivilegedIgnores(folder, "NLSPATH", folder / "%L/%N.cat", "C", say, "replaced",
                            "OVX0051E");
}

// What the header does is tried by compiling it, in tests/front/refused.sh.
TEST(CatalogHeader, NamesMessagesAndTellsWhatCannotBeTyped)
{
    Folder folder;
    const std::string source = folder.put("my-app.de.msg", "1 APP0001E one\n"
                                                           "2 APP0002W twice\n"
                                                           "3 APP0002W twice\n"
                                                           "$set 4\n5 MY_ Ärger \\\"%hhd\\\"\n"),
                      header = folder.put("out.h", "");
    ASSERT_EQ(run({"catalog", "header", source, "-o", header}).code, 0);
    const std::string text = folder.read("out.h");
    for (const char *line :
         {"#define MY_APP_CATALOG \"my-app\"\n", "#define MY_APP_APP0001E(logger, level) ",
          "#define MY_APP_1_2(", "#define MY_APP_1_3_KEY 3\n",
          "#define MY_APP_4_5(logger, level, p1) ",
          "#define MY_APP_4_5_TEXT \"MY_ Ärger \\\"%hhd\\\"\"\n", "const char *function, int p1)"})
        EXPECT_NE(text.find(line), std::string::npos) << line << text;
    ASSERT_EQ(run({"catalog", "header", source, "-o", header, "--prefix", "APP"}).code, 0);
    EXPECT_NE(folder.read("out.h").find("#define APP0001E(logger, level) "), std::string::npos);

    const Outcome wrongPrefix = run({"catalog", "header", source, "-o", header, "--prefix", "1x"});
    EXPECT_EQ(wrongPrefix.code, 1);
    EXPECT_EQ(wrongPrefix.err, "olvex catalog: '1x' cannot begin a name of C\n");
    std::string many = "4 ";
    for (int i = 0; i < 59; ++i)
        many += "%d";
    const std::string bad =
        folder.put("bad.msg", "1 %2$s\n2 %ls\n3 %1$d %1$s\n" + many + "\n5 fine %s\n");
    const Outcome outcome = run({"catalog", "header", bad, "-o", header});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err,
              bad + ":1:1: message 1 of set 1 does not use argument 1\n" + bad +
                  ":2:1: message 2 of set 1 prints wide text with %ls, which no parameter is\n" +
                  bad + ":3:1: message 3 of set 1 uses argument 1 in two ways\n" + bad +
                  ":4:1: message 4 of set 1 has more than 58 parameters\n");
}

} // namespace
