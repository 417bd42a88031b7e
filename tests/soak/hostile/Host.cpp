// One hostile host: logs, does something that a program may do to itself or to the system, looks
// whether anything of its own was touched, and logs again.
#include "Board.h"

#include <olvex/class.h>
#include <olvex/olvex.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../SoakRecord.h"

namespace hostile {

std::string ownContent()
{
    return std::string(kOwnBytes, 'o');
}

namespace {

constexpr rlim_t kDescriptors = 256;
constexpr uid_t kNobody = 65534;

Board *reportBoard;
Host *reportHost;

// The error logger's listener: notes in which call something was said.
void takeReport(OvxObject *, OvxEvent *event)
{
    if (reportHost->begun > 0) reportHost->entries[reportHost->begun - 1].isReported = true;
    char *text = OvxBindEventMsg(event, ovxIntlBindI18Msg);
    const std::string_view said = text ? text : "";
    if (said.starts_with("OVXMP0072W") || said.starts_with("OVXMP0073W"))
        reportBoard->emptied = now();
    BaxMemoryFree(text);
}

// A descriptor that the host opened, as it was then.
struct Own {
    int number;
    bool isFiller;
    struct stat status;
    off_t offset;
};

bool isOpen(int number)
{
    return fcntl(number, F_GETFD) >= 0;
}

bool hasInput(int number)
{
    pollfd asked = {number, POLLIN, 0};
    return poll(&asked, 1, 0) == 1 && (asked.revents & POLLIN);
}

class HostileHost {
  public:
    HostileHost(const Round &round, Board &board, unsigned index)
        : round_(round),
          board_(board),
          me_(board.hosts[index]),
          index_(index),
          random_(static_cast<std::mt19937::result_type>(round.seed * 31 + index))
    {}

    [[noreturn]] void run()
    {
        begin();
        open();
        log(random_() % 8 == 0 ? 10100 : 1 + random_() % 50);
        for (auto left = 3 + random_() % 6; left > 0; --left) {
            const Step &step = kSteps[random_() % std::size(kSteps)];
            me_.step = step.name;
            (this->*step.act)();
            log(1 + random_() % 150);
        }
        OvxReleaseObject(logger_);
        OvxCloseToolkit();
        check();
        _exit(0);
    }

  private:
    struct Step {
        const char *name;
        void (HostileHost::*act)();
    };
    static const Step kSteps[9];

    bool toss() { return random_() % 2 == 0; }

    [[gnu::format(printf, 3, 4)]] void fault(Fault kind, const char *format, ...)
    {
        char *text = me_.first[unsigned(kind)];
        if (me_.count[unsigned(kind)]++ > 0) return;
        va_list list;
        va_start(list, format);
        const int length = std::vsnprintf(text, sizeof *me_.first, format, list);
        va_end(list);
        std::snprintf(text + length, sizeof *me_.first - std::size_t(length), ", after: %s",
                      me_.step);
    }

    // Descriptors 0 to 2 are the host's own or closed from the beginning.
    void begin()
    {
        me_.step = "start";
        stdout = fopencookie(nullptr, "w", {}); // one message is described to be printed there
        std::signal(SIGXFSZ, SIG_IGN);
        std::signal(SIGPIPE, SIG_IGN);
        close_range(0, ~0U, 0);
        limit(RLIMIT_NOFILE, kDescriptors);
        for (int number = 0; number < 3; ++number)
            if (toss()) takeNumber(number);
    }

    void open()
    {
        OvxOpenToolkit((round_.directory + "/hostile.properties").c_str());
        OvxAddHandlerClass("hostile_reports", nullptr, nullptr, nullptr, nullptr, takeReport,
                           nullptr, nullptr);
        reportBoard = &board_;
        reportHost = &me_;
        OvxObject *errors = OvxGetObject("olvex.errorLogger", nullptr);
        OvxAddListener(errors, OvxGetObject("reports", "hostile_reports"));
        OvxRemListener(errors, OvxGetObject("olvex.stderrHandler", nullptr));
        logger_ = OvxGetObject("hostile", nullptr);
    }

    void log(std::size_t count)
    {
        for (; count > 0 && me_.begun < kMostRecords; --count)
            logOne(me_.begun);
        check();
    }

    void logOne(std::uint32_t number)
    {
        const std::string text = soak::compose({index_, 0, number});
        const Time began = now();
        me_.entries[number] = {began, me_.step, false};
        me_.begun = number + 1;
        me_.callBegan = began;
        OvxLogInfo(logger_, nullptr, 0, 0, text.c_str(), 0);
        me_.callBegan = 0;
        me_.done = number + 1;
        const Time took = now() - began;
        const bool waitsForSet = took > kSecond && board_.hasUnusedSet && !waitedForSet_;
        if (waitsForSet) waitedForSet_ = true;
        if (took > kSecond && !waitsForSet)
            fault(Fault::kSlow, "a call took %.1f s", double(took) / kSecond);
        if (took <= me_.longest) return;
        me_.longest = took;
        me_.longestStep = me_.step;
    }

    // Each fault is told once: what was changed is not looked at again.
    void check()
    {
        std::erase_if(own_, [this](const Own &own) { return wasTouched(own); });
        for (int number = 0; number < 3; ++number) {
            if (isOwn(number) || !isOpen(number) || std::exchange(isTold_[number], true)) continue;
            fault(Fault::kStandard, "descriptor %d is not the host's", number);
        }
    }

    bool wasTouched(const Own &own)
    {
        struct stat is = {};
        const char *what = nullptr;
        if (fstat(own.number, &is) != 0 || is.st_dev != own.status.st_dev ||
            is.st_ino != own.status.st_ino)
            what = "was closed or replaced";
        else if (S_ISREG(is.st_mode) &&
                 (is.st_size != own.status.st_size || lseek(own.number, 0, SEEK_CUR) != own.offset))
            what = "is the host's file and was changed";
        else if (!S_ISREG(is.st_mode) && !S_ISCHR(is.st_mode) && hasInput(own.number))
            what = "is the host's pipe, socket or the like and was written to";
        if (what) fault(Fault::kForeign, "descriptor %d %s", own.number, what);
        return what;
    }

    bool isOwn(int number) const
    {
        return std::any_of(own_.begin(), own_.end(),
                           [=](const Own &own) { return own.number == number; });
    }

    void note(int number, bool isFiller)
    {
        std::erase_if(own_, [=](const Own &own) { return own.number == number; });
        Own own = {number, isFiller, {}, lseek(number, 0, SEEK_CUR)};
        if (fstat(number, &own.status) == 0) own_.push_back(own);
    }

    // Opens something at the lowest number that is free.
    int openSomething()
    {
        const std::string file = place_ + "/own/" + std::to_string(index_);
        int ends[2] = {-1, -1};
        switch (random_() % 9) {
        case 0: return ::open(file.c_str(), O_RDWR);
        case 1: return ::open(file.c_str(), O_RDWR | O_APPEND);
        case 2: return ::open(file.c_str(), O_RDONLY);
        case 3: return epoll_create1(0);
        case 4: return eventfd(0, EFD_NONBLOCK);
        case 5: return inotify_init1(IN_NONBLOCK);
        case 6: return ::open("/dev/null", O_RDWR);
        case 7: (void)!pipe2(ends, O_NONBLOCK); break;
        default: socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends); break;
        }
        if (ends[0] >= 0) note(ends[0], false); // where what is written comes out
        return ends[1];
    }

    bool takeLowest()
    {
        const int opened = openSomething();
        if (opened >= 0) note(opened, false);
        return opened >= 0;
    }

    // The number is the host's by right: 0 to 2, or one that is free.
    void takeNumber(int number)
    {
        const int opened = openSomething();
        if (opened < 0) return;
        // The other end of a pair may have got the number.
        if (opened == number || isOpen(number)) return note(opened, false);
        if (dup2(opened, number) == number) close(opened);
        note(number, false);
    }

    // As daemons do, with something of the host's where the toolkit's descriptors were.
    void closeAll()
    {
        std::vector<int> before;
        for (int number = 3; number < int(kDescriptors); ++number)
            if (isOpen(number)) before.push_back(number);
        close_range(0, ~0U, 0);
        own_.clear();
        std::fill(isTold_, isTold_ + 3, false);
        if (toss()) log(1 + random_() % 3);
        for (int number = 0; number < 3; ++number)
            takeNumber(number);
        for (auto more = random_() % 6; more > 0; --more)
            takeLowest();
        if (toss()) return;
        for (const int number : before)
            if (!isOpen(number)) takeNumber(number);
    }

    void exhaustDescriptors()
    {
        board_.copiesMayFail = true;
        if (toss()) return limit(RLIMIT_NOFILE, 3);
        for (int filler; (filler = eventfd(0, 0)) >= 0;)
            note(filler, true);
    }

    void dropPrivileges()
    {
        if (setgid(kNobody) == 0 && setuid(kNobody) == 0) board_.copiesMayFail = true;
    }

    void changeRoot()
    {
        if (!place_.empty() && chroot(place_.c_str()) == 0 && chdir("/") == 0) place_.clear();
    }

    void limitFileSize()
    {
        board_.copiesMayFail = true;
        limit(RLIMIT_FSIZE, random_() % 8000);
    }

    std::string filler() const { return place_ + "/log/filler" + std::to_string(index_); }

    void fillDisk()
    {
        if (!round_.isSmallDisk) return;
        board_.copiesMayFail = true;
        const int file = ::open(filler().c_str(), O_WRONLY | O_CREAT, 0600);
        const std::string block(4096, 'f');
        while (file >= 0 && write(file, block.data(), block.size()) > 0) {
        }
        if (file >= 0) close(file);
    }

    void removeSemaphores()
    {
        const int set = semget(round_.semaphoreKey, 1, 0);
        if (set >= 0 && semctl(set, 0, IPC_RMID) == 0) ++board_.removedSets;
    }

    // A set as one leaves behind that is killed before it can be used.
    void plantSemaphores()
    {
        if (random_() % 4 != 0) return;
        removeSemaphores();
        board_.hasUnusedSet = true;
        (void)semget(round_.semaphoreKey, 1, IPC_CREAT | IPC_EXCL | 0666);
    }

    void giveBack()
    {
        limit(RLIMIT_NOFILE, kDescriptors);
        limit(RLIMIT_FSIZE, RLIM_INFINITY);
        unlink(filler().c_str());
        std::erase_if(own_, [](const Own &own) { return own.isFiller && close(own.number) == 0; });
    }

    static void limit(decltype(RLIMIT_NOFILE) what, rlim_t value)
    {
        rlimit both = {};
        getrlimit(what, &both);
        both.rlim_cur = std::min(value, both.rlim_max);
        setrlimit(what, &both);
    }

    const Round &round_;
    Board &board_;
    Host &me_;
    unsigned index_;
    std::mt19937 random_;
    std::string place_ = round_.directory; // as seen from the root that the host has
    std::vector<Own> own_;
    bool isTold_[3] = {}; // of what is not the host's in 0 to 2
    OvxObject *logger_ = nullptr;
    bool waitedForSet_ = false;
};

constexpr HostileHost::Step HostileHost::kSteps[] = {
    {"closes all descriptors", &HostileHost::closeAll},
    {"has no descriptor left", &HostileHost::exhaustDescriptors},
    {"drops privileges", &HostileHost::dropPrivileges},
    {"changes root", &HostileHost::changeRoot},
    {"has a limit on file sizes", &HostileHost::limitFileSize},
    {"fills the disk", &HostileHost::fillDisk},
    {"removes the semaphores", &HostileHost::removeSemaphores},
    {"leaves unused semaphores", &HostileHost::plantSemaphores},
    {"gives back what it took", &HostileHost::giveBack},
};

} // namespace

void runHost(const Round &round, Board &board, unsigned index)
{
    HostileHost(round, board, index).run();
}

} // namespace hostile
