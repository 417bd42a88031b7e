// What reaches a terminal, whatever logs, configurations, arguments and names of files hold.
#include "Command.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <termios.h>

#include "Visible.h"
#include "view/Utf8.h"

using namespace tools_test;
using namespace std::literals;
using testing::HasSubstr;

namespace {

// A title for the window, a bell, two C1 controls (one of them a lone byte), a turn of direction, a
// blank without width, a tag.
const std::string kHostile = "\x1b]0;x\x07\xC2\x9B\x9B\xE2\x80\xAE\xE2\x80\x8B\xF3\xA0\x80\x81";
const std::string kSpelled = R"(\x1b]0;x\x07\u009b\x9b\u202e\u200b\U000e0001)";

// What of the above must never come out.
bool isHarmless(std::string_view text)
{
    for (std::size_t length; !text.empty(); text.remove_prefix(length)) {
        length = tools::view::characterLength(text);
        if (length == 0) return false;
        const char32_t character = tools::view::decode(text.substr(0, length));
        const bool isControl = character < 0x20 && character != '\n' && character != '\t';
        if (isControl || (character >= 0x7F && character < 0xA0)) return false;
        if ((character >= 0x200B && character <= 0x202E) || character >= 0xE0000) return false;
    }
    return true;
}

// Runs the command with both outputs on a terminal; what it got is `out`.
Outcome runOnTerminal(const std::vector<std::string> &arguments, const std::string &input = {})
{
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    EXPECT_TRUE(grantpt(master) == 0 && unlockpt(master) == 0);
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    tcgetattr(slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave, TCSANOW, &raw);
    const int in = makeFile(input);
    Outcome outcome = finish(start(arguments, in, slave, slave));
    char block[65536];
    for (ssize_t count; (count = read(master, block, sizeof block)) > 0;)
        outcome.out.append(block, static_cast<std::size_t>(count));
    for (const int file : {in, slave, master})
        close(file);
    return outcome;
}

TEST(Visible, SpellsWhatATerminalWouldActOnAndNothingElse)
{
    using tools::LineEnds;
    using tools::visible;
    EXPECT_EQ(visible(kHostile), kSpelled);
    EXPECT_EQ(visible("a\tb\r\nc\0\x7f"sv), "a\\tb\\r\\nc\\x00\\x7f");
    EXPECT_EQ(visible("a\tb\r\nc", LineEnds::kKept), "a\tb\\r\nc");
    EXPECT_EQ(visible("caf\xE9 \xE2\x82 \xED\xA0\x80"), R"(caf\xe9 \xe2\x82 \xed\xa0\x80)");
    EXPECT_EQ(visible("\u00AD\u061C\u2028\u2066\uFEFF"), R"(\u00ad\u061c\u2028\u2066\ufeff)");
    const std::string plain = "C:\\x1b \u00A0 é ß Ωмег日本 हिन्दी e\u0301 \U0001F600 \uFFFD~";
    EXPECT_EQ(visible(plain), plain);
}

// Each verb, with the hostile text in all that it is given.
TEST(Visible, HoldsForAllThatTheCommandPrints)
{
    const Folder folder;
    const std::string stamp = "2008-04-01 13:05:09.042+02:00 ";
    const std::string log =
        folder.put(kHostile + ".log", stamp + "node" + kHostile + " ABC0001E no\tte" + kHostile +
                                          "\nmore\n" + stamp + "ABC" + kHostile + "1234W x\n");
    const std::string damaged = folder.put(kHostile + ".cut", "rubbish\n" + stamp + "a\n");
    const std::string key = "a" + kHostile;
    const std::string file = folder.put(
        kHostile + ".properties", key + ".className=ovx_basiclogger\n" + key + ".x" + kHostile +
                                      "=" + kHostile + "\n" + key + ".listenerNames=b" + kHostile +
                                      "\n" + key + ".listenerNames=c" + kHostile + "\n");
    const std::string source = folder.put(kHostile + ".msg", "1 a\xC2\x9B\xE2\x80\xAE\n");
    const std::string wrong = folder.put(kHostile + ".wrong", "1 a\n1 b\n$x\xC2\x9B\n");
    const std::string alias = folder.put("tables/" + kHostile, "KOI8R\n");
    const std::string catalog = folder / "some.cat";
    ASSERT_EQ(run({"catalog", "compile", source, "-o", catalog}).code, 0);

    using Arguments = std::vector<std::string>;
    const struct {
        Arguments arguments;
        std::string expected;
    } cases[] = {
        {{"view", log}, stamp + "node" + kSpelled + " ABC0001E no\tte" + kSpelled + "\nmore\n"},
        {{"view", "--json", log}, R"(\u001b]0;x\u0007\u009b\ufffd\u202e\u200b\udb40\udc01)"},
        {{"view", "--summary", log}, "ABC0001E"},
        {{"view", "--summary", "--json", log}, "ABC0001E"},
        {{"view", damaged}, kSpelled + ".cut: at byte 0: "},
        {{"view", log + "gone"}, kSpelled + ".loggone: "},
        {{"view", "--level", kHostile, log}, kSpelled},
        {{"config", "check", file}, "'a" + kSpelled},
        {{"config", "check", "--json", file}, R"(\u009b)"},
        {{"config", "explain", file, key}, kSpelled + ".properties:1"},
        {{"config", "explain", file, kHostile}, "nothing is set for '" + kSpelled},
        {{"config", "classes", kHostile}, "no class '" + kSpelled},
        {{"log", "--logger", kHostile, "--stats", folder / "empty"}, "level of '" + kSpelled},
        {{"log", folder / kHostile}, kSpelled + ": "},
        {{"catalog", "check", wrong, wrong}, kSpelled + ".wrong:2:1: "},
        {{"catalog", "dump", catalog}, "1 \"a\\302\\233\\342\\200\\256\"\n"},
        {{"catalog", "dump", folder / kHostile}, kSpelled + " cannot be read"},
        {{"codeset", "list", folder / "tables"}, kSpelled},
        {{"codeset", "make", kHostile, "-o", "."}, "no code set '" + kSpelled},
        {{"codeset", "show", folder / kHostile}, kSpelled},
        {{kHostile}, "no verb '" + kSpelled},
    };
    for (const auto &entry : cases) {
        const Outcome outcome = runOnTerminal(entry.arguments);
        EXPECT_TRUE(isHarmless(outcome.out)) << tools::visible(outcome.out);
        EXPECT_THAT(outcome.out, HasSubstr(entry.expected)) << entry.arguments[0];
    }
    // What is not for a terminal is as it was, and JSON is the same for both.
    EXPECT_THAT(run({"view", log}).out, HasSubstr(kHostile + "\nmore\n"));
    const std::string json = run({"view", "--json", log}).out;
    EXPECT_TRUE(runOnTerminal({"view", "--json", log}).out.ends_with(json));
    EXPECT_THAT(nlohmann::json::parse(json.substr(0, json.find('\n'))).at("text"),
                HasSubstr("\xC2\x9B\uFFFD\u202E\u200B\U000E0001\nmore"));
    EXPECT_THAT(run({"catalog", "dump", catalog}).out, HasSubstr("1 \"a\xC2\x9B\u202E\"\n"));
}

// There the second byte of a character of UTF-8 can be a control; letters of the code set show.
TEST(Visible, HoldsWhereATerminalDoesNotTakeUtf8)
{
    const Folder folder;
    const std::string make =
        "localedef -c -i ru_RU -f KOI8-R '" + (folder / "ru_RU.KOI8-R") + "' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) GTEST_SKIP() << "no locale can be made here";
    setenv("LOCPATH", folder.path().c_str(), 1);
    setenv("LC_ALL", "ru_RU.KOI8-R", 1);
    EXPECT_THAT(run({"\xC3\x9B"
                     "31m \xD4\xC5 \x9B"})
                    .err,
                HasSubstr("'\\u00db31m \xD4\xC5 \\x9b'"));
    const std::string log = folder.put("a.log", "2008-04-01 13:05:09.042+02:00 \xC3\x9B\n");
    EXPECT_THAT(runOnTerminal({"view", log}).out, HasSubstr("+02:00 \\u00db\n"));
    EXPECT_THAT(run({"view", "--json", log}).out, HasSubstr("\"text\":\"\\u00db\""));
    unsetenv("LC_ALL");
    unsetenv("LOCPATH");
}

} // namespace
