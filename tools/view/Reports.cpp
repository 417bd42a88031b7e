// See Reports.h.
#include "view/Reports.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "Visible.h"

namespace tools::view {

namespace {

constexpr std::int64_t kFirstLine = 1000; // milliseconds of work
constexpr std::int64_t kNextLine = 200;
constexpr std::uint64_t kMegabyte = 1'000'000;

std::int64_t steadyMillis()
{
    std::timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

} // namespace

void Reports::fileTrouble(const std::string &path, int error)
{
    clearLine();
    hasTrouble_ = true;
    complain("olvex view: " + path + ": " + std::strerror(error));
}

void Reports::stretch(const std::string &path, std::uint64_t offset, std::uint64_t length,
                      const char *what)
{
    clearLine();
    hasTrouble_ = true;
    complain("olvex view: " + path + ": at byte " + std::to_string(offset) + ": " + what + " (" +
             std::to_string(length) + " bytes)");
}

void Reports::notUtf8(const std::string &path, std::uint64_t offset)
{
    clearLine();
    complain("olvex view: " + path + ": at byte " + std::to_string(offset) +
             ": a record that is not in UTF-8");
}

void Reports::gap(const std::string &path)
{
    clearLine();
    hasTrouble_ = true;
    complain("olvex view: " + path + ": rolled over too fast; records may be missing");
}

void Reports::progress(std::uint64_t bytes)
{
    done_ += bytes;
    if (!showsProgress_) return;
    const std::int64_t now = steadyMillis();
    if (nextLine_ == 0) nextLine_ = now + kFirstLine;
    if (now < nextLine_) return;
    nextLine_ = now + kNextLine;
    showLine();
}

void Reports::showLine()
{
    hasLine_ = true;
    std::fprintf(stderr, "\rolvex view: %" PRIu64, done_ / kMegabyte);
    if (expected_ >= done_)
        std::fprintf(stderr, " of %" PRIu64 " MB, %" PRIu64 " %%", expected_ / kMegabyte,
                     100 * done_ / expected_);
    else
        std::fputs(" MB", stderr);
    std::fputs("\x1b[K", stderr);
    std::fflush(stderr);
}

void Reports::clearLine()
{
    if (hasLine_) std::fputs("\r\x1b[K", stderr);
    hasLine_ = false;
}

} // namespace tools::view
