// What the tests of first failure data capture share: a base directory, a handler of either class
// with a trigger, and events of any time.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include "LogDirectory.h"
#include "MadeEvent.h"
#include "Toolkit.h"

namespace olvex::test {

constexpr std::int64_t kNoon = 1207051200000; // 2008-04-01 12:00:00 UTC

class Ffdc : public OpenToolkit {
  protected:
    void SetUp() override
    {
        setZone("UTC0");
        OpenToolkit::SetUp();
        OvxObject *filter = get("trigger", "ovx_msgidfilter");
        OvxSetObjProp(filter, "mode", "PASSTHRU");
        OvxSetObjProp(filter, "msgIds", "*E");
        std::filesystem::create_directory(base);
        logger = get("log", "ovx_basiclogger");
        copier = copierNamed("copier");
    }

    // A file copy handler that listens to the logger.
    OvxObject *copierNamed(const char *name)
    {
        OvxObject *handler = get(name, "ovx_ffdc_filecopy_handler");
        OvxSetObjProp(handler, "baseDir", base.c_str());
        OvxSetObjProp(handler, "triggerFilter", "trigger");
        OvxAddListener(logger, handler);
        return handler;
    }

    void log(std::int64_t time, const char *text = "OVXBC0020E text")
    {
        const MadeEvent event = eventAt(time, 6000, "ovxmsg", 999, text, 0);
        OvxLoggerGetFLog(logger)(logger, event.get());
    }

    // Puts a file of so many bytes below the base directory, changed at that second.
    void put(const std::string &name, std::size_t size, std::time_t changed)
    {
        std::filesystem::create_directories(std::filesystem::path(base + "/" + name).parent_path());
        const std::string path = base + "/" + name;
        std::ofstream(path, std::ios::binary) << std::string(size, 'x');
        const timespec times[] = {{changed, 0}, {changed, 0}};
        utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    }

    // The paths of everything below the base directory that is no directory.
    std::set<std::string> kept() const
    {
        std::set<std::string> names;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(base))
            if (!entry.is_directory() || entry.is_symlink())
                names.insert(entry.path().lexically_relative(base).string());
        return names;
    }

    LogDirectory folder;
    const std::string base = folder / "base";
    OvxObject *logger = nullptr;
    OvxObject *copier = nullptr;
};

} // namespace olvex::test
