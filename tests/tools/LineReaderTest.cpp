// Reading lines: their ends, their lengths, and what happens at the borders of the buffer.
#include "LineReader.h"

#include "Command.h"

using namespace tools_test;
using Lines = std::vector<std::string>;

namespace {

Lines linesOf(const std::string &input)
{
    const int file = makeFile(input);
    tools::LineReader reader(file);
    Lines lines;
    std::string_view line;
    while (reader.next(line)) {
        EXPECT_EQ(line.data()[line.size()], '\0');
        lines.emplace_back(line);
    }
    EXPECT_EQ(reader.error(), 0);
    close(file);
    return lines;
}

} // namespace

// Lines that end just before, at and just behind the end of the first block, and ones that need the
// buffer to grow, with both kinds of line end.
TEST(LineReader, KeepsLinesWholeAcrossBlocks)
{
    EXPECT_EQ(linesOf("a\rb\r\r\nc\r"), Lines({"a\rb\r", "c\r"}));
    constexpr std::size_t kBlock = 64 * 1024;
    for (const char *lineEnd : {"\n", "\r\n"}) {
        for (std::size_t length = kBlock - 3; length <= kBlock + 3; ++length) {
            const Lines lines = {std::string(length, 'a'), "b", std::string(3 * length, 'c'), "d"};
            std::string input;
            for (const std::string &line : lines)
                input += line + lineEnd;
            EXPECT_EQ(linesOf(input), lines) << length;
        }
    }
}
