// See CatalogEnvironment.h.
#include "ucv/CatalogEnvironment.h"

#include "util/Memory.h"

#include <unistd.h>

namespace olvex::ucv {

inline bool CatalogEnvironment::Variable::isUnchanged() const
{
    return !place || (*place == string && copy && std::strcmp(string, copy) == 0);
}

void CatalogEnvironment::Variable::take(std::string_view assignment)
{
    for (char **each = environ; *each; ++each) {
        if (std::strncmp(*each, assignment.data(), assignment.size()) != 0) continue;
        *this = {each, *each, Memory().duplicate(*each)};
        return;
    }
}

void CatalogEnvironment::Variable::forget()
{
    BaxMemoryFree(copy);
    *this = {};
}

// A new value moves the variable's pointer; a new variable lengthens the array or, when another one
// was removed before, is its last.
bool CatalogEnvironment::isUnchanged() const
{
    return start_ && environ == start_ && !start_[count_] &&
           (count_ == 0 || start_[count_ - 1] == last_) && searchPath_.isUnchanged() &&
           language_.isUnchanged();
}

void CatalogEnvironment::take()
{
    forget();
    if (!environ) return;
    searchPath_.take("NLSPATH=");
    language_.take("LANG=");
    start_ = environ;
    while (start_[count_])
        last_ = start_[count_++];
}

void CatalogEnvironment::forget()
{
    searchPath_.forget();
    language_.forget();
    start_ = nullptr;
    count_ = 0;
}

} // namespace olvex::ucv
