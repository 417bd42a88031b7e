// Counts of the records by identifier and level.
#include <algorithm>
#include <cinttypes>
#include <unordered_map>
#include <vector>

#include "Visible.h"
#include "view/Times.h"
#include "view/Writers.h"

namespace tools::view {

namespace {

constexpr std::size_t kMostIds = 100'000; // further ones are counted together, for memory's sake
constexpr std::size_t kLongestId = 64;
constexpr std::string_view kFurtherIds = "(further identifiers)";

// A key of the table can be looked for without being made.
struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>()(text);
    }
};

using Counts = std::array<std::uint64_t, kLevelCount>;

struct Row {
    std::string_view id;
    Level level;
    std::uint64_t count;
};

class Summary : public Writer {
  public:
    Summary(FILE *stream, bool asJson) : stream_(stream), asJson_(asJson) {}

    void write(const Record &record) override
    {
        ++total_;
        ++byLevel_[static_cast<std::size_t>(record.level)];
        ++countsOf(record.id)[static_cast<std::size_t>(record.level)];
        if (!record.hasTime) return;
        first_ = hasTime_ ? std::min(first_, record.millis) : record.millis;
        last_ = hasTime_ ? std::max(last_, record.millis) : record.millis;
        hasTime_ = true;
    }

    void finish() override
    {
        const std::vector<Row> rows = sortedRows();
        if (asJson_) {
            for (const Row &row : rows)
                printJson(row);
            return;
        }
        printTotal();
        printLevels();
        printRows(rows);
    }

  private:
    // Neighbours in a log often are alike.
    Counts &countsOf(std::string_view id)
    {
        id = id.substr(0, kLongestId);
        if (lastCounts_ && id == lastId_) return *lastCounts_;
        auto found = byId_.find(id);
        if (found == byId_.end() && byId_.size() >= kMostIds) id = kFurtherIds;
        if (found == byId_.end()) found = byId_.try_emplace(std::string(id)).first;
        lastId_ = found->first;
        lastCounts_ = &found->second;
        return *lastCounts_;
    }

    std::vector<Row> sortedRows() const
    {
        std::vector<Row> rows;
        for (const auto &[id, counts] : byId_)
            for (std::size_t level = 0; level < kLevelCount; ++level)
                if (counts[level] > 0)
                    rows.push_back({id, static_cast<Level>(level), counts[level]});
        std::sort(rows.begin(), rows.end(), [](const Row &one, const Row &other) {
            if (one.count != other.count) return one.count > other.count;
            return one.id != other.id ? one.id < other.id : one.level > other.level;
        });
        return rows;
    }

    void printJson(const Row &row) const
    {
        std::string line = "{\"id\":";
        appendJsonString(line, row.id);
        line += ",\"level\":";
        appendJsonString(line, nameOf(row.level));
        line += ",\"count\":" + std::to_string(row.count) + "}\n";
        std::fputs(line.c_str(), stream_);
    }

    void printTotal() const
    {
        std::fprintf(stream_, "%" PRIu64 " records", total_);
        if (hasTime_)
            std::fprintf(stream_, ", %s to %s", writeStamp(first_).c_str(),
                         writeStamp(last_).c_str());
        std::fputs("\n", stream_);
    }

    void printLevels() const
    {
        if (total_ == 0) return;
        std::fprintf(stream_, "\n%-10s %12s\n", "Level", "Records");
        for (std::size_t level = kLevelCount; level-- > 0;)
            if (byLevel_[level] > 0)
                std::fprintf(stream_, "%-10s %12" PRIu64 "\n", shownName(static_cast<Level>(level)),
                             byLevel_[level]);
    }

    void printRows(const std::vector<Row> &rows) const
    {
        if (rows.empty()) return;
        std::fprintf(stream_, "\n%-10s %-10s %12s\n", "Identifier", "Level", "Records");
        for (const Row &row : rows) {
            const std::string id = row.id.empty() ? "-" : visible(row.id);
            std::fprintf(stream_, "%-10s %-10s %12" PRIu64 "\n", id.c_str(), shownName(row.level),
                         row.count);
        }
    }

    static const char *shownName(Level level)
    {
        return level == Level::kNone ? "-" : nameOf(level).data();
    }

    FILE *stream_;
    bool asJson_;
    std::uint64_t total_ = 0;
    Counts byLevel_{};
    std::unordered_map<std::string, Counts, Hash, std::equal_to<>> byId_;
    std::string_view lastId_;
    Counts *lastCounts_ = nullptr;
    bool hasTime_ = false;
    std::int64_t first_ = 0;
    std::int64_t last_ = 0;
};

} // namespace

std::unique_ptr<Writer> makeSummary(FILE *stream, bool asJson)
{
    return std::make_unique<Summary>(stream, asJson);
}

} // namespace tools::view
