// Several logs as one sequence in the order of time. Each log keeps its own order; at the same time
// the log that was named first goes first.
#pragma once

#include <memory>
#include <vector>

#include "view/LogSource.h"

namespace tools::view {

class Merge {
  public:
    void add(std::unique_ptr<LogSource> source)
    {
        heads_.emplace_back().source = std::move(source);
    }

    // The next record, or null when there is none, yet or any more. It holds until the next call.
    const Record *next();

    bool isAtEnd() const;
    void stopFollowing();

  private:
    struct Head {
        std::unique_ptr<LogSource> source;
        Record record;
        LogSource::Answer state = LogSource::Answer::kNothingYet;
        std::int64_t order = 0; // the time of the last record that has one
    };

    static void advance(Head &head);

    std::vector<Head> heads_;
    Head *given_ = nullptr; // whose record was handed out last
};

} // namespace tools::view
