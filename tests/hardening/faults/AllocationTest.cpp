// Memory that runs out, at every place where the library asks for it: nothing crashes, nothing
// leaks, what is written is right, and the toolkit can be used afterwards.
#include "Faults.h"
#include "Scenario.h"

#include <algorithm>
#include <cerrno>
#include <regex>

using namespace olvex::test;

namespace {

class AllocationFailure : public FaultTest {
  protected:
    AllocationFailure() : FaultTest(false) {}

    // Runs everything with allocations failing; the number that failed.
    long run(long first, long count)
    {
        place_ = "allocation " + std::to_string(first);
        scenario_.prepare();
        allocationPlan = {first, count, ENOMEM, nullptr, 0, 0};
        if (scenario_.open() != OvxIsToolkitOpen()) note("open or not");
        scenario_.use();
        OvxCloseToolkit();
        allocationPlan.first = 0;
        return allocationPlan.failed;
    }

    void checkHarm(long count, long before)
    {
        if (blocksAlive != before) note(std::to_string(blocksAlive - before) + " blocks more");
        for (const std::string &line : scenario_.plainLines())
            if (!std::regex_match(line, right_)) note("wrote " + line);
        if (count == 1 && linesLike(unprinted_) > 1) note("lasts");
    }

    // Failures at each place: of `count` allocations.
    void failEverywhere(long count, long step)
    {
        long runs = 0;
        {
            const Silence silence;
            run(0, 0);
            const long before = blocksAlive;
            for (long first = 1; run(first, count) > 0 && !isBadEnough(); first += step, ++runs) {
                checkHarm(count, before);
                checkUsable(false);
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
};

TEST_F(AllocationFailure, OfOne)
{
    failEverywhere(1, seenBySanitizers(17));
}

TEST_F(AllocationFailure, OfAllThatFollow)
{
    failEverywhere(kForEver, 7 * seenBySanitizers(17));
}

} // namespace
