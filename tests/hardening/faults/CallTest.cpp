// System calls that fail, each at every place where the library makes it and with the errors that
// it can give: the host runs on, a failure is reported once and never causes itself, and the next
// good event is written to every log.
#include "Faults.h"
#include "Scenario.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

using namespace olvex::test;

namespace {

// What a failure of the call is reported as, at some of the places where it is made: the system's
// text, or a message. Failures of calls without either are not reported at any place.
constexpr const char *kSystemText = "the system's text";
constexpr const char *kNothing = nullptr;

struct Row {
    const char *call;
    std::vector<int> errors;
    const char *reportedAs;
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.call;
}

const Row kRows[] = {
    {"open64", {EACCES, EMFILE, ENOSPC}, kSystemText},
    {"openat64", {EACCES}, kNothing},
    {"read", {EIO}, "OVXMP0072W"},
    {"pread64", {EIO}, "OVXMP0073W"},
    {"write", {ENOSPC, EIO}, kSystemText},
    {"lseek64", {EINVAL, ESPIPE}, kSystemText},
    {"ftruncate64", {EIO, EINVAL}, kSystemText},
    {"fsync", {EIO, ENOSPC}, "OVXMP0073W"},
    {"fallocate64", {ENOSPC}, kSystemText},
    {"fcntl64", {ENOLCK, EMFILE}, kNothing},
    {"fstat64", {EIO}, kSystemText},
    {"stat64", {EACCES, ENOMEM}, "OVXFH0032E"},
    {"lstat64", {EACCES, ENOMEM}, kNothing},
    {"statx", {EACCES, ENOMEM}, kSystemText},
    {"remove", {EACCES, EBUSY}, kSystemText},
    {"rename", {EXDEV, EACCES}, kSystemText},
    {"mkdir", {EACCES, EROFS, ENOSPC}, "OVXFF0063W"},
    {"chmod", {EPERM}, kNothing},
    {"opendir", {EMFILE, EACCES}, kNothing},
    {"fdopendir", {ENOMEM}, kNothing},
    {"readdir64", {EIO}, kNothing},
    {"semget", {ENOSPC, EACCES}, kSystemText},
    {"semctl", {EACCES, EIDRM}, kSystemText},
    {"semop", {EACCES, EIDRM}, kSystemText},
    {"fork", {EAGAIN, ENOMEM}, kSystemText},
    {"execv", {ENOENT, EACCES}, "OVXFF0064E"},
    {"waitpid", {ECHILD}, kSystemText},
    {"gethostname", {ENAMETOOLONG}, "OVXLG0035E"},
    {"statfs64", {EIO}, kNothing},
    {"inotify_init1", {EMFILE}, kNothing},
    {"inotify_add_watch", {ENOSPC, ENOMEM}, kNothing},
    {"epoll_create1", {EMFILE}, kNothing},
    {"epoll_ctl", {ENOSPC, ENOMEM}, kNothing},
    {"epoll_wait", {EBADF}, kNothing},
};

class CallFailure : public FaultTest, public ::testing::WithParamInterface<Row> {
  protected:
    CallFailure() : FaultTest(true) {}

    // Runs everything with the calls failing, then once more without.
    void run(long first, long count, int error)
    {
        place_ = row_.call + (" " + std::to_string(first)) + " (" + strerror(error) + ")";
        scenario_.prepare();
        callPlan = {first, count, error, row_.call, 0, 0};
        const bool opened = scenario_.open();
        scenario_.use();
        callPlan.first = 0;
        check(error);
        checkUsable(opened);
    }

    void check(int error)
    {
        const std::string text = row_.reportedAs == kSystemText ? strerror(error)
                                 : row_.reportedAs              ? row_.reportedAs
                                                                : "";
        const long count =
            std::count_if(reportsMade.begin(), reportsMade.end(),
                          [&](const std::string &report) { return report.starts_with(text); });
        if (row_.reportedAs == kNothing && !reportsMade.empty()) note("says " + reportsMade[0]);
        if (count > callPlan.failed && !isInChild()) note("says more than once " + text);
        if (std::ssize(reportsMade) > 4 * callPlan.failed + 1) note("says too much");
        reported_ = reported_ || count > 0;
    }

    // Where the count of failed calls does not come back from.
    bool isInChild() const { return row_.call == std::string_view("execv"); }

    // A semaphore that can be neither given back nor removed stops everybody; the system has no
    // such failure.
    bool isLasting() const
    {
        const std::string_view call = row_.call;
        return call != "semctl" && call != "semop";
    }

    void failEverywhere(int error)
    {
        for (long first = 1; !isBadEnough(); first += seenBySanitizers(7), ++places_) {
            run(first, 1, error);
            if (callPlan.failed == 0) break;
        }
        run(1, isLasting() ? kForEver : 1, error);
    }

    const Row &row_ = GetParam();
    long places_ = 0;
    bool reported_ = false;
};

TEST_P(CallFailure, IsSurvived)
{
    {
        const Silence silence;
        for (const int error : row_.errors)
            failEverywhere(error);
    }
    std::printf("%ld failures of %s\n", places_, row_.call);
    EXPECT_EQ(faults_, "");
    if (!isInChild()) {
        EXPECT_GT(places_, 0);
    }
    EXPECT_EQ(reported_, row_.reportedAs != kNothing);
}

INSTANTIATE_TEST_SUITE_P(, CallFailure, ::testing::ValuesIn(kRows),
                         [](const auto &row) { return std::string(row.param.call); });

} // namespace
