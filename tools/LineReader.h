// Reads lines of any length from a descriptor through one buffer that is used over and over: its
// size follows the longest line, not the length of the input. A line that is longer than any line
// should be ends the reading with an error instead of taking all the memory there is.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {

class LineReader {
  public:
    static constexpr std::size_t kLongestLine = 64 * 1024 * 1024; // the least that is refused

    explicit LineReader(int descriptor) : descriptor_(descriptor), buffer_(kBlock + 1) {}

    // The next line without its LF or CR LF, valid until the next call and followed by a NUL. The
    // last line needs no line end. False at the end of the input or when it cannot be read.
    bool next(std::string_view &line);

    // The error number that ended the reading, or 0.
    int error() const { return error_; }

  private:
    static constexpr std::size_t kBlock = 64 * 1024;

    bool refill();
    std::string_view take(std::size_t length, std::size_t lineEnd);

    int descriptor_;
    int error_ = 0;
    std::vector<char> buffer_; // one byte is kept free for the NUL
    std::size_t begin_ = 0;    // where the unread text begins
    std::size_t end_ = 0;      // and ends
};

} // namespace tools
