// GB18030: one, two or four bytes. Codes are numbered along one line; tables of ranges map the
// numbers of the Basic Multilingual Plane, all others are computed.
#pragma once

#include "ucv/Unicode.h"

namespace olvex::ucv {

// One direction of the ranges: a block of keys names the first range to look at.
class Ranges {
  public:
    // `section` is where the ranges' section begins in the image, `numbers` where in it the three
    // positions of this direction stand.
    Ranges(const Sections &table, std::size_t section, std::size_t numbers) : table_(table)
    {
        const unsigned char *at = table.bytes(section + numbers, sizeof positions_);
        if (at) std::memcpy(positions_, at, sizeof positions_);
        base_ = at ? section + kSectionHeaderSize : kNowhere;
    }

    // What a key is mapped to, and how its range counts it.
    struct Found {
        CodePoint value;  // kUnmapped for none
        CodePoint offset; // the range's value offset and the distance into it
    };

    Found find(CodePoint key) const
    {
        const CodePoint first = unit(positions_[kBlocks], key / kBlockSize);
        std::size_t at = std::size_t{4} * first;
        for (int steps = 0; steps < kMostRanges; ++steps, at += 4) {
            const unsigned char *range = units(positions_[kRanges], at, 4);
            if (!range || key < Sections::load(range)) break;
            if (key <= Sections::load(range + 2)) return within(range, key);
        }
        return {kUnmapped, 0};
    }

  private:
    enum Position { kRanges, kBlocks, kValues };
    static constexpr std::size_t kSectionHeaderSize = 32;
    static constexpr std::size_t kNowhere = SIZE_MAX / 2;
    static constexpr CodePoint kBlockSize = 512;
    static constexpr int kMostRanges = 0x10000;

    const unsigned char *units(std::uint32_t position, std::size_t index, std::size_t count) const
    {
        return table_.bytes(base_ + 2 * (std::size_t{position} + index), 2 * count);
    }

    CodePoint unit(std::uint32_t position, std::size_t index) const
    {
        const unsigned char *at = units(position, index, 1);
        return at ? Sections::load(at) : Sections::kHole;
    }

    Found within(const unsigned char *range, CodePoint key) const
    {
        const CodePoint kind = Sections::load(range + 4);
        const CodePoint offset = Sections::load(range + 6) + key - Sections::load(range);
        if (kind == 2) return {offset & 0xFFFF, offset};
        if (kind != 1) return {kUnmapped, 0};
        const unsigned char *value = units(positions_[kValues], offset, 1);
        return {value ? Sections::load(value) : kUnmapped, offset};
    }

    const Sections &table_;
    std::uint32_t positions_[3] = {};
    std::size_t base_;
};

class Gb18030 {
  public:
    using Place = char;
    using Utf8Side = Utf8;
    using Ucs2Side = Ucs2;

    explicit Gb18030(const uc_ch_t &handle)
        : table_(handle), from_(table_, section(handle), 0), to_(table_, section(handle), 16)
    {}
    Gb18030(const Gb18030 &) = delete;
    Gb18030 &operator=(const Gb18030 &) = delete;

    static constexpr bool copiesAscii() { return true; }
    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }

    Decoded decode(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        if (lead < 0x80) return {1, lead};
        if (lead == 0x80 || lead == 0xFF) return {1, kUnmapped};
        if (size < 2) return kCut;
        const CodePoint second = byteOf(in[1]);
        if (second >= '0' && second <= '9') return size < 4 ? kCut : Decoded{4, fourBytes(in)};
        return {2, byRange((lead - 0x81) * kTrails + second - 63)};
    }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        if (value < 0x80) return put(out, room, value);
        if (value > kLastCodePoint) return kNoCode;
        if (value >= kFirstSupplementary) return putFour(value + 123464, out, room);
        const Ranges::Found found = from_.find(value);
        if (found.value == kUnmapped) return kNoCode;
        if (found.value == 0) return put(out, room, found.offset);
        if (found.value >= kFirstOfFour) return putFour(found.value - kFirstOfFour, out, room);
        const CodePoint code = found.value - 1;
        return put(out, room, code / kTrails + 0x81, code % kTrails + 0x40);
    }

  private:
    static constexpr CodePoint kTrails = 191;        // trailing bytes of a two-byte code
    static constexpr CodePoint kFirstOfFour = 24067; // the first number with four bytes
    static constexpr CodePoint kEndOfRanges = 65535;
    static constexpr CodePoint kFirstComputed = 213067; // of U+10000
    static constexpr CodePoint kLastComputed = 1261642;

    static std::size_t section(const uc_ch_t &handle)
    {
        return table16(*handle.table, kRangesOffsetAt);
    }

    static CodePoint trail(char in, CodePoint first) { return byteOf(in) - first; }

    CodePoint fourBytes(const char *in) const
    {
        const CodePoint number =
            (((byteOf(in[0]) - 0x80) * 10 + byteOf(in[1])) * 126 + byteOf(in[2])) * 10 +
            byteOf(in[3]) - 50351;
        if (number < kEndOfRanges) return byRange(number);
        const bool isComputed = number >= kFirstComputed && number <= kLastComputed;
        return isComputed ? number - 147531 : kUnmapped;
    }

    // A number below zero has wrapped far above.
    CodePoint byRange(CodePoint number) const
    {
        return number < kEndOfRanges ? to_.find(number).value : kUnmapped;
    }

    static int putFour(CodePoint number, char *out, std::size_t room)
    {
        const CodePoint fourth = number % 10 + 0x30;
        number /= 10;
        const CodePoint third = number % 126 + 0x81;
        number /= 126;
        return put(out, room, number / 10 + 0x81, number % 10 + 0x30, third, fourth);
    }

    Sections table_;
    Ranges from_;
    Ranges to_;
};

} // namespace olvex::ucv
