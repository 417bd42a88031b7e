/*
 * Internationalisation services: code-set handles, locales, and conversion between a code set,
 * UTF-8 and UCS-2 (16-bit units in the machine's byte order).
 *
 * None of these functions takes a lock. The default code set and the search paths belong to the
 * process: set them up before other threads convert text. A handle is used by one thread at a time;
 * ucv_dup_handle() gives another thread its own. A NULL handle means the default code set.
 */
#ifndef OLVEX_UCV_H
#define OLVEX_UCV_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** The services' version, a string in 16 bytes. */
extern OVX_API const char ucv_version[16];
/** 1 once the services are initialised, else 0. */
extern OVX_API int ucv_initialized;

/**
 * Initialises the services, once: the default code set from the environment variable UCV_CODESET
 * (none means that of the platform's locale, which this sets from the environment), then the code
 * set of the platform's locale. What cannot be had stays "OS", bytes as code points. Returns 0.
 */
OVX_API int ucv_init(void);
/** Ends the services: frees both process-wide handles, which become "OS". Returns 0. */
OVX_API int ucv_uninit(void);

/** The name of the table of the platform locale's code set, cut to `size` bytes. Returns 0. */
OVX_API int ucv_os_cs_name(char *buffer, size_t size);
/** Sets the search path for message catalogs (NLSPATH); copied. Returns 0, -1 on failure. */
OVX_API int ucv_set_nlspath(const char *path);
/** Puts a path in front of NLSPATH; copied. Returns 0, -1 on failure. */
OVX_API int ucv_prepend_nlspath(const char *path);
/** The search path for message catalogs, borrowed; "" for none. */
OVX_API const char *ucv_get_nlspath(void);
/** Sets the directory of code-set tables (UCVDIR); copied. Returns 0, -1 on failure. */
OVX_API int ucv_set_dir(const char *directory);
/** The directory of code-set tables, borrowed; "" for none. */
OVX_API const char *ucv_get_dir(void);

/**
 * A handle for the code set called `name` ("UTF-8", "ISO8859-1", "OS" for that of the platform's
 * locale, or the path of a table file). Yours to free with ucv_cs_free; NULL when there is no
 * table.
 */
OVX_API uc_ch_t *ucv_cs_new(const char *name);
/** Frees a handle of ucv_cs_new or ucv_dup_handle; the built-in ones stay. Returns 0. */
OVX_API int ucv_cs_free(uc_ch_t *handle);
/** A handle with states of its own over the same table; yours. */
OVX_API uc_ch_t *ucv_dup_handle(const uc_ch_t *handle);
/** The handle's table, borrowed, and its size in bytes; NULL and 0 for a handle without one. */
OVX_API const void *ucv_cs_table(const uc_ch_t *handle, uint32_t *size);
/** Makes the handle the default, which ucv_uninit() then frees; NULL means "OS". Returns 0. */
OVX_API int ucv_set_def_cs(uc_ch_t *handle);
/** The process's default handle, borrowed. */
OVX_API uc_ch_t *ucv_get_def_cs(void);
/** The handle's name, borrowed. */
OVX_API const char *ucv_get_cs_name(const uc_ch_t *handle);

/** The environment's language (LANG, or "C"), cut to `size` bytes. Returns 0. */
OVX_API int ucv_os_lang_name(char *buffer, size_t size);
/** The canonical form of a locale name ("de-de.UTF-8" is "de_DE"), cut to `size`. Returns 0. */
OVX_API int ucv_canonical_loc(const char *name, char *buffer, size_t size);
/** The canonical language of a locale name ("fr_CA" is "fr_FR"), cut to `size`. Returns 0. */
OVX_API int ucv_canonical_lang(const char *name, char *buffer, size_t size);
/**
 * Sets the locale of a category, or a related one the platform has, or "C". The name that was set,
 * borrowed; for a NULL locale the current one.
 */
OVX_API const char *ucv_setlocale(int category, const char *locale);
/** The canonical form of a locale name in a new string; yours to free with ucv_loc_free. */
OVX_API char *ucv_loc_new(const char *name);
/** Frees a string of ucv_loc_new. */
OVX_API void ucv_loc_free(char *locale);

/*
 * Restartable conversion. Both pointers move behind what was consumed and written, both counts go
 * down by it (UCS-2 counts are units, all others bytes). The result is 0 when all input was
 * consumed, 1 when the output is full, 2 when the input ends inside a character; the input pointer
 * then stands at the first character not converted. A call whose input pointer is NULL resets the
 * shift state; in the from-direction it first writes what ends a shift. What cannot be mapped
 * becomes "?" and is counted.
 */

/** Code set to UTF-8. */
OVX_API int ucv_to_utf8_r(uc_ch_t *handle, const char **in, int *inLeft, char **out, int *outLeft);
/** UTF-8 to code set. */
OVX_API int ucv_from_utf8_r(uc_ch_t *handle, const char **in, int *inLeft, char **out,
                            int *outLeft);
/** Code set to UCS-2. */
OVX_API int ucv_to_ucs2_r(uc_ch_t *handle, const char **in, int *inLeft, char16_t **out,
                          int *outLeft);
/** UCS-2 to code set. */
OVX_API int ucv_from_ucs2_r(uc_ch_t *handle, const char16_t **in, int *inLeft, char **out,
                            int *outLeft);

/*
 * Whole strings. A negative length means that the source is NUL-terminated; the target is then
 * terminated too. The result is how much of the target was filled, that terminator included; what
 * does not fit is cut at a character.
 */

/** Code set to UTF-8. */
OVX_API int ucv_to_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size);
/** UTF-8 to code set. */
OVX_API int ucv_from_utf8(uc_ch_t *handle, const char *source, int length, char *target, int size);
/** Code set to UCS-2; `size` and the result count units. */
OVX_API int ucv_to_ucs2(uc_ch_t *handle, const char *source, int length, char16_t *target,
                        int size);
/** UCS-2 to code set; `length` counts units. */
OVX_API int ucv_from_ucs2(uc_ch_t *handle, const char16_t *source, int length, char *target,
                          int size);

/** UTF-8 to code set in a new block, yours to free with ucv_free; its length in `lengthOut`. */
OVX_API char *ucv_fromu_alloc(uc_ch_t *handle, const char *source, int length, int *lengthOut);
/** Code set to UTF-8 in a new block, yours to free with ucv_free; its length in `lengthOut`. */
OVX_API char *ucv_tou_alloc(uc_ch_t *handle, const char *source, int length, int *lengthOut);
/** Frees a block of the services. */
OVX_API void ucv_free(void *block);

OVX_END_DECLS

#endif
