// GB18030: one, two or four bytes. Codes are numbered along one line; tables of ranges map the
// numbers of the Basic Multilingual Plane, all others are computed.
#pragma once

#include <algorithm>

#include "ucv/Unicode.h"

namespace olvex::ucv {

// One direction of the ranges: a block of keys names the first range to look at. The range that a
// key was found in is remembered, since texts stay near it.
class Ranges {
  public:
    // `section` is where the ranges' section begins in the image, `numbers` where in it the three
    // positions of this direction stand.
    Ranges(const TableImage &image, std::size_t section, std::size_t numbers)
        : end_(image.bytes() + image.size)
    {
        std::uint32_t positions[3];
        if (section + numbers + sizeof positions > image.size) return;
        std::memcpy(positions, image.bytes() + section + numbers, sizeof positions);
        base_ = section + kHeadSize <= image.size ? image.bytes() + section + kHeadSize : end_;
        ranges_ = at(positions[0]);
        blocks_ = at(positions[1]);
        values_ = at(positions[2]);
    }

    // What a key is mapped to, and how its range counts it.
    struct Found {
        CodePoint value;  // kUnmapped for none
        CodePoint offset; // the range's value offset and the distance into it
    };

    Found find(CodePoint key)
    {
        if (key < first_ || key > last_)
            if (!findRange(key)) return {kUnmapped, 0};
        const CodePoint offset = offset_ + key - first_;
        if (kind_ == kRun) return {offset & 0xFFFF, offset};
        if (kind_ != kList || 2 * offset + 2 > sizeOf(values_)) return {kUnmapped, 0};
        const CodePoint value = load16(values_ + 2 * offset);
        return {value == kHole ? kUnmapped : value, offset};
    }

  private:
    enum Kind { kList = 1, kRun = 2 };
    static constexpr std::size_t kHeadSize = 32;
    static constexpr std::size_t kRangeSize = 8;
    static constexpr CodePoint kBlockSize = 512;
    static constexpr std::size_t kBlocksSize = 2 * 0x10000 / kBlockSize;
    static constexpr std::size_t kMostRanges = 0x10000;

    const unsigned char *at(std::uint32_t position) const
    {
        const std::size_t offset = std::size_t{2} * position;
        return offset < sizeOf(base_) ? base_ + offset : end_;
    }
    std::size_t sizeOf(const unsigned char *part) const
    {
        return static_cast<std::size_t>(end_ - part);
    }

    bool findRange(CodePoint key)
    {
        if (sizeOf(blocks_) < kBlocksSize) return false;
        std::size_t index = load16(blocks_ + 2 * (key / kBlockSize));
        const std::size_t count = std::min(sizeOf(ranges_) / kRangeSize, kMostRanges);
        for (; index < count; ++index) {
            const unsigned char *range = ranges_ + kRangeSize * index;
            if (key < load16(range)) return false;
            if (key <= load16(range + 2)) return keep(range), true;
        }
        return false;
    }

    void keep(const unsigned char *range)
    {
        first_ = load16(range);
        last_ = load16(range + 2);
        kind_ = load16(range + 4);
        offset_ = load16(range + 6);
    }

    const unsigned char *end_;
    const unsigned char *base_ = end_;
    const unsigned char *ranges_ = end_;
    const unsigned char *blocks_ = end_;
    const unsigned char *values_ = end_;
    CodePoint first_ = 1; // no key at all
    CodePoint last_ = 0;
    CodePoint kind_ = 0;
    CodePoint offset_ = 0;
};

class Gb18030 {
  public:
    using Place = char;
    using Utf8Side = Utf8;
    using Ucs2Side = Ucs2;

    static constexpr std::size_t kLongest = 4;
    static constexpr bool kHasShifts = false;

    explicit Gb18030(const uc_ch_t &handle)
        : from_(*handle.table, section(handle), 0), to_(*handle.table, section(handle), 16)
    {}

    static constexpr bool copiesAscii() { return true; }
    static int substitute(char *out, std::size_t room) { return put(out, room, '?'); }

    Decoded decode(const char *in, std::size_t size)
    {
        const CodePoint lead = byteOf(in[0]);
        if (lead < 0x80) return {1, lead};
        if (lead == 0x80 || lead == 0xFF) return {1, kUnmapped};
        if (size < 2) return kCut;
        const CodePoint second = byteOf(in[1]);
        if (second >= '0' && second <= '9') return size < 4 ? kCut : Decoded{4, fourBytes(in)};
        return {2, byRange((lead - 0x81) * kTrails + second - 63)};
    }

    int encode(CodePoint value, char *out, std::size_t room)
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

    CodePoint fourBytes(const char *in)
    {
        const CodePoint number =
            (((byteOf(in[0]) - 0x80) * 10 + byteOf(in[1])) * 126 + byteOf(in[2])) * 10 +
            byteOf(in[3]) - 50351;
        if (number < kEndOfRanges) return byRange(number);
        const bool isComputed = number >= kFirstComputed && number <= kLastComputed;
        return isComputed ? number - 147531 : kUnmapped;
    }

    // A number below zero has wrapped far above.
    CodePoint byRange(CodePoint number)
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

    Ranges from_;
    Ranges to_;
};

} // namespace olvex::ucv
