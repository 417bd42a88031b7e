// What is made of the records that are shown: text, JSON lines, or counts.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "view/Record.h"

namespace tools::view {

class Writer {
  public:
    virtual ~Writer() = default;
    virtual void write(const Record &record) = 0;
    virtual void finish() {}
};

// Writers write to a stream that is borrowed.

// Records as they stand, XML as lines. `isTerminal`: they are made visible (Visible.h).
std::unique_ptr<Writer> makeTextWriter(FILE *stream, bool isTerminal);

// One JSON object a line.
std::unique_ptr<Writer> makeJsonWriter(FILE *stream);

// Counts by identifier and level, at the end.
std::unique_ptr<Writer> makeSummary(FILE *stream, bool asJson);

// Appends a text as a JSON string. Bytes that are not UTF-8 become U+FFFD, one each;
// characters that are not visible (Visible.h) are escaped.
void appendJsonString(std::string &out, std::string_view text);

} // namespace tools::view
