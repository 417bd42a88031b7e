// What the string buffer offers inside the library beyond its public functions.
#pragma once

#include <olvex/StringBuff.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

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

// Room for the longest 64-bit number in decimal, its sign, and a zero in front.
inline constexpr std::size_t kMostDigits = 21;

// The bytes of a code set in which numbers are written.
struct DigitSet {
    char zero;
    char minus;
};
inline constexpr DigitSet kAsciiDigits = {'0', '-'};

// Writes two digits so that they end before `end`. The factor divides by ten.
inline char *writeTwoDigits(char *end, std::uint32_t pair, char zero)
{
    const std::uint32_t tens = pair * 103 >> 10;
    *--end = static_cast<char>(zero + static_cast<int>(pair - 10 * tens));
    *--end = static_cast<char>(zero + static_cast<int>(tens));
    return end;
}

// Writes a number in decimal so that it ends before `end`; returns its first place.
inline char *writeDigits(char *end, std::uint64_t magnitude, bool negative,
                         DigitSet digits = kAsciiDigits)
{
    for (; magnitude >= 100; magnitude /= 100)
        end = writeTwoDigits(end, static_cast<std::uint32_t>(magnitude % 100), digits.zero);
    end = writeTwoDigits(end, static_cast<std::uint32_t>(magnitude), digits.zero);
    if (magnitude < 10) ++end; // no zero in front
    if (negative) *--end = digits.minus;
    return end;
}

inline std::uint64_t magnitudeOf(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - bits : bits;
}

// Appends piece after piece to a buffer. It keeps the buffer's end in a register, not in memory,
// until suspend() or its destruction; anything else that appends to the buffer meanwhile must be
// called between suspend() and resume().
class Appender {
  public:
    explicit Appender(CxStringBuff *buffer) : buffer_(buffer) { resume(); }
    ~Appender() { suspend(); }
    Appender(const Appender &) = delete;
    Appender &operator=(const Appender &) = delete;

    bool put(const char *bytes, std::size_t count)
    {
        if (!makeRoom(count)) return false;
        std::memcpy(at_, bytes, count);
        at_ += count;
        return true;
    }
    bool put(std::string_view text) { return put(text.data(), text.size()); }
    bool put(const char *text) { return text && put(text, std::strlen(text)); }

    bool putInteger(std::int64_t value)
    {
        char digits[kMostDigits];
        char *const end = digits + sizeof digits;
        const char *const first = writeDigits(end, magnitudeOf(value), value < 0);
        return put(first, static_cast<std::size_t>(end - first));
    }

    void suspend()
    {
        if (!at_) return;
        *at_ = '\0';
        buffer_->length = static_cast<std::uint32_t>(at_ - buffer_->str);
    }
    void resume()
    {
        at_ = buffer_->str ? buffer_->str + buffer_->length : nullptr;
        end_ = buffer_->str ? buffer_->str + buffer_->capacity : nullptr;
    }

  private:
    bool makeRoom(std::size_t count)
    {
        if (count < static_cast<std::size_t>(end_ - at_)) [[likely]]
            return true;
        suspend();
        const bool hasRoom = cxStringBuffHasCapacity(buffer_, count);
        resume();
        return hasRoom && at_; // which is there then; clang's analyzer does not see that
    }

    CxStringBuff *buffer_;
    char *at_;
    char *end_;
};

} // namespace olvex
