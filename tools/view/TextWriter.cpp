// Records as text.
#include "Visible.h"
#include "view/Formats.h"
#include "view/Times.h"
#include "view/Writers.h"

namespace tools::view {

namespace {

void addWord(std::string &line, std::string_view word)
{
    if (word.empty()) return;
    if (!line.empty()) line += ' ';
    line += word;
}

void addIds(std::string &line, const Record &record)
{
    const bool hasProcess = record.has(Field::kProcess);
    if (hasProcess) {
        addWord(line, "p");
        line += record[Field::kProcess];
    }
    if (!record.has(Field::kThread)) return;
    if (hasProcess)
        line += ":t";
    else
        addWord(line, "t");
    line += record[Field::kThread];
}

void addSource(std::string &line, const Record &record)
{
    addWord(line, record[Field::kSourceFile]);
    if (record.has(Field::kFunction)) line.append(":").append(record[Field::kFunction]);
    if (record.has(Field::kLine)) line.append("(").append(record[Field::kLine]).append(")");
}

// An XML record as a line like those of the trace formatter, without fields that are empty.
void addLine(std::string &line, const Record &record)
{
    if (record.time.empty() && record.hasTime)
        addWord(line, writeStamp(record.millis));
    else
        addWord(line, record.time);
    addWord(line, nameOf(record.level));
    addWord(line, record[Field::kServer]);
    addWord(line, record[Field::kComponent]);
    addIds(line, record);
    addSource(line, record);
    if (!record.text.starts_with(record.id)) addWord(line, record.id);
    addWord(line, record.text);
}

class TextWriter : public Writer {
  public:
    TextWriter(FILE *stream, bool isTerminal) : stream_(stream), isTerminal_(isTerminal) {}

    void write(const Record &record) override
    {
        line_.clear();
        if (record.format == Format::kXml)
            addLine(line_, record);
        else
            line_ = record.format == Format::kTrace ? record.raw.substr(1) : record.raw;
        if (isTerminal_) line_ = visible(line_, LineEnds::kKept);
        line_ += '\n';
        std::fwrite(line_.data(), 1, line_.size(), stream_);
    }

  private:
    FILE *stream_;
    bool isTerminal_;
    std::string line_; // its memory is used over and over
};

} // namespace

std::unique_ptr<Writer> makeTextWriter(FILE *stream, bool isTerminal)
{
    return std::make_unique<TextWriter>(stream, isTerminal);
}

} // namespace tools::view
