// `olvex log` writing to log files, as samples/logs.properties shows it.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include "Command.h"

using namespace tools_test;

namespace {

namespace fs = std::filesystem;

std::vector<std::string> linesOf(const std::string &path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

class LogFiles : public ::testing::Test {
  protected:
    void TearDown() override
    {
        const int set = semget(key_, 1, 0);
        if (set >= 0) semctl(set, 0, IPC_RMID);
        fs::remove_all(folder_.path() + "/logs");
    }

    // Configures logger "app" with a handler of the class for "logs/app.log".
    std::string configure(const std::string &handlerClass, const std::string &more)
    {
        return folder_.put("log.properties", "app.className = ovx_basiclogger\n"
                                             "app.listenerNames = file\n"
                                             "file.className = " +
                                                 handlerClass + "\nfile.fileName = " + path("") +
                                                 "\nfile.MPFileSemKey = " + std::to_string(key_) +
                                                 "\n" + more);
    }
    std::string path(const std::string &number) const
    {
        return folder_.path() + "/logs/app" + number + ".log";
    }

    Folder folder_;
    int key_ = 0x4f590000 + getpid() % 0xffff;
};

TEST_F(LogFiles, RollOver)
{
    const std::string config =
        configure("ovx_filehandler", "file.maxFileBytes = 200\nfile.maxFiles = 3\n");
    std::string input;
    for (int i = 0; i < 100; ++i)
        input += "line " + std::to_string(i) + "\n";
    EXPECT_EQ(run({"log", "--config", config, "--logger", "app"}, input).code, 0);
    std::vector<std::string> lines;
    for (const char *number : {"2", "1", ""})
        for (const std::string &line : linesOf(path(number)))
            lines.push_back(line.substr(line.find("line")));
    ASSERT_GT(lines.size(), 10u);
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(lines[i], "line " + std::to_string(100 - lines.size() + i));
    EXPECT_FALSE(fs::exists(path("3")));
}

TEST_F(LogFiles, AreSharedByProcesses)
{
    const std::string config =
        configure("ovx_multiproc_filehandler", "file.maxFileBytes = 5000\nfile.maxFiles = 100\n");
    constexpr int kProcesses = 3;
    constexpr int kLines = 200;
    std::vector<pid_t> running;
    std::vector<std::string> expected;
    for (int p = 0; p < kProcesses; ++p) {
        std::string input;
        for (int i = 0; i < kLines; ++i) {
            expected.push_back("process " + std::to_string(p) + " line " + std::to_string(i));
            input += expected.back() + "\n";
        }
        running.push_back(start({"log", "--config", config, "--logger", "app"}, makeFile(input),
                                makeFile({}), makeFile({})));
    }
    for (const pid_t process : running)
        EXPECT_EQ(finish(process).code, 0);
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator(folder_.path() + "/logs"))
        for (const std::string &line : linesOf(entry.path()))
            found.push_back(line.substr(line.find("process")));
    EXPECT_THAT(found, ::testing::UnorderedElementsAreArray(expected));
}

} // namespace
