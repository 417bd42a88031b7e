// See Bytes.h.
#include "catalog/Bytes.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace tools::catalog {

namespace {

bool isFollowing(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The length that a first byte announces; 0 for a byte that cannot be first.
std::size_t announcedLength(unsigned char first)
{
    if (first < 0x80) return 1;
    if (first < 0xC2) return 0;
    if (first < 0xE0) return 2;
    if (first < 0xF0) return 3;
    return first < 0xF5 ? 4 : 0;
}

// Longer forms than needed, surrogates, and what lies beyond Unicode.
bool isForbiddenPair(unsigned char first, unsigned char second)
{
    return (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
           (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
}

} // namespace

CodeSet::CodeSet(const std::string &name)
{
    if (name.empty()) return;
    handle_.reset(ucv_cs_new(name.c_str()));
    if (!handle_) throw std::runtime_error("there is no code set '" + name + "'");
}

std::string CodeSet::toUtf8(const std::string &bytes) const
{
    if (!handle_ || bytes.empty()) return bytes;
    int length = 0;
    char *utf8 =
        ucv_tou_alloc(handle_.get(), bytes.data(), static_cast<int>(bytes.size()), &length);
    if (!utf8) throw std::bad_alloc();
    std::string text(utf8, static_cast<std::size_t>(length));
    ucv_free(utf8);
    return text;
}

std::size_t utf8Length(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = announcedLength(first);
    if (length > text.size()) return 0;
    for (std::size_t index = 1; index < length; ++index)
        if (!isFollowing(text[index])) return 0;
    const bool isForbidden =
        length > 1 && isForbiddenPair(first, static_cast<unsigned char>(text[1]));
    return isForbidden ? 0 : length;
}

std::string readFile(const std::string &path)
{
    FILE *file = std::fopen(path.c_str(), "rbe");
    std::string bytes;
    char block[65536];
    for (std::size_t count; file && (count = std::fread(block, 1, sizeof block, file)) > 0;)
        bytes.append(block, count);
    const int error = file && !std::ferror(file) ? 0 : errno;
    if (file) std::fclose(file);
    if (error) throw std::runtime_error(path + " cannot be read: " + std::strerror(error));
    if (bytes.size() > INT32_MAX) throw std::runtime_error(path + " is too large");
    return bytes;
}

} // namespace tools::catalog
