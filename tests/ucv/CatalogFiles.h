// Folders of message catalogs for tests, and the bytes of a catalog file.
#pragma once

#include <map>

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

using Texts = std::map<std::uint32_t, std::string>;

struct SetOfTexts {
    std::uint32_t id;
    Texts texts;
    std::uint32_t invalid = 0;
};

// A set as it stands in a file at `start`: record, message records, texts.
inline std::string setBytes(const SetOfTexts &set, std::uint32_t start)
{
    std::string messages, texts;
    for (const auto &[id, text] : set.texts) {
        messages +=
            bytesOf<MCMsgTDisk>({id, static_cast<std::uint32_t>(texts.size()), 0}, hton_MCMsgTDisk);
        texts.append(text.c_str(), text.size() + 1);
    }
    MCSetTDisk record = {set.id,
                         0,
                         start + 28,
                         0,
                         static_cast<std::uint32_t>(texts.size()),
                         static_cast<std::uint32_t>(set.texts.size()),
                         set.invalid};
    record.textOffset = record.msgsOffset + static_cast<std::uint32_t>(messages.size());
    record.nextSet = record.textOffset + record.textLength;
    return bytesOf(record, hton_MCSetTDisk) + messages + texts;
}

inline std::string catalogBytes(const std::vector<SetOfTexts> &sets)
{
    std::uint32_t valid = 0;
    for (const SetOfTexts &set : sets)
        valid += set.invalid == 0;
    std::string bytes = headerBytes(valid);
    for (const SetOfTexts &set : sets)
        bytes += setBytes(set, static_cast<std::uint32_t>(bytes.size()));
    return bytes;
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
