// The code sets that the command can make tables of, from codesets/codesets.def.
#pragma once

#include <span>
#include <string_view>

namespace codeset {

// Converter families, as a table's header says them.
enum Family : unsigned short {
    kAsciiSingleByte = 1,
    kAsciiDoubleByte = 2,
    kAsciiMultiByte = 3,
    kEbcdicDoubleByte = 4,
    kUtf8 = 6,
    kEbcdicSingleByte = 8,
    kBytes = 9,
    kGb18030 = 10,
};

struct CodeSet {
    std::string_view name; // of the table file
    Family family;
    const char *source;       // iconv's name
    std::string_view aliases; // other names, separated by blanks
};

std::span<const CodeSet> knownCodeSets();

// By any of its names, however written ("iso8859-1"); null when there is none.
const CodeSet *findCodeSet(std::string_view name);

// Calls `act` with each of the other names.
template <class Action>
void forEachAlias(const CodeSet &codeSet, Action act)
{
    std::string_view rest = codeSet.aliases;
    while (!rest.empty()) {
        const auto end = rest.find(' ');
        act(rest.substr(0, end));
        rest = end == rest.npos ? std::string_view() : rest.substr(end + 1);
    }
}

} // namespace codeset
