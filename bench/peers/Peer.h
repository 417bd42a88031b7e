// What the comparison asks of a logging library: to write one line for each record, which has left
// the process when the call returns. Each library is a program of its own: this interface written
// with that library, and the harness that drives it.
#pragma once

#include <string>

namespace peer {

enum class Output {
    kFile,    // one file that grows
    kRolling, // three files of 1 MiB
    kShared,  // a rolling file that several processes write, and that loses nothing
    kNowhere, // formatted and thrown away
};

// The parts of the line that are the same for all; its number comes from the record.
inline constexpr const char *kSource = "orders.cpp";
inline constexpr const char *kFunction = "acceptOrder";
inline constexpr int kLine = 412;
inline constexpr const char *kCustomer = "customer-20417";
inline constexpr const char *kArticle = "article 4711/blue/large";

inline constexpr int kRollingBytes = 1 << 20;
inline constexpr int kRollingFiles = 3;
inline constexpr int kSharedBytes = 8 << 20;
inline constexpr int kSharedFiles = 64;

// What arrived nowhere, in bytes: work that delivers nothing must not count.
inline long bytesDropped = 0;

// False when the library cannot do it.
bool open(Output output, const std::string &path);
// Writes "DATE orders.cpp acceptOrder 412 The customer-20417 ordered article 4711/blue/large,
// NUMBER".
void log(int number);
// A call below the logger's threshold, in the form that the library recommends.
void skip(int number);
// The same as a plain call of a function, where that differs.
void skipThroughCall(int number);
void close();
// Removes what a shared log of the processes that this one started has left in the system.
void forgetShared();

} // namespace peer
