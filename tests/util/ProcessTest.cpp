// Processes, semaphores between them, and mutexes.
#include "util/CxProcess.h"

#include "core/Toolkit.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <sys/sem.h>
#include <thread>
#include <vector>

namespace {

using olvex::test::inChild;

void expectSuccess(CxResult result)
{
    EXPECT_EQ(result.kind, '-') << result.code;
    EXPECT_EQ(result.code, 0);
}

void expectFailure(CxResult result, int code)
{
    EXPECT_EQ(result.kind, 'p');
    EXPECT_EQ(result.code, code);
}

// Starts a shell with a script.
std::int32_t start(const char *script)
{
    char shell[] = "sh", option[] = "-c";
    char *const argv[] = {shell, option, const_cast<char *>(script), nullptr};
    std::int32_t pid = 0;
    expectSuccess(CxProcessCreate(&pid, "/bin/sh", argv));
    EXPECT_GT(pid, 0);
    return pid;
}

struct Ending {
    bool finished;
    int exitCode;
    bool signaled;
    int signal;
    bool operator==(const Ending &) const = default;
};

Ending waitFor(std::int32_t pid, bool wait)
{
    CxProcessStatus status = {true, 99, true, 99};
    expectSuccess(CxProcessWaitFor(&pid, &status, wait));
    return {status.finished, status.exitCode, status.signaled, status.signal};
}

TEST(Process, EndsAreCollected)
{
    EXPECT_EQ(waitFor(start("exit 3"), true), (Ending{true, 3, false, 0}));
    EXPECT_EQ(waitFor(start("kill -9 $$"), true), (Ending{true, 0, true, 9}));
    std::int32_t running = start("while :; do :; done");
    EXPECT_EQ(waitFor(running, false), (Ending{false, 0, false, 0}));
    kill(running, SIGTERM);
    EXPECT_EQ(waitFor(running, true), (Ending{true, 0, true, SIGTERM}));
    CxProcessStatus status = {};
    expectFailure(CxProcessWaitFor(&running, &status, true), ECHILD);
}

TEST(Process, WhatCannotBeStartedEndsWithAStatus)
{
    std::int32_t pid = 0;
    char name[] = "none";
    char *const argv[] = {name, nullptr};
    expectSuccess(CxProcessCreate(&pid, "/no/such/program", argv));
    EXPECT_EQ(waitFor(pid, true), (Ending{true, 127, false, 0}));
    pid = -1; // would be any child
    CxProcessStatus status = {};
    expectFailure(CxProcessWaitFor(&pid, &status, false), 22);
}

// A semaphore under a key of this process, removed in the end.
class Semaphore : public testing::Test {
  protected:
    void SetUp() override { expectSuccess(CxSemOpen(&sem_, key_)); }
    void TearDown() override { semctl(sem_, 0, IPC_RMID); }

    int value() const { return semctl(sem_, 0, GETVAL); }

    const std::int32_t key_ = 0x0f000000 | getpid();
    CxSem sem_ = -1;
};

TEST_F(Semaphore, IsMadeFreeForEveryoneUntilItIsRemoved)
{
    EXPECT_EQ(value(), 1);
    semid_ds status = {};
    semctl(sem_, 0, IPC_STAT, &status);
    EXPECT_EQ(status.sem_perm.mode & 0777, 0666);
    CxSem other = -1;
    expectSuccess(CxSemLock(&sem_));
    EXPECT_EQ(value(), 0);
    expectSuccess(CxSemOpen(&other, key_));
    EXPECT_EQ(other, sem_);
    expectSuccess(CxSemUnlock(&other));
    expectSuccess(CxSemClose(&other));
    EXPECT_EQ(value(), 1);
    semctl(sem_, 0, IPC_RMID);
    expectFailure(CxSemLock(&sem_), EINVAL);
    expectFailure(CxSemUnlock(&sem_), EINVAL);
}

TEST_F(Semaphore, IsGivenBackWhenItsHolderEnds)
{
    EXPECT_EQ(inChild([this] { return CxSemLock(&sem_).code; }), 0);
    EXPECT_EQ(value(), 1);
    // A whole turn leaves nothing to undo either.
    EXPECT_EQ(inChild([this] { return CxSemLock(&sem_).code | CxSemUnlock(&sem_).code; }), 0);
    EXPECT_EQ(value(), 1);
}

// Opens a set that was made and never used until it can; how long each try took, in seconds.
std::vector<double> openUnused(int key, int value, CxSem *sem)
{
    const int unused = semget(key, 1, IPC_CREAT | 0666);
    semctl(unused, 0, SETVAL, value);
    std::vector<double> seconds;
    for (int code = 62; code == 62 && seconds.size() < 400; usleep(10000)) {
        const auto start = std::chrono::steady_clock::now();
        code = CxSemOpen(sem, key).code;
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        seconds.push_back(took.count());
        EXPECT_TRUE(code == 62 || code == 0) << code;
    }
    return seconds;
}

// Its maker was killed before the semaphore was free, or before it was used.
TEST_F(Semaphore, IsWaitedForOnceAndTakenOverWhenNobodyUsesIt)
{
    CxSem sets[2] = {-1, -1};
    std::vector<double> seconds[2];
    std::thread other([&] { seconds[1] = openUnused(key_ + 0x10000, 1, &sets[1]); });
    seconds[0] = openUnused(key_ + 0x20000, 0, &sets[0]);
    other.join();
    for (int n = 0; n < 2; ++n) {
        ASSERT_GT(seconds[n].size(), 1u);
        EXPECT_NEAR(seconds[n][0], 9, 0.9);
        EXPECT_LT(*std::max_element(seconds[n].begin() + 1, seconds[n].end()), 0.5);
        expectSuccess(CxSemLock(&sets[n]));
        EXPECT_EQ(semctl(sets[n], 0, GETVAL), 0);
        semctl(sets[n], 0, IPC_RMID);
    }
}

TEST_F(Semaphore, KeepsOthersWaiting)
{
    expectSuccess(CxSemLock(&sem_));
    const pid_t child = fork();
    if (child == 0) _exit(CxSemLock(&sem_).code);
    while (semctl(sem_, 0, GETNCNT) == 0)
        usleep(1000);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, WNOHANG), 0);
    expectSuccess(CxSemUnlock(&sem_));
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

struct Shared {
    CxMutex mutex = nullptr;
    long count = 0;
};

void *countUp(void *argument)
{
    auto *shared = static_cast<Shared *>(argument);
    for (int i = 0; i < 10000; ++i) {
        CxMutexLock(shared->mutex);
        ++shared->count;
        CxMutexUnlock(shared->mutex);
    }
    return nullptr;
}

TEST(MutexThreads, ExcludeEachOther)
{
    Shared shared;
    expectSuccess(CxMutexCreate(&shared.mutex));
    CxThread threads[4] = {};
    for (CxThread &thread : threads)
        expectSuccess(CxThreadCreate(&thread, &thread == threads ? 0 : 1 << 20, countUp, &shared));
    for (CxThread &thread : threads)
        expectSuccess(CxThreadJoin(thread));
    EXPECT_EQ(shared.count, 40000);
    expectSuccess(CxMutexDestroy(&shared.mutex));
    expectFailure(CxMutexLock(shared.mutex), 22);
}

} // namespace
