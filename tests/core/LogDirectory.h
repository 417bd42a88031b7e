// A directory of log files for one test, and a look into it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "Toolkit.h"

namespace olvex::test {

class LogDirectory {
  public:
    explicit LogDirectory(const std::string &parent = "/tmp")
    {
        path_ = make(parent);
        if (path_.empty()) path_ = make("/tmp");
    }
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

    void write(const std::string &name, const std::string &content) const
    {
        std::ofstream(path_ / name, std::ios::binary) << content;
    }

    std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename().string());
        return names;
    }

  private:
    static std::string make(const std::string &parent)
    {
        std::string pattern = parent + "/olvex-logs-XXXXXX";
        return mkdtemp(pattern.data()) ? pattern : std::string();
    }

    std::filesystem::path path_;
};

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

} // namespace olvex::test
