// Finding and reading table files. They are not trusted: nothing is read beyond their size, and
// chains of aliases end.
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
