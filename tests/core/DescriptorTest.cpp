// Hosts that close descriptors that they did not open, put their own files in their places, have no
// standard streams, or change their user or root: no file of theirs is touched, and every record is
// in the log.
#include "LogDirectory.h"

#include "handlers/OvxFileHandler.h"
#include "handlers/files/OvxPathWatch.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <tuple>

using namespace olvex::test;

namespace {

namespace fs = std::filesystem;

constexpr int kNobody = 65534;

// What a host may open in the place of one of ours, of which it can tell that nobody touched it.
class Owner {
  public:
    explicit Owner(const std::string &kind) : kind_(kind)
    {
        if (kind == "pipe") std::ignore = pipe2(ends_, O_NONBLOCK);
        if (kind == "socket")
            std::ignore = socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends_);
        if (kind == "null") ends_[1] = open("/dev/null", O_RDWR);
        if (kind == "epoll") ends_[1] = epoll_create1(0);
        if (kind == "event") ends_[1] = eventfd(1, 0);
        if (kind == "file" || kind == "readonly")
            ends_[1] = open(data_.path(), kind == "file" ? O_RDWR : O_RDONLY);
    }
    ~Owner()
    {
        for (const int end : ends_)
            if (end >= 0) close(end);
    }
    Owner(const Owner &) = delete;
    Owner &operator=(const Owner &) = delete;

    void takePlace(int number) const { ASSERT_EQ(dup2(ends_[1], number), number); }
    void expectUntouched(int number) const
    {
        struct stat mine = {}, now = {};
        fstat(ends_[1], &mine);
        EXPECT_EQ(fstat(number, &now), 0) << kind_ << " was closed";
        EXPECT_TRUE(mine.st_dev == now.st_dev && mine.st_ino == now.st_ino) << kind_;
        std::ifstream file(data_.path());
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content_);
        EXPECT_LE(lseek(number, 0, SEEK_CUR), 0) << "moved in the host's file";
        int waiting = 0;
        if (ends_[0] >= 0) ioctl(ends_[0], FIONREAD, &waiting);
        EXPECT_EQ(waiting, 0) << "written into the host's " << kind_;
        pollfd event = {ends_[1], POLLIN, 0};
        if (kind_ == "event") {
            EXPECT_EQ(poll(&event, 1, 0), 1) << "taken from the host";
        }
    }

  private:
    std::string kind_;
    std::string content_ = std::string(2000, 'h');
    TemporaryFile data_{content_};
    int ends_[2] = {-1, -1};
};

class Descriptors : public LogWithHandler,
                    public ::testing::WithParamInterface<std::tuple<const char *, bool>> {
  protected:
    void SetUp() override
    {
        chmod(directory_.path().c_str(), 0755);
        begin();
    }
    void TearDown() override
    {
        LogWithHandler::TearDown();
        olvex::countPathLooks(0);
    }

    void begin() { start(std::get<0>(GetParam()), "logs/app.log"); }
    bool isShared() const { return std::string(std::get<0>(GetParam())) != "ovx_filehandler"; }
    bool isWatched() const { return std::get<1>(GetParam()); }
    std::string content() const { return directory_.read("logs/app.log"); }

    // Logs until the path is watched, or once.
    void logFirst(const std::string &limit = "1000000")
    {
        expected_.clear();
        fs::remove_all(directory_ / "logs");
        set("maxFileBytes", limit);
        olvex::countPathLooks(isWatched() ? olvex::kLooksBeforeWatching : 0);
        for (int i = 0; i < firstRecords(); ++i)
            logExpecting("one");
    }
    int firstRecords() const { return isWatched() ? 2 * olvex::kLooksBetweenWatches : 1; }
    void logExpecting(const std::string &text)
    {
        log(text);
        expected_ += text + "\n";
    }

    std::vector<int> ofLog() const { return descriptorsOf(directory_ / "logs/app.log"); }
    static std::vector<int> ofWatch()
    {
        std::vector<int> found = descriptorsOf("anon_inode:inotify");
        for (const int descriptor : descriptorsOf("anon_inode:[eventpoll]"))
            found.push_back(descriptor);
        return found;
    }

    std::string expected_;
};

INSTANTIATE_TEST_SUITE_P(, Descriptors,
                         ::testing::Combine(::testing::Values("ovx_filehandler",
                                                              "ovx_multiproc_filehandler"),
                                            ::testing::Bool()),
                         [](const auto &which) {
                             return std::string(which.index < 2 ? "Alone" : "Shared") +
                                    (which.index % 2 ? "Watched" : "");
                         });

// The log's number, the watch's, or all; and a limit that the host's file exceeds, or none near.
TEST_P(Descriptors, FilesOfTheHostInOurPlacesAreLeftAlone)
{
    for (const char *kind : {"file", "readonly", "null", "pipe", "socket", "epoll", "event"})
        for (const char *limit : {"1000", "1000000"})
            for (const int places : {1, 2, 3}) {
                SCOPED_TRACE(kind + (" at places " + std::to_string(places)) + ", limit " + limit);
                logFirst(limit);
                EXPECT_EQ(ofWatch().size(), isWatched() ? 2u : 0u);
                std::vector<int> taken = places & 1 ? ofLog() : std::vector<int>();
                if (places & 2)
                    for (const int number : ofWatch())
                        taken.push_back(number);
                {
                    const Owner owner(kind);
                    for (const int number : taken)
                        owner.takePlace(number);
                    logExpecting("two");
                    logExpecting("three");
                    set("maxFiles", "5");
                    logExpecting("four");
                    for (const int number : taken)
                        owner.expectUntouched(number);
                }
                EXPECT_EQ(content(), expected_);
                set("maxFiles", "4"); // closes; what is opened next is not where the host closes
                for (const int number : taken)
                    close(number);
                for (const int number : ofWatch())
                    EXPECT_EQ(fcntl(number, F_GETFD), FD_CLOEXEC);
            }
}

// The log itself, opened by the host for reading, is not what it was.
TEST_P(Descriptors, TheLogOpenedForReadingInItsPlace)
{
    logFirst();
    const int number = ofLog().at(0);
    const int reading = open((directory_ / "logs/app.log").c_str(), O_RDONLY);
    dup2(reading, number);
    close(reading);
    logExpecting("two");
    EXPECT_EQ(content(), expected_);
    EXPECT_EQ(fcntl(number, F_GETFL) & O_ACCMODE, O_RDONLY);
    close(number);
}

// At the first record the standard streams are closed; or all is closed later, as programs do that
// go into the background. What the host then opens for its streams is 0, 1 and 2.
TEST_P(Descriptors, NothingOfOursIsAStandardStream)
{
    for (const bool isLater : {false, true})
        EXPECT_EQ(inChild([&] {
                      if (isLater) logFirst();
                      close_range(0, isLater ? ~0u : 2, 0);
                      if (!isLater) logFirst();
                      logExpecting("two");
                      for (int number = 0; number < 3; ++number)
                          if (open("/dev/null", O_RDWR) != number) return 1;
                      logExpecting("three");
                      if (content() != expected_) return 2;
                      rlimit few = {64, 64};
                      setrlimit(RLIMIT_NOFILE, &few); // below the numbers of ours
                      set("maxFiles", "5");
                      logExpecting("four");
                      return content() == expected_ ? 0 : 3;
                  }),
                  0)
            << isLater;
}

// With a directory that may not even be asked about, and with one that may only not be written;
// with room in the file and, for the file of one process, without.
TEST_P(Descriptors, AProcessThatDropsItsPrivilegesGoesOnWriting)
{
    for (const int mode : {0700, 0755})
        for (const char *limit : {"1000000", "300"}) {
            const bool fills = std::string(limit) == "300";
            if (fills && isShared() && mode == 0755) continue; // emptied, as configured
            EXPECT_EQ(inChild([&] {
                          logFirst(limit);
                          chmod((directory_ / "logs").c_str(), static_cast<mode_t>(mode));
                          if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 ||
                              setuid(kNobody) != 0)
                              return 1;
                          for (int i = 0; i < 100; ++i)
                              log("two");
                          return 0;
                      }),
                      0);
            std::string expected;
            for (int i = 0; i < firstRecords(); ++i)
                expected += "one\n";
            for (int i = 0; i < 100; ++i)
                expected += "two\n";
            EXPECT_EQ(content(), expected) << std::oct << mode << " with the limit " << limit;
        }
}

// Inside, the path leads nowhere: the log is made anew there, as when it was removed.
TEST_P(Descriptors, AProcessThatChangesItsRootLogsInsideIt)
{
    fs::create_directory(directory_ / "jail");
    EXPECT_EQ(inChild([&] {
                  logFirst();
                  if (chroot((directory_ / "jail").c_str()) != 0) return 1;
                  set("maxFiles", "5"); // for a watched path to be asked about
                  log("two");
                  return 0;
              }),
              0);
    EXPECT_EQ(directory_.read("jail" + directory_.path() + "/logs/app.log"), "two\n");
    EXPECT_EQ(content().find("two"), std::string::npos);
}

TEST_P(Descriptors, AChangeOfTheFormatterEndsTheFileOfTheOldOne)
{
    get("framed", "test_framed");
    get("plain", "test_plain");
    OvxSetObjProp(handler_, "formatterName", "framed");
    log("one");
    OvxSetObjProp(handler_, "formatterName", "plain");
    log("two");
    EXPECT_EQ(content(), isShared() ? "one\n>\ntwo\n" : "<\none\n>\ntwo\n");
    EXPECT_EQ(reports(), Strings{});
}

} // namespace
