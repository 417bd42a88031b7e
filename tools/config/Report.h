// What is found in files, sorted and printed.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "config/Scanner.h"

namespace tools::config {

struct Problem {
    std::size_t file; // which of those that were given
    Severity severity;
    Place place;
    const char *code;
    std::string text;
};

class Report {
  public:
    void addFile(std::string path) { paths_.push_back(std::move(path)); }
    const std::string &pathOf(std::size_t file) const { return paths_[file]; }

    void add(Problem problem) { problems_.push_back(std::move(problem)); }

    // Takes warnings for errors.
    void makeStrict();

    // In the order of the files and their lines: for people, or a JSON object a line.
    void print(FILE *stream, bool isJson);

    std::size_t count(Severity severity) const;

  private:
    std::vector<std::string> paths_;
    std::vector<Problem> problems_;
};

// "file:line", for messages that point to another place.
std::string placeText(const std::string &path, Place place);

} // namespace tools::config
