// What the string buffer offers inside the library beyond its public functions.
#pragma once

#include <olvex/StringBuff.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

// Makes room for `extra` more bytes and the terminator; 0 when it cannot be had.
int cxStringBuffHasCapacity(CxStringBuff *buffer, std::size_t extra);

namespace olvex {

// Whether `count` more bytes and the terminator fit into what is allocated.
inline bool hasRoom(const CxStringBuff *buffer, std::size_t count)
{
    return count < buffer->capacity - std::size_t{buffer->length};
}

// Moves the end behind `count` bytes that were just written there.
inline void extend(CxStringBuff *buffer, std::size_t count)
{
    buffer->length += static_cast<std::uint32_t>(count);
    buffer->str[buffer->length] = '\0';
}

// Appends `count` bytes as they are.
inline bool appendBytes(CxStringBuff *buffer, const char *bytes, std::size_t count)
{
    if (!buffer) return false;
    if (!hasRoom(buffer, count) && !cxStringBuffHasCapacity(buffer, count)) return false;
    if (count) std::memcpy(buffer->str + buffer->length, bytes, count);
    extend(buffer, count);
    return true;
}

// Appends `count` times the same byte.
inline bool appendFill(CxStringBuff *buffer, char byte, std::size_t count)
{
    if (count == 0) return true;
    if (!hasRoom(buffer, count) && !cxStringBuffHasCapacity(buffer, count)) return false;
    std::memset(buffer->str + buffer->length, byte, count);
    extend(buffer, count);
    return true;
}

} // namespace olvex
