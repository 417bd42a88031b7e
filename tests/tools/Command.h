// Runs the `olvex` command as a user does, and files for it to work on.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include "Paths.h"
#include "core/LogDirectory.h"

namespace tools_test {

// A file of the given contents without a name, at its beginning.
inline int makeFile(const std::string &contents)
{
    const int file = memfd_create("olvex-test", MFD_CLOEXEC);
    EXPECT_EQ(write(file, contents.data(), contents.size()), static_cast<ssize_t>(contents.size()));
    lseek(file, 0, SEEK_SET);
    return file;
}

// The parts of a text between bars.
inline std::vector<std::string> partsOf(std::string_view text)
{
    std::vector<std::string> parts;
    for (std::size_t end; !text.empty(); text.remove_prefix(std::min(end, text.size() - 1) + 1)) {
        end = text.find('|');
        parts.emplace_back(text.substr(0, end));
    }
    return parts;
}

inline std::string readAll(int file)
{
    std::string contents(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(file, contents.data(), contents.size(), 0),
              static_cast<ssize_t>(contents.size()));
    return contents;
}

// Starts the command, or a copy of it, on three descriptors.
inline pid_t start(std::vector<std::string> arguments, int in, int out, int err,
                   const std::string &command = OLVEX_COMMAND)
{
    arguments.insert(arguments.begin(), "olvex");
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in, 0);
    posix_spawn_file_actions_adddup2(&actions, out, 1);
    posix_spawn_file_actions_adddup2(&actions, err, 2);
    pid_t child = -1;
    EXPECT_EQ(posix_spawn(&child, command.c_str(), &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

struct Outcome {
    int code = -1; // exit code, or -1 when a signal ended it
    std::string out;
    std::string err;
    long peakKilobytes = 0;
};

inline Outcome finish(pid_t child)
{
    Outcome outcome;
    int status = 0;
    rusage usage{};
    EXPECT_EQ(wait4(child, &status, 0, &usage), child);
    if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
    outcome.peakKilobytes = usage.ru_maxrss;
    return outcome;
}

// Runs the command to its end with `input` as its standard input.
inline Outcome run(const std::vector<std::string> &arguments, const std::string &input = {},
                   const std::string &command = OLVEX_COMMAND)
{
    const int in = makeFile(input), out = makeFile({}), err = makeFile({});
    Outcome outcome = finish(start(arguments, in, out, err, command));
    outcome.out = readAll(out);
    outcome.err = readAll(err);
    for (const int file : {in, out, err})
        close(file);
    return outcome;
}

using Folder = olvex::test::LogDirectory; // of its own for each test, gone with it

// Tries that what is in a folder changes what the command says when an environment variable or the
// working directory leads there, but not what a copy that has the rights of another group says.
template <class Say>
void expectPrivilegedIgnores(const Folder &folder, const char *variable, const std::string &value,
                             const std::string &start, Say say, const std::string &changed,
                             const std::string &unchanged)
{
    const std::string program = folder / "olvex";
    struct statvfs mount = {};
    statvfs(folder.path().c_str(), &mount);
    std::filesystem::copy_file(OLVEX_COMMAND, program);
    if (geteuid() != 0 || (mount.f_flag & ST_NOSUID) || chown(program.c_str(), 0, 1) != 0 ||
        chmod(program.c_str(), 02755) != 0)
        GTEST_SKIP() << "no program with raised privileges can be made here";
    setenv(variable, value.c_str(), 1);
    EXPECT_EQ(say(OLVEX_COMMAND), changed);
    EXPECT_EQ(say(program), unchanged);
    unsetenv(variable);
    std::filesystem::current_path(folder / start);
    EXPECT_EQ(say(OLVEX_COMMAND), changed);
    EXPECT_EQ(say(program), unchanged);
    std::filesystem::current_path("/");
}

} // namespace tools_test
