// What the tests of the core share: an open toolkit, a handler that records what reaches it, and
// the reports that the toolkit makes about itself.
#pragma once

#include <olvex/class.h>
#include <olvex/olvex.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace olvex::test {

using Strings = std::vector<std::string>;

// Takes over a string of the library.
inline std::string take(char *text)
{
    std::string copy = text ? text : "(none)";
    BaxMemoryFree(text);
    return copy;
}

// The strings of a group, from a place on.
inline Strings namesFrom(StringGroupNode *node)
{
    Strings result;
    for (; OvxStringGroupIterHasNext(node); node = OvxStringGroupIterNext(node))
        result.push_back(take(OvxStringGroupIterGet(node)));
    return result;
}

// An object, released at the end of the scope.
class Held {
  public:
    explicit Held(const char *name, const char *className = nullptr)
        : object_(OvxGetObject(name, className))
    {}
    ~Held() { OvxReleaseObject(object_); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    operator OvxObject *() const { return object_; }

  private:
    OvxObject *object_;
};

inline void setZone(const char *zone)
{
    setenv("TZ", zone, 1);
    tzset();
}

// The exit status of a child that does the work within twenty seconds, or -1 when a signal ended
// it.
template <class Work>
int inChild(Work work)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        _exit(work());
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A handler class of which only counts what it does with events.
inline void addHandlerClass(const char *name, void (*log)(OvxObject *, OvxEvent *))
{
    OvxAddHandlerClass(name, nullptr, nullptr, nullptr, nullptr, log, nullptr, nullptr);
}

struct Record {
    std::string handler;
    std::string text; // the bound message
    int level;
    bool isMessage;
};

inline std::vector<Record> records;

inline void record(OvxObject *handler, OvxEvent *event)
{
    if (!ovxIntlIsObjectEnabled(handler)) return;
    records.push_back({ovxIntlGetObjectName(handler),
                       take(OvxBindEventMsg(event, ovxIntlBindI18Msg)), OvxGetEventLevel(event),
                       OvxGetEventIsMessage(event)});
    OvxBasicObjectFLog(handler, event);
}

inline std::vector<std::string> recordedBy(const std::string &handler)
{
    std::vector<std::string> texts;
    for (const Record &entry : records)
        if (entry.handler == handler) texts.push_back(entry.text);
    return texts;
}

// A file that goes away with its scope.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string &content)
    {
        char name[] = "/tmp/olvex-test-XXXXXX";
        const int descriptor = mkstemp(name);
        close(descriptor);
        path_ = name;
        std::ofstream(path_, std::ios::binary) << content;
    }
    ~TemporaryFile() { unlink(path_.c_str()); }
    const char *path() const { return path_.c_str(); }

  private:
    std::string path_;
};

class OpenToolkit : public ::testing::Test {
  protected:
    void SetUp() override
    {
        records.clear();
        ASSERT_TRUE(OvxOpenToolkit(nullptr));
        OvxAddHandlerClass("test_recorder", nullptr, nullptr, nullptr, OvxBasicHandlerFCfgChange,
                           record, nullptr, nullptr);
        divertReports();
    }

    void TearDown() override { closeToolkit(); }

    // Closes the toolkit with nothing of the fixture's held.
    void closeToolkit()
    {
        for (OvxObject *object : held_)
            OvxReleaseObject(object);
        held_.clear();
        OvxCloseToolkit();
    }

    // An object, released at the end of the test.
    OvxObject *get(const char *name, const char *className = nullptr)
    {
        OvxObject *object = OvxGetObject(name, className);
        if (object) held_.push_back(object);
        return object;
    }

    // The logger "log" with a listener that does this with events.
    OvxObject *loggerWith(const char *listener, void (*log)(OvxObject *, OvxEvent *))
    {
        addHandlerClass("test_own", log);
        OvxObject *logger = get("log", "ovx_basiclogger");
        OvxAddListener(logger, get(listener, "test_own"));
        return logger;
    }

    // A logger with a recorder of its own, called like it with "Recorder" behind.
    OvxObject *loggerWithRecorder(const std::string &name)
    {
        OvxObject *logger = get(name.c_str(), "ovx_basiclogger");
        OvxAddListener(logger, get((name + "Recorder").c_str(), "test_recorder"));
        return logger;
    }

    static std::vector<std::string> reports() { return recordedBy("reports"); }

    // What the toolkit says of itself goes to the recorder "reports" instead of standard error.
    void divertReports()
    {
        OvxObject *logger = get("olvex.errorLogger");
        OvxRemListener(logger, get("olvex.stderrHandler"));
        OvxAddListener(logger, get("reports", "test_recorder"));
    }

    std::vector<OvxObject *> held_;
};

} // namespace olvex::test
