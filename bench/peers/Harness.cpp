// Runs one work of the comparison with the library that this program is linked with, checks that
// everything was written, and prints the figures in one line: "NAME VALUE NAME VALUE ...".
//
//     harness WORK RECORDS PATH [WORKERS]
#include "Peer.h"

#include "../Allocations.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

// Only olvex leaves something.
[[gnu::weak]] void peer::forgetShared() {}

namespace {

using Clock = std::chrono::steady_clock;
using peer::Output;

struct Job {
    int records;
    std::string path;
    int workers;
};

constexpr int kWarmUp = 12000; // until nothing is prepared any more

// Ends with a status of its own when the library cannot do the work.
void openOrLeave(Output output, const std::string &path)
{
    if (!peer::open(output, path)) std::_Exit(3);
}

double nanoseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::nano>(time).count();
}

void printEach(const char *name, Clock::duration time, int count)
{
    std::printf("%s %.3f\n", name, nanoseconds(time) / count);
}

// Lines below the path's folder, in files whose names begin like it, whatever the library added.
long countLines(const std::filesystem::path &path)
{
    long lines = 0;
    const std::string stem = path.stem().string();
    for (const auto &entry : std::filesystem::recursive_directory_iterator(path.parent_path())) {
        const std::string name = entry.path().filename().string();
        if (entry.is_symlink() || !entry.is_regular_file() ||
            name.compare(0, stem.size(), stem) != 0)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::vector<char> block(1 << 20);
        while (file.read(block.data(), static_cast<std::streamsize>(block.size())),
               file.gcount() > 0)
            lines += std::count(block.begin(), block.begin() + file.gcount(), '\n');
    }
    return lines;
}

// A header of the library's own may come on top.
int check(long lines, long expected)
{
    if (lines >= expected && lines <= expected + 8) return 0;
    std::fprintf(stderr, "%ld lines were written, not %ld\n", lines, expected);
    return 1;
}

void writeRecords(int from, int count)
{
    for (int i = 0; i < count; ++i)
        peer::log(from + i);
}

int runDisabled(const Job &job, void (*call)(int))
{
    openOrLeave(Output::kFile, job.path);
    const auto begin = Clock::now();
    for (int i = 0; i < job.records; ++i) {
        call(i);
        asm volatile("" ::: "memory");
    }
    printEach("ns", Clock::now() - begin, job.records);
    peer::close();
    return check(countLines(job.path), 0);
}

int runWrite(const Job &job, Output output)
{
    openOrLeave(output, job.path);
    writeRecords(0, kWarmUp);
    const auto begin = Clock::now();
    writeRecords(kWarmUp, job.records);
    printEach("ns", Clock::now() - begin, job.records);
    std::fflush(nullptr);
    peer::close();
    if (output == Output::kFile) return check(countLines(job.path), kWarmUp + job.records);
    if (output == Output::kRolling) return countLines(job.path) == 0;
    return peer::bytesDropped < 80L * job.records;
}

int runAllocations(const Job &job)
{
    openOrLeave(Output::kFile, job.path);
    writeRecords(0, kWarmUp);
    const long before = allocationCount();
    writeRecords(kWarmUp, job.records);
    std::printf("count %.3f\n", static_cast<double>(allocationCount() - before) / job.records);
    peer::close();
    return check(countLines(job.path), kWarmUp + job.records);
}

int runLatency(const Job &job)
{
    openOrLeave(Output::kFile, job.path);
    writeRecords(0, kWarmUp);
    std::vector<double> times(static_cast<std::size_t>(job.records));
    for (int i = 0; i < job.records; ++i) {
        const auto begin = Clock::now();
        peer::log(kWarmUp + i);
        times[static_cast<std::size_t>(i)] = nanoseconds(Clock::now() - begin);
    }
    peer::close();
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    std::printf("p50 %.0f p99 %.0f p99.9 %.0f max %.0f\n", at(0.5), at(0.99), at(0.999), at(1));
    return check(countLines(job.path), kWarmUp + job.records);
}

int runThreads(const Job &job)
{
    openOrLeave(Output::kFile, job.path);
    writeRecords(0, kWarmUp);
    const int each = job.records / job.workers;
    const auto begin = Clock::now();
    std::vector<std::thread> threads;
    for (int worker = 0; worker < job.workers; ++worker)
        threads.emplace_back(writeRecords, kWarmUp + worker * each, each);
    for (std::thread &thread : threads)
        thread.join();
    printEach("ns", Clock::now() - begin, each * job.workers);
    peer::close();
    return check(countLines(job.path), kWarmUp + each * job.workers);
}

// A process of its own, started anew since not every library survives a fork: waits until the
// writing end of the pipe that is its standard input is closed.
int runProcess(const Job &job)
{
    openOrLeave(Output::kShared, job.path);
    char go;
    if (read(STDIN_FILENO, &go, 1) < 0) return 1;
    writeRecords(job.workers * job.records, job.records);
    peer::close();
    return 0;
}

void startProcess(const Job &job, int worker, const int *start)
{
    if (fork() != 0) return;
    dup2(start[0], STDIN_FILENO);
    close(start[1]);
    const std::string records = std::to_string(job.records / job.workers);
    const std::string number = std::to_string(worker + 1);
    execl("/proc/self/exe", "harness", "process", records.c_str(), job.path.c_str(), number.c_str(),
          nullptr);
    std::_Exit(1);
}

int runProcesses(const Job &job)
{
    int start[2];
    if (pipe(start) != 0) return 1;
    for (int worker = 0; worker < job.workers; ++worker)
        startProcess(job, worker, start);
    usleep(500000); // until all have opened
    const auto begin = Clock::now();
    close(start[1]);
    int failures = 0;
    for (int status = 0; wait(&status) > 0;)
        if (status != 0) failures = WEXITSTATUS(status) == 3 ? 3 : 1;
    peer::forgetShared();
    if (failures) return failures;
    const int records = job.records / job.workers * job.workers;
    printEach("ns", Clock::now() - begin, records);
    return check(countLines(job.path), records);
}

int runFirst(const Job &job)
{
    openOrLeave(Output::kFile, job.path);
    peer::log(0);
    peer::close();
    return 0;
}

constexpr struct {
    const char *name;
    int (*run)(const Job &job);
} kWorks[] = {
    {"disabled", [](const Job &job) { return runDisabled(job, peer::skip); }},
    {"disabled-call", [](const Job &job) { return runDisabled(job, peer::skipThroughCall); }},
    {"write", [](const Job &job) { return runWrite(job, Output::kFile); }},
    {"rolling", [](const Job &job) { return runWrite(job, Output::kRolling); }},
    {"format", [](const Job &job) { return runWrite(job, Output::kNowhere); }},
    {"latency", runLatency},
    {"allocations", runAllocations},
    {"threads", runThreads},
    {"processes", runProcesses},
    {"process", runProcess},
    {"first", runFirst},
};

} // namespace

int main(int argc, char **argv)
{
    const Job job = {argc > 2 ? std::atoi(argv[2]) : 0, argc > 3 ? argv[3] : "",
                     argc > 4 ? std::atoi(argv[4]) : 1};
    for (const auto &work : kWorks)
        if (argc > 3 && job.records > 0 && job.workers > 0 && std::strcmp(work.name, argv[1]) == 0)
            return work.run(job);
    std::fprintf(stderr, "usage: harness WORK RECORDS PATH [WORKERS]\n");
    return 2;
}
