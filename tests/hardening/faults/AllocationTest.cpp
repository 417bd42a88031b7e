// Memory that runs out, at every place where the library asks for it: nothing crashes, nothing
// leaks, what is written is right, and the toolkit can be used afterwards.
#include "Faults.h"
#include "Scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

using namespace olvex::test;

namespace {

// Sanitizers make everything slow: they see a part.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kStep = 17;
#else
constexpr long kStep = 1;
#endif

class AllocationFailure : public ::testing::Test {
  protected:
    // Runs everything with allocations failing; the number that failed.
    long run(long first, long count)
    {
        scenario_.prepare();
        failAllocations(first, count);
        if (scenario_.open() != OvxIsToolkitOpen()) note(first, "open or not");
        scenario_.use();
        OvxCloseToolkit();
        const long failed = allocationsFailed();
        failAllocations(0, 0);
        return failed;
    }

    // What was found is told at the end: until then the output is silenced.
    void note(long first, const std::string &fault)
    {
        faults_ += "allocation " + std::to_string(first) + ": " + fault + "\n";
        ++faultCount_;
    }

    void checkHarm(long first, long count, long before)
    {
        if (blocksAlive() != before)
            note(first, std::to_string(blocksAlive() - before) + " blocks more");
        for (const std::string &line : scenario_.plainLines())
            if (!std::regex_match(line, right_)) note(first, "wrote " + line);
        if (count == 1 && linesLike(unprinted_) > 1) note(first, "lasts");
    }

    void checkUsable(long first)
    {
        if (!scenario_.open()) note(first, "does not open");
        scenario_.logGood();
        OvxCloseToolkit();
        const std::string lacking = scenario_.logsWithoutGood();
        if (!lacking.empty()) note(first, "no good event in " + lacking);
    }

    // Failures at each place: of `count` allocations.
    void failEverywhere(long count, long step)
    {
        long runs = 0;
        {
            const Silence silence;
            run(0, 0);
            const long before = blocksAlive();
            for (long first = 1; run(first, count) > 0 && faultCount_ < 20; first += step, ++runs) {
                checkHarm(first, count, before);
                checkUsable(first);
            }
        }
        std::printf("%ld places\n", runs);
        EXPECT_EQ(faults_, "");
        EXPECT_GT(runs * step, 500);
    }

    long linesLike(const std::regex &pattern) const
    {
        const std::vector<std::string> lines = scenario_.plainLines();
        return std::count_if(lines.begin(), lines.end(), [&](const std::string &line) {
            return std::regex_search(line, pattern);
        });
    }

    // A record may lack any of its fields, and its text may stand there as it was given, but no
    // field is cut. Where the filter's level got lost, debugging texts come, too.
    const std::regex right_{
        "([-0-9]+ [0-9:.+]+)?( host[.]c)?( work)?( 12)?( Org)?( [-a-zA-Z0-9.]+)?"
        "( (HSTXX0001E round ([0-4] of events, 1.50|%1[$]d of %2[$]s, %3[$].2f)|round "
        "([0-4]|%1[$]d)|"
        "own (text|%1[$]s)))?"};
    const std::regex unprinted_{"HSTXX0001E round %"};
    std::string faults_;
    int faultCount_ = 0;
    Scenario scenario_{false};
};

TEST_F(AllocationFailure, OfOne)
{
    failEverywhere(1, kStep);
}

TEST_F(AllocationFailure, OfAllThatFollow)
{
    failEverywhere(kForEver, 7 * kStep);
}

} // namespace
