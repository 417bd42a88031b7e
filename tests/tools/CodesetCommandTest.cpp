// `olvex codeset` as a user runs it.

#include "core/Localedef.h"
#include "tools/Command.h"

namespace {

namespace fs = std::filesystem;
using tools_test::Outcome;
using tools_test::run;

class CodesetCommand : public testing::Test {
  protected:
    std::string at(const std::string &name) const { return directory_ / name; }

    tools_test::Folder directory_;
};

TEST_F(CodesetCommand, MakesTheSameBytesAsTheBuildAndTellsWhatFilesAre)
{
    Outcome outcome = run({"codeset", "make", "gb-18030", "Shift_JIS", "cp1255", "-o", at("new")});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("CP1255: left unmapped: 0 codes, "), std::string::npos);
    EXPECT_NE(outcome.out.find("3 tables in "), std::string::npos);
    for (const char *name : {"GB18030", "CP932", "SJIS", "CP1255"})
        EXPECT_EQ(directory_.read(std::string("new/") + name),
                  directory_.read(std::string(OLVEX_TABLES "/codeset/") + name))
            << name;
    ASSERT_EQ(run({"codeset", "make", "--quiet", "KOI8-R", "-o", at("one/more")}).out, "");
    EXPECT_EQ(run({"codeset", "list", at("one/more")}).out, // and nothing temporary is left over
              "878                    the same as KOI8R\n"
              "CP878                  the same as KOI8R\n"
              "KOI8R                  ASCII-based, one byte                   3296 bytes\n");
    EXPECT_EQ(run({"codeset", "show", at("one/more/KOI8R")}).out,
              "Code set:   KOI8R\nFamily:     1, ASCII-based, one byte\nSize:       3296 bytes\n"
              "Characters: 256\n");
    EXPECT_EQ(run({"codeset", "show", at("one/more/878")}).out, "Alias of:   KOI8R\n");
}

TEST_F(CodesetCommand, ExplainsMistakes)
{
    const Outcome unknown = run({"codeset", "make", "klingon", "-o", directory_.path()});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_NE(unknown.err.find("there is no code set 'klingon'"), std::string::npos);
    EXPECT_EQ(run({"codeset", "make", "-o", directory_.path()}).code, 2);
    EXPECT_EQ(run({"codeset", "show", at("absent")}).code, 1);
    EXPECT_EQ(run({"codeset", "list", at("absent")}).code, 1);
    const Outcome blocked = run({"codeset", "make", "646", "-o", "/proc/nowhere"});
    EXPECT_EQ(blocked.code, 1);
    EXPECT_FALSE(blocked.err.empty());
}

// Tables are in the byte order of the machine that made them.
TEST_F(CodesetCommand, RefusesATableOfTheOtherByteOrder)
{
    std::string table = directory_.read(OLVEX_TABLES "/codeset/KOI8R");
    std::reverse(table.begin(), table.begin() + 4); // where the mapping data begins
    directory_.put("KOI8R", table);
    const Outcome shown = run({"codeset", "show", at("KOI8R")});
    EXPECT_EQ(shown.code, 1);
    EXPECT_NE(shown.err.find("other byte order"), std::string::npos) << shown.err;
    EXPECT_EQ(run({"codeset", "list", directory_.path()}).out,
              "KOI8R                  for machines of the other byte order\n");
}

// In a locale of another code set the library finds the tables.
TEST_F(CodesetCommand, DecidesWhatOtherVerbsWrite)
{
    const std::string make = olvex::test::localedef() + "-i ru_RU -f KOI8-R '" +
                             at("ru_RU.KOI8-R") + "' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) GTEST_SKIP() << "no locale can be made here";
    setenv("UCVDIR", OLVEX_TABLES, 1);
    setenv("LOCPATH", directory_.path().c_str(), 1);
    setenv("LC_ALL", "ru_RU.KOI8-R", 1);
    const Outcome outcome = run({"log"}, "Журнал\n");
    unsetenv("LC_ALL");
    EXPECT_TRUE(outcome.out.ends_with(" \xF6\xD5\xD2\xCE\xC1\xCC\n")) << outcome.out;
    unsetenv("LOCPATH");
    unsetenv("UCVDIR");
}

// A program with the rights of another group takes tables neither from where the environment says
// nor from where it was started. Here the table of KOI8-R has a name that no other place has.
TEST_F(CodesetCommand, TablesAreNotReplacedInAProgramWithRaisedPrivileges)
{
    const std::string log = at("own.log");
    directory_.put("own.properties",
                   "own.className = ovx_basiclogger\nown.listenerNames = ownFile\n"
                   "ownFile.className = ovx_filehandler\nownFile.fileName = " +
                       log + "\nownFile.fileEncoding = OWNSET\n");
    fs::create_directory(at("codeset"));
    fs::copy_file(OLVEX_TABLES "/codeset/KOI8R", at("codeset/OWNSET"));
    const auto write = [&](const std::string &command) {
        fs::remove(log);
        run({"log", "--config", at("own.properties"), "--logger", "own"}, "Журнал\n", command);
        const std::string text = directory_.read("own.log");
        return text.substr(std::min(text.size(), text.rfind(' ')));
    };
    tools_test::expectPrivilegedIgnores(directory_, "UCVDIR", directory_.path(), "codeset", write,
                                        " \xF6\xD5\xD2\xCE\xC1\xCC\n", " Журнал\n");
}

} // namespace
