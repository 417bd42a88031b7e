// What the tests of the tracing front end share: a directory with a properties file whose loggers
// end in a recorder, and code that runs as a user who is not root.
#pragma once

#include "core/LogDirectory.h"

#include <olvex/trace/OlvLogWrapper.h>

#include <functional>
#include <grp.h>
#include <sys/stat.h>

namespace olvex::test {

struct TraceRecord {
    int level;
    std::string file;
    int line;
    std::string method;
    std::string text;
    bool operator==(const TraceRecord &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const TraceRecord &record)
{
    return out << record.level << ' ' << record.file << ':' << record.line << " [" << record.method
               << "] '" << record.text << "'";
}

inline std::vector<TraceRecord> traced;

inline void recordTrace(OvxObject *, OvxEvent *event)
{
    traced.push_back({OvxGetEventLevel(event),
                      take(OvxGetEventProp(event, "ovx_prop_srcfile", nullptr)),
                      OvxGetEventPropInt(event, "ovx_prop_srcline", nullptr),
                      take(OvxGetEventProp(event, "ovx_prop_srcfunction", nullptr)),
                      take(OvxBindEventMsg(event, ovxIntlBindI18Msg))});
}

// Three components that take everything, one of each other level; sigeval has no logger.
inline std::string traceProperties()
{
    std::string text = "recorder.className = trace_recorder\n";
    for (const auto &[component, level] : {std::pair{"hw", "DEBUG_MAX"},
                                           {"vpd", "DEBUG_MID"},
                                           {"common", "DEBUG_MIN"},
                                           {"plugin", "INFO"}}) {
        const std::string logger = std::string(component) + ".loggers.trcLogger.";
        text += logger + "className = ovx_basiclogger\n" + logger + "listenerNames = recorder\n" +
                logger + "level = " + level + "\n";
    }
    return text;
}

// A test whose process traces with the properties above, when it has called start().
class TraceToolkit : public ::testing::Test {
  protected:
    void SetUp() override
    {
        traced.clear();
        OvxAddHandlerClass("trace_recorder", nullptr, nullptr, nullptr, OvxBasicHandlerFCfgChange,
                           recordTrace, nullptr, nullptr);
    }

    void start(const std::string &moreProperties = "")
    {
        directory_.write("trace.properties", traceProperties() + moreProperties);
        initializeWrapper((directory_ / "trace.properties").c_str());
    }

    LogDirectory directory_;
};

// What the function returns in a process of its own that is not root's.
inline std::string asOrdinaryUser(const std::function<std::string()> &function)
{
    constexpr uid_t kNobody = 65534;
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        const bool isRoot = getuid() == 0;
        if (isRoot && (setgroups(0, nullptr) || setgid(kNobody) || setuid(kNobody))) _exit(1);
        const std::string result = function();
        const bool written = write(ends[1], result.data(), result.size()) >= 0;
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    std::string result;
    char buffer[4096];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
        result.append(buffer, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? result : "the child failed";
}

} // namespace olvex::test
