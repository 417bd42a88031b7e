// See LineReader.h.
#include "LineReader.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace tools {

bool LineReader::next(std::string_view &line)
{
    std::size_t searched = 0;
    for (;;) {
        const char *text = buffer_.data() + begin_;
        const std::size_t length = end_ - begin_;
        if (const void *found = std::memchr(text + searched, '\n', length - searched)) {
            line = take(static_cast<std::size_t>(static_cast<const char *>(found) - text), 1);
            return true;
        }
        searched = length;
        if (refill()) continue;
        if (length == 0 || error_ != 0) return false;
        line = take(length, 0);
        return true;
    }
}

// Cuts a line from the front of the unread text; `lineEnd` bytes behind it are dropped.
std::string_view LineReader::take(std::size_t length, std::size_t lineEnd)
{
    char *text = buffer_.data() + begin_;
    begin_ += length + lineEnd;
    if (lineEnd > 0 && length > 0 && text[length - 1] == '\r') --length;
    text[length] = '\0';
    return {text, length};
}

// Reads more behind the unread text; false at the end or on an error. What waits in standard output
// goes out first, so that nobody waits for records while this command waits for lines.
bool LineReader::refill()
{
    std::fflush(stdout);
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    if (end_ >= kLongestLine) {
        error_ = EMSGSIZE;
        return false;
    }
    if (end_ + 1 == buffer_.size()) buffer_.resize(2 * buffer_.size());
    ssize_t count;
    do
        count = ::read(descriptor_, buffer_.data() + end_, buffer_.size() - 1 - end_);
    while (count < 0 && errno == EINTR);
    if (count < 0) error_ = errno;
    if (count <= 0) return false;
    end_ += static_cast<std::size_t>(count);
    return true;
}

} // namespace tools
