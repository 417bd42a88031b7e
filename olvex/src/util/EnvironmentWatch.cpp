// See EnvironmentWatch.h.
#include "util/EnvironmentWatch.h"

#include <iterator>

#include "util/Memory.h"

#include <unistd.h>

namespace olvex {

inline bool EnvironmentWatch::Variable::isUnchanged() const
{
    return !place || (*place == string && copy && std::strcmp(string, copy) == 0);
}

void EnvironmentWatch::Variable::take(std::string_view assignment)
{
    for (char **each = environ; *each; ++each) {
        if (std::strncmp(*each, assignment.data(), assignment.size()) != 0) continue;
        *this = {each, *each, Memory().duplicate(*each)};
        return;
    }
}

void EnvironmentWatch::Variable::forget()
{
    BaxMemoryFree(copy);
    *this = {};
}

// A new value moves the variable's pointer; a new variable lengthens the array or, when another one
// was removed before, is its last.
bool EnvironmentWatch::isUnchanged() const
{
    return start_ && environ == start_ && !start_[count_] &&
           (count_ == 0 || start_[count_ - 1] == last_) && variables_[0].isUnchanged() &&
           variables_[1].isUnchanged();
}

void EnvironmentWatch::take()
{
    forget();
    if (!environ) return;
    for (std::size_t i = 0; i < std::size(variables_); ++i)
        if (!names_[i].empty()) variables_[i].take(names_[i]);
    start_ = environ;
    while (start_[count_])
        last_ = start_[count_++];
}

void EnvironmentWatch::forget()
{
    for (Variable &variable : variables_)
        variable.forget();
    start_ = nullptr;
    count_ = 0;
}

} // namespace olvex
