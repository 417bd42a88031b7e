// What is said on standard error: trouble with files, stretches that are no records, progress. One
// object for a run, so that a progress line and messages do not mix.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace tools::view {

class Reports {
  public:
    // `showsProgress`: standard error is a terminal, and nothing else is written to it meanwhile.
    explicit Reports(bool showsProgress = false) : showsProgress_(showsProgress) {}
    ~Reports() { clearLine(); }
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;

    void fileTrouble(const std::string &path, int error);
    void stretch(const std::string &path, std::uint64_t offset, std::uint64_t length,
                 const char *what);
    void notUtf8(const std::string &path, std::uint64_t offset);
    void gap(const std::string &path); // records may be missing
    bool hasTrouble() const { return hasTrouble_; }

    void expect(std::uint64_t bytes) { expected_ += bytes; }
    void progress(std::uint64_t bytes);

  private:
    void clearLine();
    void showLine();

    bool showsProgress_;
    bool hasTrouble_ = false;
    bool hasLine_ = false;
    std::uint64_t expected_ = 0;
    std::uint64_t done_ = 0;
    std::int64_t nextLine_ = 0; // when to show progress, in milliseconds of a steady clock
};

} // namespace tools::view
