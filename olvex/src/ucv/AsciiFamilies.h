// The table-driven families whose bytes below 0x80 are ASCII: single-byte, double-byte, multibyte.
// From the code set ASCII is always itself; into it, it is when the table says so (see
// uc_ch_t::keepsAscii).
#pragma once

#include "ucv/Unicode.h"

namespace olvex::ucv {

class AsciiFamily {
  public:
    using Place = char;
    using Utf8Side = ShortUtf8;
    using Ucs2Side = Ucs2;
    static constexpr bool kHasShifts = false;

    explicit AsciiFamily(const uc_ch_t &handle)
        : table_(handle.table->lookup), keepsAscii_(handle.keepsAscii)
    {}
    bool copiesAscii() const { return keepsAscii_; }
    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }

  protected:
    const Lookup &table_;

  private:
    bool keepsAscii_;
};

// A byte is found in the row of the value's high byte; the table's own substitution byte means
// that there is none, but for the character that it stands for.
inline int encodeByRow(const Lookup &table, CodePoint value, char *out, std::size_t room)
{
    const unsigned char byte = table.fromRows[value >> 8][value & 0xFF];
    if (byte == table.substitute && value != table.substituteValue) return kNoCode;
    return put(out, room, byte);
}

class AsciiSingleByte : public AsciiFamily {
  public:
    static constexpr std::size_t kLongest = 1;
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t) const { return {1, table_.values[byteOf(in[0])]}; }
    const Utf8Bytes &utf8Of(char byte) const { return table_.utf8[byteOf(byte)]; }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        return encodeByRow(table_, value, out, room);
    }
};

// The 16-bit code in the row of the value's high byte.
inline CodePoint codeByRow(const Lookup &table, CodePoint value)
{
    return load16(table.fromRows[value >> 8] + 2 * (value & 0xFF));
}

// The value in the row of a leading byte.
inline CodePoint valueByRow(const Lookup &table, const char *in)
{
    return load16(table.toRows[byteOf(in[0])] + 2 * byteOf(in[1]));
}

class AsciiDoubleByte : public AsciiFamily {
  public:
    static constexpr std::size_t kLongest = 2;
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        if (table_.following[lead] == 0) return {1, table_.values[lead]};
        return size < 2 ? kCut : mapped(2, valueByRow(table_, in));
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        const CodePoint code = codeByRow(table_, value);
        if (code == kHole) return kNoCode;
        return code < 0x100 ? put(out, room, code) : put(out, room, code >> 8, code);
    }
};

// Characters of up to as many bytes as a class can say, by a trie of which each node has a place
// for every byte between a first and a last one.
class AsciiMultiByte : public AsciiFamily {
  public:
    static constexpr std::size_t kLongest = 4; // more happens only in odd tables
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        const std::size_t following = table_.following[lead];
        if (following == 0) return {1, table_.values[lead]};
        if (size <= following) return kCut;
        CodePoint value = entry(table_.toRows[lead], byteOf(in[1]));
        if (following == 1) return mapped(2, value); // a constant, for which nothing must wait
        for (std::size_t i = 2; i <= following && value != kHole; ++i)
            value = entry(table_.row(value), byteOf(in[i]));
        return mapped(following + 1, value);
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        const unsigned char *pair = table_.fromRows[value >> 8] + 4 * (value & 0xFF);
        const CodePoint prefix = load16(pair);
        const CodePoint code = load16(pair + 2);
        if (code < 0x100) return put(out, room, code);
        if (prefix == kHole) return kNoCode;
        return encodeWithPrefix(kPrefixSize * prefix, code, out, room);
    }

  private:
    static constexpr std::size_t kPrefixSize = 16; // up to 14 bytes, then their count
    static constexpr std::size_t kLongestPrefix = 14;

    static CodePoint entry(const unsigned char *node, CodePoint byte)
    {
        const CodePoint place = byte - load16(node + 2); // far outside for a byte before the first
        return place < load16(node) ? load16(node + 4 + 2 * place) : kHole;
    }

    int encodeWithPrefix(std::size_t at, CodePoint code, char *out, std::size_t room) const
    {
        if (at + kPrefixSize > table_.mappingSize) return kNoCode;
        const unsigned char *prefix = table_.mapping + at;
        const std::size_t count = load16(prefix + kLongestPrefix);
        if (count > kLongestPrefix) return kNoCode;
        if (room < count + 2) return kNoRoom;
        for (std::size_t i = 0; i < count; ++i)
            *out++ = static_cast<char>(prefix[i]);
        return static_cast<int>(count) + put(out, 2, code >> 8, code);
    }
};

} // namespace olvex::ucv
