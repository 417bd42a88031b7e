// The table of the toolkit's own messages, made from its one list.
#include "messages/Messages.h"

#include <iterator>

#include <cstdio>

#include "util/Memory.h"

const char *const ovxmsg[167] = {
#define OVX_MESSAGE(key, name, text) text,
#define OVX_UNUSED(key, text) text,
#include "messages/ovxmsg.def"
#undef OVX_MESSAGE
#undef OVX_UNUSED
};

namespace olvex {

namespace {

constexpr int kKeys[] = {
#define OVX_MESSAGE(key, name, text) key,
#define OVX_UNUSED(key, text) key,
#include "messages/ovxmsg.def"
#undef OVX_MESSAGE
#undef OVX_UNUSED
};

constexpr bool everyKeyIsItsIndex()
{
    for (int index = 0; index < static_cast<int>(std::size(kKeys)); ++index)
        if (kKeys[index] != index) return false;
    return std::size(kKeys) == std::size(ovxmsg);
}
static_assert(everyKeyIsItsIndex());

} // namespace

void printToStderr(Message message, const char *parameter)
{
    OvxI18Msg *msg =
        ovxIntlAllocI18Msg(textOf(Message::kCatalog), kMessageSet, keyOf(message), textOf(message));
    if (parameter) ovxIntlAddI18MsgParmString(msg, parameter);
    const Text text(ovxIntlBindI18Msg(msg));
    ovxI18PrintUTF8AsLocal(stderr, text.get());
    std::fputc('\n', stderr);
    ovxIntlFreeI18Msg(msg);
}

} // namespace olvex
