// What can happen to a path, looked at and watched: whatever it is, the next question knows.
#include "LogDirectory.h"

#include "handlers/files/OvxPathWatch.h"

#include <fcntl.h>
#include <functional>
#include <sys/epoll.h>
#include <sys/stat.h>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;
using olvex::PathWatch;

class WatchedPath : public ::testing::Test {
  protected:
    void SetUp() override
    {
        fs::create_directories(directory_ / "real/a/b");
        fs::create_directory_symlink("real", directory_ / "link");
        directory_.write("real/a/b/app.log", "");
        path_ = directory_ / "link/a/b/app.log";
        olvex::countPathLooks(olvex::kLooksBeforeWatching);
    }
    void TearDown() override { olvex::countPathLooks(0); }

    // Looks until the path is watched and nothing left over from before is heard any more.
    void settle()
    {
        watch_.end();
        for (int i = 0; i < 3 * olvex::kLooksBetweenWatches && !watch_.isQuiet(); ++i)
            watch_.beforeLook(path_.c_str());
    }

    LogDirectory directory_;
    std::string path_;
    PathWatch watch_;
};

TEST_F(WatchedPath, EveryChangeOfAnyPartIsNoticedAtOnce)
{
    const auto at = [&](const char *name) { return directory_ / name; };
    const std::pair<const char *, std::function<void()>> changes[] = {
        {"moved", [&] { fs::rename(at("real/a/b/app.log"), at("moved")); }},
        {"replaced", [&] { fs::rename(at("moved"), at("real/a/b/app.log")); }},
        {"removed", [&] { fs::remove(at("real/a/b/app.log")); }},
        {"directory moved", [&] { fs::rename(at("real/a/b"), at("real/a/c")); }},
        {"ancestor moved", [&] { fs::rename(at("real/a"), at("real/d")); }},
        {"link replaced",
         [&] {
             fs::create_directory_symlink("elsewhere", at("new"));
             fs::rename(at("new"), at("link"));
         }},
        {"link removed", [&] { fs::remove(at("link")); }},
        {"root of it moved", [&] { fs::rename(at("real"), at("elsewhere")); }},
    };
    for (const auto &[name, change] : changes) {
        fs::remove_all(at("link"));
        fs::remove_all(at("elsewhere"));
        fs::create_directories(at("real/a/b"));
        fs::create_directory_symlink("real", at("link"));
        directory_.write("real/a/b/app.log", "");
        directory_.write("moved", "");
        settle();
        ASSERT_TRUE(watch_.isQuiet()) << name;
        change();
        EXPECT_FALSE(watch_.isQuiet()) << name;
    }
}

TEST_F(WatchedPath, WritingAndNeighboursAreNoChangeButTheEndOfADescriptorIs)
{
    std::ofstream writer(path_, std::ios::app);
    settle();
    writer << "more" << std::flush;
    directory_.write("real/a/b/other", "");
    fs::remove(directory_ / "real/a/b/other");
    EXPECT_TRUE(watch_.isQuiet());
    writer.close();
    EXPECT_FALSE(watch_.isQuiet());
}

TEST_F(WatchedPath, AChildWatchesForItself)
{
    settle();
    EXPECT_EQ(inChild([&] {
                  bool isRight = !watch_.isQuiet();
                  olvex::countPathLooks(olvex::kLooksBeforeWatching);
                  settle();
                  isRight = isRight && watch_.isQuiet();
                  fs::remove(path_);
                  return isRight && !watch_.isQuiet() ? 0 : 1;
              }),
              0);
    EXPECT_FALSE(watch_.isQuiet()) << "the child took the event away";
}

TEST_F(WatchedPath, WhatCannotBeWatchedIsNeverQuiet)
{
    for (const char *path : {"relative/app.log", "/proc/self/maps", "/no/such/file"}) {
        PathWatch watch;
        watch.beforeLook(path);
        EXPECT_FALSE(watch.isQuiet()) << path;
    }
    PathWatch young;
    olvex::countPathLooks(0);
    young.beforeLook(path_.c_str());
    EXPECT_FALSE(young.isQuiet());
}

// As programs do that go into the background: all descriptors are closed, and used for other
// things, of which nothing may be taken: bytes, or an event that is told but once.
TEST_F(WatchedPath, AHostThatClosesAllDescriptorsKeepsItsData)
{
    settle();
    const std::vector<int> inotify = descriptorsOf("anon_inode:inotify");
    const std::vector<int> polls = descriptorsOf("anon_inode:[eventpoll]");
    ASSERT_EQ(inotify.size(), 1u);
    ASSERT_EQ(polls.size(), 1u);
    for (const int descriptor : {inotify[0], polls[0]})
        ASSERT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "data", 4), 4);
    ASSERT_EQ(dup2(ends[0], inotify[0]), inotify[0]);
    const int poll = epoll_create1(0);
    epoll_event once = {};
    once.events = EPOLLIN | EPOLLONESHOT;
    ASSERT_EQ(epoll_ctl(poll, EPOLL_CTL_ADD, ends[0], &once), 0);
    ASSERT_EQ(dup2(poll, polls[0]), polls[0]);

    EXPECT_FALSE(watch_.isQuiet());
    settle();
    EXPECT_TRUE(watch_.isQuiet());
    char data[4];
    EXPECT_EQ(read(inotify[0], data, 4), 4);
    ASSERT_EQ(write(ends[1], "more", 4), 4);
    EXPECT_EQ(epoll_wait(polls[0], &once, 1, 0), 1);
    for (const int descriptor : {ends[0], ends[1], inotify[0], poll, polls[0]})
        close(descriptor);
}

// Another epoll in the place of ours may have nothing to tell, ever.
TEST_F(WatchedPath, ASilentEpollInThePlaceOfOursIsNotBelievedForLong)
{
    settle();
    const std::vector<int> polls = descriptorsOf("anon_inode:[eventpoll]");
    ASSERT_EQ(polls.size(), 1u);
    const int silent = epoll_create1(0);
    dup2(silent, polls[0]);
    close(silent);
    fs::remove(path_);
    std::uint32_t questions = 0;
    while (watch_.isQuiet() && questions <= olvex::PathEvents::kQuestionsTrusted)
        ++questions;
    EXPECT_LE(questions, olvex::PathEvents::kQuestionsTrusted);
    EXPECT_EQ(fcntl(polls[0], F_GETFL), O_RDWR);
    close(polls[0]);
}

} // namespace
