// Reads a log as `olvex view` does, in this process.
#pragma once

#include "Command.h"

#include "view/LogSource.h"

namespace tools_test {

// What a record said, with texts of its own.
struct Seen {
    tools::view::Record record;
    std::string raw;
    std::string id;
    std::string text;
    std::string fields[tools::view::kFieldCount];

    explicit Seen(const tools::view::Record &from)
        : record(from), raw(from.raw), id(from.id), text(from.text)
    {
        for (std::size_t i = 0; i < tools::view::kFieldCount; ++i)
            fields[i] = from.fields[i];
    }
    std::string operator[](tools::view::Field field) const
    {
        return fields[static_cast<std::size_t>(field)];
    }
};

struct Reading {
    std::vector<Seen> records;
    std::string reports; // standard error, without the command's and the file's names

    std::vector<std::string> texts() const
    {
        std::vector<std::string> texts;
        for (const Seen &seen : records)
            texts.push_back(seen.text);
        return texts;
    }
};

inline std::string withoutAll(std::string text, const std::string &part)
{
    for (std::size_t at; (at = text.find(part)) != std::string::npos;)
        text.erase(at, part.size());
    return text;
}

inline Reading readLog(const std::string &contents, const tools::view::LogOptions &options = {})
{
    using namespace tools::view;
    Reading reading;
    testing::internal::CaptureStderr();
    {
        std::vector<LogFile> files(1);
        files[0].path = "log";
        files[0].descriptor = Descriptor(makeFile(contents));
        files[0].isRegular = true;
        Reports reports;
        LogSource source("log", std::move(files), options, Depth::kAll, reports);
        Record record;
        while (source.next(record) == LogSource::Answer::kRecord)
            reading.records.emplace_back(record);
    }
    reading.reports =
        withoutAll(testing::internal::GetCapturedStderr(), "olvex view: log: at byte ");
    return reading;
}

} // namespace tools_test
