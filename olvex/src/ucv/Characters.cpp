// Decoding and encoding of UTF-8, UCS-2 and plain bytes.
#include "ucv/Characters.h"

namespace olvex::ucv {

namespace {

constexpr CodePoint kLastCodePoint = 0x10FFFF;
constexpr CodePoint kFirstSupplementary = 0x10000;

constexpr Decoded kCut = {0, 0};
constexpr Encoded kNoRoom = {0, false};

CodePoint byteOf(char c)
{
    return static_cast<unsigned char>(c);
}
CodePoint continuation(char c)
{
    return byteOf(c) & 0x3F;
}

Decoded decodeSequence(const char *in, std::size_t size, std::size_t length, CodePoint leadMask)
{
    if (size < length) return kCut;
    CodePoint value = byteOf(in[0]) & leadMask;
    for (std::size_t i = 1; i < length; ++i)
        value = value << 6 | continuation(in[i]);
    return {length, value};
}

Encoded put(const char *bytes, std::size_t count, char *out, std::size_t room)
{
    if (room < count) return kNoRoom;
    for (std::size_t i = 0; i < count; ++i)
        out[i] = bytes[i];
    return {count, false};
}

char lead(CodePoint mark, CodePoint bits)
{
    return static_cast<char>(mark | bits);
}
char follow(CodePoint bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

bool isHighSurrogate(CodePoint unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(CodePoint unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

Decoded decodeUtf8(uc_ch_t &, const char *in, std::size_t size)
{
    const CodePoint first = byteOf(in[0]);
    if (first < 0x80) return {1, first};
    if (first < 0xC0 || first > 0xF7) return {1, kUnmapped};
    if (first < 0xE0) return decodeSequence(in, size, 2, 0x1F);
    if (first < 0xF0) return decodeSequence(in, size, 3, 0x0F);
    return decodeSequence(in, size, 4, 0x07);
}

Decoded decodeShortUtf8(uc_ch_t &, const char *in, std::size_t size)
{
    const CodePoint first = byteOf(in[0]);
    if (first < 0x80) return {1, first};
    if (first < 0xC0) return {1, kUnmapped};
    if (first < 0xE0) return decodeSequence(in, size, 2, 0x1F);
    return decodeSequence(in, size, 3, 0x0F);
}

Encoded encodeUtf8(uc_ch_t &, CodePoint value, char *out, std::size_t room)
{
    if (value < 0x80) {
        const char bytes[] = {static_cast<char>(value)};
        return put(bytes, 1, out, room);
    }
    if (value < 0x800) {
        const char bytes[] = {lead(0xC0, value >> 6), follow(value)};
        return put(bytes, 2, out, room);
    }
    if (value < kFirstSupplementary) {
        const char bytes[] = {lead(0xE0, value >> 12), follow(value >> 6), follow(value)};
        return put(bytes, 3, out, room);
    }
    const char bytes[] = {lead(0xF0, value >> 18), follow(value >> 12), follow(value >> 6),
                          follow(value)};
    return put(bytes, 4, out, room);
}

// A high surrogate in front of anything but a low one takes both with it.
Decoded decodeSurrogates(uc_ch_t &, const char16_t *in, std::size_t size)
{
    const CodePoint first = in[0];
    if (isLowSurrogate(first)) return {1, kUnmapped};
    if (!isHighSurrogate(first)) return {1, first};
    if (size < 2) return kCut;
    if (!isLowSurrogate(in[1])) return {2, kUnmapped};
    return {2, kFirstSupplementary + ((first - 0xD800) << 10) + (in[1] - CodePoint{0xDC00})};
}

Encoded encodeSurrogates(uc_ch_t &handle, CodePoint value, char16_t *out, std::size_t room)
{
    if (value < kFirstSupplementary || value > kLastCodePoint)
        return encodeUnit(handle, value, out, room);
    if (room < 2) return kNoRoom;
    const CodePoint bits = value - kFirstSupplementary;
    out[0] = static_cast<char16_t>(0xD800 + (bits >> 10));
    out[1] = static_cast<char16_t>(0xDC00 + (bits & 0x3FF));
    return {2, false};
}

Decoded decodeUnit(uc_ch_t &, const char16_t *in, std::size_t)
{
    return {1, in[0]};
}

Encoded encodeUnit(uc_ch_t &, CodePoint value, char16_t *out, std::size_t room)
{
    if (room < 1) return kNoRoom;
    const bool fits = value < kFirstSupplementary;
    out[0] = static_cast<char16_t>(fits ? value : kQuestionMark);
    return {1, !fits};
}

Decoded decodeByte(uc_ch_t &, const char *in, std::size_t)
{
    return {1, byteOf(in[0])};
}

Encoded encodeByte(uc_ch_t &, CodePoint value, char *out, std::size_t room)
{
    if (room < 1) return kNoRoom;
    const bool fits = value <= 0xFF;
    out[0] = static_cast<char>(fits ? value : kQuestionMark);
    return {1, !fits};
}

} // namespace olvex::ucv
