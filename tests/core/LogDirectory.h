// A directory of log files for one test, and a look into it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <sys/sem.h>

#include "Toolkit.h"

namespace olvex::test {

using Names = std::set<std::string>;

class LogDirectory {
  public:
    // Below /tmp when it cannot be made in `parent`.
    explicit LogDirectory(const std::string &parent = "/tmp") : path_(make(parent)) {}
    ~LogDirectory() { std::filesystem::remove_all(path_); }
    LogDirectory(const LogDirectory &) = delete;
    LogDirectory &operator=(const LogDirectory &) = delete;

    std::string path() const { return path_.string(); }
    std::string operator/(const std::string &name) const { return (path_ / name).string(); }

    std::string read(const std::string &name) const
    {
        std::ifstream file(path_ / name, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

    // Returns the file's path.
    std::string write(const std::string &name, const std::string &content) const
    {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }

    // The same, as the tests of commands say it.
    std::string put(const std::string &name, const std::string &content) const
    {
        return write(name, content);
    }

    Names names() const
    {
        Names names;
        for (const auto &entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename().string());
        return names;
    }

  private:
    static std::string make(const std::string &parent)
    {
        std::string pattern = parent + "/olvex-logs-XXXXXX";
        if (mkdtemp(pattern.data())) return pattern;
        return parent == "/tmp" ? std::string() : make("/tmp");
    }

    std::filesystem::path path_;
};

// The open descriptors of a file, or of what watches or polls.
inline std::vector<int> descriptorsOf(const std::string &target)
{
    std::vector<int> found;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error) == target)
            found.push_back(std::stoi(entry.path().filename()));
    }
    return found;
}

// A formatter that writes the message alone, between "<" and ">" lines when asked for header and
// trailer.
inline char *formatPlainly(OvxObject *, OvxEvent *event)
{
    char *text = OvxBindEventMsg(event, ovxIntlBindI18Msg);
    const std::string line = std::string(text ? text : "") + "\n";
    BaxMemoryFree(text);
    return BaxStringDup(line.c_str());
}
inline char *plainHeader(OvxObject *)
{
    return BaxStringDup("<\n");
}
inline char *plainTrailer(OvxObject *)
{
    return BaxStringDup(">\n");
}

inline void addPlainFormatters()
{
    OvxAddFormatterClass("test_plain", nullptr, nullptr, nullptr, nullptr, formatPlainly, nullptr,
                         nullptr, nullptr);
    OvxAddFormatterClass("test_framed", nullptr, nullptr, nullptr, nullptr, formatPlainly,
                         plainHeader, plainTrailer, nullptr);
}

inline void removeSemaphoreOf(int key)
{
    const int set = semget(key, 1, 0);
    if (set >= 0) semctl(set, 0, IPC_RMID);
}

// A file handler behind a logger, its log in a folder of its own, and a semaphore for the class
// that is shared by processes, removed in the end.
class LogWithHandler : public OpenToolkit {
  protected:
    void start(const char *handlerClass, const std::string &fileName)
    {
        OpenToolkit::SetUp();
        addPlainFormatters();
        logger_ = get("log", "ovx_basiclogger");
        handler_ = get("file", handlerClass);
        OvxAddListener(logger_, handler_);
        useFormatter("test_plain");
        set("MPFileSemKey", std::to_string(key_));
        set("fileName", directory_ / fileName);
    }
    void TearDown() override
    {
        OpenToolkit::TearDown();
        removeSemaphoreOf(key_);
    }

    void useFormatter(const char *className)
    {
        OvxHandlerSetFormatter(handler_, get(className, className));
    }
    void set(const char *name, const std::string &value)
    {
        OvxSetObjProp(handler_, name, value.c_str());
    }
    void log(const std::string &text)
    {
        OvxLogText(logger_, "%1$s", OVX_PARM_STRING, text.c_str(), 0);
    }

    LogDirectory directory_;
    int key_ = 0x4f560000 + getpid() % 0xffff;
    OvxObject *logger_ = nullptr;
    OvxObject *handler_ = nullptr;
};

} // namespace olvex::test
