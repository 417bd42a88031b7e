/*
 * Message catalogs: files of translated texts, found by name and locale along NLSPATH and kept open
 * for the life of the process. No function here takes a lock; opens and closes are serialised by
 * the caller, as the toolkit does for its own.
 */
#ifndef OLVEX_CATALOG_H
#define OLVEX_CATALOG_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** An open message catalog. */
typedef struct ucv_cat_t ucv_cat_t;

/**
 * Opens the catalog `name` for a locale (NULL: the environment's; flag 1: of its messages). Flags
 * 2, 4 and 8 leave out the two-letter language, the canonical language and "C". NULL when there is
 * none.
 */
OVX_API ucv_cat_t *ucv_catopen(const char *name, int flags, const char *locale);
/** The text of a message in a code set, borrowed, or `defaultText` when there is none. */
OVX_API const char *ucv_catgets(ucv_cat_t *catalog, int set, int message, const char *defaultText,
                                uc_ch_t *codeSet);
/** Gives the catalog back; it stays cached. 0, or -1 for what is no open catalog. */
OVX_API int ucv_catclose(ucv_cat_t *catalog);

OVX_END_DECLS

#endif
