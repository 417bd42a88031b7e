// `olvex log` from outside: what it writes, counts and answers.
#include "Command.h"

#include <gmock/gmock.h>

#include <cctype>

using namespace tools_test;
using testing::HasSubstr;

namespace {

// The records with an @ for each timestamp, which must stand before each.
std::string withoutTimes(const std::string &output)
{
    std::istringstream records(output);
    std::string record, result;
    while (std::getline(records, record)) {
        std::string shape = record.substr(0, 30);
        for (char &c : shape)
            c = isdigit(c) ? 'd' : c;
        const bool hasTime =
            shape == "dddd-dd-dd dd:dd:dd.ddd+dd:dd " || shape == "dddd-dd-dd dd:dd:dd.ddd-dd:dd ";
        result += (hasTime ? "@" + record.substr(29) : record) + "\n";
    }
    return result;
}

std::string log(const std::string &input, std::vector<std::string> arguments = {})
{
    arguments.insert(arguments.begin(), "log");
    const Outcome outcome = run(arguments, input);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return withoutTimes(outcome.out);
}

Outcome logStats(const std::string &input, std::vector<std::string> arguments = {})
{
    arguments.insert(arguments.begin(), {"log", "--stats"});
    return run(arguments, input);
}

} // namespace

TEST(LogCommand, LogsEachLineAsItStands)
{
    EXPECT_EQ(log(""), "");
    EXPECT_EQ(log("one\ntwo"), "@ one\n@ two\n");
    EXPECT_EQ(log("dos\r\n\r\n\n  blanks \n"), "@ dos\n@ \n@ \n@   blanks \n");
    EXPECT_EQ(log("%s %1$s %n 100% %%\n"), "@ %s %1$s %n 100% %%\n");
    EXPECT_EQ(log(std::string("a\0b\0\n", 5)), "@ a\\0b\\0\n");
    EXPECT_EQ(log("caf\xC3\xA9\n"), "@ caf\xC3\xA9\n");
}

TEST(LogCommand, GivesEventsTheirProperties)
{
    EXPECT_EQ(log("text\n", {"--file", "main.c", "--function", "work", "--line", "12", "--prop",
                             "component=door", "--prop", "product=a=b", "--level", "ERROR"}),
              "@ main.c work 12 a=b door text\n");
    EXPECT_EQ(log("\n", {"--prop", "server="}), "@  \n");

    std::vector<std::string> many;
    for (int i = 0; i < 59; ++i)
        many.insert(many.end(), {"--prop", "p" + std::to_string(i) + "=x"});
    many.insert(many.end(), {"--prop", "server=last"});
    EXPECT_EQ(log("all of them\n", many), "@ last all of them\n");
    many.insert(many.end(), {"--line", "1", "log"});
    std::swap(many.front(), many.back());
    EXPECT_EQ(run(many).code, 2);
}

TEST(LogCommand, ReadsFilesAndStandardInputInTheOrderGiven)
{
    Folder folder;
    const std::string first = folder.put("first", "1\n"), last = folder.put("last", "3");
    EXPECT_EQ(log("2\n", {first, "-", last}), "@ 1\n@ 2\n@ 3\n");

    const Outcome outcome = run({"log", folder.path() + "/none", first, folder.path(), last});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(withoutTimes(outcome.out), "@ 1\n@ 3\n");
    EXPECT_THAT(outcome.err, HasSubstr("/none: No such file"));
    EXPECT_THAT(outcome.err, HasSubstr("Is a directory"));
}

TEST(LogCommand, CountsWhatBecameOfLines)
{
    EXPECT_THAT(logStats("a\nb\n").err, HasSubstr("2 lines, 2 logged, 0 filtered"));
    const Outcome outcome = logStats("a\nb\n", {"--level", "debug_min"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("0 logged, 2 filtered (2 by the level of 'olvex.log', 0"));

    Folder folder;
    const std::string config = folder.put("log.properties", R"(
app.className = ovx_basiclogger
app.listenerNames = severe one
severe.className = ovx_levelfilter
severe.level = ERROR
severe.listenerNames = two
one.className = ovx_consolehandler
one.logging = off
two.className = ovx_stderrhandler
)");
    const auto with = [&](const char *level) {
        return logStats("a\nb\nc\n", {"--config", config, "--logger", "app", "--level", level}).err;
    };
    EXPECT_THAT(with("WARN"), HasSubstr("0 logged, 3 filtered (0 by the level of 'app', 3"));
    EXPECT_THAT(with("7000"), HasSubstr("3 logged, 0 filtered"));
}

TEST(LogCommand, TakesItsConfigurationFromAFile)
{
    Folder folder;
    const std::string config = folder.put("log.properties", R"(
olvex.log.className = ovx_basiclogger
olvex.log.listenerNames = out
out.className = ovx_consolehandler
out.formatterName = format
format.className = ovx_basicformatter
format.dateTimeFormat = now
format.separator = |
)");
    EXPECT_EQ(log("a\n", {"--config", config}), "now|a\n");

    const std::string broken = folder.put("broken.properties", R"(
olvex.log.className = ovx_basiclogger
olvex.log.listenerNames = missing
missing.className = no_such_class
)");
    const struct {
        std::vector<std::string> arguments;
        const char *says;
    } failures[] = {{{"--config", config, "--logger", "nobody"}, "'nobody' is not described"},
                    {{"--config", config, "--logger", "out"}, "'out' is not a logger"},
                    {{"--config", folder / "none"}, "OVX0051E"},
                    {{"--config", broken}, "OVXBC0062W"}}; // a report is a failure, too
    for (const auto &failure : failures) {
        std::vector<std::string> arguments = failure.arguments;
        arguments.insert(arguments.begin(), "log");
        const Outcome outcome = run(arguments, "a\n");
        EXPECT_EQ(outcome.code, 1) << failure.says;
        EXPECT_THAT(outcome.err, HasSubstr(failure.says));
    }
}

TEST(LogCommand, RefusesMistakesOnTheCommandLine)
{
    using Words = std::vector<std::string>;
    for (const Words &words :
         {Words{}, Words{"lag"}, Words{"log", "--nonsense"}, Words{"log", "--level", "loud"},
          Words{"log", "--level", "4500"}, Words{"log", "--prop", "novalue"},
          Words{"log", "--prop", "=x"}, Words{"log", "--line", "12a"}}) {
        const Outcome outcome = run(words, "a\n");
        EXPECT_EQ(outcome.code, 2) << testing::PrintToString(words);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err, "");
    }
    EXPECT_EQ(run({"log", "--help"}).code, 0);
    EXPECT_THAT(run({"--help"}).out, HasSubstr("log "));
    EXPECT_THAT(run({"--version"}).out, HasSubstr("olvex "));
}

// Neither a full disk nor a reader that has gone may pass for success.
TEST(LogCommand, NoticesThatItsOutputIsLost)
{
    std::string input;
    for (int i = 0; i < 20000; ++i)
        input += "a line of some length to fill buffers\n";
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    close(ends[0]);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    for (const int out : {full, ends[1]}) {
        const int in = makeFile(input), err = makeFile({});
        EXPECT_EQ(finish(start({"log"}, in, out, err)).code, 1);
        EXPECT_THAT(readAll(err), HasSubstr("standard output"));
        close(in);
        close(err);
        close(out);
    }
}

// A closed standard output is an error, even when a log file could be opened under its number.
TEST(LogCommand, KeepsClosedOutputApartFromFiles)
{
    Folder folder;
    const std::string input = folder.put("input", "text\n");
    const std::string config = folder.put("log.properties", R"(
olvex.log.className = ovx_basiclogger
olvex.log.listenerNames = file screen
file.className = ovx_filehandler
file.fileName = )" + folder.path() + R"(/out.log
screen.className = ovx_consolehandler
)");
    folder.put("out.log", "");
    const std::string command =
        OLVEX_COMMAND " log --config '" + config + "' <'" + input + "' >&- 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_EQ(withoutTimes(folder.read("out.log")), "@ text\n");
}

// Input without an end of line must not take all the memory there is.
TEST(LogCommand, RefusesEndlessLines)
{
    const int zeros = open("/dev/zero", O_RDONLY | O_CLOEXEC);
    const int out = makeFile({}), err = makeFile({});
    EXPECT_EQ(finish(start({"log"}, zeros, out, err)).code, 1);
    EXPECT_THAT(readAll(err), HasSubstr("standard input: Message too long"));
    for (const int file : {zeros, out, err})
        close(file);
}

// The record of a line is there before the next line comes.
TEST(LogCommand, WritesWhileItWaitsForInput)
{
    int in[2], out[2];
    ASSERT_EQ(pipe2(in, O_CLOEXEC), 0);
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    const pid_t child = start({"log"}, in[0], out[1], 2);
    close(in[0]);
    close(out[1]);
    char record[200] = "";
    for (const char *line : {"first\n", "second\n"}) {
        ASSERT_GT(write(in[1], line, strlen(line)), 0);
        ASSERT_GT(read(out[0], record, sizeof record - 1), 0);
        EXPECT_THAT(std::string(record), HasSubstr(line));
    }
    close(in[1]);
    EXPECT_EQ(finish(child).code, 0);
    close(out[0]);
}

#ifndef __SANITIZE_ADDRESS__
TEST(LogCommand, NeedsNoMoreMemoryForMoreLines)
{
    std::string input;
    for (int i = 0; i < 100000; ++i)
        input += "line " + std::to_string(i) + "\n";
    const Outcome few = logStats("one\n"), many = logStats(input);
    EXPECT_THAT(many.err, HasSubstr("100000 lines, 100000 logged"));
    EXPECT_LT(many.peakKilobytes - few.peakKilobytes, 2000);
}
#endif
