// Reads a shared log back and holds it against what its writers did.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "SharedMemory.h"
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
    int files = 0;

    bool isGood() const { return lost + doubled + torn + outOfOrder + unknown == 0; }
};

class Reader {
  public:
    Reader(const Board &board, unsigned writers, unsigned threads)
        : board_(board), writers_(writers), threads_(threads)
    {}

    // Reads "soak<number>.log" from the highest number down, then "soak.log".
    Findings read(const std::filesystem::path &directory);

  private:
    struct Progress {
        std::uint32_t next = 0;
        std::set<std::uint32_t> gaps;
    };

    void readFile(const std::filesystem::path &path);
    void takeLine(std::string line);
    void take(const RecordId &id);
    void takeTorn(const std::string &text);
    void compare(unsigned writer, unsigned thread);
    void settleNameless();
    bool isLastOfKilled(const RecordId &id) const;

    const Board &board_;
    unsigned writers_;
    unsigned threads_;
    std::map<std::pair<unsigned, unsigned>, Progress> progress_;
    std::uint64_t nameless_ = 0; // torn records that do not say whose they are
    Findings findings_;
};

} // namespace soak
