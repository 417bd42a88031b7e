// Locale names and code-set handles.

#include <clocale>

#include "core/Localedef.h"
#include "core/LogDirectory.h"
#include "ucv/Handle.h"

namespace {

namespace fs = std::filesystem;

TEST(Locales, HaveCanonicalNamesAndLanguages)
{
    const struct {
        int (*function)(const char *, char *, size_t);
        const char *name, *canonical;
        std::size_t room = 64;
    } cases[] = {{ucv_canonical_loc, "american", "C"},
                 {ucv_canonical_loc, "su", "fi"},
                 {ucv_canonical_loc, "FR@euro", "fr"},
                 {ucv_canonical_loc, "de-de", "de_DE"},
                 {ucv_canonical_loc, "ja_jp.eucJP", "ja_JP"},
                 {ucv_canonical_loc, "POSIX", "POSIX"},
                 {ucv_canonical_loc, "en_USA", "en_USA"},
                 {ucv_canonical_loc, "e", "e"},
                 {ucv_canonical_loc, "", ""},
                 {ucv_canonical_loc, "Jp_JP", "ja_JP"},
                 {ucv_canonical_loc, "x_y", "x_y"},
                 {ucv_canonical_loc, "de_DE", "de_", 4},
                 {ucv_canonical_loc, "de_DE", "untouched", 0},
                 {ucv_canonical_lang, "fr_CA", "fr_FR"},
                 {ucv_canonical_lang, "en_US", "C"},
                 {ucv_canonical_lang, "de_DE", "de"},
                 {ucv_canonical_lang, "pt_BR", "pt_BR"},
                 {ucv_canonical_lang, "zh", "zh_CN"},
                 {ucv_canonical_lang, "ja.eucJP", "ja_JP"}};
    for (const auto &entry : cases) {
        char buffer[64] = "untouched";
        entry.function(entry.name, buffer, entry.room);
        EXPECT_STREQ(buffer, entry.canonical) << entry.name;
    }
}

TEST(Locales, AreSetOrFallBackToC)
{
    EXPECT_STREQ(ucv_setlocale(LC_ALL, "C"), "C");
    EXPECT_STREQ(ucv_setlocale(LC_ALL, "xx_YY"), "C");
    EXPECT_STREQ(ucv_setlocale(LC_ALL, "en.nowhere"), "C"); // the platform's name for "en"
    char *locale = ucv_loc_new("pt-br.UTF-8");
    EXPECT_STREQ(locale, "pt_BR");
    ucv_loc_free(locale);
}

// A directory of table files, found through UCVDIR.
class Tables : public testing::Test {
  protected:
    void SetUp() override { ucv_set_dir(directory_.path().c_str()); }
    void TearDown() override
    {
        unsetenv("UCVDIR");
        ucv_uninit();
    }

    void write(const std::string &name, const std::string &content)
    {
        directory_.write("codeset/" + name, content);
    }

    static std::string table(const std::string &name, char family)
    {
        std::string image(olvex::ucv::kHeaderSize, '\0');
        image.replace(olvex::ucv::kMagicAt, 3, "\x75\x63\x76");
        image.replace(olvex::ucv::kNameAt, name.size(), name);
        image[olvex::ucv::kFamilyAt] = family;
        return image;
    }

    olvex::test::LogDirectory directory_;
};

TEST_F(Tables, AreFoundByAnyOfTheirNames)
{
    write("ISO88591", table("ISO88591", 1));
    write("LATIN1", "ISO88591\n");
    write("1047", table("KEL1047", 8));
    for (const char *name : {"iso8859-1", "ISO_8859_1", "latin-1"}) {
        uc_ch_t *handle = ucv_cs_new(name);
        ASSERT_NE(handle, nullptr) << name;
        EXPECT_STREQ(ucv_get_cs_name(handle), "ISO88591");
        ucv_cs_free(handle);
    }
    uc_ch_t *handle = ucv_cs_new("KEL-1047"); // and by its number alone
    EXPECT_STREQ(ucv_get_cs_name(handle), "KEL1047");
    ucv_cs_free(handle);
}

// Directory and name have at most 255 bytes.
TEST_F(Tables, AreFoundUnderPathsOf255Bytes)
{
    const std::string file = "/codeset/X1";
    for (const std::size_t length : {255u, 256u}) {
        std::string base = directory_ / std::string(100, 'd');
        base += "/" + std::string(length - file.size() - base.size() - 1, 'e');
        fs::create_directories(base + "/codeset");
        std::ofstream(base + file, std::ios::binary) << table("X1", 1);
        ucv_set_dir(base.c_str());
        uc_ch_t *handle = ucv_cs_new("x1");
        EXPECT_EQ(handle != nullptr, length == 255) << length;
        ucv_cs_free(handle);
    }
}

// There "i" and "I" are two letters, in whatever case.
TEST_F(Tables, AndWordsAreKnownInATurkishLocale)
{
    const std::string command = olvex::test::localedef() + "-i tr_TR -f UTF-8 '" +
                                (directory_ / "tr_TR") + "' >/dev/null 2>&1";
    [[maybe_unused]] const int warned = std::system(command.c_str());
    setenv("LOCPATH", directory_.path().c_str(), 1);
    ASSERT_STREQ(std::setlocale(LC_CTYPE, "tr_TR"), "tr_TR");
    write("ISO88599", table("ISO88599", 1));
    uc_ch_t *handle = ucv_cs_new("iso8859-9");
    EXPECT_NE(handle, nullptr);
    EXPECT_EQ(OvxGetLevelFromString("info"), OVX_LEVEL_INFO);
    EXPECT_LT(BaxStringICmp("i", "K"), 0);
    ucv_cs_free(handle);
    std::setlocale(LC_CTYPE, "C");
    unsetenv("LOCPATH");
}

TEST_F(Tables, ThatAreNoneAreRefused)
{
    std::string image = table("BAD", 1);
    write("SHORT", image.substr(0, image.size() - 1));
    image[olvex::ucv::kMagicAt] = 'x';
    write("MAGIC", image);
    write("LOOP", "LOOP");
    write("A1", "A2");
    write("A2", "../A1");
    write("EMPTY", " \n\t");
    fs::create_directory(directory_ / "codeset/DIR");
    for (const char *name :
         {"short", "magic", "loop", "a1", "empty", "dir", "absent", "", "///", "/etc/passwd"})
        EXPECT_EQ(ucv_cs_new(name), nullptr) << name;
    EXPECT_EQ(ucv_cs_new(std::string(500, 'A').c_str()), nullptr);
}

TEST_F(Tables, AreSharedByDuplicatesThatOutliveTheirOwner)
{
    write("X1", table("X1", 1));
    uc_ch_t *owner = ucv_cs_new("x1");
    uc_ch_t *copy = ucv_dup_handle(owner);
    EXPECT_EQ(ucv_cs_table(owner, nullptr), ucv_cs_table(copy, nullptr));
    ucv_set_def_cs(owner);
    EXPECT_EQ(ucv_get_def_cs(), owner);
    ucv_cs_free(owner);
    EXPECT_STREQ(ucv_get_cs_name(nullptr), "OS");
    EXPECT_STREQ(ucv_get_cs_name(copy), "X1");
    ucv_cs_free(copy);
}

TEST_F(Tables, TheDefaultComesFromTheEnvironment)
{
    ucv_uninit();
    write("MINE", table("MINE", 1));
    setenv("UCV_CODESET", "mine", 1);
    EXPECT_STREQ(ucv_get_cs_name(nullptr), "MINE");
    ucv_uninit();
    setenv("UCV_CODESET", "nowhere", 1);
    write("DEFAULT", table("FALLBACK", 1));
    EXPECT_STREQ(ucv_get_cs_name(nullptr), "FALLBACK");
    unsetenv("UCV_CODESET");
}

} // namespace
