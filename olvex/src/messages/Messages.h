// The toolkit's own messages by name, and the one way to report them. Reports go to the logger
// "olvex.errorLogger"; the caller holds the API mutex.
#pragma once

#include <olvex/Message.h>
#include <olvex/class.h>

#include <tuple>

namespace olvex {

enum class Message : int {
#define OVX_MESSAGE(key, name, text) name = key,
#define OVX_UNUSED(key, text)
#include "messages/ovxmsg.def"
#undef OVX_MESSAGE
#undef OVX_UNUSED
};

inline constexpr int kMessageSet = 1;

constexpr int keyOf(Message message)
{
    return static_cast<int>(message);
}
inline const char *textOf(Message message)
{
    return ovxmsg[keyOf(message)];
}

constexpr int markerOf(const char *)
{
    return OVX_PARM_STRING;
}
constexpr int markerOf(int)
{
    return OVX_PARM_INT;
}
constexpr int markerOf(long)
{
    return OVX_PARM_LONG;
}
constexpr int markerOf(double)
{
    return OVX_PARM_DOUBLE;
}

// Logs `message` at `level` with its parameters, each behind its type marker.
template <class... Parameters>
void report(int level, Message message, Parameters... parameters)
{
    std::apply(
        [&](auto... list) { ovxIntlLogVA(level, keyOf(message), textOf(message), list..., 0); },
        std::tuple_cat(std::make_tuple(markerOf(parameters), parameters)...));
}

// Prints a message of the table, with one string parameter or none, and a line end to standard
// error: for what goes wrong before there is an error logger.
void printToStderr(Message message, const char *parameter);

} // namespace olvex
