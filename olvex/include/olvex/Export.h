/* What every public header needs of the compiler: linkage, visibility, checks. */
#ifndef OLVEX_EXPORT_H
#define OLVEX_EXPORT_H

#ifdef __cplusplus
#define OVX_BEGIN_DECLS extern "C" {
#define OVX_END_DECLS }
#else
#define OVX_BEGIN_DECLS
#define OVX_END_DECLS
#endif

/* Marks a declaration as part of the library's public interface. */
#if defined(__GNUC__)
#define OVX_API __attribute__((visibility("default")))
/* Lets the compiler check the arguments of a printf-like function. */
#define OVX_PRINTF_LIKE(formatIndex, firstArgument)                                                \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define OVX_API
#define OVX_PRINTF_LIKE(formatIndex, firstArgument)
#endif

/* Marks a function that does so little that the jump over the linkage table would be felt. */
#if defined(__has_attribute)
#if __has_attribute(noplt)
#define OVX_DIRECT __attribute__((noplt))
#endif
#endif
#ifndef OVX_DIRECT
#define OVX_DIRECT
#endif

#endif
