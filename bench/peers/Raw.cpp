// The system calls alone: one write of a line that was finished beforehand.
#include "Peer.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <arpa/inet.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int file = -1;
long size = 0;
std::string path;
bool rolling = false;
std::string line;

int openFile()
{
    return ::open(path.c_str(), O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0644);
}

void roll()
{
    ::close(file);
    for (int number = peer::kRollingFiles - 2; number >= 0; --number) {
        const std::string from = number ? path + std::to_string(number) : path;
        std::rename(from.c_str(), (path + std::to_string(number + 1)).c_str());
    }
    file = openFile();
    size = 0;
}

} // namespace

namespace peer {

bool open(Output output, const std::string &name)
{
    if (output != Output::kFile && output != Output::kRolling) return false;
    path = name;
    rolling = output == Output::kRolling;
    line = std::string("2026-01-31 12:00:00.000+00:00 ") + kSource + ' ' + kFunction + ' ' +
           std::to_string(kLine) + " The " + kCustomer + " ordered " + kArticle + ", 0000000\n";
    file = openFile();
    return file >= 0;
}

void log(int number)
{
    for (std::size_t at = line.size() - 2; number && line[at] != ' '; --at, number /= 10)
        line[at] = static_cast<char>('0' + number % 10);
    if (rolling && size >= kRollingBytes) roll();
    const ssize_t written = ::write(file, line.data(), line.size());
    if (written > 0) size += written;
}

void skip(int) {}

// What any call of another library's function costs: this one turns four bytes around.
void skipThroughCall(int number)
{
    if ((htonl)(static_cast<std::uint32_t>(number)) == 0xFF) std::abort();
}

void close()
{
    ::close(file);
}

} // namespace peer
