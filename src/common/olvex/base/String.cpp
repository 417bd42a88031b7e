// The trace stream's text: bytes in the object itself while they fit, else in a block of its own.
#include <olvex/trace/base/String.h>

#include <cstring>

namespace {

constexpr std::size_t kLongestCharacter = 4;
constexpr char32_t kReplacement = 0xFFFD;

bool isCharacter(char32_t code)
{
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

// Writes a character as UTF-8 and returns how many bytes that took.
std::size_t encode(char32_t code, char *target)
{
    if (!isCharacter(code)) code = kReplacement;
    if (code < 0x80) {
        *target = static_cast<char>(code);
        return 1;
    }
    const std::size_t count = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    for (std::size_t i = count - 1; i > 0; --i, code >>= 6)
        target[i] = static_cast<char>(0x80 | (code & 0x3F));
    *target = static_cast<char>((0xF00 >> count) | code);
    return count;
}

} // namespace

String::String() noexcept : data_(inside_), length_(0), capacity_(kInside)
{
    inside_[0] = '\0';
}

String::String(const char *text) : String()
{
    assign(text);
}

String::String(const wchar_t *text) : String()
{
    assign(text);
}

String::String(const String &other) : String()
{
    assign(other);
}

String::~String()
{
    if (data_ != inside_) BaxMemoryFree(data_);
}

String &String::assign(const char *text)
{
    return replace(text, text ? std::strlen(text) : 0);
}

String &String::assign(const wchar_t *text)
{
    replace(nullptr, 0);
    return concat(text);
}

String &String::assign(const String &other)
{
    return replace(other.data_, other.length_);
}

String &String::concat(const char *text)
{
    return append(text, text ? std::strlen(text) : 0);
}

String &String::concat(const wchar_t *text)
{
    char bytes[kInside];
    std::size_t count = 0;
    for (; text && *text; ++text) {
        if (count + kLongestCharacter > sizeof bytes) {
            append(bytes, count);
            count = 0;
        }
        count += encode(static_cast<char32_t>(*text), bytes + count);
    }
    return append(bytes, count);
}

String &String::concat(const String &other)
{
    return append(other.data_, other.length_);
}

// The bytes may be a part of this text, so the old block is freed last.
String &String::append(const char *bytes, std::size_t count)
{
    if (count == 0) return *this;
    char *old = data_;
    if (!growFor(length_ + count)) return *this;
    std::memmove(data_ + length_, bytes, count);
    length_ += count;
    data_[length_] = '\0';
    if (old != data_ && old != inside_) BaxMemoryFree(old);
    return *this;
}

String &String::replace(const char *bytes, std::size_t count)
{
    char *old = data_;
    if (!growFor(count)) return *this;
    if (count > 0) std::memmove(data_, bytes, count);
    length_ = count;
    data_[length_] = '\0';
    if (old != data_ && old != inside_) BaxMemoryFree(old);
    return *this;
}

// Makes room for `count` bytes and a terminator. The text is copied to a new block, and the caller
// frees the old one.
bool String::growFor(std::size_t count)
{
    if (count < capacity_) return true;
    const std::size_t capacity = count + count / 2 + 1;
    char *block = static_cast<char *>(BaxMemoryMalloc(capacity));
    if (!block) return false;
    std::memcpy(block, data_, length_ + 1);
    data_ = block;
    capacity_ = capacity;
    return true;
}
