// A host's whole life with the toolkit: objects of all thirteen classes out of a properties file,
// logged through until everything has rolled over, and closed. Faults are injected into it.
#pragma once

#include <gtest/gtest.h>

#include "Paths.h"
#include "core/LogDirectory.h"
#include "handlers/files/OvxPathWatch.h"

namespace olvex::test {

// Catches what is written to standard output and standard error while it lives: the console
// handlers of the scenario write there, thousands of times.
struct Silence {
    Silence()
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    ~Silence()
    {
        testing::internal::GetCapturedStdout();
        testing::internal::GetCapturedStderr();
    }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;
};

// What the toolkit reported about itself, where a recorder listens to it.
inline std::vector<std::string> reportsMade;

inline void recordReport(OvxObject *, OvxEvent *event)
{
    reportsMade.push_back(take(OvxBindEventMsg(event, ovxIntlBindI18Msg)));
}

class Scenario {
  public:
    explicit Scenario(bool recordsReports) : recordsReports_(recordsReports)
    {
        // A handler that has lost its file's name writes to one in the working directory.
        std::filesystem::current_path(directory_.path());
        directory_.write("host.conf", "what is captured\n");
        directory_.write("host.properties", properties());
        directory_.write("zip", "#!/bin/sh\n: >\"$3\"\n");
        std::filesystem::permissions(directory_ / "zip", std::filesystem::perms::owner_all);
        setenv("UCVDIR", OLVEX_TABLES, 1);
        path_ = directory_ / "host.properties";
        for (const char *name : {"one", "two", "shared", "again", "xml", "trace"})
            logs_.push_back(directory_ / ("logs/" + std::string(name) + ".log"));
    }
    ~Scenario()
    {
        removeSemaphoreOf(key_);
        std::filesystem::current_path("/");
    }

    // Removes what earlier runs left.
    void prepare()
    {
        std::filesystem::remove_all(directory_ / "logs");
        std::filesystem::remove_all(directory_ / "captured");
        std::filesystem::create_directory(directory_ / "logs");
        directory_.write("logs/again.log.ovx-roll", "left behind\n");
        reportsMade.clear();
        removeSemaphoreOf(key_);
    }

    // Whether the toolkit opened.
    bool open()
    {
        if (recordsReports_)
            OvxAddHandlerClass("test_reports", nullptr, nullptr, nullptr, nullptr, recordReport,
                               nullptr, nullptr);
        return OvxOpenToolkit(path_.c_str());
    }

    void use()
    {
        countPathLooks(kLooksBeforeWatching); // so that paths are watched
        const Held log("app"), problems("app.problems");
        for (int round = 0; round < 4; ++round)
            logThrough(log, problems, round);
        reconfigure(log);
        logThrough(log, problems, 4);
    }

    // One more event through everything, which must be in each log afterwards.
    void logGood() { OvxLogError(Held("app.problems"), nullptr, 0, 0, "HSTXX0002E good", 0); }
    // The names of the logs that lack it.
    std::string logsWithoutGood() const
    {
        std::string lacking;
        for (const std::string &log : logs_)
            if (directory_.read(log.substr(directory_.path().size() + 1)).find("HSTXX0002E") ==
                std::string::npos)
                lacking += log + " ";
        return lacking;
    }

    // The lines of the plain log and its older files; all were given one by one by logThrough.
    std::vector<std::string> plainLines() const
    {
        std::vector<std::string> lines;
        for (const char *name : {"logs/one2.log", "logs/one1.log", "logs/one.log"}) {
            std::istringstream content(directory_.read(name));
            for (std::string line; std::getline(content, line);)
                lines.push_back(line);
        }
        return lines;
    }

  private:
    static void logThrough(OvxObject *log, OvxObject *problems, int round)
    {
        for (OvxObject *logger : {log, problems}) {
            OvxLogError(logger, "hostmsg", 1, 7, "HSTXX0001E round %1$d of %2$s, %3$.2f",
                        OVX_PARM_INT, round, OVX_PARM_STRING, "events", OVX_PARM_DOUBLE, 1.5,
                        OVX_PROP, "correlationId", OVX_PARM_STRING, "c1", 0);
            OvxLogDebugMin(logger, "host.c", "work", 12, "round %1$d", OVX_PARM_INT, round, 0);
        }
    }

    static void reconfigure(OvxObject *log)
    {
        const Held handler("one"), own("app.own", "ovx_basiclogger");
        OvxSetObjProp(handler, "maxFiles", "400");
        BaxMemoryFree(OvxGetObjProp(handler, "fileName", nullptr));
        OvxSetObjPropInt(log, "level", OVX_LEVEL_DEBUG_MAX);
        OvxAddListener(own, handler);
        OvxLogText(own, "own %1$s", OVX_PARM_STRING, "text", 0);
        OvxRemListener(own, handler);
        BaxMemoryFree(OvxGetObjectDesc(own));
    }

    std::string properties() const
    {
        std::string text = "app.className=ovx_basiclogger\napp.level=ALL\n"
                           "app.listenerNames=levels ids trigger capture archive console errors\n"
                           "app.problems.className=ovx_pdlogger\napp.problems.organization=Org\n"
                           "app.problems.listenerNames=levels ids xml trace\n"
                           "levels.className=ovx_levelfilter\nlevels.level=WARN\n"
                           "levels.listenerNames=one two\n"
                           "ids.className=ovx_msgidfilter\nids.mode=PASSTHRU\nids.msgIds=HST*E\n"
                           "ids.listenerNames=shared again\n"
                           "onlyIds.className=ovx_msgidfilter\nonlyIds.mode=PASSTHRU\n"
                           "onlyIds.msgIds=HST*E\n"
                           "console.className=ovx_consolehandler\n"
                           "errors.className=ovx_stderrhandler\n"
                           "xml.formatterName=xmlFormat\ntrace.formatterName=traceFormat\n"
                           "xmlFormat.className=ovx_xmlformatter\nxmlFormat.singleServer=true\n"
                           "traceFormat.className=ovx_mavtraceformatter\n"
                           "one.formatterName=plain\nplain.className=ovx_basicformatter\n"
                           "plain.dateFormat=%Y\n"
                           "two.fileEncoding=ISO-8859-1\n"
                           "trigger.className=ovx_ffdc_trigger_handler\n"
                           "capture.className=ovx_ffdc_filecopy_handler\n"
                           "archive.className=ovx_ffdc_filecopy_handler\n"
                           "archive.zipFileName=all\n"
                           "archive.triggerRepeatTime=60000\n"
                           "again.emptyUncopied=false\n";
        for (const char *name : {"one", "two", "xml", "trace"})
            addFile(text, name, "ovx_filehandler");
        for (const char *name : {"shared", "again"}) {
            addFile(text, name, "ovx_multiproc_filehandler");
            text += std::string(name) + ".MPFileSemKey=" + std::to_string(key_) + "\n";
        }
        text += "archive.zipCmdPath=" + (directory_ / "zip") + "\n";
        for (const char *name : {"trigger", "capture", "archive"}) {
            const std::string handler = name;
            text += handler + ".baseDir=" + (directory_ / "captured") + "\n" + handler +
                    ".triggerFilter=onlyIds\n" + handler + ".maxDiskSpace=100\n";
            if (handler != "trigger")
                text += handler + ".filesToCopy=" + (directory_ / "host.conf") + "\n";
        }
        if (recordsReports_)
            text += "olvex.errorLogger.className=ovx_basiclogger\n"
                    "olvex.errorLogger.listenerNames=reports\nreports.className=test_reports\n";
        return text;
    }

    void addFile(std::string &text, const std::string &name, const std::string &className) const
    {
        text += name + ".className=" + className + "\n" + name +
                ".fileName=" + (directory_ / "logs/") + name + ".log\n" + name +
                ".maxFileBytes=100\n" + name + ".maxFiles=3\n";
    }

    bool recordsReports_;
    int key_ = 0x4f580000 + getpid() % 0xffff;
    LogDirectory directory_{"/dev/shm"};
    std::string path_;
    std::vector<std::string> logs_;
};

// Sanitizers make everything slow: of the places where something can fail they see one in `step`.
inline constexpr long seenBySanitizers([[maybe_unused]] long step)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return step;
#else
    return 1;
#endif
}

// What is found is told at the end: until then the output is silenced.
class FaultTest : public ::testing::Test {
  protected:
    explicit FaultTest(bool recordsReports) : scenario_(recordsReports) {}

    void note(const std::string &fault)
    {
        faults_ += place_ + ": " + fault + "\n";
        ++faultCount_;
    }
    bool isBadEnough() const { return faultCount_ >= 20; }

    // Without faults, after those.
    void checkUsable(bool isOpen)
    {
        if (!isOpen && !scenario_.open()) note("does not open");
        scenario_.logGood();
        const std::string lacking = scenario_.logsWithoutGood();
        if (!lacking.empty()) note("no good event in " + lacking);
        OvxCloseToolkit();
    }

    Scenario scenario_;
    std::string place_; // where the fault is
    std::string faults_;
    int faultCount_ = 0;
};

} // namespace olvex::test
