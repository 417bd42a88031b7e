// What the fuzz targets share: taking an input apart, and giving it to functions that read files.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

// A text of the input in memory of its own size, so that reading past its end is noticed.
class Text {
  public:
    explicit Text(std::string_view text) : bytes_(new char[text.size() + 1])
    {
        *std::copy(text.begin(), text.end(), bytes_.get()) = '\0';
    }
    const char *get() const { return bytes_.get(); }

  private:
    std::unique_ptr<char[]> bytes_;
};

// The input, taken from its front.
class Input {
  public:
    Input(const std::uint8_t *data, std::size_t size)
        : rest_(reinterpret_cast<const char *>(data), size)
    {}

    unsigned takeByte()
    {
        if (rest_.empty()) return 0;
        const auto byte = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return byte;
    }

    // Everything up to a line end, which is dropped.
    Text takeLine()
    {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        const Text line(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return Text(line.get());
    }

    std::string_view rest() const { return rest_; }

  private:
    std::string_view rest_;
};

// A file without a name that holds the input.
class File {
  public:
    explicit File(std::string_view contents) : descriptor_(memfd_create("olvex-fuzz", MFD_CLOEXEC))
    {
        if (write(descriptor_, contents.data(), contents.size()) < 0) _exit(1);
        path_ = "/proc/self/fd/" + std::to_string(descriptor_);
    }
    ~File() { close(descriptor_); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    const char *path() const { return path_.c_str(); }

  private:
    int descriptor_;
    std::string path_;
};

} // namespace fuzz
