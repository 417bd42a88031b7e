// Sums that stay within the range of their type.
#pragma once

#include <cstdint>

namespace olvex {

// The sum, or the greatest number where that would be greater. Neither addend is negative.
inline std::int64_t saturatedSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? INT64_MAX : sum;
}

} // namespace olvex
