// Single characters, boundaries, strings of units, whole strings and times.
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <string>

#include "Paths.h"

namespace {

class Multibyte : public testing::Test {
  protected:
    Multibyte()
    {
        setenv("UCVDIR", OLVEX_TABLES, 1);
        japanese = ucv_cs_new("SHIFT_JIS");
        ebcdic = ucv_cs_new("IBM939");
        chinese = ucv_cs_new("GB18030");
        unsetenv("UCVDIR");
    }
    ~Multibyte() override
    {
        for (uc_ch_t *handle : {japanese, ebcdic, chinese})
            ucv_cs_free(handle);
    }

    uc_ch_t *utf8 = ucv_cs_new("UTF8"), *japanese, *ebcdic, *chinese;
};

TEST_F(Multibyte, CharactersHaveLengths)
{
    EXPECT_EQ(ucv_mblen(utf8, "\xF0\x9F\x98\x80", 4), 4);
    EXPECT_EQ(ucv_mblen(utf8, "\xF0\x9F\x98\x80", 3), -1); // cut by the size
    EXPECT_EQ(ucv_mblen(utf8, "\xF0\x9F\x98", 9), -1);     // and by the terminator
    EXPECT_EQ(ucv_mblen(chinese, "\x90\x30\x81\x30", 4), 4);
    EXPECT_EQ(ucv_mblen(japanese, "\x93\xFA", 2), 2);
    EXPECT_EQ(ucv_mblen(japanese, "\x81\x20", 2), 2); // no character, but its bytes
    EXPECT_EQ(ucv_check_subs(japanese), 0);           // measuring is not converting
}

TEST_F(Multibyte, CharactersBecomeUnits)
{
    char16_t unit = 7;
    EXPECT_EQ(ucv_mbtowc(japanese, &unit, "\x93\xFAx", 9), 2);
    EXPECT_EQ(unit, u'日');
    EXPECT_EQ(ucv_mbtowc(japanese, nullptr, "\x93", 9), -1);
    EXPECT_EQ(ucv_mbtowc(utf8, &unit, "\xF0\x9F\x98\x80", 4), -1); // two units
    const char shifted[] = "\x0E\x45\x62\x0F"; // the terminator comes in the single-byte state
    EXPECT_EQ(ucv_mbtowc(ebcdic, nullptr, nullptr, 0), 1);
    EXPECT_EQ(ucv_mbtowc(ebcdic, &unit, shifted, sizeof shifted), 3);
    EXPECT_EQ(unit, u'日');
    EXPECT_EQ(ucv_mbtowc(ebcdic, &unit, shifted + 3, 2), 0);
}

TEST_F(Multibyte, StringsBecomeUnitsAndBack)
{
    char16_t units[8] = {};
    EXPECT_EQ(ucv_mbstowcs(japanese, units, "a\x93\xFA\x96\x7B", 8), 3u);
    EXPECT_EQ(std::u16string(units), u"a日本");
    EXPECT_EQ(ucv_mbstowcs(japanese, units, "a\x93\xFA\x96\x7B", 2), 2u);
    EXPECT_EQ(ucv_mbstowcs(japanese, nullptr, "a\x93\xFA\x96\x7B", 0), 3u);
    EXPECT_EQ(ucv_mbstowcs(japanese, units, "a\x93", 8), SIZE_MAX);
    char bytes[16] = "untouched";
    EXPECT_EQ(ucv_wcstombs(ebcdic, bytes, u"A日", sizeof bytes), 5u);
    EXPECT_STREQ(bytes, "\xC1\x0E\x45\x62\x0F");
    EXPECT_EQ(ucv_wcstombs(utf8, bytes, u"日本", 4), 3u);
    EXPECT_EQ(ucv_wcstombs(utf8, nullptr, std::u16string(500, u'日').c_str(), 0), 1500u);
    // Where the last area that bytes are counted in is full, and the shift must still be ended.
    const std::u16string shifted = u"A" + std::u16string(127, u'日');
    EXPECT_EQ(ucv_wcstombs(ebcdic, nullptr, shifted.c_str(), 0), 257u);
    const char16_t half[] = {u'a', 0xD800, 0};
    EXPECT_EQ(ucv_wcstombs(utf8, bytes, half, sizeof bytes), SIZE_MAX);
    EXPECT_EQ(ucv_mbstowcs(ebcdic, units, "\xC1\x0E\x45\x62\x0F", 8), 2u);
}

TEST_F(Multibyte, ShiftsAreEndedAndSubstitutionsCounted)
{
    char target[16] = {};
    EXPECT_EQ(ucv_from_ucs2(ebcdic, u"A日B", 3, target, sizeof target), 6);
    EXPECT_EQ(std::string(target, 6), "\xC1\x0E\x45\x62\x0F\xC2");
    EXPECT_EQ(ucv_from_ucs2(ebcdic, u"日", -1, target, sizeof target), 5); // ended, terminated
    EXPECT_EQ(std::string(target, 5), std::string("\x0E\x45\x62\x0F", 5));
    char16_t units[4] = {};
    EXPECT_EQ(ucv_to_ucs2(ebcdic, "\x0E\x45\x62\x15\x45\x62\x0F\x15\x6F", 9, units, 4), 4);
    EXPECT_EQ(std::u16string(units, 4), u"日\n日\n"); // controls stay themselves in a shift
    EXPECT_EQ(ucv_from_utf8(japanese, "한国어?", -1, target, sizeof target), 6);
    EXPECT_STREQ(target, "?\x8D\x91??");
    EXPECT_EQ(ucv_check_subs(japanese), 2); // one of them is none
    EXPECT_EQ(ucv_check_subs(japanese), 0);
}

TEST_F(Multibyte, WholeStringsUseTheirSlot)
{
    char area[64] = "", *slot = area;
    EXPECT_EQ(ucv_s2u(japanese, "\x93\xFA", &slot), area);
    EXPECT_STREQ(area, "日");
    char *made = nullptr;
    EXPECT_STREQ(ucv_u2s(japanese, "日", &made), "\x93\xFA");
    EXPECT_NE(made, nullptr);
    ucv_free(made);
    char *converted = ucv_strconv(japanese, ebcdic, "A\x93\xFA", nullptr);
    EXPECT_STREQ(converted, "\xC1\x0E\x45\x62\x0F");
    ucv_free(converted);
}

TEST_F(Multibyte, TimesAreReadBack)
{
    std::tm time = {};
    const char text[] = "\xC3\xA9 1999-07 rest";
    EXPECT_EQ(ucv_strptime(utf8, nullptr, text, "\xC3\xA9 %Y-%m", &time), text + 10);
    EXPECT_EQ(time.tm_year, 99);
    EXPECT_EQ(time.tm_mon, 6);
    EXPECT_EQ(ucv_strptime(utf8, nullptr, text, "%Y", &time), nullptr);
    char target[8] = "";
    uc_ch_t *other = ucv_dup_handle(utf8); // never that of the platform's locale
    EXPECT_EQ(ucv_strftime(other, nullptr, target, 4, "a\xC3\xA9\xC3\xA9", &time), 3u);
    EXPECT_STREQ(target, "a\xC3\xA9"); // cut at a character
    // The place in the text, not in its copy in the platform's code set.
    const char shifted[] = "\xF1\xF9\xF9\xF9\x40\x0E\x45\x62\x0F\xF7"; // "1999 日7"
    const char format[] = "\x6C\xE8\x40\x0E\x45\x62\x0F";              // "%Y 日"
    std::setlocale(LC_CTYPE, "C.UTF-8");
    EXPECT_EQ(ucv_strptime(ebcdic, nullptr, shifted, format, &time), shifted + 8);
    ucv_cs_free(other);
}

TEST(WideStrings, DoAsTheStandardOnes)
{
    char16_t area[16] = u"abcde";
    ucv_wcsncpy(area, u"x", 4);
    EXPECT_EQ(std::u16string(area, 5), std::u16string(u"x\0\0\0e", 5));
    EXPECT_EQ(std::u16string(ucv_wcsncat(area, u"efg", 2)), u"xef");
    EXPECT_EQ(ucv_wcsncmp(u"\uFFFF", u"a", 1), 0xFFFF - u'a');
    EXPECT_EQ(std::u16string(ucv_wcswcs(u"aaab", u"aab")), u"aab");
    char16_t text[] = u",a,,bc,", *next = nullptr;
    EXPECT_EQ(std::u16string(ucv_wcstok(text, u",", &next)), u"a");
    EXPECT_EQ(std::u16string(ucv_wcstok(nullptr, u",", &next)), u"bc");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(ucv_wcstok(nullptr, u",", &next), nullptr);
}

} // namespace
