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

    explicit AsciiFamily(const uc_ch_t &handle) : table_(handle), keepsAscii_(handle.keepsAscii) {}
    bool copiesAscii() const { return keepsAscii_; }
    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }

  protected:
    Sections table_;

  private:
    bool keepsAscii_;
};

// A byte is found in the row of the value's high byte; the table's own substitution byte means
// that there is none, but for the character that it stands for.
inline int encodeByRow(const Sections &table, CodePoint value, char *out, std::size_t room)
{
    const unsigned char *byte = table.mappingBytes(4 * table.rowOf(value) + (value & 0xFF), 1);
    if (!byte) return kNoCode;
    if (*byte == table.substitute() && value != table.substituteValue()) return kNoCode;
    return put(out, room, *byte);
}

class AsciiSingleByte : public AsciiFamily {
  public:
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t) const
    {
        const CodePoint byte = byteOf(in[0]);
        return byte < 0x80 ? Decoded{1, byte} : mapped(1, table_.byByte(byte));
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        return encodeByRow(table_, value, out, room);
    }
};

// The 16-bit code in the row of the value's high byte.
inline CodePoint codeByRow(const Sections &table, CodePoint value)
{
    return table.mapping16(4 * table.rowOf(value) + 2 * (value & 0xFF));
}

// The value in the row of a leading byte, which is 0 for single bytes.
inline CodePoint valueByRow(const Sections &table, CodePoint lead, char trail)
{
    return table.mapping16(4 * table.byByte(lead) + 2 * byteOf(trail));
}

class AsciiDoubleByte : public AsciiFamily {
  public:
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        if (lead < 0x80) return {1, lead};
        switch (table_.classOf(lead)) {
        case 1: return mapped(1, valueByRow(table_, 0, in[0]));
        case 2: return size < 2 ? kCut : mapped(2, valueByRow(table_, lead, in[1]));
        default: return {1, kUnmapped};
        }
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        const CodePoint code = codeByRow(table_, value);
        if (code == Sections::kHole) return kNoCode;
        return code < 0x100 ? put(out, room, code) : put(out, room, code >> 8, code);
    }
};

// Characters of up to as many bytes as a class can say, by a trie of which each node has a place
// for every byte between a first and a last one.
class AsciiMultiByte : public AsciiFamily {
  public:
    using AsciiFamily::AsciiFamily;

    Decoded decode(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        if (lead < 0x80) return {1, lead};
        const std::size_t length = table_.classOf(lead);
        if (length == 0 || length == kInvalid) return {1, kUnmapped};
        if (length == 1) return mapped(1, valueByRow(table_, 0, in[0]));
        if (size < length) return kCut;
        CodePoint value = table_.byByte(lead);
        for (std::size_t i = 1; i < length && value != Sections::kHole; ++i)
            value = entry(value, byteOf(in[i]));
        return mapped(length, value);
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        const std::size_t pair = 4 * (table_.rowOf(value) + (value & 0xFF));
        const CodePoint prefix = table_.mapping16(pair);
        const CodePoint code = table_.mapping16(pair + 2);
        if (code < 0x100) return put(out, room, code);
        if (prefix == Sections::kHole) return kNoCode;
        return encodeWithPrefix(kPrefixSize * prefix, code, out, room);
    }

  private:
    static constexpr std::size_t kInvalid = 255;
    static constexpr std::size_t kPrefixSize = 16; // up to 14 bytes, then their count
    static constexpr std::size_t kLongestPrefix = 14;

    CodePoint entry(CodePoint node, CodePoint byte) const
    {
        const CodePoint count = table_.mapping16(4 * node);
        const CodePoint first = table_.mapping16(4 * node + 2);
        if (count == Sections::kHole || byte < first || byte - first >= count)
            return Sections::kHole;
        return table_.mapping16(4 * node + 4 + 2 * (byte - first));
    }

    int encodeWithPrefix(std::size_t at, CodePoint code, char *out, std::size_t room) const
    {
        const unsigned char *prefix = table_.mappingBytes(at, kPrefixSize);
        if (!prefix) return kNoCode;
        const std::size_t count = Sections::load(prefix + kLongestPrefix);
        if (count > kLongestPrefix) return kNoCode;
        if (room < count + 2) return kNoRoom;
        for (std::size_t i = 0; i < count; ++i)
            *out++ = static_cast<char>(prefix[i]);
        return static_cast<int>(count) + put(out, 2, code >> 8, code);
    }
};

} // namespace olvex::ucv
