// `olvex view` over logs that the library itself wrote.
#include "Command.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <random>

#include <sys/stat.h>

#include "core/LogDirectory.h"
#include "core/MadeEvent.h"

using namespace tools_test;
using olvex::test::LogDirectory;
using testing::HasSubstr;
using Json = nlohmann::json;
using Strings = std::vector<std::string>;

namespace {

constexpr std::int64_t kStart = 1207047600000; // 2008-04-01 11:00:00 UTC

class ViewCommand : public olvex::test::OpenToolkit {
  protected:
    // A log of its own name, whose records come from its logger.
    struct Log {
        OvxObject *logger;
        OvxObject *handler;
    };

    Log makeLog(const std::string &name, const char *formatter,
                const char *handlerClass = "ovx_filehandler")
    {
        const Log log = {get((name + ".logger").c_str(), "ovx_pdlogger"),
                         get((name + ".handler").c_str(), handlerClass)};
        OvxAddListener(log.logger, log.handler);
        OvxHandlerSetFormatter(log.handler, get((name + ".formatter").c_str(), formatter));
        set(log.handler, "fileName", directory_ / name);
        set(log.logger, "level", "DEBUG_MAX");
        set(log.logger, "server", "node7.example.com");
        set(log.logger, "component", "engine");
        return log;
    }

    static void set(OvxObject *object, const char *name, const std::string &value)
    {
        OvxSetObjProp(object, name, value.c_str());
    }

    static void log(const Log &to, const std::string &text, int level = OVX_LEVEL_INFO)
    {
        OvxLogMsg(to.logger, nullptr, 0, 0, "%1$s", level, OVX_PARM_STRING, text.c_str(), 0);
    }
    // A message, or a trace event for a level below INFO.
    static void logAt(const Log &to, std::int64_t seconds, const std::string &text,
                      int level = OVX_LEVEL_INFO)
    {
        const char *catalog = level >= OVX_LEVEL_INFO ? "none" : nullptr;
        const olvex::test::MadeEvent event =
            olvex::test::eventAt(kStart + 1000 * seconds, level, catalog, 0, text.c_str(), 0);
        OvxLoggerGetFLog(to.logger)(to.logger, event.get());
    }

    // The texts that are shown, in JSON so that the formats do not matter.
    Strings textsOf(Strings arguments)
    {
        arguments.insert(arguments.begin(), {"view", "--json"});
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.code, 0);
        return textsIn(outcome.out);
    }

    static Strings textsIn(const std::string &lines)
    {
        Strings texts;
        for (const Json &record : parse(lines))
            texts.push_back(record.at("text"));
        return texts;
    }

    static std::vector<Json> parse(const std::string &lines)
    {
        std::vector<Json> records;
        std::istringstream stream(lines);
        for (std::string line; std::getline(stream, line);)
            records.push_back(Json::parse(line));
        return records;
    }

    void expectFollowed(const Log &target, const std::string &name, std::size_t before);

    LogDirectory directory_;
};

Strings numbered(int count)
{
    Strings texts;
    for (int i = 0; i < count; ++i)
        texts.push_back("record " + std::to_string(i));
    return texts;
}

} // namespace

TEST_F(ViewCommand, ReadsWhatEachFormatterWrites)
{
    const std::string text = "OVXBC0020E two\n lines - ]]> \"<&\xC3\xA9";
    for (const char *formatter :
         {"ovx_basicformatter", "ovx_xmlformatter", "ovx_mavtraceformatter"}) {
        const Log target = makeLog(std::string(formatter) + ".log", formatter);
        set(get((std::string(formatter) + ".log.formatter").c_str()), "singleComponent", "true");
        OvxLogMsg(target.logger, "ovxmsg", 1, 999, "%1$s", OVX_LEVEL_ERROR, OVX_PARM_STRING,
                  text.c_str(), OVX_PROP, "ovx_prop_srcfile", OVX_PARM_STRING, "main.c", OVX_PROP,
                  "ovx_prop_srcfunction", OVX_PARM_STRING, "doWork", OVX_PROP, "ovx_prop_srcline",
                  OVX_PARM_INT, 117, 0);
        log(target, "none");
        const Outcome outcome =
            run({"view", "--json", directory_ / (std::string(formatter) + ".log")});
        EXPECT_EQ(outcome.err, "");
        const std::vector<Json> records = parse(outcome.out);
        ASSERT_EQ(records.size(), 2U) << outcome.out;
        EXPECT_EQ(records[0].at("text"), text);
        EXPECT_EQ(records[0].at("id"), "OVXBC0020E");
        EXPECT_EQ(records[0].at("level"), "ERROR");
        EXPECT_EQ(records[0].at("sourceFile"), "main.c");
        EXPECT_EQ(records[0].at("function"), "doWork");
        EXPECT_EQ(records[0].at("line"), 117);
        EXPECT_FALSE(records[1].contains("id"));
        EXPECT_EQ(records[1].contains("component"), formatter == std::string("ovx_xmlformatter"));
        EXPECT_GE(records[1].at("millis"), records[0].at("millis"));
    }
}

TEST_F(ViewCommand, ReadsAllFilesOfALogOldestFirst)
{
    const Log target = makeLog("app.log", "ovx_mavtraceformatter");
    set(target.handler, "maxFiles", "12");
    set(target.handler, "maxFileBytes", "50");
    for (const std::string &text : numbered(12))
        log(target, text);
    EXPECT_EQ(directory_.names().size(), 12U);
    directory_.write("app01.log", "not of the log");
    directory_.write("app1.txt", "nor this");
    directory_.write("app20080401.log", "nor this");
    mkfifo((directory_ / "app30.log").c_str(), 0600);
    const std::string path = directory_ / "app.log";
    EXPECT_EQ(textsOf({path}), numbered(12));
    EXPECT_EQ(textsOf({directory_ / "app2.log", path, path, directory_ / "app11.log"}),
              numbered(12));
    EXPECT_EQ(textsOf({"--only", path}), Strings{"record 11"});
    EXPECT_EQ(textsOf({directory_ / "app10.log"}), Strings{"record 1"});

    const Log digit = makeLog("log7", "ovx_mavtraceformatter");
    log(digit, "one");
    EXPECT_EQ(textsOf({directory_ / "log7"}), Strings{"one"});

    const Outcome outcome = run({"view", directory_ / "missing.log", path});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.err, HasSubstr("missing.log: No such file or directory"));
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 12);
    EXPECT_EQ(run({"view"}).code, 2);
    EXPECT_EQ(run({"view", "--level", "LOUD", path}).code, 2);
    EXPECT_EQ(run({"view", "--since", "yesterday", path}).code, 2);
    EXPECT_EQ(run({"view", "--fields", "file,place", path}).code, 2);
}

TEST_F(ViewCommand, MergesAndFilters)
{
    const Log text = makeLog("text.log", "ovx_basicformatter");
    const Log xml = makeLog("xml.log", "ovx_xmlformatter");
    const Log trace = makeLog("trace.log", "ovx_mavtraceformatter");
    logAt(text, 0, "ABC1234I a");
    logAt(xml, 1, "OVXBC0020E b", OVX_LEVEL_ERROR);
    logAt(trace, 2, "OVXWH0094W c", OVX_LEVEL_WARN);
    logAt(xml, 3, "OVXFF0015I d", OVX_LEVEL_DEBUG_MIN);
    logAt(text, 3, "ABC1234W e");
    logAt(trace, 3, "f", OVX_LEVEL_DEBUG_MAX);
    logAt(text, 2, "ABC1234E g");
    set(xml.logger, "component", "door");
    logAt(xml, 4, "h", OVX_LEVEL_FATAL);

    const auto shown = [&](Strings arguments) {
        arguments.insert(arguments.end(), {"--fields", "component,server", directory_ / "text.log",
                                           directory_ / "xml.log", directory_ / "trace.log"});
        std::string letters;
        for (const std::string &entry : textsOf(arguments))
            letters += entry.back();
        return letters;
    };
    EXPECT_EQ(shown({}), "abcegdfh");
    EXPECT_EQ(shown({"--since", "2008-04-01T11:00:02Z", "--until", "2008-04-01 13:00:03+02:00"}),
              "cg");
    EXPECT_EQ(shown({"--level", "WARN"}), "bcegh");
    EXPECT_EQ(shown({"--level", "FATAL"}), "bgh");
    EXPECT_EQ(shown({"--id", "*W", "--id", "OVXBC*"}), "bce");
    EXPECT_EQ(shown({"--id", "OVX*I"}), "d");
    EXPECT_EQ(shown({"--id", "*"}), "abcegdfh");
    EXPECT_EQ(shown({"--component", "door"}), "h");
    EXPECT_EQ(shown({"--component", "e*e"}), "abegd");
    EXPECT_EQ(shown({"--thread", "0" + std::to_string(gettid())}), "cdf");
    EXPECT_EQ(shown({"--text", "1234", "--text", "0020"}), "abeg");

    const Outcome summary =
        run({"view", "--summary", "--id", "*W", "--id", "O*E", directory_ / "text.log",
             directory_ / "xml.log", directory_ / "trace.log"});
    EXPECT_EQ(summary.out,
              "3 records, 2008-04-01 11:00:01.000+00:00 to 2008-04-01 11:00:03.000+00:00\n\n"
              "Level           Records\n"
              "ERROR                 1\n"
              "WARN                  2\n\n"
              "Identifier Level           Records\n"
              "ABC1234W   WARN                  1\n"
              "OVXBC0020E ERROR                 1\n"
              "OVXWH0094W WARN                  1\n");
    EXPECT_EQ(run({"view", "--summary", "--json", directory_ / "trace.log"}).out,
              "{\"id\":\"\",\"level\":\"DEBUG_MAX\",\"count\":1}\n"
              "{\"id\":\"OVXWH0094W\",\"level\":\"WARN\",\"count\":1}\n");
}

TEST(ViewDamage, ShowsInReportsAndTheExitStatus)
{
    const std::string cut = "<Message Id=\"a\">\n <Time Millis=\"1\"></Time>\n <LogText><![CDATA[b";
    const Outcome outcome = run({"view", "--json", "-"}, cut);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"offset\":0,\"cut\":true}"));
    EXPECT_THAT(outcome.err, HasSubstr("at byte 0: "));
}

TEST(ViewJson, IsValidWhateverTheBytes)
{
    std::mt19937 random(11);
    std::string log;
    const auto noise = [&] {
        std::string bytes(random() % 40, '\0');
        for (char &c : bytes)
            c = static_cast<char>(random() % 3 == 0 ? random() : 0x20 + random() % 0x60);
        return bytes;
    };
    for (int i = 0; i < 1000; ++i)
        log += "2008-04-01 13:05:09.042+02:00 " + noise() + "\n<Message Id=\"" + noise() +
               "\">\n <Time Millis=\"1\"></Time>\n <LogText><![CDATA[" + noise() +
               "]]></LogText>\n <LogAttribs><Key>" + noise() + "</Key><Value>" + noise() +
               "</Value></LogAttribs>\n <Source FileName=\"" + noise() + "\" Line=\"" + noise() +
               "\"/>\n</Message>\n";
    const Outcome outcome = run({"view", "--json", "-"}, log);
    std::istringstream lines(outcome.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        ASSERT_TRUE(Json::accept(line)) << line;
    EXPECT_GT(count, 1000);
}

// A hundred times the size takes no more memory.
TEST(ViewMemory, DoesNotGrowWithTheLog)
{
    std::string log;
    while (log.size() < 64 << 20)
        log += "2008-04-01 13:05:09.042+02:00 OVXBC0020E Out of memory.\n and a second line\n";
    const Outcome few = run({"view", "--summary", "-"}, log.substr(0, log.size() / 100));
    const Outcome many = run({"view", "--summary", "-"}, log);
    EXPECT_EQ(many.code, 0);
    EXPECT_LT(many.peakKilobytes, few.peakKilobytes + 2048);
}

// Logs 40 records, some of them before the log is followed, and sees all of them, in order.
void ViewCommand::expectFollowed(const Log &target, const std::string &name, std::size_t before)
{
    set(target.handler, "maxFiles", "4");
    const Strings texts = numbered(40);
    for (std::size_t i = 0; i < before; ++i)
        log(target, texts[i]);
    const int in = makeFile({}), out = makeFile({}), err = makeFile({});
    const pid_t child = start({"view", "--follow", "--json", directory_ / name}, in, out, err);
    const auto await = [&](std::size_t count) {
        kill(child, SIGCONT);
        for (int i = 0; i < 1200 && std::ranges::count(readAll(out), '\n') < long(count); ++i)
            usleep(25'000);
    };
    for (std::size_t i = before; i < texts.size(); ++i) {
        log(target, texts[i]);
        if (i % 8 != 0) continue;
        await(i + 1);
        kill(child, SIGSTOP); // finds more than one record next time
    }
    await(texts.size());
    kill(child, SIGINT);
    EXPECT_EQ(finish(child).code, 0);
    EXPECT_EQ(readAll(err), "");
    EXPECT_EQ(textsIn(readAll(out)), texts);
    for (const int file : {in, out, err})
        close(file);
}

TEST_F(ViewCommand, FollowsALogOverRenames)
{
    const Log target = makeLog("app.log", "ovx_mavtraceformatter");
    set(target.handler, "maxFileBytes", "600");
    expectFollowed(target, "app.log", 4);
}

TEST_F(ViewCommand, FollowsASharedLogThatIsEmptied)
{
    const Log target = makeLog("shared.log", "ovx_xmlformatter", "ovx_multiproc_filehandler");
    set(target.handler, "MPFileSemKey", std::to_string(0x56000000 + getpid()));
    set(target.handler, "maxFileBytes", "2500");
    expectFollowed(target, "shared.log", 0);
    semctl(semget(0x56000000 + getpid(), 0, 0), 0, IPC_RMID);
}
