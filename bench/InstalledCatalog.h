// A catalog of one set for the length of a scope, and NLSPATH that leads there.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include <olvex/olvex.h>

inline constexpr char kCatalogName[] = "bench";
inline constexpr int kCatalogKey = 77;
inline constexpr char kCatalogText[] = "The user %1$s opened the file %2$s";
inline constexpr std::uint32_t kMessages = 100;

// A catalog of one set with kMessages messages, each of which is kCatalogText.
inline std::string catalogBytes()
{
    constexpr std::uint32_t records = sizeof(MCHeaderT) + sizeof(MCSetTDisk);
    constexpr std::uint32_t texts = records + kMessages * sizeof(MCMsgTDisk);
    MCHeaderT header = {{'*', 'n', 'a', 'z', 'g', 'u', 'l', '*'}, 1, 0, 0, 1, sizeof(MCHeaderT)};
    MCSetTDisk set = {1, 0, records, texts, kMessages * sizeof kCatalogText, kMessages, 0};
    hton_MCHeaderT(&header);
    hton_MCSetTDisk(&set);
    std::string bytes(reinterpret_cast<const char *>(&header), sizeof header);
    bytes.append(reinterpret_cast<const char *>(&set), sizeof set);
    for (std::uint32_t index = 0; index < kMessages; ++index) {
        MCMsgTDisk message = {index + 1, index * static_cast<std::uint32_t>(sizeof kCatalogText),
                              0};
        hton_MCMsgTDisk(&message);
        bytes.append(reinterpret_cast<const char *>(&message), sizeof message);
    }
    for (std::uint32_t index = 0; index < kMessages; ++index)
        bytes.append(kCatalogText, sizeof kCatalogText);
    return bytes;
}

// A folder with the catalog "bench", and NLSPATH that leads there.
class InstalledCatalog {
  public:
    InstalledCatalog()
    {
        char folder[] = "/tmp/olvex-bench-XXXXXX";
        path_ = std::string(mkdtemp(folder)) + "/bench.cat";
        FILE *file = std::fopen(path_.c_str(), "w");
        const std::string bytes = catalogBytes();
        if (file) std::fwrite(bytes.data(), 1, bytes.size(), file);
        if (file) std::fclose(file);
        ucv_set_nlspath((std::string(folder) + "/%L/%N.cat:" + folder + "/%N.cat").c_str());
    }
    ~InstalledCatalog()
    {
        unsetenv("NLSPATH");
        std::remove(path_.c_str());
        rmdir(path_.substr(0, path_.rfind('/')).c_str());
    }
    InstalledCatalog(const InstalledCatalog &) = delete;
    InstalledCatalog &operator=(const InstalledCatalog &) = delete;

  private:
    std::string path_;
};
