/*
 * Message catalogs: files of translated texts, found by name and locale along NLSPATH and kept open
 * for the life of the process. No function here takes a lock; opens and closes are serialised by
 * the caller, and so is the use of a catalog whose sets are not all loaded.
 *
 * A catalog file is a header, a chain of set records, and for each set its message records and a
 * block of NUL-terminated UTF-8 texts. All numbers are big-endian, all offsets but a message's are
 * from the start of the file. Sets and messages stand in ascending order. `olvex catalog` makes
 * such files.
 */
#ifndef OLVEX_CATALOG_H
#define OLVEX_CATALOG_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** An open message catalog. */
typedef struct ucv_cat_t ucv_cat_t;

/** The header of a catalog file, 28 bytes at its start. */
typedef struct MCHeaderT {
    char magic[8];     /**< "*nazgul*", without a terminator */
    uint32_t majorVer; /**< 1 */
    uint32_t minorVer; /**< not checked */
    uint32_t flags;    /**< not checked */
    uint32_t numSets;  /**< how many valid sets there are; at least one */
    uint32_t firstSet; /**< offset of the first set record */
} MCHeaderT;

/** The record of a set, 28 bytes. */
typedef struct MCSetTDisk {
    uint32_t setId;      /**< 1 or greater */
    uint32_t nextSet;    /**< offset of the next set record */
    uint32_t msgsOffset; /**< offset of the message records */
    uint32_t textOffset; /**< offset of the block of texts */
    uint32_t textLength; /**< its length in bytes */
    uint32_t numMsgs;    /**< how many message records there are */
    uint32_t invalid;    /**< 0 for a set that counts; others are skipped */
} MCSetTDisk;

/** The record of a message, 12 bytes. */
typedef struct MCMsgTDisk {
    uint32_t msgId;     /**< 1 or greater */
    uint32_t msgOffset; /**< of the text within its set's block */
    uint32_t invalid;   /**< kept, without effect */
} MCMsgTDisk;

/** Flags of ucv_catopen. */
enum {
    UCV_CAT_MESSAGES = 1,    /* the locale from LC_ALL and LC_MESSAGES before LANG */
    UCV_CAT_NO_LETTERS = 2,  /* do not try the two letters of the language */
    UCV_CAT_NO_LANGUAGE = 4, /* do not try the canonical language */
    UCV_CAT_NO_C = 8         /* do not try "C" in the end */
};

/**
 * Opens the catalog `name` for a locale; NULL means the environment's. Each template of NLSPATH
 * ("%N.cat" when it is not set; "%N" the name, "%L" the locale, "%l", "%t", "%c" its language,
 * territory and code set) is tried for the canonical locale ("de_DE"), its two letters ("de"), its
 * canonical language and "C"; then the directory of installed catalogs. A name that holds a
 * separator is the path of a file. NULL when nothing is found, or the file is no valid catalog.
 */
OVX_API ucv_cat_t *ucv_catopen(const char *name, int flags, const char *locale);
/**
 * The text of a message, or `defaultText` when there is none. For a NULL code set it is in what was
 * the default code set when the message's set was first used, for the UTF-8 handle as stored,
 * otherwise in that code set. Borrowed until ucv_catclose_fully; a text in another code set until
 * the next ucv_catgets of a message with the same text in the catalog.
 */
OVX_API const char *ucv_catgets(ucv_cat_t *catalog, int set, int message, const char *defaultText,
                                uc_ch_t *codeSet);
/** Gives the catalog back; it stays cached. 0, or -1 for what is no open catalog. */
OVX_API int ucv_catclose(ucv_cat_t *catalog);
/**
 * Forgets all cached catalogs, and closes and frees this one. Others that are in use stay valid
 * until each is fully closed too. 0, or -1 for NULL.
 */
OVX_API int ucv_catclose_fully(ucv_cat_t *catalog);

/** Converts the numbers of a header from host to network order, in place. */
OVX_API void hton_MCHeaderT(MCHeaderT *header);
/** Converts the numbers of a header from network to host order, in place. */
OVX_API void ntoh_MCHeaderT(MCHeaderT *header);
/** Converts the numbers of a set record from host to network order, in place. */
OVX_API void hton_MCSetTDisk(MCSetTDisk *set);
/** Converts the numbers of a set record from network to host order, in place. */
OVX_API void ntoh_MCSetTDisk(MCSetTDisk *set);
/** Converts the numbers of a message record from host to network order, in place. */
OVX_API void hton_MCMsgTDisk(MCMsgTDisk *message);
/** Converts the numbers of a message record from network to host order, in place. */
OVX_API void ntoh_MCMsgTDisk(MCMsgTDisk *message);

OVX_END_DECLS

#endif
