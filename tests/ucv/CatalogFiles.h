// Folders of message catalogs for tests, and the bytes of a catalog file.
#pragma once

#include <map>

#include "catalog/CatalogFile.h"
#include "core/LogDirectory.h"

namespace olvex::test {

template <class Record>
std::string bytesOf(Record record, void (*toNetworkOrder)(Record *))
{
    toNetworkOrder(&record);
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

inline std::string headerBytes(std::uint32_t sets, std::uint32_t first = sizeof(MCHeaderT),
                               std::uint32_t version = 1)
{
    const MCHeaderT header = {{'*', 'n', 'a', 'z', 'g', 'u', 'l', '*'}, version, 0, 0, sets, first};
    return bytesOf(header, hton_MCHeaderT);
}

// A catalog of the texts of each set, by their numbers.
using Texts = std::map<std::uint32_t, std::string>;

inline std::string catalogBytes(const std::map<std::uint32_t, Texts> &sets)
{
    tools::catalog::Messages messages;
    for (const auto &[set, texts] : sets)
        for (const auto &[number, text] : texts)
            messages[{set, number}].text = text;
    return tools::catalog::makeCatalog(messages);
}

// A folder that goes away with its scope, and NLSPATH, which is unset then.
class CatalogFolder : public LogDirectory {
  public:
    ~CatalogFolder() { unsetenv("NLSPATH"); }

    // A catalog with one message, 1 of set 1.
    std::string putText(const std::string &name, const std::string &text) const
    {
        return put(name, catalogBytes({{1, {{1, text}}}}));
    }

    void use(const std::string &templates = "%L/%N.cat") const
    {
        setenv("NLSPATH", (*this / templates).c_str(), 1);
    }
};

} // namespace olvex::test
