// Reads a shared log back and holds it against what its writers did.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <utility>

#include "SoakRecord.h"

namespace soak {

struct Findings {
    std::uint64_t records = 0;
    std::uint64_t lost = 0;
    std::uint64_t doubled = 0;
    std::uint64_t torn = 0;
    std::uint64_t outOfOrder = 0;
    std::uint64_t unknown = 0;     // records that nobody can have written
    std::uint64_t lastMissing = 0; // the record that a killed writer was about to write
    std::uint64_t lastTorn = 0;

    bool isGood() const { return lost + doubled + torn + outOfOrder + unknown == 0; }
};

class Reader {
  public:
    Reader(const Board &board, unsigned writers, unsigned long threads)
        : board_(board), writers_(writers), threads_(threads)
    {}

    // Reads "soak<number>.log" from the highest number down, then "soak.log".
    Findings read(const std::filesystem::path &directory)
    {
        const auto fileOf = [&](int number) {
            return directory / (number ? "soak" + std::to_string(number) + ".log" : "soak.log");
        };
        int oldest = 0;
        while (std::filesystem::exists(fileOf(oldest + 1)))
            ++oldest;
        for (int number = oldest; number >= 0; --number) {
            std::ifstream file(fileOf(number), std::ios::binary);
            for (std::string line; std::getline(file, line);)
                takeLine(line);
        }
        for (unsigned writer = 0; writer < writers_; ++writer)
            for (unsigned thread = 0; thread < threads_; ++thread)
                compare(writer, thread);
        settleNameless();
        return findings_;
    }

  private:
    struct Progress {
        std::uint32_t next = 0;
        std::set<std::uint32_t> gaps;
    };

    // A line holds a time stamp and a record. The torn record of a killed writer has no end of
    // line, so the next one, time stamp and all, stands behind it.
    void takeLine(const std::string &line)
    {
        const auto begin = line.rfind('<');
        if (begin == std::string::npos) return takeTorn(line);
        const auto before = line.find('<');
        if (before != begin) takeTorn(line.substr(before, begin - before));
        const auto id = parse(line.substr(begin));
        id ? take(*id) : takeTorn(line.substr(begin));
    }

    void take(const RecordId &id)
    {
        if (id.writer >= writers_ || id.thread >= threads_) {
            ++findings_.unknown;
            return;
        }
        ++findings_.records;
        Progress &progress = progress_[{id.writer, id.thread}];
        while (progress.next < id.number)
            progress.gaps.insert(progress.next++);
        if (id.number == progress.next)
            ++progress.next;
        else
            ++(progress.gaps.erase(id.number) ? findings_.outOfOrder : findings_.doubled);
    }

    void takeTorn(const std::string &text)
    {
        const auto id = identify(text);
        if (!id)
            ++nameless_;
        else
            ++(isLastOfKilled(*id) ? findings_.lastTorn : findings_.torn);
    }

    // A torn record that ends before its writer's name is the last one of a killed writer if such a
    // one is missing. Had another writer left it, that one's record would count as lost.
    void settleNameless()
    {
        const std::uint64_t ofKilled = std::min(
            nameless_, findings_.lastMissing - std::min(findings_.lastMissing, findings_.lastTorn));
        findings_.lastTorn += ofKilled;
        findings_.torn += nameless_ - ofKilled;
    }

    bool isLastOfKilled(const RecordId &id) const
    {
        if (id.writer >= writers_ || id.thread >= threads_) return false;
        const Writer &writer = board_.writers[id.writer];
        return writer.wasKilled && id.number == writer.done[id.thread];
    }

    // What a killed writer was about to write may be there or not; what it had written must be.
    void compare(unsigned writer, unsigned thread)
    {
        const Progress &progress = progress_[{writer, thread}];
        const std::uint32_t done = board_.writers[writer].done[thread];
        const bool wasKilled = board_.writers[writer].wasKilled;
        findings_.lost += progress.gaps.size();
        if (progress.next < done) findings_.lost += done - progress.next;
        if (progress.next > done + (wasKilled ? 1 : 0)) ++findings_.unknown;
        if (wasKilled && progress.next == done) ++findings_.lastMissing;
    }

    const Board &board_;
    unsigned writers_;
    unsigned long threads_;
    std::map<std::pair<unsigned, unsigned>, Progress> progress_;
    std::uint64_t nameless_ = 0; // torn records that do not say whose they are
    Findings findings_;
};

} // namespace soak
