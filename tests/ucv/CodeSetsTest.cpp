// Every shipped code set against the platform's own conversion, corrected by the published code
// pages: each code that it can decode and each character of the Basic Multilingual Plane, in both
// directions, as UTF-8 and as UCS-2.
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <functional>
#include <iconv.h>
#include <string>
#include <string_view>

#include "Paths.h"
#include "ucv/Handle.h"

namespace {

using namespace olvex::ucv;
using Bytes = std::string;

constexpr const char *kCodePoints =
    std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";

// Sanitized and unoptimised code is slow: a part of the characters has to do there.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
constexpr unsigned kStep = 37;
#else
constexpr unsigned kStep = 1;
#endif

struct CodeSet {
    const char *name;
    Family family;
    const char *source;
    const char *aliases;
};

constexpr CodeSet kCodeSets[] = {
#define CODESET(name, family, source, aliases) {name, family, source, aliases},
#include <codesets.def>
#undef CODESET
};

// A code of one byte of which the published code page says something else than the platform.
struct Published {
    std::string_view codeSet;
    unsigned char code;
    char16_t value; // 0xFFFF: nothing
};

constexpr Published kPublished[] = {
#define PUBLISHED(name, code, value, reason) {name, code, value},
#include <published.def>
#undef PUBLISHED
};

const Published *publishedOf(const CodeSet &codeSet, const Bytes &code)
{
    for (const Published &row : kPublished)
        if (row.codeSet == codeSet.name && code == Bytes(1, static_cast<char>(row.code)))
            return &row;
    return nullptr;
}

const Published *publishedOf(const CodeSet &codeSet, char16_t value)
{
    for (const Published &row : kPublished)
        if (row.codeSet == codeSet.name && row.value == value && value != 0xFFFF) return &row;
    return nullptr;
}

// Where a table means to differ from the platform.
struct Difference {
    std::function<bool(const CodeSet &)> applies;
    Bytes code;
    char16_t value;
    const char *reason;
};

bool isEbcdic(const CodeSet &codeSet)
{
    return codeSet.family == kEbcdicSingleByte || codeSet.family == kEbcdicDoubleByte;
}
bool hasShifts(const CodeSet &codeSet)
{
    return codeSet.family == kEbcdicDoubleByte;
}
bool isGb18030(const CodeSet &codeSet)
{
    return codeSet.family == kGb18030;
}

const Difference kDifferences[] = {
    {isEbcdic, "\x15", u'\n', "0x15 ends lines in EBCDIC texts; 0x25 is read as a line end too"},
    {hasShifts, "\x0E", u'\x0E', "an invariant character, though the byte is the shift-out"},
    {hasShifts, "\x0F", u'\x0F', "an invariant character, though the byte is the shift-in"},
    {isGb18030, "\xFE\x51", 0xE816, "the character is beyond U+FFFF, which ranges cannot say"},
    {isGb18030, "\xFE\x52", 0xE817, "the same"},
    {isGb18030, "\xFE\x53", 0xE818, "the same"},
    {isGb18030, "\xFE\x6C", 0xE831, "the same"},
    {isGb18030, "\xFE\x76", 0xE83B, "the same"},
    {isGb18030, "\xFE\x91", 0xE855, "the same"},
};

template <class Key>
const Difference *differenceOf(const CodeSet &codeSet, Key Difference::*key, const Key &value)
{
    for (const Difference &difference : kDifferences)
        if (difference.applies(codeSet) && difference.*key == value) return &difference;
    return nullptr;
}

class Platform {
  public:
    Platform(const char *to, const char *from) : handle_(iconv_open(to, from))
    {
        EXPECT_NE(handle_, iconv_t(-1)) << from << " to " << to;
    }
    ~Platform() { iconv_close(handle_); }
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    // False when the text is no character of its code set.
    bool convert(const Bytes &text, Bytes &result)
    {
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        char area[64];
        char *out = area;
        std::size_t room = sizeof area, size = text.size();
        char *in = const_cast<char *>(text.data());
        const bool ok = iconv(handle_, &in, &size, &out, &room) != std::size_t(-1) &&
                        iconv(handle_, nullptr, nullptr, &out, &room) != std::size_t(-1);
        result.assign(area, out);
        return ok && !result.empty();
    }

  private:
    iconv_t handle_;
};

Bytes utf8Of(char32_t value)
{
    char target[8];
    const char16_t high = static_cast<char16_t>(0xD7C0 + (value >> 10));
    const char16_t units[] = {value > 0xFFFF ? high : static_cast<char16_t>(value),
                              static_cast<char16_t>(0xDC00 | (value & 0x3FF))};
    const int size = ucv_from_ucs2(ucv_cs_new("UTF8"), units, value > 0xFFFF ? 2 : 1, target, 8);
    return {target, static_cast<std::size_t>(size)};
}

// One code set under test. What is wrong is counted, and the first cases are told.
class Comparison {
  public:
    explicit Comparison(const CodeSet &codeSet)
        : codeSet_(codeSet),
          handle_(ucv_cs_new(codeSet.name)),
          decoder_(kCodePoints, codeSet.source),
          encoder_(codeSet.source, "UTF-16LE")
    {
        EXPECT_NE(handle_, nullptr) << codeSet.name;
        EXPECT_STREQ(ucv_get_cs_name(handle_), codeSet.name);
    }
    ~Comparison() { ucv_cs_free(handle_); }
    Comparison(const Comparison &) = delete;
    Comparison &operator=(const Comparison &) = delete;

    // A code that the platform may or may not know; true when it does.
    bool decode(const Bytes &code)
    {
        if (const Published *row = publishedOf(codeSet_, code)) {
            expectDecoded(code, row->value == 0xFFFF ? U'?' : row->value);
            ++decoded_;
            return true;
        }
        Bytes points;
        if (!decoder_.convert(code, points)) return false;
        char32_t value = 0;
        std::memcpy(&value, points.data(), std::min(points.size(), sizeof value));
        const Bytes plain = withoutShifts(code);
        const bool isOne = points.size() == sizeof value;
        if (const Difference *difference = differenceOf(codeSet_, &Difference::code, plain))
            expectDecoded(code, difference->value);
        else if (isOne && (value <= 0xFFFF || codeSet_.family == kGb18030))
            expectDecoded(code, value);
        else
            expectDecoded(code, U'?');
        ++decoded_;
        return true;
    }

    void encode(char16_t value)
    {
        const char unit[] = {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
        Bytes code;
        bool known = encoder_.convert(Bytes(unit, 2), code) && fits(code, value);
        known = known && !publishedOf(codeSet_, code);
        if (const Published *row = publishedOf(codeSet_, value); row && !known) {
            code = Bytes(1, static_cast<char>(row->code));
            known = true;
        }
        if (value < 0x80 && known && !isReadAs(code, value)) return; // see AsciiStaysOrIsCounted
        if (const Difference *difference = differenceOf(codeSet_, &Difference::value, value))
            code = difference->code;
        else if (!known)
            code = isEbcdic(codeSet_) ? "\x6F" : "?";
        expectEncoded(value, code);
    }

    int decoded() const { return decoded_; }
    int wrong() const { return wrong_; }

  private:
    static Bytes withoutShifts(const Bytes &code)
    {
        return code.size() == 4 && code[0] == 0x0E ? code.substr(1, 2) : code;
    }

    // Several codes for one character fit no table; 0x3F is what the platform's EBCDIC conversions
    // write for a character that they do not have.
    bool fits(const Bytes &code, char16_t value) const
    {
        const bool oneByte =
            codeSet_.family == kAsciiSingleByte || codeSet_.family == kEbcdicSingleByte;
        if (oneByte && code.size() != 1) return false;
        return !isEbcdic(codeSet_) || code != "\x3F" || value == 0x1A;
    }

    bool isReadAs(const Bytes &code, char32_t value)
    {
        if (const Published *row = publishedOf(codeSet_, code)) return row->value == value;
        Bytes points;
        return decoder_.convert(code, points) &&
               points == Bytes(reinterpret_cast<const char *>(&value), sizeof value);
    }

    void expectDecoded(const Bytes &code, char32_t value)
    {
        const int length = static_cast<int>(code.size());
        char target[16];
        const int size = ucv_to_utf8(handle_, code.data(), length, target, sizeof target);
        expect(Bytes(target, static_cast<std::size_t>(size)) == utf8Of(value), "to UTF-8", value);
        char16_t units[4] = {};
        const int count = ucv_to_ucs2(handle_, code.data(), length, units, 4);
        expect(count == 1 && units[0] == (value > 0xFFFF ? U'?' : value), "to UCS-2", value);
    }

    void expectEncoded(char16_t value, const Bytes &code)
    {
        char target[16];
        int size = ucv_from_ucs2(handle_, &value, 1, target, sizeof target);
        expect(Bytes(target, static_cast<std::size_t>(size)) == code, "from UCS-2", value);
        const Bytes utf8 = utf8Of(value);
        size = ucv_from_utf8(handle_, utf8.data(), static_cast<int>(utf8.size()), target, 16);
        expect(Bytes(target, static_cast<std::size_t>(size)) == code, "from UTF-8", value);
    }

    void expect(bool right, const char *what, char32_t value)
    {
        if (right) return;
        if (++wrong_ <= 3)
            ADD_FAILURE() << codeSet_.name << ' ' << what << ": U+" << std::hex
                          << static_cast<unsigned>(value);
    }

    const CodeSet &codeSet_;
    uc_ch_t *handle_;
    Platform decoder_;
    Platform encoder_;
    int decoded_ = 0;
    int wrong_ = 0;
};

Bytes bytes(std::initializer_list<unsigned> values)
{
    Bytes result;
    for (const unsigned value : values)
        result += static_cast<char>(value);
    return result;
}

// Codes of one byte, and of two where the first alone is none.
void decodeShort(const CodeSet &codeSet, Comparison &comparison)
{
    const bool isWide = codeSet.family != kAsciiSingleByte && codeSet.family != kEbcdicSingleByte;
    for (unsigned lead = 0; lead < 256; ++lead) {
        if (hasShifts(codeSet) && (lead == 0x0E || lead == 0x0F)) continue;
        if (comparison.decode(bytes({lead})) && !hasShifts(codeSet)) continue;
        for (unsigned trail = lead % kStep; isWide && trail < 256; trail += kStep)
            comparison.decode(hasShifts(codeSet) ? bytes({0x0E, lead, trail, 0x0F})
                                                 : bytes({lead, trail}));
    }
}

// Codes of three bytes of the Japanese EUC code sets, of four of the Chinese one.
void decodeEuc(const CodeSet &codeSet, Comparison &comparison)
{
    const bool isJapanese = std::string_view(codeSet.name).starts_with("EUCJP");
    for (unsigned row = 0xA1; row < 0xFF; ++row)
        for (unsigned cell = 0xA1 + row % kStep; cell < 0xFF; cell += kStep) {
            if (isJapanese) comparison.decode(bytes({0x8F, row, cell}));
            for (unsigned plane = 0xA1; !isJapanese && plane < 0xB0; ++plane)
                comparison.decode(bytes({0x8E, plane, row, cell}));
        }
}

// Codes of four bytes; beyond U+FFFF, where they are computed, some of them.
void decodeFourBytes(Comparison &comparison)
{
    for (unsigned number = 0; number < 126 * 10 * 126 * 10; number += number < 50400 ? kStep : 1009)
        comparison.decode(bytes({0x81 + number / 12600, 0x30 + number / 1260 % 10,
                                 0x81 + number / 10 % 126, 0x30 + number % 10}));
}

void compare(const CodeSet &codeSet)
{
    Comparison comparison(codeSet);
    decodeShort(codeSet, comparison);
    if (codeSet.family == kAsciiMultiByte) decodeEuc(codeSet, comparison);
    if (codeSet.family == kGb18030) decodeFourBytes(comparison);
    for (unsigned value = 0; value < 0x10000; value += kStep)
        if ((value & 0xF800) != 0xD800) comparison.encode(static_cast<char16_t>(value));
    EXPECT_EQ(comparison.wrong(), 0) << codeSet.name;
    EXPECT_GE(comparison.decoded(), 128) << codeSet.name;
}

class CodeSets : public testing::Test {
  protected:
    void SetUp() override { setenv("UCVDIR", OLVEX_TABLES, 1); }
    void TearDown() override { unsetenv("UCVDIR"); }

    static void compareFamilies(std::initializer_list<Family> families)
    {
        int count = 0;
        for (const CodeSet &codeSet : kCodeSets)
            for (const Family family : families)
                if (codeSet.family == family) compare(codeSet), ++count;
        EXPECT_GT(count, 0);
    }
};

TEST_F(CodeSets, OfOneByteAgreeWithThePlatform)
{
    compareFamilies({kAsciiSingleByte, kEbcdicSingleByte});
}

TEST_F(CodeSets, OfTwoBytesAgreeWithThePlatform)
{
    compareFamilies({kAsciiDoubleByte, kEbcdicDoubleByte});
}

TEST_F(CodeSets, OfManyBytesAgreeWithThePlatform)
{
    compareFamilies({kAsciiMultiByte, kGb18030});
}

// No ASCII character turns into another one unnoticed: it comes back, or is substituted and
// counted. What shifts cannot come back.
TEST_F(CodeSets, AsciiStaysOrIsCounted)
{
    for (const CodeSet &codeSet : kCodeSets) {
        uc_ch_t *handle = ucv_cs_new(codeSet.name);
        ASSERT_NE(handle, nullptr) << codeSet.name;
        for (char16_t value = 1; value < 0x80; ++value) {
            if (hasShifts(codeSet) && (value == 0x0E || value == 0x0F)) continue;
            char code[8];
            char16_t back[8] = {};
            const int size = ucv_from_ucs2(handle, &value, 1, code, sizeof code);
            if (ucv_check_subs(handle) != 0) continue;
            EXPECT_EQ(ucv_to_ucs2(handle, code, size, back, 8), 1);
            EXPECT_EQ(back[0], value) << codeSet.name;
        }
        ucv_cs_free(handle);
    }
}

// Codes as the published pages have them, of which the platform says something else.
TEST_F(CodeSets, HoldWhatTheCodePagesSay)
{
    const struct {
        const char *name;
        const char *codes; // in hexadecimal
        const char *text;
    } cases[] = {
        {"IBM278", "71e0", "\\\u00c9"},
        {"IBM285", "a1", "\u00af"},
        {"IBM420", "45", "\u200b"},
        {"IBM424", "788fb3bc", "\u2017\u00b1\u2022\u203e"},
        {"IBM870", "b0", "\u02d9"},
        {"IBM871", "4ac0", "\u00de\u00fe"},
        {"IBM875", "6a74dd", "|\u00a0\u0387"},
        {"IBM874", "fcfdfeffe8", "\u00a2\u00ac\u00a6\u00a0\u0e48"},
        {"IBM939", "e0a1b2a0", "\\~\u00a5\u203e"},
        {"IBM1371", "e05ba1", "\\$~"},
    };
    for (const auto &[name, codes, text] : cases) {
        uc_ch_t *handle = ucv_cs_new(name);
        ASSERT_NE(handle, nullptr) << name;
        char target[32], hex[64] = "";
        const int size = ucv_from_utf8(handle, text, -1, target, sizeof target);
        for (int i = 0; i < size && target[i]; ++i)
            snprintf(hex + 2 * i, 3, "%02x", static_cast<unsigned char>(target[i]));
        EXPECT_STREQ(hex, codes) << name;
        EXPECT_EQ(ucv_check_subs(handle), 0) << name;
        char back[32] = "";
        ucv_to_utf8(handle, target, -1, back, sizeof back);
        EXPECT_STREQ(back, text) << name;
        ucv_cs_free(handle);
    }
}

// A name is no other name of a code set that differs from what it stands for.
TEST_F(CodeSets, LackNamesWhoseCodesNoTableHas)
{
    for (const char *name : {"IBM932", "IBM-943", "943", "IBM950", "IBM964", "CP51932", "IBM970",
                             "IBM1383", "CP1386", "IBM33722"})
        EXPECT_EQ(ucv_cs_new(name), nullptr) << name;
}

TEST_F(CodeSets, HaveTheirOtherNames)
{
    for (const CodeSet &codeSet : kCodeSets) {
        std::string rest = codeSet.aliases;
        for (std::size_t end; !rest.empty(); rest.erase(0, end == rest.npos ? end : end + 1)) {
            end = rest.find(' ');
            uc_ch_t *handle = ucv_cs_new(rest.substr(0, end).c_str());
            ASSERT_NE(handle, nullptr) << rest;
            EXPECT_STREQ(ucv_get_cs_name(handle), codeSet.name);
            ucv_cs_free(handle);
        }
    }
    EXPECT_EQ(ucv_cs_new("ANSI_X3.4-1968"), nullptr); // the C locale's bytes stay as they are
}

} // namespace
