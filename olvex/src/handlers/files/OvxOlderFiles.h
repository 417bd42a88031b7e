// The older files of a log, for a rollover to go through. Called with the API mutex held.
#pragma once

#include "handlers/files/OvxLogFiles.h"

namespace olvex {

// The numbers of the older files, highest first. If at most 32 numbers are possible, all of them
// are returned, whether there is such a file or not. Of more, only those that the log's directory
// holds, so that a limit that is never reached costs nothing. If the directory cannot be listed,
// numbers are probed from 1 on until 64 in a row have no file; files beyond that stay where they
// are, except that the highest possible number is always returned.
class OlderFiles {
  public:
    OlderFiles(const LogName &name, std::int32_t highest);
    OlderFiles(const OlderFiles &) = delete;
    OlderFiles &operator=(const OlderFiles &) = delete;

    // 0 at the end.
    std::int32_t next();

  private:
    bool list(const LogName &name, std::int32_t highest);
    bool add(std::int32_t number);

    Owned<std::int32_t> found_; // ascending, taken from the end
    std::size_t count_ = 0;
    std::size_t capacity_ = 0;
    std::int32_t beforeAll_ = 0; // returned first: the highest number, when probing ended below it
    std::int32_t nextOfAll_ = 0; // then all from here down, whether there are files or not
};

} // namespace olvex
