// One record of the soak (who wrote it, its number, and a check that it is whole), and the board on
// which writers note how far they came, in memory that a killed one cannot take along.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace soak {

inline constexpr int kMostThreads = 16;
inline constexpr int kMostWriters = 1 << 16; // a writer that takes a killed one's place counts anew

// One process. A thread's records are numbered from 0; `done` counts those whose call returned.
struct Writer {
    std::atomic<std::uint32_t> done[kMostThreads];
    std::atomic<bool> wasKilled;
};

struct Board {
    std::atomic<std::uint64_t> begun; // records of all writers
    Writer writers[kMostWriters];
};

struct RecordId {
    unsigned writer;
    unsigned thread;
    std::uint32_t number;
};

inline std::uint32_t checksum(std::string_view text)
{
    std::uint32_t sum = 2166136261u;
    for (const char byte : text)
        sum = (sum ^ static_cast<unsigned char>(byte)) * 16777619u;
    return sum;
}

// "<writer thread number fill sum>", between 40 and 100 bytes.
inline std::string compose(const RecordId &id)
{
    static const std::string fill(64, '.');
    char head[64];
    std::snprintf(head, sizeof head, "<%u %u %u ", id.writer, id.thread, id.number);
    std::string text = head + fill.substr(0, 8 + id.number % 56);
    char tail[16];
    std::snprintf(tail, sizeof tail, " %08x>", checksum(text));
    return text + tail;
}

// Who began to write this text, whether it is whole or not.
inline std::optional<RecordId> identify(const std::string &text)
{
    RecordId id = {};
    char blank = 0;
    const int read =
        std::sscanf(text.c_str(), "<%u %u %u%c", &id.writer, &id.thread, &id.number, &blank);
    if (read != 4 || blank != ' ') return std::nullopt;
    return id;
}

// The record that a text is, if it is whole.
inline std::optional<RecordId> parse(const std::string &text)
{
    const auto id = identify(text);
    return id && compose(*id) == text ? id : std::nullopt;
}

} // namespace soak
