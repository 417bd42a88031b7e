// See WholeText.h. Mostly texts are ASCII, or else valid: then they are looked at once more and
// converted as a whole.
#include "ucv/WholeText.h"

#include "ucv/Encoder.h"

namespace olvex::ucv {

namespace {

bool isFollowing(char byte)
{
    return (byte & 0xC0) == 0x80;
}

// How many bytes a leading byte announces; 1 for what leads nothing.
std::size_t announced(CodePoint lead)
{
    if (lead < 0xC0 || lead > 0xF7) return 1;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The first byte behind the lead must keep the character out of shorter forms, of the surrogates
// and of what lies above the last code point.
bool isSecond(CodePoint lead, CodePoint second)
{
    const CodePoint least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const CodePoint most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    return second >= least && second <= most;
}

// The bytes of the character at `in`, which is not ASCII; 0 for what is no character.
inline std::size_t characterSize(const char *in, std::size_t left)
{
    const CodePoint lead = byteOf(in[0]);
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t size = announced(lead);
    if (left < size || !isSecond(lead, byteOf(in[1]))) return 0;
    for (std::size_t i = 2; i < size; ++i)
        if (!isFollowing(in[i])) return 0;
    return size;
}

// The first byte that is not ASCII.
inline const char *skipAscii(const char *text, const char *end)
{
    while (end - text >= std::ptrdiff_t{kLongBlock} && isAsciiBlock<kLongBlock>(text))
        text += kLongBlock;
    for (std::uint64_t word; end - text >= std::ptrdiff_t{sizeof word}; text += sizeof word) {
        std::memcpy(&word, text, sizeof word);
        if ((word & kNotAscii<char>) != 0) break;
    }
    while (text < end && isAscii(*text))
        ++text;
    return text;
}

// A leading byte and those that follow it, as far as they can belong to it.
std::size_t malformedSize(const char *in, std::size_t left)
{
    const std::size_t most = std::min(announced(byteOf(in[0])), left);
    std::size_t size = 1;
    while (size < most && isFollowing(in[size]))
        ++size;
    return size;
}

[[gnu::cold]] char *encodePieces(uc_ch_t &handle, const char *text, const char *end, char *target,
                                 std::size_t room)
{
    constexpr char kMark[] = "?";
    Encoder encoder(handle, target, room);
    for (;;) {
        const char *malformed = findMalformed(text, end);
        if (encoder.convert(text, malformed) != malformed || malformed == end) break;
        if (encoder.convert(kMark, kMark + 1) == kMark) break;
        ++handle.substCount;
        text = malformed + malformedSize(malformed, static_cast<std::size_t>(end - malformed));
    }
    return encoder.finish();
}

} // namespace

const char *findMalformed(const char *text, const char *end)
{
    for (;;) {
        text = skipAscii(text, end);
        while (text < end && !isAscii(*text)) {
            const std::size_t size = characterSize(text, static_cast<std::size_t>(end - text));
            if (size == 0) return text;
            text += size;
        }
        if (text == end) return end;
    }
}

int encodeText(uc_ch_t *handle, const char *source, int length, char *target, int size)
{
    if (!source || !target || size <= 0) return 0;
    handle = orDefault(handle);
    const bool terminated = length < 0;
    const char *end =
        source + (terminated ? std::strlen(source) : static_cast<std::size_t>(length));
    if (copiesUtf8(*handle) || findMalformed(source, end) == end) [[likely]] {
        // Valid UTF-8 stays as it is, which is quicker to copy than to take apart.
        return ucv_from_utf8(handle->type == kUtf8 ? &osHandle : handle, source, length, target,
                             size);
    }
    char *out = encodePieces(*handle, source, end, target,
                             static_cast<std::size_t>(size) - (terminated ? 1 : 0));
    if (terminated) *out++ = '\0';
    return static_cast<int>(out - target);
}

bool appendEncoded(uc_ch_t *handle, const char *text, std::size_t size, CxStringBuff *buffer)
{
    if (2 * size < size || !cxStringBuffHasCapacity(buffer, 2 * size)) return false;
    const int written =
        encodeText(handle, text, static_cast<int>(size), buffer->str + buffer->length,
                   static_cast<int>(buffer->capacity - buffer->length - 1));
    extend(buffer, static_cast<std::size_t>(written));
    return true;
}

} // namespace olvex::ucv
