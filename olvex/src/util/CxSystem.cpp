// The clock and the host's name.
#include <olvex/System.h>

#include "util/CxResult.h"
#include "util/HotPath.h"

#include <cstring>
#include <netdb.h>
#include <sys/time.h>
#include <unistd.h>

using namespace olvex;

namespace {

// Puts the host's official name into the buffer if it is a qualified one; false when the name
// service knows none at all.
bool lookUpFullName(char *buffer, std::size_t length)
{
    addrinfo wanted = {};
    wanted.ai_flags = AI_CANONNAME;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(buffer, nullptr, &wanted, &found) != 0) return false;
    const char *name = found ? found->ai_canonname : nullptr;
    if (name && std::strchr(name, '.')) {
        std::strncpy(buffer, name, length - 1);
        buffer[length - 1] = '\0';
    }
    freeaddrinfo(found);
    return true;
}

} // namespace

OVX_HOT int64_t CxSystemGetTimestamp(void)
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_usec / 1000;
}

CxResult CxSystemGetFQHostname(char *buffer, size_t length)
{
    if (!buffer || length == 0) return badArgument();
    *buffer = '\0';
    const int failed = gethostname(buffer, length);
    buffer[length - 1] = '\0'; // a name that does not fit comes without
    if (failed) return failure(CX_ENOSYS);
    if (std::strchr(buffer, '.')) return success();
    return lookUpFullName(buffer, length) ? success() : failure(CX_ENOSYS);
}
