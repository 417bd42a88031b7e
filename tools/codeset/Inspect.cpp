#include "codeset/Inspect.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include <cctype>
#include <cstring>

#include "codeset/CodeSets.h"
#include "codeset/Layout.h"

namespace codeset {

namespace {

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::string contents{std::istreambuf_iterator<char>(file), {}};
    if (!file) throw std::runtime_error(path + " cannot be read: " + std::strerror(errno));
    return contents;
}

bool isTable(const std::string &contents)
{
    return contents.size() >= kHeaderSize &&
           contents.compare(kMagicAt, sizeof kMagic - 1, kMagic) == 0;
}

unsigned number16(const std::string &contents, std::size_t at)
{
    std::uint16_t value = 0;
    std::memcpy(&value, contents.data() + at, sizeof value);
    return value;
}

// Whether the mapping data, which comes after the header, begins within the file only when the
// number that says where is read backwards.
bool hasOtherOrder(const std::string &contents)
{
    std::uint32_t offset = 0;
    std::memcpy(&offset, contents.data() + kMappingOffsetAt, sizeof offset);
    return offset > contents.size() && __builtin_bswap32(offset) <= contents.size();
}

// The printable characters of an alias file, which are few.
std::string aliasTarget(const std::string &contents)
{
    constexpr std::size_t kMost = 32;
    std::string target;
    for (const char c : contents.substr(0, kMost))
        if (std::isgraph(static_cast<unsigned char>(c))) target += c;
    return target;
}

} // namespace

FileInfo inspect(const std::string &path)
{
    FileInfo info;
    info.contents = readFile(path);
    info.isTable = isTable(info.contents);
    if (!info.isTable) {
        info.name = aliasTarget(info.contents);
        return info;
    }
    info.name.assign(info.contents.data() + kNameAt,
                     strnlen(info.contents.data() + kNameAt, kNameSize - 1));
    info.isForeign = hasOtherOrder(info.contents);
    const bool isEbcdic = number16(info.contents, kEbcdicMarkAt) == kEbcdicMark;
    info.family = isEbcdic ? unsigned{kEbcdicSingleByte} : number16(info.contents, kFamilyAt);
    return info;
}

const char *familyText(unsigned family)
{
    switch (family) {
    case kAsciiSingleByte: return "ASCII-based, one byte";
    case kAsciiDoubleByte: return "ASCII-based, one or two bytes";
    case kAsciiMultiByte: return "ASCII-based, several bytes";
    case kEbcdicDoubleByte: return "EBCDIC, two bytes with shift codes";
    case kUtf8: return "UTF-8";
    case kEbcdicSingleByte: return "EBCDIC, one byte";
    case kGb18030: return "GB18030";
    default: return "bytes as code points";
    }
}

} // namespace codeset
