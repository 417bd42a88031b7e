// Message catalogs: which file is found, what is read from it, what stays cached, and files that
// are not what they say.
#include "CatalogFiles.h"
#include "Paths.h"

#include <gtest/gtest.h>

#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace olvex::test;

namespace {

uc_ch_t *utf8()
{
    return ucv_cs_new("UTF8");
}

std::string firstText(ucv_cat_t *catalog, uc_ch_t *codeSet = utf8())
{
    return ucv_catgets(catalog, 1, 1, "(default)", codeSet);
}

// Opens, takes message 1 of set 1 as it is and in the process's code set, and closes.
std::string lookUp(const char *name, int flags, const char *locale)
{
    ucv_cat_t *catalog = ucv_catopen(name, flags, locale);
    const std::string text = catalog ? firstText(catalog) : "(none)";
    EXPECT_EQ(catalog ? firstText(catalog, nullptr) : "(none)", text);
    ucv_catclose_fully(catalog);
    return text;
}

TEST(CatalogSearch, TriesLocalesFromTheSpecialToTheGeneral)
{
    const CatalogFolder folder;
    folder.use();
    for (const char *locale : {"fr_CA", "fr", "fr_FR", "C"})
        folder.putText(std::string(locale) + "/app.cat", locale);
    EXPECT_EQ(lookUp("app", 0, "fr-ca.UTF-8"), "fr_CA");
    const std::pair<const char *, int> steps[] = {
        {"fr_CA", 0},
        {"fr", UCV_CAT_NO_LETTERS},
        {"fr_FR", UCV_CAT_NO_LETTERS | UCV_CAT_NO_LANGUAGE}};
    for (const auto &[found, flagsWithout] : steps) {
        EXPECT_EQ(lookUp("app", 0, "fr_CA"), found);
        std::filesystem::remove(folder / found + "/app.cat");
        EXPECT_EQ(lookUp("app", flagsWithout, "fr_CA"), lookUp("app", 0, "fr_CA")) << found;
    }
    EXPECT_EQ(lookUp("app", UCV_CAT_NO_C, "fr_CA"), "(none)");
    EXPECT_EQ(lookUp("app", 0, "../fr_CA"), "C"); // no way out of the folder
    EXPECT_EQ(lookUp("", 0, "C"), "(none)");

    for (const char *locale : {"de", "es", "it"})
        folder.putText(std::string(locale) + "/app.cat", locale);
    setenv("LANG", "de_DE.UTF-8", 1);
    setenv("LC_MESSAGES", "es_ES.UTF-8", 1);
    unsetenv("LC_ALL");
    EXPECT_EQ(lookUp("app", 0, nullptr), "de");
    EXPECT_EQ(lookUp("app", UCV_CAT_MESSAGES, nullptr), "es");
    setenv("LC_ALL", "it", 1);
    EXPECT_EQ(lookUp("app", UCV_CAT_MESSAGES, nullptr), "it");
    for (const char *variable : {"LC_ALL", "LC_MESSAGES"})
        unsetenv(variable);
    EXPECT_EQ(lookUp("app", UCV_CAT_MESSAGES, nullptr), "de");
}

TEST(CatalogSearch, FillsInTemplates)
{
    const CatalogFolder folder;
    folder.putText("app.de.AT.%x%", "letters");
    folder.putText("second/app.cat", "second");
    folder.putText("C:/app.cat", "drive");
    folder.use("%N.%l.%t.%x%");
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "letters");
    folder.use("none/%N:;:" + folder.path() + "/second/%N.cat");
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "second");
    ASSERT_EQ(chdir(folder.path().c_str()), 0);
    setenv("NLSPATH", "C:/%N.cat", 1);
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "drive");
    unsetenv("NLSPATH");
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "(none)");
    folder.putText("app.cat", "here");
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "here");
    EXPECT_EQ(lookUp("second/app.cat", 0, "de_AT"), "second");
    EXPECT_EQ(lookUp("./nowhere.cat", 0, "de_AT"), "(none)");
    folder.use(std::string(5000, 'x') + "%N:" + folder.path() + "/second/%N.cat");
    EXPECT_EQ(lookUp("app", 0, "de_AT"), "second"); // what is too long is no file
}

TEST(CatalogTexts, AreFoundBySetAndNumber)
{
    const CatalogFolder folder;
    std::string bytes =
        catalogBytes({{1, {{1, "one"}, {2, "two"}, {7, "seven"}, {4000000000u, "far"}}},
                      {2, {{1, "never"}}},
                      {4, {{5, "five of four"}}}});
    bytes[23] = 2; // sets, since the second is not valid: the next in the chain stands for it
    bytes[28 + 28 + 4 * 12 + 18 + 27] = 1;
    const std::string path = folder.put("app.cat", bytes);
    ucv_cat_t *catalog = ucv_catopen(path.c_str(), 0, nullptr);
    ASSERT_NE(catalog, nullptr);
    const struct {
        int set, message;
        const char *text;
    } cases[] = {{1, 1, "one"}, {1, 2, "two"},          {1, 7, "seven"}, {1, 3, "-"},
                 {1, 8, "-"},   {1, -1, "-"},           {2, 1, "-"},     {3, 7, "-"},
                 {4, 1, "-"},   {4, 5, "five of four"}, {-1, 1, "-"}};
    for (const auto &entry : cases)
        EXPECT_STREQ(ucv_catgets(catalog, entry.set, entry.message, "-", utf8()), entry.text)
            << entry.set << ' ' << entry.message;
    EXPECT_EQ(ucv_catgets(catalog, 1, 3, nullptr, utf8()), nullptr);
    ucv_catclose_fully(catalog);
}

TEST(CatalogTexts, ComeInTheCodeSetThatIsAskedFor)
{
    const CatalogFolder folder;
    ucv_set_dir(OLVEX_TABLES);
    uc_ch_t *latin1 = ucv_cs_new("ISO8859-1");
    ASSERT_NE(latin1, nullptr);
    const std::string path = folder.put(
        "app.cat", catalogBytes({{1, {{1, "caf\xC3\xA9"}, {2, ""}, {3, "\xC3\xA9\xC3\xA9"}}}}));
    ucv_cat_t *catalog = ucv_catopen(path.c_str(), 0, nullptr);
    ucv_set_def_cs(latin1);
    const char *stored = ucv_catgets(catalog, 1, 1, "-", utf8());
    EXPECT_STREQ(stored, "caf\xC3\xA9");
    EXPECT_STREQ(ucv_catgets(catalog, 1, 1, "-", nullptr), "caf\xE9");
    EXPECT_STREQ(ucv_catgets(catalog, 1, 2, "-", nullptr), "");
    EXPECT_STREQ(ucv_catgets(catalog, 1, 3, "-", latin1), "\xE9\xE9");
    EXPECT_STREQ(ucv_catgets(catalog, 1, 1, "-", latin1), "caf\xE9");
    EXPECT_EQ(ucv_catgets(catalog, 1, 1, "-", utf8()), stored); // as stored, not a copy
    ucv_catclose_fully(catalog);
    ucv_set_def_cs(nullptr);
    ucv_cs_free(latin1);
}

std::string setRecord(MCSetTDisk record)
{
    return bytesOf(record, hton_MCSetTDisk);
}

// A catalog with one set, in which message N has the text at the place N - 1 of `places`.
std::string bytesOfTexts(const std::string &texts, const std::vector<std::uint32_t> &places)
{
    const auto count = static_cast<std::uint32_t>(places.size());
    const auto size = static_cast<std::uint32_t>(texts.size());
    std::string bytes = headerBytes(1) + setRecord({1, 0, 56, 56 + 12 * count, size, count, 0});
    for (std::uint32_t id = 1; id <= count; ++id)
        bytes += bytesOf<MCMsgTDisk>({id, places[id - 1], 0}, hton_MCMsgTDisk);
    return bytes + texts;
}

std::string converted(uc_ch_t *codeSet, const char *text)
{
    char *slot = nullptr;
    const std::string result = ucv_u2s(codeSet, text, &slot);
    BaxMemoryFree(slot);
    return result;
}

class SharedTexts : public testing::TestWithParam<const char *> {};

// Messages with the same text, with the end of another's, and with what begins inside a character.
TEST_P(SharedTexts, ComeInEveryCodeSet)
{
    const CatalogFolder folder;
    ucv_set_dir(OLVEX_TABLES);
    uc_ch_t *codeSet = ucv_cs_new(GetParam());
    ASSERT_NE(codeSet, nullptr);
    const std::string texts("caf\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC!\0\0caf\xE9\0x\xE9yz\0\xD0\x96",
                            27);
    std::vector<std::uint32_t> places;
    for (const std::uint32_t first : {0u, 5u, 0u, 24u, 12u})
        places.push_back(first);
    for (std::uint32_t place = 0; place < texts.size(); ++place)
        places.push_back(place);
    const std::string path = folder.put("app.cat", bytesOfTexts(texts, places));
    ucv_cat_t *catalog = ucv_catopen(path.c_str(), 0, nullptr);
    ucv_set_def_cs(codeSet);
    for (int id = 1; id <= static_cast<int>(places.size()); ++id) {
        const char *text = texts.c_str() + places[static_cast<std::size_t>(id) - 1];
        EXPECT_STREQ(ucv_catgets(catalog, 1, id, "-", utf8()), text);
        EXPECT_EQ(ucv_catgets(catalog, 1, id, "-", nullptr), converted(codeSet, text)) << id;
        EXPECT_EQ(ucv_catgets(catalog, 1, id, "-", codeSet), converted(codeSet, text)) << id;
    }
    ucv_catclose_fully(catalog);
    ucv_set_def_cs(nullptr);
    ucv_cs_free(codeSet);
}

INSTANTIATE_TEST_SUITE_P(, SharedTexts,
                         testing::Values("ISO8859-1", "IBM939", "GB18030", "EUC-JP", "INTERNAL37"),
                         [](const auto &test) {
                             std::string name = test.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(CatalogCache, KeepsAndForgets)
{
    const CatalogFolder folder;
    const std::string path = folder.putText("app.cat", "kept");
    ucv_cat_t *catalog = ucv_catopen(path.c_str(), 0, nullptr);
    const char *text = ucv_catgets(catalog, 1, 1, "-", utf8());
    EXPECT_EQ(ucv_catopen(path.c_str(), 0, nullptr), catalog);
    EXPECT_EQ(ucv_catclose(catalog), 0);
    EXPECT_EQ(ucv_catclose(catalog), -1);
    std::filesystem::remove(path); // what is cached counts as there
    EXPECT_EQ(ucv_catopen(path.c_str(), 0, nullptr), catalog);
    EXPECT_EQ(ucv_catgets(catalog, 1, 1, "-", utf8()), text);
    EXPECT_EQ(ucv_catclose_fully(catalog), 0);
    EXPECT_EQ(ucv_catopen(path.c_str(), 0, nullptr), nullptr);
}

int openDescriptors(const std::string &folder)
{
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
        if (!target.starts_with(folder)) continue;
        ++count;
        const int descriptor = std::stoi(entry.path().filename().string());
        EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC) << target;
    }
    return count;
}

TEST(CatalogCache, GrowsWhileAllAreOpenAndElseDropsTheLeastRecent)
{
    const CatalogFolder folder;
    std::vector<ucv_cat_t *> catalogs;
    const auto open = [&](int number) {
        const std::string name = std::to_string(number) + ".cat";
        const std::string path = folder.path() + "/" + name;
        if (!std::filesystem::exists(path)) folder.putText(name, name);
        return ucv_catopen(path.c_str(), 0, nullptr);
    };
    for (int number = 0; number < 10; ++number)
        catalogs.push_back(open(number));
    for (const int number : {4, 2, 7})
        ucv_catclose(catalogs[static_cast<std::size_t>(number)]);
    EXPECT_EQ(open(2), catalogs[2]); // the more recent now: 4 is the oldest closed one
    ucv_catclose(catalogs[2]);
    catalogs.push_back(open(10));
    EXPECT_EQ(openDescriptors(folder.path()), 10);
    EXPECT_EQ(open(2), catalogs[2]);
    EXPECT_EQ(firstText(catalogs[2]), "2.cat");
    catalogs[4] = open(4); // in the place of 7
    EXPECT_EQ(firstText(catalogs[4]), "4.cat");
    EXPECT_EQ(openDescriptors(folder.path()), 10);
    catalogs[7] = open(7); // all are open
    EXPECT_EQ(openDescriptors(folder.path()), 11);
    for (std::size_t number = 0; number < catalogs.size(); ++number)
        EXPECT_EQ(firstText(catalogs[number]), std::to_string(number) + ".cat");
    for (ucv_cat_t *catalog : catalogs)
        ucv_catclose_fully(catalog);
    EXPECT_EQ(openDescriptors(folder.path()), 0);
}

// What is no catalog is not opened; what lies inside one gives the default text.
TEST(CatalogFiles, AreNotBelieved)
{
    const CatalogFolder folder;
    const std::string good = catalogBytes({{1, {{1, "text"}}}, {2, {{1, "text"}}}});
    const std::string rest = good.substr(28);
    const auto with = [](const MCSetTDisk &set, const std::string &behind) {
        return headerBytes(1) + setRecord(set) + behind;
    };
    const std::string message = bytesOf<MCMsgTDisk>({1, 0, 0}, hton_MCMsgTDisk);
    const std::string outside = bytesOf<MCMsgTDisk>({1, 4, 0}, hton_MCMsgTDisk);
    const struct {
        const char *what;
        std::string bytes;
        const char *text;
    } cases[] = {
        {"no more than a header", good.substr(0, 28), "(none)"},
        {"cut in the header", good.substr(0, 27), "(none)"},
        {"cut in the first set's record", good.substr(0, 50), "(none)"},
        {"cut before the second set", good.substr(0, 28 + 28 + 12 + 5), "(none)"},
        {"another magic", "+" + good.substr(1), "(none)"},
        {"another version", headerBytes(1, 28, 2) + rest, "(none)"},
        {"no sets", headerBytes(0) + rest, "(none)"},
        {"more sets than fit", headerBytes(0xFFFFFFFF) + rest, "(none)"},
        {"a first set outside", headerBytes(1, 0xFFFFFFF0) + rest, "(none)"},
        {"a circle of sets that are not valid", with({1, 28, 0, 0, 0, 0, 7}, ""), "(none)"},
        {"a text without an end", with({1, 0, 56, 68, 4, 1, 0}, message + "textmore"), "text"},
        {"a text outside its block", with({1, 0, 56, 68, 4, 1, 0}, outside + "text"), "(default)"},
        {"a block outside the file", with({1, 0, 56, 68, 9, 1, 0}, message + "text"), "(default)"},
        {"four gigabytes of texts", with({1, 0, 56, 68, 0xFFFFFFFF, 1, 0}, message), "(default)"},
        {"messages outside the file", with({1, 0, 56, 56, 4, 2, 0}, message + "text"), "(default)"},
        {"messages without number", with({1, 0, 56, 56, 4, 0xFFFFFFFF, 0}, message), "(default)"},
        {"messages far away", with({1, 0, 0xFFFFFFFF, 56, 4, 1, 0}, message), "(default)"},
        {"an empty block", with({1, 0, 56, 68, 0, 1, 0}, message), "(default)"},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(lookUp(folder.put("bad.cat", entry.bytes).c_str(), 0, nullptr), entry.text)
            << entry.what;
    ASSERT_EQ(mkfifo((folder / "pipe.cat").c_str(), 0600), 0);
    EXPECT_EQ(lookUp((folder / "pipe.cat").c_str(), 0, nullptr), "(none)"); // and nobody waits
    EXPECT_EQ(lookUp(folder.path().c_str(), 0, nullptr), "(none)");
    EXPECT_EQ(openDescriptors(folder.path()), 0);
}

// Many messages that share one long text: neither time nor memory may be their product.
TEST(CatalogFiles, WithOverlappingTextsStaySmall)
{
    const CatalogFolder folder;
    ucv_set_dir(OLVEX_TABLES);
    uc_ch_t *latin1 = ucv_cs_new("ISO8859-1");
    constexpr int kCount = 20000;
    constexpr std::size_t kLength = 1 << 20;
    // Two texts for all, then for each the end of another, then a place inside a character.
    const std::tuple<int, char, int> cases[] = {
        {2, 'x', kCount}, {kCount, 'x', 10}, {kCount, '\xF0', 10}};
    for (const auto &[different, byte, mostOthers] : cases) {
        std::vector<std::uint32_t> places;
        for (std::uint32_t id = 1; id <= kCount; ++id)
            places.push_back(id % static_cast<std::uint32_t>(different));
        const std::string path =
            folder.put("big.cat", bytesOfTexts(std::string(kLength, byte), places));
        ucv_cat_t *catalog = ucv_catopen(path.c_str(), 0, nullptr);
        EXPECT_EQ(std::strlen(ucv_catgets(catalog, 1, 1, "-", utf8())), kLength - 1);
        int others = 0;
        for (int id = 1; id <= kCount; id += 99) { // of each place if there are two
            const std::size_t size = kLength - places[static_cast<std::size_t>(id) - 1];
            const std::string local = ucv_catgets(catalog, 1, id, "-", nullptr);
            ASSERT_TRUE(byte != 'x' || local.size() == size) << id;
            others += ucv_catgets(catalog, 1, id, "-", latin1) != std::string("-");
        }
        EXPECT_GE(others, 2);
        EXPECT_LE(others, mostOthers);
        ucv_catclose_fully(catalog);
    }
    ucv_cs_free(latin1);
}

} // namespace
