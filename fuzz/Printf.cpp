// The printing of a format over a list of typed parameters. The first line of an input has a letter
// for each parameter, the second is the text of strings and the source of numbers; what follows is
// the format.
#include <olvex/olvex.h>

#include <cctype>
#include <cstring>

#include "Input.h"

namespace {

// Bytes of the text as a number, whatever they are.
template <class Number>
Number numberFrom(const char *text)
{
    Number number = {};
    std::memcpy(&number, text, std::min(sizeof number, std::strlen(text)));
    return number;
}

void addParameter(OvxI18Msg *msg, char type, const char *text)
{
    switch (type) {
    case 'b': return OvxAddI18MsgParmBool(msg, *text != '\0');
    case 'c': return OvxAddI18MsgParmChar(msg, *text);
    case 'd': return OvxAddI18MsgParmInt(msg, numberFrom<int>(text));
    case 'l': return OvxAddI18MsgParmLong(msg, numberFrom<long>(text));
    case 'f': return OvxAddI18MsgParmFloat(msg, numberFrom<float>(text));
    case 'g': return OvxAddI18MsgParmDouble(msg, numberFrom<double>(text));
    case 'n': return OvxAddI18MsgParmString(msg, nullptr);
    default: return OvxAddI18MsgParmString(msg, text);
    }
}

// Widths that would fill the memory, as they may.
bool hasHugeNumber(std::string_view format)
{
    int digits = 0;
    for (const char c : format)
        if ((digits = std::isdigit(static_cast<unsigned char>(c)) ? digits + 1 : 0) > 4)
            return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    const fuzz::Text types = input.takeLine(), text = input.takeLine();
    const bool isWidth = std::strchr(types.get(), 'd') || std::strchr(types.get(), 'l');
    const bool hasStar = input.rest().find('*') != std::string_view::npos;
    if (hasHugeNumber(input.rest()) || (isWidth && hasStar)) return -1;
    const fuzz::Text format(input.rest());
    OvxI18Msg *msg = OvxAllocI18Msg(nullptr, 0, 0, format.get());
    for (const char *type = types.get(); *type; ++type)
        addParameter(msg, *type, text.get());
    BaxMemoryFree(OvxBindI18Msg(msg));
    OvxFreeI18Msg(msg);
    return 0;
}
