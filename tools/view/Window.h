// A stretch of a file in memory that moves on as the file is read. It grows only while what stands
// at its front needs more bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tools::view {

class Window {
  public:
    // Begins anew with a file that is borrowed, at a place to which it can be set.
    void open(int descriptor, std::uint64_t offset);

    // Reads behind the bytes at hand; false at the end, when the file has been emptied and written
    // anew, or with error() on a failure.
    bool fill();

    std::string_view bytes() const { return {buffer_.data() + begin_, end_ - begin_}; }
    std::uint64_t offset() const { return offset_; } // of bytes() in the file
    void drop(std::size_t length);
    int error() const { return error_; }
    std::size_t lastRead() const { return lastRead_; }

    // The first bytes of the file, as far as they were read: what it is recognised by.
    const std::string &head() const { return head_; }
    static constexpr std::size_t kHeadLength = 256;

  private:
    static constexpr std::size_t kBlock = 256 * 1024;

    bool isWrittenAnew() const;
    void makeRoom();
    void keepHead(std::string_view read);

    int descriptor_ = -1;
    int error_ = 0;
    std::size_t lastRead_ = 0;
    std::uint64_t offset_ = 0;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::string head_;
};

} // namespace tools::view
