// The reader of properties files.
#include <olvex/PropList.h>

#include "Input.h"
#include "toolkit/OvxReadProps.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const fuzz::File file(fuzz::Input(data, size).rest());
    CxPropList list = {};
    ovxDoReadProps(file.path(), &list);
    CxPropListIter at = CxPropListIterator(&list);
    for (; CxPropListIterPeekKey(&at); CxPropListIterNext(&at))
        if (!CxPropListHasKey(&list, CxPropListIterPeekKey(&at))) __builtin_trap();
    CxPropListDiscard(&list);
    return 0;
}
