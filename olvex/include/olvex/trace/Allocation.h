/*
 * How the classes of the tracing front end are allocated. Their objects cross the border between
 * the library and its host, which may have an allocator of its own: whoever says `new` or `delete`,
 * in the library or in the host, for one of these classes or one derived from it, gets the
 * toolkit's memory functions. Without memory `new` gives null; nothing throws.
 */
#ifndef OLVEX_TRACE_ALLOCATION_H
#define OLVEX_TRACE_ALLOCATION_H

#include <olvex/Memory.h>

#include <cstddef>
#include <new>

/* Stands in the public section of a class that has no base class with it. */
#define OVX_TRACE_ALLOCATION                                                                       \
    static void *operator new(std::size_t size) noexcept                                           \
    {                                                                                              \
        return BaxMemoryMalloc(size);                                                              \
    }                                                                                              \
    static void *operator new(std::size_t size, const std::nothrow_t &) noexcept                   \
    {                                                                                              \
        return BaxMemoryMalloc(size);                                                              \
    }                                                                                              \
    static void *operator new(std::size_t, void *place) noexcept                                   \
    {                                                                                              \
        return place;                                                                              \
    }                                                                                              \
    static void operator delete(void *block) noexcept                                              \
    {                                                                                              \
        BaxMemoryFree(block);                                                                      \
    }                                                                                              \
    static void operator delete(void *block, const std::nothrow_t &) noexcept                      \
    {                                                                                              \
        BaxMemoryFree(block);                                                                      \
    }                                                                                              \
    static void operator delete(void *, void *) noexcept {}

#endif
