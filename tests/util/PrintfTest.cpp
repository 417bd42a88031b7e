// The formatted-output engine: against the system's printf where both must agree, and by itself
// where it goes its own way.

#include "core/Localedef.h"
#include "core/LogDirectory.h"

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

#include <sys/mman.h>
#include <unistd.h>

namespace {

struct Printed {
    int count;
    std::string text;
    bool operator==(const Printed &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const Printed &printed)
{
    return stream << printed.count << " bytes, text \"" << printed.text << '"';
}

Printed taken(int count, CxStringBuff &buffer)
{
    Printed printed = {count, std::string(buffer.str ? buffer.str : "", buffer.length)};
    CxStringBuffDiscard(&buffer);
    return printed;
}

Printed printInto(uc_ch_t *codeSet, const char *format, ...)
{
    CxStringBuff buffer = {};
    va_list list;
    va_start(list, format);
    const int count = CxStringBuffPrintfV(codeSet, &buffer, format, list);
    va_end(list);
    return taken(count, buffer);
}

template <class... Values>
std::string print(const char *format, Values... values)
{
    const Printed printed = printInto(nullptr, format, values...);
    EXPECT_EQ(printed.count, static_cast<int>(printed.text.size())) << format;
    return printed.text;
}

template <class... Values>
std::string systemPrint(const char *format, Values... values)
{
    char text[2000];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// Every set of flags with every width and precision given, ending in `conversion`.
struct Directive {
    std::string text;
    int precision; // -1 for none
};

std::vector<Directive> directives(const std::string &conversion, const std::vector<int> &precisions)
{
    constexpr char kFlags[] = "-0+ #";
    std::vector<Directive> all;
    for (unsigned set = 0; set < 32; ++set) {
        std::string flags = "%";
        for (unsigned i = 0; i < 5; ++i)
            if (set >> i & 1) flags += kFlags[i];
        for (const char *width : {"", "1", "7", "30"})
            for (const int precision : precisions) {
                const std::string point = precision < 0 ? "" : "." + std::to_string(precision);
                all.push_back({flags + width + point + conversion, precision});
            }
    }
    return all;
}

template <class Value>
void compareIntegers(const char *modifier)
{
    using Limits = std::numeric_limits<Value>;
    const Value values[] = {0, 1, -1, 8, 255, -42, 12345, Limits::min(), Limits::max()};
    for (const char *conversion : {"d", "i", "u", "o", "x", "X"})
        for (const auto &directive :
             directives(std::string(modifier) + conversion, {-1, 0, 1, 5, 25}))
            for (const Value value : values) {
                if (value == 0 && directive.precision == 0) continue; // prints nothing here
                const char *format = directive.text.c_str();
                ASSERT_EQ(print(format, value), systemPrint(format, value)) << format;
            }
}

TEST(Printf, IntegersAreThoseOfTheSystem)
{
    compareIntegers<int>("");
    compareIntegers<long>("l");
    compareIntegers<long long>("ll");
    compareIntegers<long long>("q");
    compareIntegers<std::intmax_t>("j");
    compareIntegers<ssize_t>("z");
    if (sizeof(std::ptrdiff_t) == sizeof(std::intmax_t)) compareIntegers<std::ptrdiff_t>("t");
    // A difference keeps its sign when it is widened, whatever the conversion.
    EXPECT_EQ(print("%td %tu %tx", std::ptrdiff_t{-5}, std::ptrdiff_t{-1}, std::ptrdiff_t{-1}),
              "-5 18446744073709551615 ffffffffffffffff");
}

template <class Value>
void compareFloating(const std::string &conversion, const std::vector<int> &precisions,
                     const std::vector<Value> &values)
{
    const bool general = conversion.find_first_of("gG") != std::string::npos;
    for (const auto &directive : directives(conversion, precisions))
        for (const Value value : values) {
            const char *format = directive.text.c_str();
            // The system's drops zeros there when rounding adds a digit.
            if (general && directive.text.find('#') != std::string::npos) continue;
            ASSERT_EQ(print(format, value), systemPrint(format, value)) << format;
        }
}

// No more than 19 digits are asked for, so there is one right answer.
TEST(Printf, FloatingNumbersAreThoseOfTheSystem)
{
    const std::vector<double> values = {
        0.0,  1.0,     -1.5,  9.5,   9.6, 99.95,    0.0001, 0.00001, 123456,       1e6,
        1e25, -1e-300, 1e100, 2.675, 0.1, 999999.4, 5e-324, 1.7e308, 12345.678e-10};
    const std::vector<long double> extended(values.begin(), values.end());
    for (const char *conversion : {"e", "E", "g", "G", "a", "A"})
        compareFloating<double>(conversion, {-1, 0, 1, 3, 10, 18}, values);
    for (const char *conversion : {"Le", "Lg", "La"})
        compareFloating<long double>(conversion, {-1, 2, 18}, extended);
    compareFloating<long double>("Le", {4}, {1e4000L, 1e-4000L});
    const std::vector<double> exact = {0.25, -3.75, 1024.1875, 0.046875, 99.96875, 999999.90625};
    for (const char *conversion : {"f", "F"})
        compareFloating<double>(conversion, {-1, 3, 12}, exact);
    compareFloating<double>("f", {0, 1, 2}, {0.9375, 0.09375, 9.96875, -0.046875, 1e15});
    std::mt19937_64 random;
    for (int i = 0; i < 2000; ++i) {
        const double value = std::ldexp(static_cast<double>(random() >> 11), -(i % 100));
        ASSERT_EQ(print("%.4f", value).substr(0, 15), systemPrint("%.4f", value).substr(0, 15));
    }
}

// At most 19 digits are correct, and "%f" rounds half up on them.
TEST(Printf, NumbersAreRoundedOnNineteenDigits)
{
    const struct {
        const char *format;
        double value;
        const char *text;
    } cases[] = {
        {"%.0f", 2.5, "3"},
        {"%.0e", 2.5, "2e+00"},
        {"%.0f", 0.5, "1"},
        {"%.1f", 0.06, "0.1"},
        {"%.1f", 0.006, "0.0"},
        {"%.1f", 99.96, "100.0"},
        {"%f", 1e25, "10000000000000000910000000.000000"},
        {"%.20f", 0.1, "0.10000000000000000560"},
        {"%.25f", 1.0 / 3, "0.3333333333333333148000000"},
        {"%.22e", 1.0 / 3, "3.3333333333333331480000e-01"},
        {"%#g", 1.0, "1.00000"},
        {"%#.0f", 1.0, "1."},
        {"%#g", 999999.5, "1.00000e+06"},
        {"%#.3g", 0.25, "0.250"},
        {"%.1f", -0.0, "0.0"},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(print(entry.format, entry.value), entry.text) << entry.format;
}

TEST(Printf, WhatIsNoNumberHasSignAndWidthButNoZeros)
{
    const double infinite = HUGE_VAL, none = std::nan("");
    EXPECT_EQ(print("%f|%E|%+g|% a", infinite, infinite, infinite, infinite), "inf|INF|+inf| inf");
    EXPECT_EQ(print("%08F|%-8g|%.1G", -infinite, -infinite, infinite), "    -INF|-inf    |INF");
    EXPECT_EQ(print("%e|%G|%5A", none, none, std::copysign(none, -1.0)), "nan|NAN| -NAN");
}

TEST(Printf, WhatIsItsOwn)
{
    EXPECT_EQ(print("%2$s %1$s", "a", "b"), "b a");
    EXPECT_EQ(print("%3$*1$.*2$f|", 7, 2, 1.5), "   1.50|");
    EXPECT_EQ(print("%*d|%-*d|%.*f", 5, 42, 5, 42, 1, 2.25), "   42|42   |2.3");
    EXPECT_EQ(print("%*d|%.*f", -5, 42, -1, 2.25), "42|2.250000"); // negative is none
    EXPECT_EQ(print("%05.*d|", -1, 42), "00042|");
    EXPECT_EQ(print("[%.0d][%5.0x][%+.0d]", 0, 0, 0), "[][][]");
    EXPECT_EQ(print("%.d|%.f|%.s", 0, 1.5, "abc"), "0|1.500000|abc"); // a lone point is none
    EXPECT_EQ(print("%hd %hhd %hx %hho", 70000, 300, 70000, 300), "70000 300 11170 454");
    EXPECT_EQ(print("%I64d %I64x", -5LL, 255LL), "-5 ff");
    EXPECT_EQ(print("%p|%#p|%20p", reinterpret_cast<void *>(0xabcd), reinterpret_cast<void *>(1),
                    reinterpret_cast<void *>(0x89abcdef)),
              "abcd|0x1|            89abcdef");
    EXPECT_EQ(print("%2s|%.3s|%-5s|%05s|%-05s|", "abcdef", "abcdef", "x", "x", "x"),
              "abcdef|abc|x    |0000x|x    |");
    EXPECT_EQ(print("%3c|%-3c|%03c", 'a', 'b', 'c'), "  a|b  |00c");
    const char unterminated[] = {'a', 'b', 'c'};
    EXPECT_EQ(print("%.3s", unterminated), "abc");
    EXPECT_EQ(printInto(nullptr, "a%cb", 0), (Printed{3, std::string("a\0b", 3)}));
}

// What cannot be parsed or gathered prints nothing; what cannot be emitted ends the text.
TEST(Printf, ErrorsEndTheText)
{
    for (const char *format : {"a%", "a%k", "a%5", "a%I32d", "a%Ld", "a%.-1d", "a%1$s %3$s",
                               "a%32768$d", "a%1$*32768$d", "a%*5d"})
        EXPECT_EQ(printInto(nullptr, format, "b", "c", "d"), (Printed{0, ""})) << format;
    EXPECT_EQ(printInto(nullptr, "ab%nc", nullptr), (Printed{2, "ab"}));
    EXPECT_EQ(printInto(nullptr, "%d%sc", 7, nullptr), (Printed{1, "7"}));
    // The later type counts, and sizes beyond memory are refused.
    for (const char *format :
         {"a%1$s%1$d", "a%1$d%1$S", "a%1$*1$s", "a%2147483647d", "a%99999999999999999999d",
          "a%.99999999999x", "a%2147483647s", "a%2147483647lc"})
        EXPECT_EQ(printInto(nullptr, format, u"x"), (Printed{1, "a"})) << format;
    for (const char *format : {"a%1$d%1$f", "a%2147483647f", "a%.2147483647f", "a%#.2147483647g",
                               "a%2147483647.2147483647e"})
        EXPECT_EQ(printInto(nullptr, format, 0.001), (Printed{1, "a"})) << format;
    CxPrintfFmts formats = {}; // the greatest position
    CxPrintfArgs arguments = {};
    EXPECT_EQ(CxPrintfProcessFmts("a%32767$-d", &formats, &arguments), 0);
    ASSERT_EQ(arguments.count, 32767);
    EXPECT_EQ(arguments.items[0].type, 0);
    EXPECT_EQ(arguments.items[32766].type, 10);
    EXPECT_EQ(formats.items[1].from.argIndex, 32766);
    BaxMemoryFree(formats.items);
    BaxMemoryFree(arguments.items);
}

// What widths and precisions add to one text is bounded, wherever they come from, and before any of
// it is done.
TEST(Printf, WidthsAndPrecisionsAddSixteenMebibytesAtMost)
{
    constexpr int kMost = 16 * 1024 * 1024;
    EXPECT_EQ(print("a%*d", kMost, 1).size(), kMost + 1u);
    EXPECT_EQ(print("a%.*d", kMost, 1).size(), kMost + 1u);
    EXPECT_EQ(print("%*d|%*d|%d", kMost, 1, 1, 2, 3).size(), kMost + 1u);
    EXPECT_EQ(print("%16000000s|%800000s|", "x", "y").size(), 16000001u);
    for (const char *format : {"a%*d", "a%-*d", "a%0*d", "a%.*d", "a%.*x", "a%*c", "a%*p"})
        EXPECT_EQ(printInto(nullptr, format, kMost + 1, 1), (Printed{1, "a"})) << format;
    for (const char *format : {"a%.*a", "a%*a", "a%*f", "a%.*f", "a%.*e", "a%#.*g", "a%*g"})
        EXPECT_EQ(printInto(nullptr, format, kMost + 1, 1.5), (Printed{1, "a"})) << format;
    EXPECT_EQ(printInto(nullptr, "a%*s", kMost + 1, "x"), (Printed{1, "a"}));
    EXPECT_EQ(printInto(nullptr, "a%*S", kMost + 1, u"x"), (Printed{1, "a"}));
    EXPECT_EQ(print("a%.*g", INT32_MAX, 1.5), "a1.5"); // these add nothing
    EXPECT_EQ(print("a%.*s", INT32_MAX, "x"), "ax");
    CxPrintfValue values[2] = {{{1, 0, 0, 1}}, {{7}}};
    CxStringBuff buffer = {};
    const int count = CxStringBuffPrintfA(nullptr, &buffer, "a%*d", values);
    EXPECT_EQ(taken(count, buffer), (Printed{1, "a"}));
}

TEST(Printf, WideTextIsReadUpToItsPrecision)
{
    // Three units that end where nothing may be read.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void *area =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(area, MAP_FAILED);
    ASSERT_EQ(mprotect(static_cast<char *>(area) + page, page, PROT_NONE), 0);
    auto *units = reinterpret_cast<char16_t *>(static_cast<char *>(area) + page) - 3;
    std::fill(units, units + 3, u'x');
    EXPECT_EQ(printInto(nullptr, "%.3ls|%.2S", units, units).text, "xxx|xx");
    CxStringBuff buffer = {};
    EXPECT_EQ(CxStringBuffAppendWStrN(&buffer, nullptr, units, 3), 1);
    EXPECT_EQ(taken(0, buffer).text, "xxx");
    munmap(area, 2 * page);
}

TEST(Printf, WideTextIsCutAndPaddedByItsBytes)
{
    uc_ch_t *utf8 = ucv_cs_new("UTF8");
    const char16_t *text = u"a\u00e4\u20ac"; // one, two and three bytes
    EXPECT_EQ(printInto(utf8, "%S|%ls", text, text).text,
              "a\xc3\xa4\xe2\x82\xac|a\xc3\xa4\xe2\x82\xac");
    EXPECT_EQ(printInto(utf8, "%.5S|%.2ls|%.0S|", text, text, text).text, "a\xc3\xa4|a||");
    EXPECT_EQ(printInto(utf8, "%8S|%-8S|%08.1S", text, text, text).text,
              "  a\xc3\xa4\xe2\x82\xac|a\xc3\xa4\xe2\x82\xac  |0000000a");
    EXPECT_EQ(printInto(utf8, "%C|%4lc|", 0x20ac, 0xe4).text, "\xe2\x82\xac|  \xc3\xa4|");
    EXPECT_EQ(printInto(utf8, "b%S", nullptr), (Printed{1, "b"}));
    ucv_cs_free(utf8);
}

// A locale of its own, whose groups are of three digits and then of two unless a test says
// otherwise.
class PrintfLocale : public testing::Test {
  protected:
    void SetUp() override { use("xx_XX", "3;2"); }

    void use(const std::string &name, const std::string &grouping)
    {
        folder_.write("source", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping " +
                                    grouping + "\nEND LC_NUMERIC\n");
        const std::string command = olvex::test::localedef() + "-i '" + folder_ / "source" +
                                    "' -f UTF-8 '" + folder_ / name + "' >/dev/null 2>&1";
        [[maybe_unused]] const int warned = std::system(command.c_str());
        setenv("LOCPATH", (folder_ / "").c_str(), 1);
        ASSERT_STREQ(std::setlocale(LC_NUMERIC, name.c_str()), name.c_str());
    }

    void TearDown() override
    {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }

    olvex::test::LogDirectory folder_;
};

TEST_F(PrintfLocale, GroupsDigitsAndKnowsTheDecimalPoint)
{
    EXPECT_EQ(print("%'d|%'d|%'d|%'d|%'u|%'x|%d", 123, 1234, -12345, 123456, 1234567u, 0x1234567,
                    1234567),
              "123|1.234|-12.345|1.23.456|12.34.567|1234567|1234567");
    EXPECT_EQ(print("%'12d|%-'12d|%'012d|", 1234567, 1234567, 1234567),
              "   12.34.567|12.34.567   |00012.34.567|");
    EXPECT_EQ(print("%'.2f|%.2f|%'g", 1234567.5, 1234567.5, 123456.0),
              "12.34.567,50|1234567,50|1.23.456");
    EXPECT_EQ(print("%e|%g|%a", 1.5, 0.5, 1.5), "1,500000e+00|0,5|0x1,8p+0");
    EXPECT_EQ(print("%'.0f", 1e25), "1.00.00.00.00.00.00.00.00.91.00.00.000");
    EXPECT_EQ(print("%'.1f", 999999.96), "10.00.000,0");
    // No number is too long to be grouped.
    EXPECT_EQ(print("%'.0Lf", 1e4000L).size(), 4001u + 1 + (4001 - 3 - 1) / 2);
}

// The end of grouping is a byte that is no size, whether or not plain char has a sign.
TEST_F(PrintfLocale, GroupsOnlyAsFarAsTheLocaleSays)
{
    ASSERT_NO_FATAL_FAILURE(use("yy_YY", "3;-1"));
    EXPECT_EQ(print("%'d|%'.0f", 1234567890, 1e12), "1234567.890|1000000000.000");
}

} // namespace
