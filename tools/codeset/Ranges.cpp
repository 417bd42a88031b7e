// The section that GB18030 has: ranges of keys with the numbers that they are mapped to, in each
// direction. Two-byte codes are numbered from 1, four-byte codes from 24067.
#include <algorithm>
#include <vector>

#include "codeset/Image.h"

namespace codeset {

namespace {

struct Entry {
    std::uint16_t key;
    std::uint16_t number;
};

enum Kind : std::uint16_t { kClosing = 0, kList = 1, kRun = 2 };

struct Range {
    std::uint16_t first;
    std::uint16_t last;
    Kind kind;
    std::uint16_t offset;
};

constexpr std::size_t kBlockSize = 512;
constexpr std::size_t kBlockCount = 0x10000 / kBlockSize;

// Runs shorter than this go into lists: the keys of a text should lie in few ranges.
constexpr std::size_t kShortestRun = 512;
// Holes of up to so many keys are filled in a list where a filler exists.
constexpr std::size_t kLongestHole = 8;

class Direction {
  public:
    // `entries` in ascending order of keys. Whether a list may hold unmapped keys as 0xFFFF.
    Direction(const std::vector<Entry> &entries, bool fillsHoles)
        : entries_(entries), fillsHoles_(fillsHoles)
    {
        for (std::size_t at = 0; at < entries_.size();)
            at = addFrom(at);
        ranges_.push_back({kHole, kHole, kClosing, 0});
    }

    std::string ranges() const
    {
        Words words;
        for (const Range &range : ranges_)
            words.add(range.first).add(range.last).add(range.kind).add(range.offset);
        return words.bytes();
    }

    // For each block of keys the first range that may hold one of them.
    std::string blocks() const
    {
        Words words;
        for (std::size_t block = 0, at = 0; block < kBlockCount; ++block) {
            while (ranges_[at].last < block * kBlockSize)
                ++at;
            words.add(static_cast<std::uint16_t>(at));
        }
        return words.bytes();
    }

    std::string list() const { return list_.bytes(); }

  private:
    // How many entries from there on run in step.
    std::size_t runFrom(std::size_t at) const
    {
        std::size_t count = 1;
        while (at + count < entries_.size() &&
               entries_[at + count].key == entries_[at].key + count &&
               entries_[at + count].number == entries_[at].number + count)
            ++count;
        return count;
    }

    std::size_t addFrom(std::size_t at)
    {
        const std::size_t run = runFrom(at);
        if (run < kShortestRun && entries_[at].number != kHole) return addList(at);
        add(at, at + run, kRun, entries_[at].number);
        return at + run;
    }

    std::size_t addList(std::size_t begin)
    {
        const auto offset = static_cast<std::uint16_t>(list_.bytes().size() / 2);
        std::size_t end = begin;
        while (end < entries_.size() && continuesList(begin, end)) {
            for (unsigned key = end > begin ? entries_[end - 1].key + 1u : entries_[end].key;
                 key < entries_[end].key; ++key)
                list_.add(kHole);
            list_.add(entries_[end++].number);
        }
        add(begin, end, kList, offset);
        return end;
    }

    bool continuesList(std::size_t begin, std::size_t at) const
    {
        if (at == begin) return true;
        if (entries_[at].number == kHole) return false; // in a list it would be none
        const std::size_t hole = entries_[at].key - entries_[at - 1].key - 1u;
        return hole <= (fillsHoles_ ? kLongestHole : 0) && runFrom(at) < kShortestRun;
    }

    void add(std::size_t begin, std::size_t end, Kind kind, std::uint16_t offset)
    {
        ranges_.push_back({entries_[begin].key, entries_[end - 1].key, kind, offset});
    }

    const std::vector<Entry> &entries_;
    bool fillsHoles_;
    std::vector<Range> ranges_;
    Words list_;
};

std::uint16_t numberOf(const std::string &code)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(code[at]); };
    if (code.size() == 2) return static_cast<std::uint16_t>((byte(0) - 0x81) * 191 + byte(1) - 63);
    return static_cast<std::uint16_t>((((byte(0) - 0x80) * 10 + byte(1)) * 126 + byte(2)) * 10 +
                                      byte(3) - 50351);
}

// ASCII is never looked up.
std::vector<Entry> entriesByNumber(const Mapping &mapping)
{
    std::vector<Entry> entries;
    for (const auto &[code, value] : mapping.values)
        if (code.size() > 1) entries.push_back({numberOf(code), value});
    std::sort(entries.begin(), entries.end(),
              [](const Entry &left, const Entry &right) { return left.key < right.key; });
    return entries;
}

std::vector<Entry> entriesByValue(const Mapping &mapping)
{
    std::vector<Entry> entries;
    for (std::size_t value = 0; value < kValueCount; ++value)
        if (const std::string &code = mapping.codes[value]; code.size() > 1)
            entries.push_back({static_cast<std::uint16_t>(value), numberOf(code)});
    return entries;
}

// The parts of a section, and the positions that its head says, in words behind that head.
class Section {
  public:
    void add(std::size_t numberAt, const std::string &part)
    {
        const auto position = static_cast<std::uint32_t>(parts_.size() / 2);
        head_.replace(numberAt, sizeof position, reinterpret_cast<const char *>(&position),
                      sizeof position);
        parts_ += part;
    }
    void add(std::size_t numbersAt, const Direction &direction)
    {
        add(numbersAt, direction.ranges());
        add(numbersAt + 4, direction.blocks());
        add(numbersAt + 8, direction.list());
    }
    std::string bytes() const { return head_ + parts_; }

  private:
    std::string head_ = std::string(32, '\0');
    std::string parts_;
};

} // namespace

std::string makeRanges(const Mapping &mapping)
{
    const auto byValue = entriesByValue(mapping);
    const auto byNumber = entriesByNumber(mapping);
    Section section;
    section.add(0, Direction(byValue, false));
    section.add(16, Direction(byNumber, true));
    return section.bytes();
}

} // namespace codeset
