// The sides of a conversion that need no table: UTF-8, UCS-2, and bytes as code points.
#pragma once

#include "ucv/Characters.h"

namespace olvex::ucv {

// UTF-8 of one to four bytes; continuation bytes are not checked, overlong forms are taken.
class Utf8 {
  public:
    using Place = char;
    static constexpr std::size_t kLongest = 4;
    static constexpr bool kHasShifts = false;

    explicit Utf8(const uc_ch_t &) {}
    static constexpr bool copiesAscii() { return true; }

    static Decoded decode(const char *in, std::size_t size)
    {
        const CodePoint first = byteOf(in[0]);
        if (first < 0x80) return {1, first};
        if (first < 0xC0 || first > 0xF7) return {1, kUnmapped};
        if (first < 0xE0) return sequence<2>(in, size, 0x1F);
        if (first < 0xF0) return sequence<3>(in, size, 0x0F);
        return sequence<4>(in, size, 0x07);
    }

    static int encode(CodePoint value, char *out, std::size_t room)
    {
        if (value < 0x80) return put(out, room, value);
        if (value < 0x800) return put(out, room, 0xC0 | value >> 6, follow(value));
        if (value < kFirstSupplementary)
            return put(out, room, 0xE0 | value >> 12, follow(value >> 6), follow(value));
        return put(out, room, 0xF0 | value >> 18, follow(value >> 12), follow(value >> 6),
                   follow(value));
    }

    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }

  protected:
    template <std::size_t Length>
    static Decoded sequence(const char *in, std::size_t size, CodePoint leadMask)
    {
        if (size < Length) return kCut;
        CodePoint value = byteOf(in[0]) & leadMask;
        for (std::size_t i = 1; i < Length; ++i)
            value = value << 6 | (byteOf(in[i]) & 0x3F);
        return {Length, value};
    }

  private:
    static CodePoint follow(CodePoint bits) { return 0x80 | (bits & 0x3F); }
};

// UTF-8 as the code sets of the Basic Multilingual Plane read it: at most three bytes.
class ShortUtf8 : public Utf8 {
  public:
    static constexpr std::size_t kLongest = 3;
    using Utf8::Utf8;

    static Decoded decode(const char *in, std::size_t size)
    {
        const CodePoint first = byteOf(in[0]);
        if (first < 0x80) return {1, first};
        if (first < 0xC0) return {1, kUnmapped};
        return first < 0xE0 ? sequence<2>(in, size, 0x1F) : sequence<3>(in, size, 0x0F);
    }
};

// UCS-2, a character in each unit.
class Ucs2 {
  public:
    using Place = char16_t;
    static constexpr std::size_t kLongest = 1;
    static constexpr bool kHasShifts = false;

    explicit Ucs2(const uc_ch_t &) {}
    static constexpr bool copiesAscii() { return true; }

    static Decoded decode(const char16_t *in, std::size_t) { return {1, in[0]}; }

    static int encode(CodePoint value, char16_t *out, std::size_t room)
    {
        if (room < 1) return kNoRoom;
        if (value >= kFirstSupplementary) return kNoCode;
        out[0] = static_cast<char16_t>(value);
        return 1;
    }

    static int substitute(char16_t *out, std::size_t room) { return encode('?', out, room); }
};

// UCS-2 with pairs of surrogates for what lies beyond the Basic Multilingual Plane.
class Surrogates : public Ucs2 {
  public:
    static constexpr std::size_t kLongest = 2;
    using Ucs2::Ucs2;

    // A high surrogate in front of anything but a low one takes both with it.
    static Decoded decode(const char16_t *in, std::size_t size)
    {
        const CodePoint first = in[0];
        if (isLow(first)) return {1, kUnmapped};
        if (!isHigh(first)) return {1, first};
        if (size < 2) return kCut;
        if (!isLow(in[1])) return {2, kUnmapped};
        return {2, kFirstSupplementary + ((first - kHigh) << 10) + (in[1] - kLow)};
    }

    static int encode(CodePoint value, char16_t *out, std::size_t room)
    {
        if (value < kFirstSupplementary || value > kLastCodePoint)
            return Ucs2::encode(value, out, room);
        if (room < 2) return kNoRoom;
        const CodePoint bits = value - kFirstSupplementary;
        out[0] = static_cast<char16_t>(kHigh + (bits >> 10));
        out[1] = static_cast<char16_t>(kLow + (bits & 0x3FF));
        return 2;
    }

  private:
    static constexpr CodePoint kHigh = 0xD800;
    static constexpr CodePoint kLow = 0xDC00;

    static bool isHigh(CodePoint unit) { return (unit & 0xFC00) == kHigh; }
    static bool isLow(CodePoint unit) { return (unit & 0xFC00) == kLow; }
};

// Bytes as the code points 0 to 255.
class PlainBytes {
  public:
    using Place = char;
    static constexpr std::size_t kLongest = 1;
    static constexpr bool kHasShifts = false;
    using Utf8Side = ShortUtf8;
    using Ucs2Side = Ucs2;

    explicit PlainBytes(const uc_ch_t &) {}
    static constexpr bool copiesAscii() { return true; }

    static Decoded decode(const char *in, std::size_t) { return {1, byteOf(in[0])}; }

    static int encode(CodePoint value, char *out, std::size_t room)
    {
        return value <= 0xFF ? put(out, room, value) : kNoCode;
    }

    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }
};

// UTF-8 as a code set.
class Utf8CodeSet : public Utf8 {
  public:
    using Utf8Side = Utf8;
    using Ucs2Side = Surrogates;
    using Utf8::Utf8;
};

} // namespace olvex::ucv
