// Results of the portability layer, built from error numbers in one place. No locks.
#pragma once

#include <olvex/File.h>

#include <cerrno>
#include <cstdint>

namespace olvex {

constexpr CxResult success()
{
    return {'-', 0};
}
constexpr CxResult failure(int code)
{
    return {'p', code};
}
constexpr CxResult badArgument()
{
    return failure(CX_EINVAL);
}

// The result of a call that returns a negative number and sets errno when it fails.
template <class Number>
CxResult resultOf(Number returned)
{
    return returned < 0 ? failure(errno) : success();
}

// The result of a call that returns an error number, 0 for none.
constexpr CxResult resultOfCode(int code)
{
    return code ? failure(code) : success();
}

constexpr bool ok(CxResult result)
{
    return result.kind == '-';
}

} // namespace olvex
