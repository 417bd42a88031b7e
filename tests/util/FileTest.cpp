// Files, paths and directories on the real file system.

#include "core/LogDirectory.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <ostream>
#include <sys/stat.h>

inline bool operator==(const CxResult &one, const CxResult &other)
{
    return one.kind == other.kind && one.code == other.code;
}
inline std::ostream &operator<<(std::ostream &stream, const CxResult &result)
{
    return stream << result.kind << result.code;
}

namespace {

constexpr CxResult kSuccess = {'-', 0};

CxResult failed(int code)
{
    return {'p', code};
}

int modeOf(const std::string &path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

class Files : public testing::Test {
  protected:
    // Opens a new file in the test's folder.
    CxFile make(const std::string &name)
    {
        CxFile file = -1;
        EXPECT_EQ(CxFileOpen(&file, (folder_ / name).c_str(), O_RDWR | O_CREAT), kSuccess);
        return file;
    }

    olvex::test::LogDirectory folder_;
};

TEST_F(Files, ReadWriteSeekAndTruncate)
{
    CxFile file = make("file");
    std::int64_t count = 0, size = 0;
    EXPECT_EQ(CxFileWrite(&file, "0123456789", 10, &count), kSuccess);
    EXPECT_EQ(CxFileSeek(&file, 7, SEEK_SET), kSuccess);
    char text[8] = "";
    EXPECT_EQ(CxFileRead(&file, text, 8, &count), kSuccess);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(count)), "789");
    EXPECT_EQ(CxFileSeek(&file, 0x100000005, SEEK_SET), kSuccess); // beyond 32 bits
    CxFileWrite(&file, "x", 1, &count);
    EXPECT_EQ(CxFileGetSize(&file, &size), kSuccess);
    EXPECT_EQ(size, 0x100000006);
    EXPECT_EQ(CxFileNameGetSize((folder_ / "file").c_str(), &size), kSuccess);
    EXPECT_EQ(size, 0x100000006);
    EXPECT_EQ(CxFileSeek(&file, -1, SEEK_SET), failed(EINVAL));
    EXPECT_EQ(CxFileTrunc(&file), kSuccess);
    CxFileWrite(&file, "new", 3, &count); // at the beginning
    EXPECT_EQ(CxFileFlush(&file), kSuccess);
    EXPECT_EQ(CxFileClose(&file), kSuccess);
    EXPECT_EQ(CxFileClose(&file), failed(EBADF));
    EXPECT_EQ(CxFileRead(&file, text, 8, &count), failed(EBADF));
    EXPECT_EQ(count, -1);
    EXPECT_EQ(folder_.read("file"), "new");
}

TEST_F(Files, NamesTakeBackslashesAndModes)
{
    const mode_t mask = umask(0);
    std::filesystem::create_directory(folder_ / "logs");
    CxFile file = make("logs\\a.log");
    EXPECT_EQ(modeOf(folder_ / "logs/a.log"), 0600);
    EXPECT_EQ(fcntl(file, F_GETFD), FD_CLOEXEC);
    CxFileClose(&file);
    CxFileOpenMode(&file, (folder_ / "logs\\b.log").c_str(), O_WRONLY | O_CREAT, 0640);
    CxFileClose(&file);
    EXPECT_EQ(modeOf(folder_ / "logs/b.log"), 0640);
    umask(mask);
    EXPECT_EQ(CxFileNameRename((folder_ / "logs\\a.log").c_str(), (folder_ / "c").c_str()),
              kSuccess);
    EXPECT_EQ(CxFileNameRemove((folder_ / ".\\c").c_str()), kSuccess);
    EXPECT_EQ(CxFileNameRemove((folder_ / "c").c_str()), failed(ENOENT));
    EXPECT_EQ(folder_.names(), (std::set<std::string>{"logs"}));
}

TEST_F(Files, NamesHoldTwoHundredAndFiftyFourBytes)
{
    CxFile file = 77;
    const std::string fits = (folder_ / "") + std::string(254 - (folder_ / "").size(), '/');
    EXPECT_EQ(CxFileOpen(&file, fits.c_str(), O_RDONLY), kSuccess);
    CxFileClose(&file);
    EXPECT_EQ(CxFileOpen(&file, (fits + "/").c_str(), O_RDONLY), failed(22));
    EXPECT_EQ(CxFileNameRename("x", (fits + "/").c_str()), failed(22));
    CxFilePath path = {};
    EXPECT_EQ(CxInitFilePath(&path, std::string(254, 'a').c_str()), 1);
    EXPECT_EQ(path.length, 254);
    EXPECT_EQ(CxFilePathExists(&path), ENOENT);
    EXPECT_EQ(CxInitFilePath(&path, std::string(255, 'a').c_str()), 0);
    EXPECT_EQ(path.length, -1);
    EXPECT_EQ(CxFilePathExists(&path), 22);
    EXPECT_EQ(CxFilePathIsDir(&path), 22);
    EXPECT_EQ(CxFilePathMkdirs(&path, 0700), 22);
    char area[8] = "\\\\\\\\\\\\\\";
    EXPECT_EQ(CxFileNameGetNative("c\\d\\e", area, 4), 1);
    EXPECT_EQ(std::string(area, 7), "c/d/\\\\\\");
}

TEST_F(Files, PathsHaveParents)
{
    const struct {
        const char *name;
        const char *parent; // null for none
        int lastSep;        // of the parent
    } cases[] = {{"a\\b/c", "a/b", 1}, {"/a", "", -1},   {"dir", nullptr, 0}, {"", nullptr, 0},
                 {"/", "", -1},        {"a//", "a/", 1}, {"/a/b", "/a", 0}};
    for (const auto &entry : cases) {
        CxFilePath path = {};
        CxInitFilePath(&path, entry.name);
        ASSERT_EQ(CxFilePathParent(&path, &path), entry.parent ? 1 : 0) << entry.name;
        if (!entry.parent) continue;
        EXPECT_STREQ(path.path, entry.parent);
        EXPECT_EQ(path.length, static_cast<int>(std::strlen(entry.parent)));
        EXPECT_EQ(path.lastSep, entry.lastSep) << entry.name;
    }
}

int makeDirectories(const std::string &name, unsigned mode)
{
    CxFilePath path = {};
    CxInitFilePath(&path, name.c_str());
    return CxFilePathMkdirs(&path, mode);
}

TEST_F(Files, DirectoriesAreMadeWithTheirParents)
{
    const mode_t mask = umask(077);
    EXPECT_EQ(makeDirectories(folder_ / "x\\y/z/", 0751), 0);
    umask(mask);
    for (const char *name : {"x", "x/y", "x/y/z"})
        EXPECT_EQ(modeOf(folder_ / name), 0751) << name;
    EXPECT_EQ(makeDirectories(folder_ / "x", 0700), 0);
    EXPECT_EQ(modeOf(folder_ / "x"), 0751); // untouched
    folder_.write("file", "");
    EXPECT_EQ(makeDirectories(folder_ / "file", 0700), ENOTDIR);
    EXPECT_EQ(makeDirectories(folder_ / "file/x", 0700), ENOTDIR);
    EXPECT_TRUE(olvex::test::inChild([&] { // only root may change what the root is
        if (chroot((folder_ / "").c_str()) != 0) return true;
        return makeDirectories("/new/sub", 0700) == 0 && modeOf("/new/sub") == 0700;
    }));
}

TEST_F(Files, DirectoriesListTheirEntries)
{
    folder_.write("long-name", "");
    folder_.write("b", "");
    CxDirectory directory = nullptr;
    ASSERT_EQ(CxDirectoryOpen(&directory, (folder_ / "").c_str()), kSuccess);
    std::set<std::string> names;
    char name[5] = "";
    for (;;) {
        ASSERT_EQ(CxDirectoryGetNext(&directory, name, 4), kSuccess);
        if (!*name) break;
        names.insert(name);
    }
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "b", "long"}));
    EXPECT_EQ(CxDirectoryClose(&directory), kSuccess);
    EXPECT_EQ(CxDirectoryClose(&directory), failed(22));
    for (const std::string &bad : {folder_ / "b", folder_ / "none", std::string(255, '/')})
        EXPECT_EQ(CxDirectoryOpen(&directory, bad.c_str()), failed(22));
}

} // namespace
