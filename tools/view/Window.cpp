// See Window.h.
#include "view/Window.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace tools::view {

void Window::open(int descriptor, std::uint64_t offset)
{
    descriptor_ = descriptor;
    error_ = 0;
    begin_ = end_ = 0;
    head_.clear();
    offset_ = offset;
    if (offset > 0 && ::lseek(descriptor, static_cast<off_t>(offset), SEEK_SET) < 0) error_ = errno;
}

void Window::drop(std::size_t length)
{
    begin_ += length;
    offset_ += length;
}

bool Window::fill()
{
    if (error_ != 0) return false;
    makeRoom();
    ssize_t count;
    do
        count = ::read(descriptor_, buffer_.data() + end_, buffer_.size() - end_);
    while (count < 0 && errno == EINTR);
    lastRead_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (count < 0) error_ = errno;
    if (isWrittenAnew()) lastRead_ = 0;
    if (head_.size() < kHeadLength) keepHead({buffer_.data() + end_, lastRead_});
    end_ += lastRead_;
    return lastRead_ > 0;
}

// Whether the file was emptied since its first bytes were read: what stands behind the bytes at
// hand does not continue them then.
bool Window::isWrittenAnew() const
{
    char head[kHeadLength];
    const ssize_t count = head_.empty() ? 0 : ::pread(descriptor_, head, head_.size(), 0);
    return count >= 0 && std::string_view(head, static_cast<std::size_t>(count)) != head_;
}

// What is left moves to the front; the buffer grows when it leaves less than a block.
void Window::makeRoom()
{
    if (begin_ > 0) std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    if (buffer_.size() - end_ < kBlock) buffer_.resize(std::max(2 * end_, end_ + kBlock));
}

void Window::keepHead(std::string_view read)
{
    if (offset_ + end_ == head_.size()) head_ += read.substr(0, kHeadLength - head_.size());
}

} // namespace tools::view
