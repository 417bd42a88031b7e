// See LogSource.h.
#include "view/LogSource.h"

#include <cstdio>

#include "view/Utf8.h"

namespace tools::view {

namespace {

constexpr std::size_t kMostSeen = 256; // more files than a log is likely to have
constexpr int kLooksUntilRest = 2;

void parse(Record &record, const LogOptions &options, Depth depth)
{
    switch (record.format) {
    case Format::kText: return parseText(record, options);
    case Format::kXml: return parseXml(record, depth);
    case Format::kTrace: return parseTrace(record);
    case Format::kConsole: return parseConsole(record);
    }
}

} // namespace

LogSource::LogSource(std::string path, std::vector<LogFile> files, const LogOptions &options,
                     Depth depth, Reports &reports)
    : path_(std::move(path)), options_(options), depth_(depth), reports_(reports)
{
    for (LogFile &file : files)
        files_.push_back(std::move(file));
    enterFile();
}

LogSource::Answer LogSource::next(Record &record)
{
    window_.drop(std::exchange(used_, 0));
    for (;;) {
        if (files_.empty() && !isFollowed_) return Answer::kEnd;
        const Frame frame = nextFrame(window_.bytes(), isLast_, options_);
        if (frame.kind != FrameKind::kNeedsMore) {
            if (takeFrame(frame, record)) return Answer::kRecord;
        } else if (!makeProgress()) {
            const Frame atRest = frameAtRest();
            if (atRest.length == 0) return Answer::kNothingYet;
            takeFrame(atRest, record);
            return Answer::kRecord;
        }
    }
}

// Reads on, or goes on to the next file; false when a followed log has nothing new.
bool LogSource::makeProgress()
{
    if (readMore()) return true;
    if (!isFollowed_ || !isNewest()) {
        if (isLast_)
            leaveFile();
        else
            isLast_ = true;
        return true;
    }
    if (isLast_) {
        leaveFile();
        return true;
    }
    const std::size_t count = files_.size();
    lookForRollover();
    return files_.size() != count || isLast_;
}

// Who waits for records from a pipe sees those that there are before more are waited for.
bool LogSource::readMore()
{
    if (isLast_ || files_.empty()) return false;
    if (!files_[0].isRegular) std::fflush(stdout);
    const bool hasMore = window_.fill();
    if (window_.error() != 0) {
        reports_.fileTrouble(files_[0].path, window_.error());
        isFollowed_ = false; // or it would fail again and again
    }
    if (!hasMore) return false;
    idleLooks_ = 0;
    reports_.progress(window_.lastRead());
    return true;
}

// The record at the end of a followed log: nobody can say that no line of it follows, but after a
// while without any it is taken as it is.
Frame LogSource::frameAtRest() const
{
    if (idleLooks_ < kLooksUntilRest) return {};
    const Frame frame = nextFrame(window_.bytes(), true, options_);
    return frame.kind == FrameKind::kRecord && !frame.isCut ? frame : Frame{};
}

void LogSource::enterFile()
{
    isLast_ = saidNotUtf8_ = false;
    idleLooks_ = 0;
    if (files_.empty()) return;
    window_.open(files_[0].descriptor.get(), files_[0].start);
}

void LogSource::leaveFile()
{
    reportDamage();
    if (!isFollowed_ && files_.size() == 1) return files_.clear();
    if (seen_.size() == kMostSeen) seen_.erase(seen_.begin());
    seen_.push_back(mark());
    if (!files_.empty()) files_.pop_front();
    enterFile();
}

ReadMark LogSource::mark() const
{
    return {files_[0].id, window_.head(), window_.offset(),
            window_.offset() + window_.bytes().size()};
}

void LogSource::lookForRollover()
{
    ++idleLooks_;
    if (files_.empty()) {
        LogFile file = openFile(path_);
        if (!file.descriptor.isOpen()) return;
        files_.push_back(std::move(file));
        return enterFile();
    }
    if (files_[0].path == "-") return;
    goOnIn(findRollover(path_, files_[0].descriptor.get(), mark(), seen_));
}

void LogSource::goOnIn(Rollover rollover)
{
    if (rollover.kind == Rollover::Kind::kNone) return;
    const bool isRenamed = rollover.kind == Rollover::Kind::kRenamed;
    // A single file is a log that was removed and written anew.
    if (isRenamed && !rollover.keepsPlace && rollover.files.size() > 1) reports_.gap(path_);
    for (LogFile &file : rollover.files)
        files_.push_back(std::move(file));
    if (isRenamed) return; // the rest of the file is read first
    isLast_ = true;
    if (rollover.keepsPlace) window_.drop(window_.bytes().size()); // found again in the copy
}

// True when the frame was a record.
bool LogSource::takeFrame(const Frame &frame, Record &record)
{
    const std::string_view bytes = window_.bytes().substr(0, frame.length);
    switch (frame.kind) {
    case FrameKind::kRecord:
        deliver(frame, record);
        used_ = frame.length;
        return true;
    case FrameKind::kProduct: keepProduct(bytes); break;
    case FrameKind::kDamage: addDamage(frame.length); break;
    case FrameKind::kNeedsMore: break;
    }
    window_.drop(frame.length);
    return false;
}

void LogSource::deliver(const Frame &frame, Record &record)
{
    reportDamage();
    record.clear();
    record.raw = window_.bytes().substr(0, frame.length);
    if (record.raw.ends_with('\n')) record.raw.remove_suffix(1);
    record.file = &files_[0].path;
    record.offset = window_.offset();
    record.format = frame.format;
    record.isCut = frame.isCut;
    parse(record, options_, depth_);
    if (record.format == Format::kXml) addProduct(record);
    checkText(record);
    if (frame.isCut)
        reports_.stretch(*record.file, record.offset, frame.length,
                         "a record that is cut off before its end");
}

void LogSource::keepProduct(std::string_view bytes)
{
    reportDamage();
    scratch_.clear();
    parseXmlProduct(bytes, scratch_);
    for (std::size_t i = 0; i < kFieldCount; ++i) {
        hasProduct_[i] = scratch_.fields[i].data() != nullptr;
        product_[i] = scratch_.fields[i];
    }
}

void LogSource::addProduct(Record &record) const
{
    for (std::size_t i = 0; i < kFieldCount; ++i)
        if (hasProduct_[i] && !record.fields[i].data()) record.fields[i] = product_[i];
}

void LogSource::addDamage(std::size_t length)
{
    if (damage_.length == 0) damage_.offset = window_.offset();
    damage_.length += length;
}

void LogSource::reportDamage()
{
    if (damage_.length == 0) return;
    reports_.stretch(files_[0].path, damage_.offset, damage_.length, "no record that is known");
    damage_ = {};
}

void LogSource::checkText(const Record &record)
{
    if (saidNotUtf8_ || isUtf8(record.raw)) return;
    saidNotUtf8_ = true;
    reports_.notUtf8(*record.file, record.offset);
}

} // namespace tools::view
