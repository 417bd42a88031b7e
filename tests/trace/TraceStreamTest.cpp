// The trace stream: what it appends, sends and dumps, and the base classes below it.
#include <olvex/trace/Trace.h>
#include <olvex/trace/base/ErrorManager.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

namespace {

// Writes down what it is told.
class Listener : public Tracer {
  public:
    explicit Listener(Level level) : level_(level) {}
    void logMessage(Level level, const char *file, int line, const char *method,
                    const char *text) override
    {
        add("message", level, file, line, method, text);
    }
    void logEntry(Level level, const char *file, int line, const char *method,
                  const char *text) override
    {
        add("entry", level, file, line, method, text);
    }
    void logExit(Level level, const char *file, int line, const char *method,
                 const char *text) override
    {
        add("exit", level, file, line, method, text);
    }
    void setLevel(Level level) override { level_ = level; }
    Level getLevel() override { return level_; }

    std::string heard;

  private:
    void add(const char *what, Level level, const char *file, int line, const char *method,
             const char *text)
    {
        heard += std::string(what) + " " + std::to_string(level) + " " + file + ":" +
                 std::to_string(line) + " " + method + " '" + text + "'\n";
    }

    Level level_;
};

class Point : public Object {
  public:
    String toString() const override { return "(3,4)"; }
};

// The text of one message that the function puts together.
template <typename Put>
std::string textOf(Put put)
{
    Listener listener(Tracer::LEVEL_INFO);
    Trace trace(listener, "");
    put(trace);
    trace.logMessage();
    const std::string &heard = listener.heard;
    const auto start = heard.find('\'') + 1;
    return heard.substr(start, heard.rfind('\'') - start);
}

TEST(TraceStream, BracketsAMethodAndSendsItsMessages)
{
    Listener listener(Tracer::LEVEL_INFO);
    {
        Trace trace(listener, "run");
        trace.pos("f.cpp", 7) << "x=" << 5 << Trace::end;
        trace << Trace::Modifier(1) << "left over";
    }
    Trace(listener, L"gr\u00f6\u00dfe");
    Trace(listener, "");
    EXPECT_EQ(listener.heard, "entry 3 :0 run ''\n"
                              "message 3 f.cpp:7 run 'x=5'\n"
                              "exit 3 :0 run 'left over'\n"
                              "entry 3 :0 größe ''\n"
                              "exit 3 :0 größe ''\n");
}

TEST(TraceStream, ConvertsEveryType)
{
    int object = 0;
    void *pointer = &object;
    const void *constPointer = pointer;
    char expected[32];
    snprintf(expected, sizeof expected, "%p|%p", pointer, pointer);
    EXPECT_EQ(textOf([&](Trace &t) { t << pointer << '|' << constPointer; }), expected);
    EXPECT_EQ(
        textOf([](Trace &t) { t << true << ' ' << false << ' ' << -1 << ' ' << 4294967295u; }),
        "true false -1 4294967295");
    EXPECT_EQ(textOf([](Trace &t) { t << -5l << ' ' << 5ul << ' ' << String("s") << Point(); }),
              "-5 5 s(3,4)");
    const char *none = nullptr;
    const wchar_t *wideNone = nullptr;
    EXPECT_EQ(textOf([&](Trace &t) { t << none << wideNone << L"\u20ac\U0001f600"; }),
              "(null)(null)\u20ac\U0001f600");
}

TEST(TraceStream, WithoutTheLevelNothingIsCollected)
{
    Listener listener(Tracer::LEVEL_WARNING);
    {
        Trace trace(listener, "m");
        listener.setLevel(Tracer::LEVEL_INFO);
        trace << "text" << 1 << L"wide" << Point() << true;
        trace.hex("abc", 3).dumpError().logMessage();
    }
    EXPECT_EQ(listener.heard, "entry 3 :0 m ''\nmessage 3 :0 m ''\nexit 3 :0 m ''\n");
}

TEST(TraceStream, DumpsBytesInColumns)
{
    EXPECT_EQ(textOf([](Trace &t) { t.hex("A\0~", 3); }),
              "\n-START DATA-: 3 (0x3) bytes-\n00000000: 41 00 7e " + std::string(39, ' ') +
                  "A..\n-END DATA-");
    EXPECT_EQ(textOf([](Trace &t) { t << "d" << t.hex("0123456789abcde\xffz{ \x1f", 18); }),
              "d\n-START DATA-: 18 (0x12) bytes-\n"
              "00000000: 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 ff 0123456789abcde.\n"
              "00000010: 7a 7b " +
                  std::string(42, ' ') + "z.\n-END DATA-");
}

TEST(TraceStream, FormatsIntoABufferOfItsOwn)
{
    Listener listener(Tracer::LEVEL_FATAL);
    Trace trace(listener, "");
    const char *first = trace.format("%s-%d", std::string(5000, 'y').c_str(), 7);
    EXPECT_EQ(first, std::string(5000, 'y') + "-7");
    EXPECT_EQ(std::string(trace.format("<%.3s>", first)), "<yyy>");
    const char *noFormat = nullptr;
    EXPECT_EQ(Trace::vsprintf(noFormat, nullptr), nullptr);
    setlocale(LC_ALL, "C");
    EXPECT_EQ(trace.format("%ls", L"\u20ac"), nullptr);
}

TEST(TraceStream, DumpsTheCurrentErrorOfTheThread)
{
    const auto dump = [] { return textOf([](Trace &t) { t << "replaced" << t.dumpError(); }); };
    const std::string empty = "\n\n----[ STACK DUMP ]----\nError: 0  File:   Line: 0\n"
                              "----< call stack >----\n";
    EXPECT_EQ(dump(), empty);
    ErrorManager::setError(42, "disk.cpp", 17);
    const std::string head = "\n\n----[ STACK DUMP ]----\nError: 42  File: disk.cpp  Line: 17\n"
                             "----< call stack >----\n";
    EXPECT_EQ(dump().substr(0, head.size()), head);
    EXPECT_GT(dump().size(), head.size() + 20);
    std::thread([&] { EXPECT_EQ(dump(), empty); }).join();
    ErrorManager::clear();
    EXPECT_EQ(dump(), empty);
}

TEST(ErrorManager, GivesTheCallStackWithinTheBuffer)
{
    OVX_SET_ERROR(5);
    const char *file = nullptr;
    ErrorManager::getFile(&file);
    EXPECT_STREQ(file, __FILE__);
    long size = 0;
    ErrorManager::getStackDump(nullptr, &size);
    ASSERT_GT(size, 10);
    std::string whole(static_cast<std::size_t>(size), 'x');
    ErrorManager::getStackDump(whole.data(), &size);
    EXPECT_EQ(std::strlen(whole.c_str()), whole.size() - 1);
    EXPECT_EQ(whole[whole.size() - 2], '\n');
    for (long room = 0; room < size; ++room) {
        std::string part(static_cast<std::size_t>(room) + 1, '#');
        ErrorManager::getStackDump(part.data(), &room);
        const std::string expected =
            room == 0 ? "#" : whole.substr(0, static_cast<std::size_t>(room) - 1) + '\0' + "#";
        ASSERT_EQ(part, expected);
    }
    const std::string longName(300, 'n');
    ErrorManager::setError(1, longName.c_str(), 1);
    ErrorManager::getFile(&file);
    EXPECT_EQ(file, longName.substr(0, 255));
}

TEST(TraceString, AppendsAndAssignsPartsOfItself)
{
    String text("0123456789");
    std::string expected = "0123456789";
    for (int i = 0; i < 4; ++i) {
        text.concat(static_cast<const char *>(text) + 3).concat(text);
        expected += expected.substr(3);
        expected += expected;
        ASSERT_STREQ(text, expected.c_str());
        ASSERT_EQ(text.length(), expected.size());
    }
    text.assign(static_cast<const char *>(text) + 5);
    EXPECT_EQ(std::string(text), expected.substr(5));
    text = text;
    const String copy(text);
    text = L"\xd800 \u00e4";
    EXPECT_STREQ(text, "\ufffd \u00e4");
    EXPECT_EQ(std::string(copy), expected.substr(5));
    text.assign(static_cast<const char *>(nullptr)).concat(static_cast<const wchar_t *>(nullptr));
    EXPECT_EQ(text.length(), 0u);
}

} // namespace
