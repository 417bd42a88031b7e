// See Framing.h.
#include "view/Framing.h"

#include <optional>

namespace tools::view {

namespace {

constexpr auto kNone = std::string_view::npos;

struct Start {
    Begins begins = Begins::kNo;
    Format format = Format::kText;
};

Start startAs(Format format, Begins begins, const LogOptions &options)
{
    return options.formats[static_cast<std::size_t>(format)] ? Start{begins, format} : Start{};
}

Start startWithDigit(std::string_view bytes, bool isLast, const LogOptions &options)
{
    const Start text = startAs(Format::kText, textBegins(bytes, isLast, options), options);
    if (text.begins != Begins::kNo) return text;
    return startAs(Format::kConsole, consoleBegins(bytes, isLast), options);
}

// What begins at the beginning of a line.
Start startAt(std::string_view bytes, bool isLast, const LogOptions &options)
{
    if (bytes.empty()) return {};
    const char first = bytes.front();
    if (first == kTraceMark) return startAs(Format::kTrace, traceBegins(bytes, isLast), options);
    if (first == '<') {
        const Start xml = startAs(Format::kXml, xmlBegins(bytes, isLast), options);
        if (xml.begins != Begins::kNo) return xml;
    }
    if ((first >= '0' && first <= '9') || !options.timeLayout.empty())
        return startWithDigit(bytes, isLast, options);
    return {};
}

bool isProductLine(std::string_view bytes, const LogOptions &options)
{
    if (!options.formats[static_cast<std::size_t>(Format::kXml)]) return false;
    const XmlElement *element = xmlElementAt(bytes);
    return element && element->isProduct;
}

// Goes through lines; the last one may lack its end.
class Lines {
  public:
    explicit Lines(std::string_view bytes) : bytes_(bytes) {}

    // False at the end of the bytes. A line without an end is one only when `takesRest`.
    bool next(bool takesRest)
    {
        begin_ = end_;
        if (begin_ == bytes_.size()) return false;
        const std::size_t found = bytes_.find('\n', begin_);
        if (found == kNone && !takesRest) return false;
        hasEnd_ = found != kNone;
        end_ = hasEnd_ ? found + 1 : bytes_.size();
        return true;
    }
    std::size_t begin() const { return begin_; }
    std::size_t end() const { return end_; }
    bool hasEnd() const { return hasEnd_; }
    std::string_view line() const { return bytes_.substr(begin_, end_ - begin_ - hasEnd_); }
    std::string_view from() const { return bytes_.substr(begin_); }

  private:
    std::string_view bytes_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool hasEnd_ = false;
};

// Where in a line a record begins although the line does not: the record before it was cut off.
std::size_t findTraceInside(std::string_view line)
{
    std::size_t place = line.find(kTraceMark, 1);
    while (place != kNone && traceBegins(line.substr(place), true) != Begins::kYes)
        place = line.find(kTraceMark, place + 1);
    return place;
}

Frame cutFrame(Format format, std::size_t length)
{
    return {FrameKind::kRecord, length, format, true};
}

Frame damageFrame(std::size_t length)
{
    return {FrameKind::kDamage, length, Format::kText, false};
}

// The answer when the bytes end before the record does.
Frame unfinished(std::string_view bytes, bool isLast, Format format)
{
    if (isLast) return cutFrame(format, bytes.size());
    if (bytes.size() >= kLongestRecord) return cutFrame(format, kLongestRecord);
    return {};
}

// Records that end before the line that begins the next one.

// A NUL byte is in no record: it is what a crash of the system leaves of a file. A mark of trace
// records in the middle begins the next one.
Frame withoutForeign(std::string_view bytes, Frame frame)
{
    const std::string_view record = bytes.substr(0, frame.length);
    if (const std::size_t nul = record.find('\0'); nul != kNone) return cutFrame(frame.format, nul);
    if (frame.format != Format::kTrace) return frame;
    const std::size_t inside = findTraceInside(record);
    return inside == kNone ? frame : cutFrame(frame.format, inside);
}

Frame frameLines(std::string_view bytes, bool isLast, Format format, const LogOptions &options)
{
    Lines lines(bytes);
    lines.next(isLast);
    while (lines.hasEnd() && lines.end() < bytes.size()) {
        const Start start = startAt(bytes.substr(lines.end()), isLast, options);
        const bool isNext = start.begins == Begins::kYes || bytes[lines.end()] == '\0';
        if (isNext) return withoutForeign(bytes, {FrameKind::kRecord, lines.end(), format, false});
        if (start.begins == Begins::kUnclear || !lines.next(isLast)) break;
    }
    if (lines.hasEnd() && lines.end() == bytes.size() && isLast)
        return withoutForeign(bytes, {FrameKind::kRecord, bytes.size(), format, false});
    const Frame frame = unfinished(bytes, isLast, format);
    return frame.length > 0 ? withoutForeign(bytes, frame) : frame;
}

// Records that have an end of their own

// Walks through the lines of an XML record.
class XmlWalk {
  public:
    XmlWalk(std::string_view bytes, const LogOptions &options)
        : bytes_(bytes), lines_(bytes), options_(options)
    {}

    Frame frame(bool isLast)
    {
        lines_.next(isLast);
        isMessage_ = lines_.line().starts_with("<M");
        previous_ = lines_.line();
        previousBegin_ = 0;
        for (std::size_t count = 0; lines_.next(isLast); ++count) {
            if (const auto frame = frameAtLine(count == 0, isLast)) return *frame;
            previous_ = lines_.line();
            previousBegin_ = lines_.begin();
        }
        return cutAt(unfinished(bytes_, isLast, Format::kXml));
    }

  private:
    // The frame, when the line decides on it.
    std::optional<Frame> frameAtLine(bool isSecond, bool isLast)
    {
        const std::string_view line = lines_.line();
        if (!isSecond && line.starts_with(kXmlTimeLine)) {
            const std::size_t place = findXmlOpening(previous_);
            if (place != kNone && previousBegin_ + place > 0)
                return cutAt(cutFrame(Format::kXml, previousBegin_ + place));
        }
        if (!awaited_.empty()) {
            if (line.ends_with(awaited_)) awaited_ = {};
            return std::nullopt;
        }
        if (line == (isMessage_ ? "</Message>" : "</Trace>"))
            return Frame{FrameKind::kRecord, lines_.end(), Format::kXml, false};
        if (const XmlElement *element = xmlElementAt(line)) {
            if (!line.ends_with(element->end)) awaited_ = element->end;
            return std::nullopt;
        }
        return frameAtForeignLine(isLast);
    }

    // A record of another format, or bytes that a crash left, end this one.
    std::optional<Frame> frameAtForeignLine(bool isLast) const
    {
        if (lines_.line().starts_with('\0')) return cutFrame(Format::kXml, lines_.begin());
        const Start start = startAt(lines_.from(), isLast, options_);
        if (start.begins == Begins::kUnclear) return Frame{};
        if (start.begins == Begins::kYes && start.format != Format::kXml)
            return cutFrame(Format::kXml, lines_.begin());
        return std::nullopt;
    }

    // A record without end ends where the next record of any kind begins within it.
    Frame cutAt(Frame frame) const
    {
        if (!frame.isCut) return frame;
        const std::string_view record = bytes_.substr(0, frame.length);
        Lines lines(record);
        for (lines.next(true); lines.next(true);) {
            const std::string_view line = lines.from();
            if (line.starts_with('\0') || startAt(line, true, options_).begins == Begins::kYes)
                return cutFrame(Format::kXml, lines.begin());
        }
        const std::size_t nul = record.find('\0');
        return nul == kNone ? frame : cutFrame(Format::kXml, nul);
    }

    std::string_view bytes_;
    Lines lines_;
    const LogOptions &options_;
    bool isMessage_ = false;
    std::string_view awaited_; // what ends the element that the walk is in
    std::string_view previous_;
    std::size_t previousBegin_ = 0;
};

// The product information that ends before `bytes`, if these begin a record or are not known yet.
Frame productBefore(std::string_view bytes, std::size_t length, bool isLast,
                    const LogOptions &options)
{
    const Start start = startAt(bytes, isLast, options);
    if (start.begins == Begins::kUnclear) return {};
    const bool isHeader = start.begins == Begins::kYes && start.format == Format::kXml;
    return isHeader ? Frame{FrameKind::kProduct, length, Format::kXml, false} : damageFrame(length);
}

// Product information reaches to the XML record that follows it.
Frame frameProduct(std::string_view bytes, bool isLast, const LogOptions &options)
{
    std::string_view awaited;
    Lines lines(bytes);
    while (lines.next(isLast)) {
        const std::string_view line = lines.line();
        if (awaited.empty() && !isProductLine(line, options))
            return productBefore(lines.from(), lines.begin(), isLast, options);
        if (startAt(lines.from(), isLast, options).begins == Begins::kYes)
            return damageFrame(lines.begin());
        if (awaited.empty()) awaited = xmlElementAt(line)->end;
        if (line.ends_with(awaited)) awaited = {};
    }
    if (!isLast && bytes.size() < kLongestRecord) return {};
    return awaited.empty() ? Frame{FrameKind::kProduct, bytes.size(), Format::kXml, false}
                           : damageFrame(bytes.size());
}

// What is no record

std::size_t countNul(std::string_view bytes)
{
    return std::min(bytes.find_first_not_of('\0'), bytes.size());
}

bool beginsAnything(std::string_view bytes, bool isLast, const LogOptions &options)
{
    return bytes.front() == '\0' || isProductLine(bytes, options) ||
           startAt(bytes, isLast, options).begins != Begins::kNo;
}

// Reaches to the next place at which something may begin.
Frame frameDamage(std::string_view bytes, bool isLast, const LogOptions &options)
{
    if (bytes.front() == '\0') return damageFrame(countNul(bytes));
    Lines lines(bytes);
    while (lines.next(true)) {
        if (lines.begin() > 0 && beginsAnything(lines.from(), isLast, options))
            return damageFrame(lines.begin());
        const std::string_view line = lines.line();
        const std::size_t trace = findTraceInside(line);
        if (trace != kNone) return damageFrame(lines.begin() + trace);
        const std::size_t opening = lines.hasEnd() || isLast ? findXmlOpening(line) : kNone;
        const std::size_t place = opening == kNone ? 0 : lines.begin() + opening;
        if (place > 0 && xmlBegins(bytes.substr(place), isLast) != Begins::kNo)
            return damageFrame(place);
        if (!lines.hasEnd() && !isLast && bytes.size() - lines.begin() < kLongestRecord)
            return lines.begin() > 0 ? damageFrame(lines.begin()) : Frame{};
    }
    return damageFrame(bytes.size());
}

} // namespace

Frame nextFrame(std::string_view bytes, bool isLast, const LogOptions &options)
{
    if (bytes.empty()) return {};
    const Start start = startAt(bytes, isLast, options);
    if (start.begins == Begins::kUnclear) return {};
    if (start.begins == Begins::kNo)
        return isProductLine(bytes, options) ? frameProduct(bytes, isLast, options)
                                             : frameDamage(bytes, isLast, options);
    if (start.format == Format::kXml) return XmlWalk(bytes, options).frame(isLast);
    return frameLines(bytes, isLast, start.format, options);
}

} // namespace tools::view
