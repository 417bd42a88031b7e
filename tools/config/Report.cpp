// See Report.h.
#include "config/Report.h"

#include <algorithm>
#include <tuple>

#include "Visible.h"
#include "view/Writers.h"

namespace tools::config {

namespace {

const char *nameOf(Severity severity)
{
    constexpr const char *kNames[] = {"advice", "warning", "error"};
    return kNames[static_cast<std::size_t>(severity)];
}

void appendText(std::string &out, const char *key, std::string_view value)
{
    out += out.empty() ? "{" : ",";
    view::appendJsonString(out, key);
    out += ':';
    view::appendJsonString(out, value);
}

void appendNumber(std::string &out, const char *key, int value)
{
    out += std::string(",\"") + key + "\":" + std::to_string(value);
}

std::string toJson(const std::string &path, const Problem &problem)
{
    std::string out;
    appendText(out, "file", path);
    appendNumber(out, "line", problem.place.line);
    appendNumber(out, "column", problem.place.column);
    appendText(out, "severity", nameOf(problem.severity));
    appendText(out, "code", problem.code);
    appendText(out, "message", problem.text);
    return out + "}\n";
}

std::string toText(const std::string &path, const Problem &problem)
{
    return visible(placeText(path, problem.place) + ':' + std::to_string(problem.place.column) +
                   ": " + nameOf(problem.severity) + ": " + problem.text + " [" + problem.code +
                   "]") +
           '\n';
}

auto rank(const Problem &problem)
{
    return std::tuple(problem.file, problem.place.line, problem.place.column);
}

} // namespace

std::string placeText(const std::string &path, Place place)
{
    return path + ':' + std::to_string(place.line);
}

void Report::makeStrict()
{
    for (Problem &problem : problems_)
        if (problem.severity == Severity::Warning) problem.severity = Severity::Error;
}

void Report::print(FILE *stream, bool isJson)
{
    std::ranges::stable_sort(problems_, {}, rank);
    for (const Problem &problem : problems_) {
        const std::string &path = paths_[problem.file];
        const std::string line = isJson ? toJson(path, problem) : toText(path, problem);
        std::fwrite(line.data(), 1, line.size(), stream);
    }
}

std::size_t Report::count(Severity severity) const
{
    return static_cast<std::size_t>(std::ranges::count(problems_, severity, &Problem::severity));
}

} // namespace tools::config
