// The files of a log: the one that is written and the numbered ones that it was before.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace tools::view {

// An open file, closed with its scope.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        reset();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }
    int get() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

  private:
    void reset();

    int number_;
};

struct FileId {
    dev_t device = 0;
    ino_t number = 0;
    bool operator==(const FileId &) const = default;
};

struct LogFile {
    std::string path; // "-" for standard input
    Descriptor descriptor;
    FileId id;
    bool isRegular = false;
    std::uint64_t size = 0;
    std::uint64_t start = 0; // where to begin reading
};

// Opens a file; on failure the descriptor is not open and `errno` says why.
LogFile openFile(const std::string &path);

// app.log, app1.log, app2.log and so on: the names that a log's handler gives its files.
class LogName {
  public:
    explicit LogName(const std::string &path);

    // True when the name ends in a number, as no log that is being written does.
    bool isNumbered() const;

    std::string pathOf(unsigned long number) const; // 0: the file that is written

    // The numbers of the files that exist beside the one that is written, the newest, 1, first.
    std::vector<unsigned long> findNumbers() const;

  private:
    std::string folder_; // with a slash behind, or empty
    std::string base_;
    std::string extension_; // with its dot, or empty
};

// The name that a log really has: a handler puts "_" behind a name that ends in a digit.
std::string realName(const std::string &path);

} // namespace tools::view
