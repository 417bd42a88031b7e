// `olvex config`: its table of classes and its reading of files against the library's, then what a
// user gets to see.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include <malloc.h>

#include "Command.h"
#include "config/Check.h"
#include "config/Explain.h"
#include "config/Model.h"
#include "core/Growth.h"
#include "core/Toolkit.h"
#include "toolkit/OvxObject.h"

using namespace tools_test;
using namespace tools::config;
using olvex::test::namesFrom;
using namespace std::literals;
using Strings = std::vector<std::string>;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

// Puts a text into a file without a name, which lasts until the next call; returns a path to it.
std::string keep(const std::string &text)
{
    static int file = -1;
    close(file);
    file = makeFile(text);
    return "/proc/self/fd/" + std::to_string(file);
}

// The table of classes

std::string bytesOf(const void *block)
{
    if (!block) return "none;";
    return std::string(static_cast<const char *>(block),
                       malloc_usable_size(const_cast<void *>(block))) +
           ';';
}

// All that an object keeps of its properties but their texts: a text that is stored shows by its
// address.
std::string stateOf(OvxObject *object)
{
    std::string state = bytesOf(object) + bytesOf(object->variables);
    state += bytesOf(object->cls->description);
    for (auto *get : {OvxFileCopyHandlerGetFiles, OvxFileCopyHandlerGetZipFile,
                      OvxFileCopyHandlerGetZipCmdPath})
        if (std::string(object->cls->name) == "ovx_ffdc_filecopy_handler")
            state += olvex::test::take(get(object)) + ';';
    return state;
}

bool changes(OvxObject *object, const char *property, const char *value)
{
    const std::string before = stateOf(object);
    OvxSetObjProp(object, property, value);
    return stateOf(object) != before;
}

// Each property takes one of these.
constexpr const char *kValues[] = {
    "true",    "false",   "off",   "FATAL",         "4711",
    "0.5",     "1",       "0600",  "QUOTA_SUSPEND", "PASSTHRU",
    "/bin/sh", "example", "UTF-8", "test.listener", "test.formatter"};

// Whether the type is kept as a number, so that setting the initial value again changes nothing.
bool isScalar(Type type)
{
    return type == Type::Boolean || type == Type::Switch || type == Type::Level ||
           type == Type::Integer || type == Type::Long || type == Type::Fraction ||
           type == Type::Number || type == Type::Mode || type == Type::AnyCase;
}

class ConfigClasses : public olvex::test::OpenToolkit {
  protected:
    // An object that has properties already, since the first one makes room for them.
    OvxObject *make(const ClassInfo &info)
    {
        OvxObject *object = get((std::string("test.") + info.name).c_str(), info.name);
        OvxSetObjProp(object, "unknown", "first");
        return object;
    }
};

TEST_F(ConfigClasses, HaveExactlyThePropertiesAndDefaultsOfTheLibrary)
{
    get("test.listener", "ovx_consolehandler");
    get("test.formatter", "ovx_basicformatter");
    std::map<std::string_view, const Property *> properties;
    for (const ClassInfo &info : classes())
        for (const Property *property : info.all())
            if (property->type != Type::Class) properties.try_emplace(property->name, property);
    // The two file handlers keep each other's settings, and never look at them.
    const auto isKept = [](std::string_view name, std::string_view property) {
        return (name == "ovx_filehandler" &&
                (property == "MPFileSemKey" || property == "emptyUncopied")) ||
               (name == "ovx_multiproc_filehandler" && property == "appending");
    };
    for (const ClassInfo &info : classes()) {
        OvxObject *object = make(info);
        EXPECT_FALSE(changes(object, "noSuchProperty", "1")) << info.name;
        for (const Property *property : info.all())
            if (isScalar(property->type) && *property->initial) {
                EXPECT_FALSE(changes(object, property->name, property->initial))
                    << info.name << ' ' << property->name;
            }
        for (const auto &[name, property] : properties) {
            const auto changesBy = [&](const char *value) {
                return changes(object, property->name, value);
            };
            if (isKept(info.name, name)) continue;
            EXPECT_EQ(std::ranges::any_of(kValues, changesBy), info.find(name) != nullptr)
                << info.name << ' ' << name;
        }
    }
}

// Reading

std::string makeText(std::mt19937 &random)
{
    static const auto kPieces = partsOf(
        "a|b.c|.|=|:| |\t|\n|\n|\n\n|\r\n|\r|\\|\\\\|\\ |\\=|\\n|\\\n|\\\r\n|\\u00e9|\\U20Ac|\\u12|"
        "\\u0000|u|#|!|\"|\\\"|\xC3\xA9|\0|a.b=c\n|a.b=d\r\n|x.y z\n| # comment\n|"
        "p.q=one \\\n   two\n|/.a=b\n|.x=1\n|x.=1\n|a.b=\n"sv);
    std::string text;
    for (auto count = random() % 12; count > 0; --count)
        text += kPieces[random() % kPieces.size()];
    return text;
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs pairsOf(const CxPropList &list)
{
    Pairs pairs;
    for (std::int32_t i = 0; i < list.count; ++i)
        pairs.emplace_back(list.entries[i].key, list.entries[i].value);
    return pairs;
}

TEST_F(ConfigClasses, FilesAreReadAsTheLibraryReadsThem)
{
    std::mt19937 random(20080401);
    int good = 0, bad = 0;
    testing::internal::CaptureStderr(); // the library reports bad escapes
    for (int round = 0; round < 20000; ++round) {
        const std::string text = makeText(random);
        const std::string path = keep(text);
        const Scan scan = scanProperties(text);
        CxPropList list{}, expected{};
        ASSERT_EQ(CxPropListRead(path.c_str(), &list), !scan.hasError) << text;
        for (std::size_t i = 0; i < scan.pairsBeforeError; ++i)
            CxPropListPutStr(&expected, scan.pairs[i].key.c_str(), scan.pairs[i].value.c_str());
        ASSERT_EQ(pairsOf(list), pairsOf(expected)) << text;
        CxPropListDiscard(&list);
        CxPropListDiscard(&expected);

        Report report;
        report.addFile("file");
        Model({}).add(0, scan, report);
        const bool isGood = !scan.hasError && report.count(Severity::Error) == 0;
        ASSERT_EQ(OvxLogMgrReadProps(path.c_str()), isGood) << text;
        ++(isGood ? good : bad);
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("OVX0052E"));
    EXPECT_GT(good, 2000);
    EXPECT_GT(bad, 2000);
}

constexpr const char *kObjects[] = {"a", "a.b", "a.b.c", "a.b.c.d", "x.y", "x.y.z"};

std::string makeConfiguration(std::mt19937 &random)
{
    Strings lines;
    for (const char *object : kObjects) {
        if (random() % 3 == 0)
            lines.push_back(std::string(object) + ".className=" +
                            (random() % 2 ? "ovx_levelfilter" : "ovx_consolehandler"));
        if (random() % 3 == 0)
            lines.push_back(std::string(object) + ".level=" + std::to_string(random() % 9));
    }
    std::ranges::shuffle(lines, random);
    std::string text;
    for (const std::string &line : lines)
        text += line + '\n';
    return text;
}

TEST(ConfigModel, FindsClassesAndValuesAsTheLibraryDoes)
{
    std::mt19937 random(7);
    int found = 0, broken = 0;
    for (int round = 0; round < 300; ++round) {
        const std::string text = makeConfiguration(random);
        const std::string path = keep(text);
        const Scan scan = scanProperties(text);
        Report report;
        report.addFile("file");
        Model model({});
        model.add(0, scan, report);
        model.finish();
        for (const char *name : kObjects) {
            testing::internal::CaptureStderr(); // the library reports what has no class
            ASSERT_TRUE(OvxOpenToolkit(path.c_str()));
            OvxObject *object = OvxGetObject(name, nullptr);
            const bool isBroken = model.breakOfClass(name) != nullptr;
            const std::string expected = isBroken ? "" : model.classOf(name).name;
            ASSERT_EQ(object ? object->cls->name : "", expected) << name << '\n' << text;
            if (object) {
                const Found level = model.inherit(name, "level");
                ASSERT_EQ(olvex::test::take(OvxGetObjProp(object, "level", nullptr)),
                          level ? level.value() : "(none)")
                    << name << '\n'
                    << text;
            }
            OvxReleaseObject(object);
            OvxCloseToolkit();
            testing::internal::GetCapturedStderr();
            found += object != nullptr;
            broken += isBroken;
        }
    }
    EXPECT_GT(found, 300);
    EXPECT_GT(broken, 30);
}

// Checking

// "LINE CODE" for each problem that was printed.
Strings problemsIn(const std::string &output)
{
    Strings problems;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        int number = 0, column = 0;
        char kind[8] = "";
        std::sscanf(line.c_str() + std::min(line.find(':'), line.size()),
                    ":%d:%d: %7[a-z]: ", &number, &column, kind);
        const std::size_t code = line.rfind('[') + 1;
        const std::set<std::string> kinds{"error", "warning", "advice"};
        EXPECT_TRUE(column > 0 && kinds.contains(kind)) << line;
        EXPECT_TRUE(code > 0 && line.back() == ']') << line;
        problems.push_back(std::to_string(number) + ' ' +
                           line.substr(code, line.size() - code - 1));
    }
    return problems;
}

Strings check(const std::string &text)
{
    Folder folder;
    return problemsIn(run({"config", "check", folder.put("a.properties", text)}).out);
}

// A folder in which commands are run, so that they print the names of its files alone.
class FolderAround : public Folder {
  public:
    FolderAround() { std::filesystem::current_path(path()); }
    ~FolderAround() { std::filesystem::current_path("/"); }
};

TEST(ConfigCommand, FindsThePlantedMistakes)
{
    const std::string path = OLVEX_SOURCES "/tests/tools/mistakes.properties";
    Strings wanted, waiting;
    std::ifstream file(path);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.starts_with("# want "))
            waiting.push_back(line.substr(7));
        else
            for (; !waiting.empty(); waiting.erase(waiting.begin()))
                wanted.push_back(std::to_string(number) + ' ' + waiting.front());
    }
    EXPECT_EQ(wanted.size(), 25u);
    const Outcome outcome = run({"config", "check", path});
    EXPECT_EQ(problemsIn(outcome.out), wanted);
    EXPECT_EQ(outcome.code, 1);
}

TEST(ConfigCommand, FindsNothingInTheSamples)
{
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(OLVEX_SOURCES "/samples")) {
        if (entry.path().extension() != ".properties") continue;
        const Outcome outcome = run({"config", "check", "--strict", entry.path().string()});
        EXPECT_EQ(outcome.out + outcome.err, "") << entry.path();
        EXPECT_EQ(outcome.code, 0) << entry.path();
        ++files;
    }
    EXPECT_GE(files, 5);
}

TEST(ConfigCommand, GoesOnAfterEachMistakeOfSyntax)
{
    EXPECT_EQ(
        check("a.b\n"
              "  = 1\n"
              "a\\b.c=2\n"
              "a.d=\\u12\n"
              "a.className=ovx_basiclogger \\\n"
              "\n"
              "  \r\n"
              "\t=x\r\n"
              "a.e=\\q"),
        (Strings{"1 no-separator", "2 no-key", "3 unknown-property", "3 bad-escape", "4 bad-escape",
                 "5 unknown-class", "6 continued-over-empty-line", "8 no-key", "9 bad-escape"}));
}

TEST(ConfigCommand, TakesValuesAsTheClassesDo)
{
    const struct {
        const char *setting, *code;
    } cases[] = {{"file.maxFiles=1 ", ""},
                 {"file.maxFiles=0", "bad-value"},
                 {"file.maxFiles=3000000000", "out-of-range"},
                 {"file.appending=true ", "bad-value"},
                 {"file.filePermission=644", ""},
                 {"file.filePermission=00644", "cut-value"},
                 {"file.filePermission=0888", "cut-value"},
                 {"file.fileName=logs/app ", "trailing-blank"},
                 {"file.fileName=logs/app\\ ", ""},
                 {"log.level=warning", ""},
                 {"log.level=5OOO", "cut-value"},
                 {"log.logging=Off", ""},
                 {"copy.firstWarning=1", "bad-value"},
                 {"copy.warnOnDiskSpace=true", "bad-value"},
                 {"copy.quotaPolicy=quota_ignore", "bad-value"},
                 {"copy.maxDiskSpace=5000000000", ""},
                 {"copy.zipFileName=a", "no-effect"},
                 {"copy.zipCmdPath=/bin/zip;rm", "bad-value"}};
    for (const auto &entry : cases) {
        Strings problems =
            check("log.className=ovx_basiclogger\nlog.listenerNames=file copy\n"
                  "file.className=ovx_filehandler\ncopy.className=ovx_ffdc_filecopy_handler\n"
                  "copy.baseDir=d\ncopy.triggerFilter=ids\ncopy.filesToCopy=f\n"
                  "ids.className=ovx_msgidfilter\n" +
                  std::string(entry.setting) + '\n');
        std::erase(problems, "9 no-effect");
        if (std::string_view(entry.code) == "no-effect") problems.push_back("9 no-effect");
        EXPECT_EQ(problems, *entry.code ? std::vector{std::string("9 ") + entry.code} : Strings())
            << entry.setting;
    }
}

TEST(ConfigCommand, AdvisesOnSharedLogs)
{
    const std::string log = "log.className=ovx_basiclogger\nlog.listenerNames=file\n"
                            "file.className=ovx_multiproc_filehandler\n";
    EXPECT_EQ(check(log), Strings{"3 may-lose"});
    EXPECT_THAT(check(log + "file.emptyUncopied=true\n"), IsEmpty());
    EXPECT_THAT(check(log + "file.maxFiles=1\n"), IsEmpty());
    for (const char *key : {"0", "x", "0x7c4d 1", "0x", "0x0", "0x1ffffffff"})
        EXPECT_EQ(check(log + "file.maxFiles=1\nfile.MPFileSemKey=" + key), Strings{"5 bad-value"})
            << key;
    for (const char *key : {"31821", "-1", "0x7c4d", "0XFFFFFFFF "})
        EXPECT_THAT(check(log + "file.maxFiles=1\nfile.MPFileSemKey=" + key), IsEmpty()) << key;
    const FolderAround around;
    around.put("a", log);
    const Outcome outcome = run({"config", "check", "--strict", "a"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "a:3:1: advice: a rollover empties the log even when its copy failed; "
                           "emptyUncopied=false keeps the records [may-lose]\n");
}

// What serves as a parent alone, inherits, or is of a class of the program's is not flagged.
TEST(ConfigCommand, UnderstandsParentsAndHostClasses)
{
    EXPECT_THAT(check("defaults.className=ovx_filehandler\ndefaults.maxFiles=5\n"
                      "defaults.one.fileName=one.log\n"
                      "app.className=ovx_basiclogger\napp.level=INFO\n"
                      "app.listenerNames=defaults.one defaults.two\n"
                      "app.part.level=WARN\n"
                      "olvex.errorLogger.level=WARN\nolvex.defaultFormatter.separator=|\n"),
                IsEmpty());
    EXPECT_EQ(check("app.className=ovx_basiclogger\napp.listenerNames=app.screen\n"
                    "app.screen.className=ovx_consolehandler\n"),
              Strings{"2 circle"});

    const FolderAround around;
    around.put("a", "app.className=ovx_basiclogger\napp.listenerNames=mail\n"
                    "mail.className=host_mail\nmail.address=root\n");
    EXPECT_EQ(problemsIn(run({"config", "check", "a"}).out), Strings{"3 unknown-class"});
    EXPECT_EQ(run({"config", "check", "--class", "host_mail", "a"}).out, "");
    EXPECT_EQ(problemsIn(run({"config", "check", "--class=host_mail=formatter", "a"}).out),
              Strings{"2 wrong-category"});
}

TEST(ConfigCommand, EndsWithItsVerdict)
{
    const FolderAround around;
    around.put("first", "a.level=INFO\na.level=WARN\n");
    around.put("second", "a.level=\"\x01\n");
    Outcome outcome = run({"config", "check", "first", "second"});
    EXPECT_EQ(outcome.out,
              "first:1:1: warning: 'a.level' is set again in first:2, and that value counts "
              "[set-twice]\n"
              "first:2:1: warning: 'a.level' is set again in second:1, and that value counts "
              "[shadowed]\n"
              "second:1:9: warning: level: there is no level '\"\\x01'; everything passes "
              "[bad-value]\n");
    EXPECT_EQ(outcome.code, 0);
    outcome = run({"config", "check", "--strict", "--json", "second"});
    EXPECT_EQ(outcome.out,
              R"({"file":"second","line":1,"column":9,"severity":"error","code":"bad-value",)"
              R"("message":"level: there is no level '\"\u0001'; everything passes"})"
              "\n");
    EXPECT_EQ(outcome.code, 1);
    outcome = run({"config", "check", "."});
    EXPECT_THAT(outcome.out, HasSubstr(":1:1: error: the file cannot be read: "));
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(run({"config", "check"}).code, 2);
    EXPECT_EQ(run({"config", "check", "--class=a=b", "first"}).code, 2);
}

// Files that would keep a careless program busy for long, or take its stack.
TEST(ConfigCommand, EndsWithLongChainsToo)
{
    std::string text = "l0.className=ovx_basiclogger\nl0.listenerNames=l1\n", dots;
    for (int i = 1; i < 20000; ++i)
        text += "l" + std::to_string(i) + ".className=ovx_levelfilter\nl" + std::to_string(i) +
                ".listenerNames=l" + std::to_string((i + 1) % 20000) + '\n';
    for (int i = 0; i < 200000; ++i)
        dots += "x.";
    const FolderAround around;
    around.put("long", text + dots + "level=INFO\n");
    EXPECT_EQ(problemsIn(run({"config", "check", "long"}).out), Strings{"40000 wrong-category"});
    EXPECT_EQ(run({"config", "explain", "long", "l0"}).code, 0);
}

// Properties that are new, set again, unknown and names that lead nowhere; and circles.
TEST(ConfigScale, ObjectsMayHaveManyPropertiesAndNames)
{
    olvex::test::expectLinear(1000, [](int count) {
        std::string text = "app.className=ovx_basiclogger\napp.listenerNames=";
        for (int i = 0; i < count; ++i)
            text += "listener" + std::to_string(i) + ' ';
        text += '\n';
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i), next = std::to_string(i + 1);
            text += "app.property" + number + "=1\napp.property" + number + "=2\n";
            text += "l" + number + ".className=ovx_levelfilter\nl" + number +
                    ".listenerNames=l0 l" + next + '\n';
        }
        const Scan scan = scanProperties(text);
        Report report;
        report.addFile("file");
        Model model({});
        model.add(0, scan, report);
        model.finish();
        checkSettings(model, report);
        checkReferences(model, report);
        FILE *nowhere = std::fopen("/dev/null", "we");
        explain(nowhere, model, report, "app", false, true);
        report.print(nowhere, false);
        std::fclose(nowhere);
    });
}

// Explaining

TEST(ConfigCommand, ExplainsAnObject)
{
    const FolderAround around;
    around.put("app", "app.className = ovx_basiclogger\n"
                      "app.level = INFO\n"
                      "app.colour = red\n"
                      "app.listenerNames = screen alarms gone\n"
                      "screen.className = ovx_consolehandler\n"
                      "screen.formatterName = lines\n"
                      "alarms.className = ovx_levelfilter\n"
                      "alarms.level = WARN\n"
                      "alarms.listenerNames = screen alarms\n"
                      "lines.className = ovx_basicformatter\n");
    around.put("more", "app.part.level = FATAL\n");
    setenv("LC_ALL", "C", 1);
    EXPECT_EQ(run({"config", "explain", "app", "more", "app.part"}).out,
              "app.part: logger of class ovx_basiclogger\n\n"
              "  className      ovx_basiclogger     app:1, from app\n"
              "  level          FATAL               more:1\n"
              "  listenerNames  screen alarms gone  app:4, from app\n"
              "  colour         red                 app:3, from app, no effect\n\n"
              "app.part (ovx_basiclogger, from FATAL)\n"
              "|- screen (ovx_consolehandler, formatter lines)\n"
              "|- alarms (ovx_levelfilter, from WARN)\n"
              "|  |- screen (ovx_consolehandler, formatter lines)\n"
              "|  `- alarms (ovx_levelfilter, from WARN) ...\n"
              "`- gone (no such object)\n");
    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_THAT(run({"config", "explain", "app", "app"}).out, HasSubstr("\n│  └─ alarms ("));
    unsetenv("LC_ALL");
    EXPECT_THAT(run({"config", "explain", "--all", "app", "lines"}).out,
                HasSubstr("  separator       a blank "));
    const Outcome outcome = run({"config", "explain", "app", "apps"});
    EXPECT_EQ(outcome.err, "olvex config: nothing is set for 'apps'; did you mean 'app'?\n");
    EXPECT_EQ(outcome.code, 1);
}

TEST(ConfigCommand, PrintsTheClassesThatTheDocumentHolds)
{
    const Outcome outcome = run({"config", "classes", "--markdown"});
    std::ostringstream document;
    document << std::ifstream(OLVEX_SOURCES "/docs/configuration.md").rdbuf();
    EXPECT_THAT(document.str(), HasSubstr(outcome.out));
    EXPECT_THAT(outcome.out, HasSubstr("| `maxFiles` | 1 or more | `3` |"));
    EXPECT_THAT(run({"config", "classes", "ovx_mavtraceformatter"}).out,
                HasSubstr("ovx_mavtraceformatter, a formatter\n"));
    EXPECT_EQ(run({"config", "classes", "ovx_filehandlr"}).code, 1);
}

} // namespace
