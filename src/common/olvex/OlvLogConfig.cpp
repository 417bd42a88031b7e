// Finds the trace properties file: the product's home directory, the configuration directory below
// it, the file in that. Without locks; belongs to start-up.
#include "OlvLogConfig.h"

#include <olvex/Process.h>
#include <olvex/trace/OlvLogWrapper.h>

#include <cstdio>
#include <cstring>

inline namespace olvex_trace {

char g_LogPropertiesFile[olvex::kTraceBuffer];

const wchar_t *const FS_PROVIDER_STANDARD = L"provider_standard";
const wchar_t *const FS_PROVIDER_CACHE = L"provider_cache";
const wchar_t *const FS_PROVIDER_CACHE2 = L"provider_cache2";
const wchar_t *const FS_PROVIDER_CACHE3 = L"provider_cache3";
const wchar_t *const FS_PROVIDER_REMOTE_CACHE = L"provider_remote_cache";
const wchar_t *const FS_PROVIDER_REMOTE_CACHE2 = L"provider_remote_cache2";
const wchar_t *const FS_PROVIDER_REMOTE_CACHE3 = L"provider_remote_cache3";

} // namespace olvex_trace

namespace {

using olvex::kTraceBuffer;

constexpr const char *kProductFile = "/etc/zet/"
                                     "zet.ini";
constexpr const char *kHomeKey = "ZET_HomeDirectory";
constexpr const char *kHomeVariable = "ZET_TEST";

// Puts two texts into a buffer of kTraceBuffer bytes, cut where it ends. The first may be what is
// in the buffer.
void join(char *buffer, const char *first, const char *second)
{
    const std::size_t length = strnlen(first, kTraceBuffer - 1);
    const std::size_t more = strnlen(second, kTraceBuffer - 1 - length);
    std::memmove(buffer, first, length);
    std::memcpy(buffer + length, second, more);
    buffer[length + more] = '\0';
}

// Reads one line of at most 1023 bytes, without what a longer one has more.
bool readLine(std::FILE *file, char *line)
{
    if (!std::fgets(line, static_cast<int>(kTraceBuffer), file)) return false;
    if (std::strlen(line) < kTraceBuffer - 1 || std::strchr(line, '\n')) return true;
    for (int ch = std::getc(file); ch != EOF && ch != '\n';)
        ch = std::getc(file);
    return true;
}

// The value in a line "key=value" with the key of the home directory, or none; changes the line.
const char *findHome(char *line)
{
    char *equals = std::strchr(line, '=');
    if (!equals) return nullptr;
    *equals = '\0';
    return std::strcmp(trim(line), kHomeKey) == 0 ? trim(equals + 1) : nullptr;
}

} // namespace

void olvex::readHomeDirectory(const char *path, char *home)
{
    *home = '\0';
    std::FILE *file = std::fopen(path, "re");
    if (!file) return;
    char line[kTraceBuffer];
    const char *found = nullptr;
    while (!found && readLine(file, line))
        found = findHome(line);
    if (found) join(home, found, "");
    std::fclose(file);
}

inline namespace olvex_trace {

char *get_config_directory_path(char *buffer)
{
    if (!buffer) return nullptr;
    // None in a process with raised privileges, which does not trust its environment.
    const char *home = CxProcessGetEnv(kHomeVariable);
    if (!home) {
        olvex::readHomeDirectory(kProductFile, buffer);
        home = buffer;
    }
    join(buffer, home, "/config/");
    return buffer;
}

char *initializeWrapper(const char *propertiesFile)
{
    char directory[kTraceBuffer];
    if (propertiesFile)
        join(g_LogPropertiesFile, propertiesFile, "");
    else
        join(g_LogPropertiesFile, get_config_directory_path(directory), "ZetTrace.properties");
    return convertSlashes(g_LogPropertiesFile);
}

} // namespace olvex_trace
