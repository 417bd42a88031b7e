// Finding and reading table files. They are not trusted: nothing is read beyond their size, and
// chains of aliases end.
#include "ucv/Handle.h"

#include <olvex/File.h>
#include <olvex/Memory.h>

#include <initializer_list>

#include "ucv/InstalledFiles.h"
#include "util/CxProcess.h"
#include "util/CxResult.h"

#include <cctype>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <sys/stat.h>

namespace olvex::ucv {

namespace {

constexpr std::size_t kPathSize = 256;
constexpr std::size_t kDirectorySize = 255;
constexpr char kInstalledSuffix[] = "/codeset/";
constexpr std::size_t kInstalledPathSize = PATH_MAX + sizeof kInstalledSuffix + kTableNameSize;
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
    explicit OpenFile(const char *path) { CxFileOpen(&file_, path, O_RDONLY | O_NONBLOCK); }
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
    CxFile file_ = -1;
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

// The table of that name in one directory, aliases followed; `pathSize` bounds directory and name.
TableImage *loadFrom(const char *directory, const char *name, std::size_t pathSize)
{
    char current[kTableNameSize];
    const char *at = name; // a path may be longer than a name
    for (int files = 0; files < kMostFilesFollowed; ++files, at = current) {
        char path[kInstalledPathSize];
        const int length = std::snprintf(path, pathSize, "%s%s", directory, at);
        if (length < 0 || static_cast<std::size_t>(length) >= pathSize) return nullptr;
        TableImage *image = readImage(path);
        if (!image || isTable(*image)) return image;
        const bool isAlias = readAlias(*image, current);
        releaseTable(image);
        if (!isAlias) return nullptr;
    }
    return nullptr;
}

TableImage *loadInstalled(const char *name)
{
    char directory[kInstalledPathSize];
    const char *installed = installedDirectory();
    if (!*installed || hasSeparator(name)) return nullptr;
    std::snprintf(directory, sizeof directory, "%s%s", installed, kInstalledSuffix);
    return loadFrom(directory, name, sizeof directory);
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

bool makeDirectory(const Place &place, char (&directory)[kDirectorySize])
{
    const char *base = place.variable ? cxTrustedEnv(place.variable) : "";
    if (!base || (place.variable && !*base)) return false;
    const int length = std::snprintf(directory, sizeof directory, "%s%s", base, place.suffix);
    return length >= 0 && static_cast<std::size_t>(length) + 1 < sizeof directory;
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
        char directory[kDirectorySize];
        if (!isTrusted(place, name) || !makeDirectory(place, directory)) continue;
        if (TableImage *table = loadFrom(directory, name, kPathSize)) return table;
    }
    return loadInstalled(name);
}

void releaseTable(TableImage *table)
{
    if (table && --table->references == 0) BaxMemoryFree(table);
}

} // namespace olvex::ucv
