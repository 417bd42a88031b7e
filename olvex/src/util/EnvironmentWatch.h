// Whether the environment still says the same about one or two variables, at the cost of a few
// comparisons. No locks: getenv has none either.
#pragma once

#include <cstddef>
#include <string_view>

namespace olvex {

// The variables as they were when last asked for. Whatever setenv, putenv, unsetenv and clearenv
// do to them is noticed. A host that writes into the array `environ` itself may escape notice.
class EnvironmentWatch {
  public:
    // Names with their "=", in static memory; an empty one for none.
    constexpr explicit EnvironmentWatch(std::string_view first, std::string_view second = {})
        : names_{first, second}
    {}

    // False when one of them may have changed, or nothing can be told.
    bool isUnchanged() const;

    // Takes them anew.
    void take();

    // Frees the copies; everything may have changed then.
    void forget();

  private:
    // A variable's place in the environment, and a copy of what stood there: a string given to
    // putenv can be changed in place.
    struct Variable {
        char **place;
        const char *string;
        char *copy;

        bool isUnchanged() const;
        void take(std::string_view assignment);
        void forget();
    };

    char **start_ = nullptr;
    std::size_t count_ = 0;
    const char *last_ = nullptr;
    std::string_view names_[2];
    Variable variables_[2] = {};
};

} // namespace olvex
