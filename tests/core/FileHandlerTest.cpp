// The file handler: names, rollover, permissions, properties, files that go away underneath it.
#include "LogDirectory.h"

#include "handlers/OvxFileHandler.h"

#include <sys/stat.h>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;

class FileHandler : public LogWithHandler {
  protected:
    void SetUp() override { start("ovx_filehandler", "app.log"); }
};

TEST_F(FileHandler, RollsOverBeforeTheRecordThatFindsTheFileFull)
{
    set("maxFiles", "3");
    set("maxFileBytes", "100");
    const std::string record(59, 'x');
    for (char n = '1'; n <= '7'; ++n)
        log(n + record.substr(1));
    const auto content = [&](const char *digits) {
        std::string text;
        for (; *digits; ++digits)
            text += *digits + record.substr(1) + "\n";
        return text;
    };
    EXPECT_EQ(directory_.names(), (Names{"app.log", "app1.log", "app2.log"}));
    EXPECT_EQ(directory_.read("app.log"), content("7"));
    EXPECT_EQ(directory_.read("app1.log"), content("56"));
    EXPECT_EQ(directory_.read("app2.log"), content("34"));
}

TEST_F(FileHandler, OneFileIsNeverRolled)
{
    set("maxFiles", "1");
    set("maxFileBytes", "10");
    for (int i = 0; i < 5; ++i)
        log("0123456789");
    EXPECT_EQ(directory_.names(), Names{"app.log"});
    EXPECT_EQ(directory_.read("app.log").size(), 55u);
    EXPECT_EQ(reports(), Strings{"OVXFH0079W Property 'maxFileBytes' will be ignored for file "
                                 "handler 'file', because property 'maxFiles' is set to 1."});
}

TEST_F(FileHandler, ManyFilesAreFoundRatherThanTriedOneByOne)
{
    for (const char *maxFiles : {"100", "2147483647"}) {
        set("maxFiles", maxFiles);
        set("maxFileBytes", "1");
        for (const char *name : {"app.log", "app1.log", "app2.log", "app7.log", "app99.log",
                                 "app07.log", "app3.txt", "app4.log.old"})
            directory_.write(name, name);
        log("new");
        EXPECT_EQ(directory_.read("app1.log"), "app.log");
        EXPECT_EQ(directory_.read("app2.log"), "app1.log");
        EXPECT_EQ(directory_.read("app3.log"), "app2.log");
        EXPECT_EQ(directory_.read("app8.log"), "app7.log");
        Names expected{"app.log",  "app1.log",  "app2.log", "app3.log",
                       "app8.log", "app07.log", "app3.txt", "app4.log.old"};
        if (maxFiles != std::string("100")) expected.insert("app100.log");
        EXPECT_EQ(directory_.names(), expected);
        for (const std::string &name : directory_.names())
            fs::remove(directory_ / name);
    }
}

TEST_F(FileHandler, FramesEachFileAndReopensWithItsSettings)
{
    useFormatter("test_framed");
    set("maxFileBytes", "12");
    log("one");
    log("two"); // 2 + 4 + 4 bytes so far
    log("three");
    log("four");
    EXPECT_EQ(directory_.read("app1.log"), "<\none\ntwo\nthree\n>\n");
    EXPECT_EQ(directory_.read("app.log"), "<\nfour\n");
    set("maxFileBytes", "1000");
    log("five");
    EXPECT_EQ(directory_.read("app.log"), "<\nfour\n>\n<\nfive\n");
    set("filePermission", "0600");
    EXPECT_EQ(directory_.read("app.log"), "<\nfour\n>\n<\nfive\n>\n");
    set("appending", "false");
    log("six");
    OvxCloseToolkit(); // without a trailer
    EXPECT_EQ(directory_.read("app.log"), "<\nsix\n");
}

TEST_F(FileHandler, AFileThatIsFullAlreadyIsRolledWhenOpened)
{
    directory_.write("app.log", "an old log\n");
    useFormatter("test_framed");
    set("maxFileBytes", "5");
    log("new");
    EXPECT_EQ(directory_.read("app1.log"), "an old log\n>\n");
    EXPECT_EQ(directory_.read("app.log"), "<\nnew\n");
}

TEST_F(FileHandler, TheNextRecordFindsTheFileGone)
{
    useFormatter("test_framed");
    log("one");
    fs::remove(directory_ / "app.log");
    log("two");
    EXPECT_EQ(directory_.read("app.log"), "<\ntwo\n");
    fs::rename(directory_ / "app.log", directory_ / "moved");
    log("three");
    EXPECT_EQ(directory_.read("moved"), "<\ntwo\n>\n");
    EXPECT_EQ(directory_.read("app.log"), "<\nthree\n");
    directory_.write("other", "another\n");
    fs::rename(directory_ / "other", directory_ / "app.log"); // as an outside rotation does
    log("four");
    EXPECT_EQ(directory_.read("app.log"), "another\n<\nfour\n");
}

TEST_F(FileHandler, NamesAreTakenApart)
{
    const auto partsOf = [](const char *name) {
        const auto text = [](const char *part) { return std::string(part ? part : "-"); };
        olvex::LogName parts;
        ovxFHGetFileNameParts(name, parts, true);
        return text(parts.directory.get()) + " " + text(parts.base.get()) + " " +
               std::to_string(parts.number) + " " + text(parts.extension.get()) + " " +
               text(parts.pathOf(2).get());
    };
    const std::string here = fs::current_path().string();
    const std::pair<const char *, std::string> cases[] = {
        {"/var/log/app.log", "/var/log app 0 log /var/log/app2.log"},
        {"logs/app", "logs app 0 - logs/app2"},
        {"C:\\logs\\app.log", "C:/logs app 0 log C:/logs/app2.log"},
        {"x/trace17.log", "x trace 17 log x/trace2.log"},
        {"/app.log", here + " app 0 log " + here + "/app2.log"},
        {"logs.d/app", here + " logs 0 d/app " + here + "/logs2.d/app"},
        {"x/9", "x  9 - x/2"},
    };
    for (const auto &[name, parts] : cases)
        EXPECT_EQ(partsOf(name), parts) << name;
}

TEST_F(FileHandler, ConfiguredNamesNeverEndInDigits)
{
    set("fileName", directory_ / "audit2.log");
    set("maxFileBytes", "1");
    log("one");
    log("two");
    EXPECT_EQ(directory_.names(), (Names{"audit2_.log", "audit2_1.log"}));
}

TEST_F(FileHandler, BadValuesAreReportedAndReplaced)
{
    const std::string tooLong(256, 'n');
    const struct {
        const char *name, *value, *report;
    } cases[] = {
        {"fileName", tooLong.c_str(),
         "OVXBC0031E Property 'fileName' must be 255 characters or less."},
        {"fileName", "",
         "OVXBC04E Property 'fileName' will be ignored for 'file' because the value is empty or "
         "blank."},
        {"maxFileBytes", "0",
         "OVXFH0078W Property 'maxFileBytes' will be ignored for file handler 'file', because the "
         "value  0 is not greater than zero."},
        {"maxFiles", "-1",
         "OVXFH0077W Property 'maxFiles' will be ignored for file handler file, because the value "
         "-1 is not greater than zero."},
        {"filePermission", "rw",
         "OVXMP0074W The value rw is not a valid file permission mask for file handler file. "
         "Please specify a four-digit octal value (with a leading zero)."},
        {"fileEncoding", "no-such-code-set",
         "OVXFH0036W Could not load codeset no-such-code-set. Logged text will be stored in UTF-8 "
         "encoding instead."},
    };
    for (const auto &entry : cases) {
        records.clear();
        set(entry.name, entry.value);
        EXPECT_EQ(reports(), Strings{entry.report});
    }
    const auto *vars = olvex::fileVarsOf(handler_);
    EXPECT_STREQ(vars->name.base.get(), "default");
    EXPECT_EQ(vars->maxFileBytes, 1024);
    EXPECT_EQ(vars->maxFiles, 3);
    records.clear();
    set("logInternalErrs", "false");
    set("filePermission", "rw");
    EXPECT_EQ(reports(), Strings{});
}

TEST_F(FileHandler, DirectoriesAndFilesGetTheirModes)
{
    umask(022);
    set("fileName", directory_ / "a/b/c/app.log");
    set("dirPermission", "0750");
    set("filePermission", "0600");
    log("text");
    struct stat status = {};
    for (const char *level : {"a", "a/b", "a/b/c"}) {
        stat((directory_ / level).c_str(), &status);
        EXPECT_EQ(status.st_mode & 07777, 0750u) << level;
    }
    stat((directory_ / "a/b/c/app.log").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

} // namespace
