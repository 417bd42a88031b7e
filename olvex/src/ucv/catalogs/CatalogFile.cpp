// See CatalogFile.h.
#include "ucv/catalogs/CatalogFile.h"

#include <olvex/Memory.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ucv/catalogs/CatalogTexts.h"
#include "util/Descriptors.h"

using namespace olvex::ucv;

namespace {

constexpr char kMagic[] = "*nazgul*";
constexpr std::uint32_t kMajorVersion = 1;
constexpr std::size_t kRecordsAtOnce = 64;

static_assert(sizeof(MCHeaderT) == 28 && sizeof(MCSetTDisk) == 28 && sizeof(MCMsgTDisk) == 12);

// Applies htonl, which is its own inverse, to each number.
template <class... Numbers>
void swapOrder(Numbers &...numbers)
{
    ((numbers = htonl(numbers)), ...);
}

bool readAt(int file, void *target, std::size_t size, std::uint64_t offset)
{
    auto *at = static_cast<char *>(target);
    while (size > 0) {
        const ssize_t count = pread(file, at, size, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += count;
        offset += static_cast<std::uint64_t>(count);
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

// Opening

// Only a regular file is read: opening anything else might block.
bool takeSize(ucv_cat_t &catalog)
{
    struct stat status = {};
    if (fstat(catalog.file, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    catalog.device = status.st_dev;
    catalog.inode = status.st_ino;
    catalog.size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

// A host that closes all descriptors may have put another file in this one's place.
bool isOurs(const ucv_cat_t &catalog)
{
    struct stat status = {};
    return fstat(catalog.file, &status) == 0 && status.st_dev == catalog.device &&
           status.st_ino == catalog.inode;
}

bool readHeader(const ucv_cat_t &catalog, MCHeaderT &header)
{
    if (!readAt(catalog.file, &header, sizeof header, 0)) return false;
    ntoh_MCHeaderT(&header);
    return std::memcmp(header.magic, kMagic, sizeof header.magic) == 0 &&
           header.majorVer == kMajorVersion && header.numSets > 0 &&
           header.numSets <= catalog.size / sizeof(MCSetTDisk);
}

// Follows the chain until all valid sets are there, for as many steps as the file can hold records.
bool readChain(ucv_cat_t &catalog, const MCHeaderT &header)
{
    std::uint32_t offset = header.firstSet;
    for (auto steps = catalog.size / sizeof(MCSetTDisk); steps > 0; --steps) {
        MCSetTDisk record;
        if (!readAt(catalog.file, &record, sizeof record, offset)) return false;
        ntoh_MCSetTDisk(&record);
        if (record.invalid == 0) catalog.sets[catalog.setCount++].record = record;
        if (catalog.setCount == header.numSets) return true;
        offset = record.nextSet;
    }
    return false;
}

bool readSets(ucv_cat_t &catalog)
{
    MCHeaderT header;
    if (!takeSize(catalog) || !readHeader(catalog, header)) return false;
    catalog.sets = static_cast<CatalogSet *>(BaxMemoryCalloc(header.numSets, sizeof(CatalogSet)));
    return catalog.sets && readChain(catalog, header);
}

// Loading a set

bool isWithin(const ucv_cat_t &catalog, std::uint64_t offset, std::uint64_t size)
{
    return offset <= catalog.size && size <= catalog.size - offset;
}

CatalogMessage *allocateSet(const ucv_cat_t &catalog, const MCSetTDisk &record)
{
    if (!isWithin(catalog, record.msgsOffset, std::uint64_t{record.numMsgs} * sizeof(MCMsgTDisk)) ||
        !isWithin(catalog, record.textOffset, record.textLength))
        return nullptr;
    const std::uint64_t size = std::uint64_t{record.numMsgs} * sizeof(CatalogMessage) +
                               record.textLength + 1 + conversionSize(record.textLength);
    return size <= SIZE_MAX
               ? static_cast<CatalogMessage *>(BaxMemoryMalloc(static_cast<std::size_t>(size)))
               : nullptr;
}

bool readMessages(const ucv_cat_t &catalog, const MCSetTDisk &set, const char *texts,
                  CatalogMessage *messages)
{
    MCMsgTDisk records[kRecordsAtOnce];
    std::uint64_t offset = set.msgsOffset;
    for (std::size_t done = 0; done < set.numMsgs;) {
        const std::size_t count = std::min<std::size_t>(kRecordsAtOnce, set.numMsgs - done);
        if (!readAt(catalog.file, records, count * sizeof *records, offset)) return false;
        for (std::size_t index = 0; index < count; ++index) {
            MCMsgTDisk &record = records[index];
            ntoh_MCMsgTDisk(&record);
            const char *text =
                record.msgOffset < set.textLength ? texts + record.msgOffset : nullptr;
            messages[done + index] = {record.msgId, record.msgOffset, record.invalid, 0,
                                      text,         nullptr,          nullptr};
        }
        done += count;
        offset += count * sizeof *records;
    }
    return true;
}

bool loadSet(const ucv_cat_t &catalog, CatalogSet &set)
{
    const MCSetTDisk &record = set.record;
    CatalogMessage *messages = isOurs(catalog) ? allocateSet(catalog, record) : nullptr;
    if (!messages) return false;
    char *texts = reinterpret_cast<char *>(messages + record.numMsgs);
    texts[record.textLength] = '\0';
    if (!readAt(catalog.file, texts, record.textLength, record.textOffset) ||
        !readMessages(catalog, record, texts, messages) ||
        !convertTexts(messages, record.numMsgs, record.textLength, texts + record.textLength + 1)) {
        BaxMemoryFree(messages);
        return false;
    }
    set.messages = messages;
    return true;
}

void freeCatalog(ucv_cat_t *catalog)
{
    for (std::uint32_t index = 0; index < catalog->setCount; ++index) {
        freeOtherTexts(catalog->sets[index]);
        BaxMemoryFree(catalog->sets[index].messages);
    }
    BaxMemoryFree(catalog->sets);
    BaxMemoryFree(catalog);
}

// Looking up

std::uint32_t idOf(const CatalogSet &set)
{
    return set.record.setId;
}
std::uint32_t idOf(const CatalogMessage &message)
{
    return message.id;
}

// Binary search that looks first where the entry is when numbers have no gaps.
template <class Entry>
Entry *search(Entry *entries, std::size_t count, std::uint32_t id, std::size_t first)
{
    std::size_t low = 0, high = count;
    std::size_t at = first < count ? first : count / 2;
    while (low < high) {
        if (idOf(entries[at]) == id) return entries + at;
        if (idOf(entries[at]) < id)
            low = at + 1;
        else
            high = at;
        at = low + (high - low) / 2;
    }
    return nullptr;
}

} // namespace

namespace olvex::ucv {

ucv_cat_t *openCatalogFile(const char *path, int flags)
{
    const int file = olvex::keepHigh(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file < 0) return nullptr;
    auto *catalog = static_cast<ucv_cat_t *>(BaxMemoryMalloc(sizeof(ucv_cat_t)));
    if (!catalog) {
        close(file);
        return nullptr;
    }
    *catalog = {flags, file, 0, 0, 0, 0, nullptr};
    if (readSets(*catalog)) return catalog;
    freeCatalog(catalog);
    close(file);
    return nullptr;
}

void closeCatalogFile(ucv_cat_t *catalog)
{
    if (isOurs(*catalog)) close(catalog->file);
    freeCatalog(catalog);
}

FoundMessage findMessage(ucv_cat_t *catalog, int set, int message)
{
    if (message < 1) return {};
    const auto setId = static_cast<std::uint32_t>(set);
    CatalogSet *found = search(catalog->sets, catalog->setCount, setId, setId);
    if (!found || (!found->messages && !loadSet(*catalog, *found))) return {};
    const auto messageId = static_cast<std::uint32_t>(message);
    return {found, search(found->messages, found->record.numMsgs, messageId, messageId - 1)};
}

} // namespace olvex::ucv

void hton_MCHeaderT(MCHeaderT *header)
{
    if (header)
        swapOrder(header->majorVer, header->minorVer, header->flags, header->numSets,
                  header->firstSet);
}

void ntoh_MCHeaderT(MCHeaderT *header)
{
    hton_MCHeaderT(header);
}

void hton_MCSetTDisk(MCSetTDisk *set)
{
    if (set)
        swapOrder(set->setId, set->nextSet, set->msgsOffset, set->textOffset, set->textLength,
                  set->numMsgs, set->invalid);
}

void ntoh_MCSetTDisk(MCSetTDisk *set)
{
    hton_MCSetTDisk(set);
}

void hton_MCMsgTDisk(MCMsgTDisk *message)
{
    if (message) swapOrder(message->msgId, message->msgOffset, message->invalid);
}

void ntoh_MCMsgTDisk(MCMsgTDisk *message)
{
    hton_MCMsgTDisk(message);
}
