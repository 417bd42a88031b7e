// One log as a sequence of records: its files one after the other, and what is written later when
// it is followed.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "view/Files.h"
#include "view/Formats.h"
#include "view/Framing.h"
#include "view/Reports.h"
#include "view/Rollover.h"
#include "view/Window.h"

namespace tools::view {

class LogSource {
  public:
    enum class Answer : std::uint8_t { kRecord, kNothingYet, kEnd };

    // `files`: the oldest first. `options` and `reports` are borrowed.
    LogSource(std::string path, std::vector<LogFile> files, const LogOptions &options, Depth depth,
              Reports &reports);
    LogSource(const LogSource &) = delete;
    LogSource &operator=(const LogSource &) = delete;

    // Goes on behind the end until stopFollowing().
    void follow() { isFollowed_ = true; }
    void stopFollowing() { isFollowed_ = false; }

    // The next record, with views that hold until the next call.
    Answer next(Record &record);

  private:
    // A stretch that is no record; pieces that follow one another are one.
    struct Damage {
        std::uint64_t offset = 0;
        std::uint64_t length = 0;
    };

    bool makeProgress();
    bool readMore();
    void leaveFile();
    void enterFile();
    void lookForRollover();
    void goOnIn(Rollover rollover);
    bool takeFrame(const Frame &frame, Record &record);
    Frame frameAtRest() const;
    void deliver(const Frame &frame, Record &record);
    void keepProduct(std::string_view bytes);
    void addProduct(Record &record) const;
    void addDamage(std::size_t length);
    void reportDamage();
    void checkText(const Record &record);
    bool isNewest() const { return files_.size() <= 1; }
    ReadMark mark() const;

    std::string path_;
    std::deque<LogFile> files_; // the first one is being read
    const LogOptions &options_;
    Depth depth_;
    Reports &reports_;
    Window window_;
    std::size_t used_ = 0; // bytes at the front of the window that the last record has
    bool isFollowed_ = false;
    bool isLast_ = false; // nothing follows the bytes in the window
    int idleLooks_ = 0;   // how often nothing new was found, one after the other
    bool saidNotUtf8_ = false;
    Damage damage_;
    std::vector<ReadMark> seen_;
    Record scratch_;
    std::string product_[kFieldCount]; // product information that holds for all records
    bool hasProduct_[kFieldCount] = {};
};

} // namespace tools::view
