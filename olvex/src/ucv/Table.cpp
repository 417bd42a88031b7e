// Finding and reading table files.
//
// LAYOUT, as `olvex codeset make` writes it (tools/codeset). Numbers are in the machine's byte
// order and have 16 bits where nothing is said; "row" is the number of a row: its offset from the
// beginning of the mapping, divided by 4. 0xFFFF is no character, no code, no row.
//
//      0   offset of the mapping in the file, 32 bits
//      8   "ucv", by which a table is known
//     16   name of the code set, 32 bytes
//     38   GB18030 only, inside the name's place: offset of the section of ranges (Gb18030.h)
//     48   family (Handle.h)
//     50   0x1100 says single-byte EBCDIC, whatever the family
//     56   this, the value at 62 and the 16 bytes at 64 are copied into handles and not used
//     58   the character that the substitute stands for
//     60   the substitute of single-byte families, 1 byte
//    224   256 rows, by the high byte of a character: the codes of the 256 characters
//    736   single-byte: 256 characters, by code. Otherwise 256 rows, by the leading byte; row 0 has
//          the characters of one byte
//   1248   256 bytes: how long the character is that begins with this byte; 0 or 255 for none
//   1760   end of the header, where the mapping begins
//
// The rows of the mapping, by family:
//
//                 character to code (224)             code to character (736)
//   single-byte   256 bytes; the substitute for none  no rows
//   double-byte   256 numbers                         256 numbers, by the second byte
//   multibyte     256 pairs: a prefix, and the last   a node: how many bytes may come next, the
//                 two bytes of the code as a number   first of them, and for each the character or
//                                                     the row of the next node
//
// A prefix is counted in units of 16 bytes from the beginning of the mapping: up to 14 bytes that
// come before the last two, and how many they are. Codes of one byte have the prefix 0.
//
// A file without "ucv" is an alias: the name of another file in the same directory, at most 32
// bytes, blanks and control characters left out. At most five files are followed.
//
// Files are not trusted: they have at most 16 MiB, nothing is read beyond their size (Lookup.h),
// and an alias never leaves its directory.
#include "ucv/Handle.h"

#include <olvex/File.h>
#include <olvex/Memory.h>

#include <initializer_list>

#include "ucv/InstalledFiles.h"
#include "util/CxProcess.h"
#include "util/CxResult.h"
#include "util/Memory.h"

#include <cctype>
#include <climits>
#include <clocale>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <sys/stat.h>

namespace olvex::ucv {

namespace {

constexpr std::size_t kPathSize = 256;
constexpr std::size_t kDirectorySize = 255;
constexpr char kInstalledSuffix[] = "/codeset/";
constexpr int kMostFilesFollowed = 5;
constexpr std::int64_t kLargestTable = 16 << 20;
constexpr std::size_t kAliasSize = 32;
constexpr unsigned char kMagic[3] = {0x75, 0x63, 0x76};

bool hasSeparator(const char *name)
{
    return std::strpbrk(name, "/\\") != nullptr;
}

class OpenFile {
  public:
    // Paths may be longer than those of the portability layer.
    explicit OpenFile(const char *path) : file_(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
    ~OpenFile()
    {
        if (file_ >= 0) CxFileClose(&file_);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    // The size of a regular file that may be a table or an alias; -1 for anything else.
    std::int64_t size()
    {
        struct stat status = {};
        if (file_ < 0 || fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
        return status.st_size <= kLargestTable ? status.st_size : -1;
    }

    bool read(unsigned char *target, std::size_t size)
    {
        while (size > 0) {
            std::int64_t count = 0;
            if (!ok(CxFileRead(&file_, target, size, &count)) || count == 0) return false;
            target += count;
            size -= static_cast<std::size_t>(count);
        }
        return true;
    }

  private:
    CxFile file_;
};

TableImage *readImage(const char *path)
{
    OpenFile file(path);
    const std::int64_t size = file.size();
    if (size < 0) return nullptr;
    const auto bytes = static_cast<std::size_t>(size);
    auto *image = static_cast<TableImage *>(
        BaxMemoryMalloc(sizeof(TableImage) + bytes + TableImage::kPadding));
    if (!image) return nullptr;
    ::new (image) TableImage{1, 0, {}};
    image->size = static_cast<std::uint32_t>(bytes);
    if (file.read(image->bytes(), bytes)) return image;
    releaseTable(image);
    return nullptr;
}

bool isTable(const TableImage &image)
{
    return image.size >= kHeaderSize &&
           std::memcmp(image.bytes() + kMagicAt, kMagic, sizeof kMagic) == 0;
}

// The name in an alias file; false when it is empty or would leave the directory.
bool readAlias(const TableImage &image, char (&name)[kTableNameSize])
{
    char text[kAliasSize + 1] = "";
    ucv_from_utf8(nullptr, reinterpret_cast<const char *>(image.bytes()),
                  static_cast<int>(image.size), text, kAliasSize);
    char *to = name;
    for (const char *from = text; *from; ++from) {
        const auto byte = static_cast<unsigned char>(*from);
        if (!std::isspace(byte) && !std::iscntrl(byte)) *to++ = *from;
    }
    *to = '\0';
    return *name && !hasSeparator(name);
}

// The path of a file in one directory; null when it does not fit into `pathSize`, or memory ran
// out.
Text joinPath(std::initializer_list<const char *> parts, std::size_t pathSize)
{
    std::size_t size = 1;
    for (const char *part : parts)
        size += std::strlen(part);
    Text path(size <= pathSize ? static_cast<char *>(BaxMemoryMalloc(size)) : nullptr);
    if (!path) return nullptr;
    char *end = path.get();
    for (const char *part : parts)
        end = stpcpy(end, part);
    return path;
}

void turnBackslashes(char *path)
{
    while ((path = std::strchr(path, '\\')))
        *path = '/';
}

enum class PathRules { kPortable, kSystem }; // of at most 255 bytes, with either separator; or any

// The table of that name in one directory, aliases followed.
TableImage *loadFrom(const char *directory, const char *subdirectory, const char *name,
                     PathRules rules)
{
    const bool isPortable = rules == PathRules::kPortable;
    char current[kTableNameSize];
    const char *at = name; // a path may be longer than a name
    for (int files = 0; files < kMostFilesFollowed; ++files, at = current) {
        const Text path =
            joinPath({directory, subdirectory, at}, isPortable ? kPathSize : PATH_MAX);
        if (!path) return nullptr;
        if (isPortable) turnBackslashes(path.get());
        TableImage *image = readImage(path.get());
        if (!image || isTable(*image)) return image;
        const bool isAlias = readAlias(*image, current);
        releaseTable(image);
        if (!isAlias) return nullptr;
    }
    return nullptr;
}

TableImage *loadInstalled(const char *name)
{
    const char *installed = installedDirectory();
    if (!*installed || hasSeparator(name)) return nullptr;
    return loadFrom(installed, kInstalledSuffix, name, PathRules::kSystem);
}

struct Place {
    const char *variable; // none: the directory is `suffix` itself
    const char *suffix;
};

// Where tables are looked for, in this order.
constexpr Place kPlaces[] = {
    {"UCVDIR", "/codeset/"},
    {"UCVDIR", "/"},
    {"BINDIR", "/../generic/codeset/"},
    {nullptr, ""},
};

// The directory that a place's variable names, "" for the place that has none; null when it is not
// set or too long.
const char *directoryOf(const Place &place)
{
    if (!place.variable) return "";
    const char *base = cxTrustedEnv(place.variable);
    if (!base || !*base) return nullptr;
    const std::size_t length = std::strlen(base) + std::strlen(place.suffix);
    return length + 1 < kDirectorySize ? base : nullptr;
}

// The current directory is not, in a process with raised privileges.
bool isTrusted(const Place &place, const char *name)
{
    return place.variable || hasSeparator(name) || !cxIsPrivileged();
}

const char *platformCodeSet()
{
    std::setlocale(LC_ALL, "");
    const char *name = nl_langinfo(CODESET);
    return name && *name ? name : "ISO88591";
}

// Whatever the locale says: in a Turkish one "i" is no lower case of "I".
char upperCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c & ~0x20) : c;
}

bool copyUpper(const char *name, char (&upper)[kTableNameSize])
{
    if (std::strlen(name) >= sizeof upper) return false;
    char *to = upper;
    for (; *name; ++name)
        *to++ = upperCase(*name);
    *to = '\0';
    return true;
}

bool meansPlatform(const char *upper)
{
    for (const char *word : {"DOS", "WIN", "OS"})
        if (std::strcmp(upper, word) == 0) return true;
    return false;
}

bool isNameCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

std::uint16_t table16(const TableImage &table, std::size_t offset)
{
    std::uint16_t value = 0;
    if (offset + sizeof value <= table.size)
        std::memcpy(&value, table.bytes() + offset, sizeof value);
    return value;
}

bool makeTableName(const char *name, char (&tableName)[kTableNameSize])
{
    if (!copyUpper(name, tableName)) return false;
    if (meansPlatform(tableName) && !copyUpper(platformCodeSet(), tableName)) return false;
    const char *from = std::strncmp(tableName, "KEL", 3) == 0 ? tableName + 3 : tableName;
    char *to = tableName;
    for (; *from; ++from)
        if (isNameCharacter(*from)) *to++ = *from;
    *to = '\0';
    return *tableName != '\0';
}

TableImage *loadTable(const char *name)
{
    for (const Place &place : kPlaces) {
        const char *directory = isTrusted(place, name) ? directoryOf(place) : nullptr;
        if (!directory) continue;
        if (TableImage *table = loadFrom(directory, place.suffix, name, PathRules::kPortable))
            return table;
    }
    return loadInstalled(name);
}

void releaseTable(TableImage *table)
{
    if (table && --table->references == 0) BaxMemoryFree(table);
}

} // namespace olvex::ucv
