#include "codeset/CodeSets.h"

#include <cctype>
#include <string>

namespace codeset {

namespace {

constexpr CodeSet kCodeSets[] = {
#define CODESET(name, family, source, aliases) {name, family, source, aliases},
#include <codesets.def>
#undef CODESET
};

// As the library makes the name of a table file.
std::string normalise(std::string_view name)
{
    std::string upper;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 && std::isalnum(byte)) upper += static_cast<char>(std::toupper(byte));
    }
    return upper;
}

bool hasName(const CodeSet &codeSet, std::string_view name)
{
    bool found = codeSet.name == name;
    forEachAlias(codeSet, [&](std::string_view alias) { found = found || alias == name; });
    return found;
}

} // namespace

std::span<const CodeSet> knownCodeSets()
{
    return kCodeSets;
}

const CodeSet *findCodeSet(std::string_view name)
{
    const std::string wanted = normalise(name);
    for (const CodeSet &codeSet : kCodeSets)
        if (hasName(codeSet, wanted)) return &codeSet;
    return nullptr;
}

} // namespace codeset
