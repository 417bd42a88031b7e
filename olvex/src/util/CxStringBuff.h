// What the string buffer offers inside the library beyond its public functions.
#pragma once

#include <olvex/StringBuff.h>

#include <cstddef>
#include <cstdint>

// Makes room for `extra` more bytes and the terminator; 0 when it cannot be had.
int cxStringBuffHasCapacity(CxStringBuff *buffer, std::size_t extra);

namespace olvex {

// Appends `count` bytes as they are.
bool appendBytes(CxStringBuff *buffer, const char *bytes, std::size_t count);
// Appends `count` times the same byte.
bool appendFill(CxStringBuff *buffer, char byte, std::size_t count);

} // namespace olvex
