// See CatalogFile.h.
#include "catalog/CatalogFile.h"

#include "catalog/Bytes.h"

#include <olvex/Catalog.h>

#include <cstring>
#include <stdexcept>
#include <vector>

namespace tools::catalog {

namespace {

using std::string_view;

constexpr string_view kMagic = "*nazgul*";

template <class Record>
void append(std::string &bytes, Record record, void (*toNetworkOrder)(Record *))
{
    toNetworkOrder(&record);
    bytes.append(reinterpret_cast<const char *>(&record), sizeof record);
}

// Sizes are checked against the limit of 32 bits once, at the end.
std::uint32_t narrow(std::size_t size)
{
    return static_cast<std::uint32_t>(size);
}

// A set's records of messages and its texts.
struct SetParts {
    std::uint32_t id;
    std::string records;
    std::string texts;
};

std::vector<SetParts> splitIntoSets(const Messages &messages)
{
    std::vector<SetParts> sets;
    for (const auto &[key, message] : messages) {
        if (sets.empty() || sets.back().id != key.first) sets.push_back({key.first, {}, {}});
        SetParts &set = sets.back();
        append<MCMsgTDisk>(set.records, {key.second, narrow(set.texts.size()), 0}, hton_MCMsgTDisk);
        set.texts.append(message.text.c_str(), message.text.size() + 1);
    }
    return sets;
}

void appendSet(std::string &bytes, const SetParts &set)
{
    const std::size_t records = bytes.size() + sizeof(MCSetTDisk);
    const std::size_t texts = records + set.records.size();
    const std::size_t end = texts + set.texts.size();
    append<MCSetTDisk>(bytes,
                       {set.id, narrow(end), narrow(records), narrow(texts),
                        narrow(set.texts.size()), narrow(set.records.size() / sizeof(MCMsgTDisk)),
                        0},
                       hton_MCSetTDisk);
    bytes += set.records + set.texts;
}

// Reading

[[noreturn]] void refuse(const char *why)
{
    throw std::runtime_error(std::string("this is no valid catalog: ") + why);
}

string_view partOf(string_view bytes, std::uint64_t offset, std::uint64_t size, const char *what)
{
    if (offset > bytes.size() || size > bytes.size() - offset) refuse(what);
    return bytes.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

template <class Record>
Record recordAt(string_view bytes, std::uint64_t offset, void (*toHostOrder)(Record *),
                const char *what)
{
    Record record;
    std::memcpy(&record, partOf(bytes, offset, sizeof record, what).data(), sizeof record);
    toHostOrder(&record);
    return record;
}

class Decoder {
  public:
    explicit Decoder(string_view bytes) : bytes_(bytes), textLeft_(8 * bytes.size()) {}

    Messages read()
    {
        const auto header = recordAt(bytes_, 0, ntoh_MCHeaderT, "its header is cut");
        if (string_view(header.magic, sizeof header.magic) != kMagic) refuse("it lacks the magic");
        if (header.majorVer != 1) refuse("its version is not 1");
        if (header.numSets == 0) refuse("it has no sets");
        readSets(header);
        return std::move(messages_);
    }

  private:
    void readSets(const MCHeaderT &header)
    {
        std::uint64_t offset = header.firstSet;
        std::size_t steps = bytes_.size() / sizeof(MCSetTDisk);
        for (std::uint32_t found = 0; found < header.numSets;) {
            if (steps-- == 0) refuse("its sets go in a circle");
            const auto set = recordAt(bytes_, offset, ntoh_MCSetTDisk, "a set lies outside");
            if (set.invalid == 0) {
                readMessages(set);
                ++found;
            }
            offset = set.nextSet;
        }
    }

    void readMessages(const MCSetTDisk &set)
    {
        const string_view records =
            partOf(bytes_, set.msgsOffset, std::uint64_t{set.numMsgs} * sizeof(MCMsgTDisk),
                   "the messages of a set lie outside");
        const string_view texts =
            partOf(bytes_, set.textOffset, set.textLength, "the texts of a set lie outside");
        for (std::size_t at = 0; at < records.size(); at += sizeof(MCMsgTDisk)) {
            const auto record = recordAt(records, at, ntoh_MCMsgTDisk, "");
            if (record.msgOffset >= texts.size()) refuse("a text lies outside its set");
            addText({set.setId, record.msgId}, texts.substr(record.msgOffset));
        }
    }

    // Small files can hold many messages that share a long text: there is a limit to what they
    // give.
    void addText(Key key, string_view text)
    {
        text = text.substr(0, text.find('\0'));
        if (text.size() > textLeft_) refuse("its texts overlap");
        textLeft_ -= text.size();
        for (string_view rest = text; !rest.empty(); rest.remove_prefix(utf8Length(rest)))
            if (utf8Length(rest) == 0) refuse("a text is not UTF-8");
        messages_.insert({key, {std::string(text), {}}});
    }

    string_view bytes_;
    std::size_t textLeft_;
    Messages messages_;
};

} // namespace

std::string makeCatalog(const Messages &messages)
{
    if (messages.empty()) throw std::runtime_error("there are no messages");
    const std::vector<SetParts> sets = splitIntoSets(messages);
    MCHeaderT header = {{}, 1, 0, 0, narrow(sets.size()), sizeof(MCHeaderT)};
    std::memcpy(header.magic, kMagic.data(), sizeof header.magic);
    std::string bytes;
    append(bytes, header, hton_MCHeaderT);
    for (const SetParts &set : sets)
        appendSet(bytes, set);
    if (bytes.size() > UINT32_MAX) throw std::runtime_error("the messages are too large");
    return bytes;
}

Messages readCatalog(std::string_view bytes)
{
    return Decoder(bytes).read();
}

} // namespace tools::catalog
