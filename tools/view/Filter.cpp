// See Filter.h.
#include "view/Filter.h"

#include <olvex/MsgId.h>

#include <algorithm>

namespace tools::view {

namespace {

// Patterns are matched by the library, for the same answers as its filter gives.
bool matchesAny(const std::vector<std::string> &patterns, std::string_view value)
{
    static thread_local std::string text;
    text.assign(value);
    return std::any_of(patterns.begin(), patterns.end(), [](const std::string &pattern) {
        return OvxPatternMatch(pattern.c_str(), text.c_str());
    });
}

std::string_view withoutZeros(std::string_view number)
{
    while (number.size() > 1 && number.front() == '0')
        number.remove_prefix(1);
    return number;
}

bool isAnyThread(const std::vector<std::string> &threads, std::string_view thread)
{
    return std::any_of(threads.begin(), threads.end(), [&](const std::string &wanted) {
        return withoutZeros(wanted) == withoutZeros(thread);
    });
}

bool holdsAny(const std::vector<std::string> &parts, std::string_view text)
{
    return std::any_of(parts.begin(), parts.end(), [&](const std::string &part) {
        return text.find(part) != std::string_view::npos;
    });
}

bool isInTime(const Filter &filter, const Record &record)
{
    if (!filter.since && !filter.until) return true;
    if (!record.hasTime) return false;
    return (!filter.since || record.millis >= *filter.since) &&
           (!filter.until || record.millis < *filter.until);
}

// A level that is not known is below all others. Only console tracers tell FATAL from ERROR.
bool isSevere(const Filter &filter, const Record &record)
{
    const Level highest = record.format == Format::kConsole ? Level::kFatal : Level::kError;
    return record.level >= std::min(filter.least, highest);
}

} // namespace

bool Filter::needsAll() const
{
    return !components.empty() || !threads.empty() || !texts.empty();
}

bool Filter::accepts(const Record &record) const
{
    return isInTime(*this, record) && isSevere(*this, record) &&
           (ids.empty() || matchesAny(ids, record.id)) &&
           (components.empty() ||
            (record.has(Field::kComponent) && matchesAny(components, record[Field::kComponent]))) &&
           (threads.empty() ||
            (record.has(Field::kThread) && isAnyThread(threads, record[Field::kThread]))) &&
           (texts.empty() || holdsAny(texts, record.text));
}

} // namespace tools::view
