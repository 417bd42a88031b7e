// One catalog file: its opening, the loading of its sets, the look-up of a message. What the file
// says is not trusted: sizes are checked against the file's, chains are bounded, and memory is a
// small multiple of the file's size. No locks: see <olvex/Catalog.h>.
#pragma once

#include <olvex/Catalog.h>

#include <cstdint>
#include <sys/types.h>

namespace olvex::ucv {

struct CatalogMessage {
    std::uint32_t id;
    std::uint32_t offset;
    std::uint32_t invalid;
    std::uint32_t back; // how many messages before it the first with the same text stands
    const char *utf8;   // null when the offset lies outside the block of texts
    char *local;        // in the default code set; null when there was no room for it
    char *other;        // in another code set, for all that have this text; null until asked for
};

struct CatalogSet {
    MCSetTDisk record;
    CatalogMessage *messages; // one block with the texts and their conversions; null until loaded
    std::uint64_t othersSize; // bytes of the texts in other code sets
};

struct FoundMessage {
    CatalogSet *set;
    CatalogMessage *message; // null when there is none
};

// Opens a catalog file, close-on-exec; null when it is none, or memory runs out.
ucv_cat_t *openCatalogFile(const char *path, int flags);
void closeCatalogFile(ucv_cat_t *catalog);

// The message, its set loaded if need be.
FoundMessage findMessage(ucv_cat_t *catalog, int set, int message);

} // namespace olvex::ucv

struct ucv_cat_t {
    int flags; // as given to ucv_catopen
    int file;
    dev_t device; // with the inode: what the file must be to be read and closed
    ino_t inode;
    std::uint64_t size;
    std::uint32_t setCount;
    olvex::ucv::CatalogSet *sets;
};
