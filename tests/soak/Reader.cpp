#include "Reader.h"

#include <algorithm>
#include <fstream>

namespace soak {

Findings Reader::read(const std::filesystem::path &directory)
{
    int last = 0;
    const auto fileOf = [&](int number) {
        return directory / (number ? "soak" + std::to_string(number) + ".log" : "soak.log");
    };
    while (std::filesystem::exists(fileOf(last + 1)))
        ++last;
    for (int number = last; number >= 0; --number)
        readFile(fileOf(number));
    findings_.files = last + 1;
    for (unsigned writer = 0; writer < writers_; ++writer)
        for (unsigned thread = 0; thread < threads_; ++thread)
            compare(writer, thread);
    settleNameless();
    return findings_;
}

void Reader::readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);)
        takeLine(std::move(line));
}

// A line holds a time stamp and a record. The torn record of a killed writer has no end of line, so
// the next one, time stamp and all, stands behind it.
void Reader::takeLine(std::string line)
{
    const auto begin = line.rfind('<');
    if (begin == std::string::npos) return takeTorn(line);
    const auto before = line.find('<');
    if (before != begin) takeTorn(line.substr(before, begin - before));
    const auto id = parse(line.substr(begin));
    id ? take(*id) : takeTorn(line.substr(begin));
}

void Reader::take(const RecordId &id)
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

void Reader::takeTorn(const std::string &text)
{
    const auto id = identify(text);
    if (!id)
        ++nameless_;
    else
        ++(isLastOfKilled(*id) ? findings_.lastTorn : findings_.torn);
}

// A torn record that ends before its writer's name is the last one of a killed writer if such a one
// is missing. Had another writer left it, that one's record would count as lost.
void Reader::settleNameless()
{
    const std::uint64_t ofKilled = std::min(
        nameless_, findings_.lastMissing - std::min(findings_.lastMissing, findings_.lastTorn));
    findings_.lastTorn += ofKilled;
    findings_.torn += nameless_ - ofKilled;
}

bool Reader::isLastOfKilled(const RecordId &id) const
{
    if (id.writer >= writers_ || id.thread >= threads_) return false;
    const Writer &writer = board_.writers[id.writer];
    return writer.wasKilled && id.number == writer.done[id.thread];
}

// What a killed writer was about to write may be there or not; what it had written must be.
void Reader::compare(unsigned writer, unsigned thread)
{
    const Progress &progress = progress_[{writer, thread}];
    const std::uint32_t done = board_.writers[writer].done[thread];
    const bool wasKilled = board_.writers[writer].wasKilled;
    findings_.lost += progress.gaps.size();
    if (progress.next < done) findings_.lost += done - progress.next;
    if (progress.next > done + (wasKilled ? 1 : 0)) ++findings_.unknown;
    if (wasKilled && progress.next == done) ++findings_.lastMissing;
}

} // namespace soak
