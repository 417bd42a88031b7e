// One catalog file: opening it, loading its sets, looking a message up. No locks: see
// <olvex/Catalog.h>, which also declares the records.
//
// LAYOUT. All numbers have 32 bits, the most significant byte first.
//
//   header, 28 bytes at the beginning (MCHeaderT)
//      0   "*nazgul*"
//      8   major version, 1         12   minor version, without effect
//     16   flags, without effect    20   how many valid sets there are, at least 1
//     24   offset of the first set record
//
//   set record, 28 bytes anywhere (MCSetTDisk)
//      0   number of the set         4   offset of the next set record
//      8   offset of its messages   12   offset of its block of texts
//     16   length of that block     20   how many messages
//     24   0 for a valid set; others are skipped
//
//   message records of a set, 12 bytes each, one behind the other (MCMsgTDisk)
//      0   number of the message     4   offset of its text in the block
//      8   without effect
//
//   block of texts: UTF-8, each text with a 0 behind it. Messages may have the same text, or the
//   end of another one's.
//
// Offsets count from the beginning of the file, but those of texts. The chain of set records ends
// with the last valid one, whose next offset is not read. Sets by their place in the chain, and
// messages in their set, stand in ascending order of their numbers: they are found by halving.
//
// The file is not trusted: nothing is read beyond its size, a chain has at most as many records as
// would fit into the file, a text whose offset lies outside its block is none, the last text ends
// with the block, and memory is a small multiple of the file's size. A descriptor that a host has
// replaced by another file's is neither read nor closed: device and inode must be the same.
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
