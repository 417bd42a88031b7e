// What is read from records of each format, and what is made of bytes that are none.
#include "Command.h"

#include <gmock/gmock.h>

#include <random>

#include "view/LogSource.h"
#include "view/Times.h"
#include "view/Writers.h"

using namespace tools_test;
using namespace tools::view;
using testing::ElementsAre;
using testing::HasSubstr;
using namespace std::literals;

namespace {

const std::string kStamp = "2008-04-01 13:05:09.042+02:00";
constexpr std::int64_t kMillis = 1207047909042;

// The fields of a record as JSON gives them, without quotes, from its time to its text and what
// follows that; the time is @ when it is the one above.
std::string describe(const Record &record)
{
    char *json = nullptr;
    std::size_t size = 0;
    FILE *stream = open_memstream(&json, &size);
    makeJsonWriter(stream)->write(record);
    std::fclose(stream);
    std::string text = json;
    std::free(json);
    std::erase(text, '"');
    text.resize(text.find(",format:"));
    text.erase(0, text.find("millis:") + 7);
    return text.starts_with(std::to_string(kMillis)) ? "@" + text.substr(13) : text;
}

struct Reading {
    std::vector<std::string> records; // described, those that are not long
    std::vector<std::string> texts;
    std::string reports; // standard error, without the command's and the file's names
};

// Reads a log as `olvex view` does, and looks at each record.
template <class Look>
std::string readEach(const std::string &contents, const LogOptions &options, Look look)
{
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
            look(record);
    }
    std::string reports = testing::internal::GetCapturedStderr();
    for (std::size_t at; (at = reports.find("olvex view: log: at byte ")) != std::string::npos;)
        reports.erase(at, 25);
    return reports;
}

Reading readLog(const std::string &contents, const LogOptions &options = {})
{
    Reading reading;
    reading.reports = readEach(contents, options, [&](const Record &record) {
        if (record.text.size() < 1000) reading.records.push_back(describe(record));
        reading.texts.emplace_back(record.text);
    });
    return reading;
}

std::string xml(const std::string &inner, const std::string &id = "OVXBC0020E")
{
    return "<Message Id=\"" + id + "\" Severity=\"ERROR\">\n <Time Millis=\"1207047909042\">" +
           kStamp + "</Time>\n" + inner + "</Message>\n";
}

std::string xmlText(const std::string &text)
{
    return " <LogText><![CDATA[" + text + "]]></LogText>\n";
}

std::string trace(const std::string &fields)
{
    return "\x1e[" + kStamp + "] - " + fields + "\n";
}

LogOptions optionsOf(std::vector<Field> fields, const char *timeLayout = "")
{
    LogOptions options;
    options.knowsFields = !fields.empty();
    options.fields = std::move(fields);
    options.timeLayout = timeLayout;
    return options;
}

} // namespace

TEST(ViewFormats, AreReadWhole)
{
    const std::string bare = "<Trace>\n <Time Millis=\"-5\"></Time>\n" + xmlText("") +
                             " <Source FileName=\"None\" Method=\"None\"/>\n</Trace>\n";
    const std::string method = "doWork                        ";
    const struct {
        std::string log;
        std::vector<std::string> records;
        LogOptions options = {};
    } cases[] = {
        {kStamp + " OVXBC0020E Out of memory.\n",
         {"@,level:ERROR,id:OVXBC0020E,text:OVXBC0020E Out of memory."}},
        {kStamp + " main.c doWork 117 node7 OVX0034W: b\n c\n\nd\n",
         {"@,level:WARN,id:OVX0034W,text:OVX0034W: b\\n c\\n\\nd,sourceFile:main.c,function:doWork,"
          "line:117,fields:main.c doWork 117 node7"}},
        {kStamp + "|engine|node 7|Text ABC1234W\n",
         {"@,text:Text ABC1234W,component:engine,server:node 7"},
         optionsOf({Field::kComponent, Field::kServer})},
        {kStamp + " \n", {"@,text:"}},
        {kStamp + " ABC1234Wx DEF1234 gHI123I.\n",
         {"@,level:WARN,id:ABC1234W,text:ABC1234Wx DEF1234 gHI123I."}},
        {kStamp + " see ABC1234Wx\n", {"@,text:see ABC1234Wx"}},
        {"01.04.2008 13:05:09 +0200 one\n 02 two\n01.04.2008 13:05:10 +0000 three\n",
         {"1207047909000,text:one\\n 02 two", "1207055110000,text:three"},
         optionsOf({}, "%d.%m.%Y %H:%M:%S %z")},
        {trace("INFO  - node7 - p1234:t5 - a.cpp:ns::work(117) - OVXBC0020E - OVXBC0020E Out - of"),
         {"@,level:INFO,id:OVXBC0020E,text:OVXBC0020E Out - of,sourceFile:a.cpp,function:ns::work,"
          "line:117,server:node7,process:1234,thread:5"}},
        {trace("OTHER -  -  -  -  - "), {"@,level:OTHER,text:"}},
        {trace(" MIN  -  - t7 - a.cpp:operator - (3) -  - a - b"),
         {"@,level:DEBUG_MIN,text:a - b,sourceFile:a.cpp,function:operator - ,line:3,thread:7"}},
        {"08/04/02 13:05:09 E [Vpd     ] " + method +
             " [0007] --> ENTRY\n08/04/02 13:05:10 I [FileScan] " + method +
             " [12345]     in\ndeed\n08/04/02 13:05:10 F [XSE     ] " + method +
             " [0007] <---- EXIT\n",
         {"1207141509000,level:ERROR,text:ENTRY,function:doWork,component:Vpd,thread:0007",
          "1207141510000,level:INFO,text:in\\ndeed,function:doWork,component:FileScan,thread:12345",
          "1207141510000,level:FATAL,text:EXIT,function:doWork,component:XSE,thread:0007"}},
        {xml(" <Server Format=\"IP\">n<ode>7</Server>\n <Component>en\ngine</Component>\n" +
                 xmlText("a]]></LogText> ]]>\n</Message>\n]]></LogText>\nb") +
                 " <LogAttribs><Key>k</Key><Value></Value>\n</Value><Key>l</Key><Value></Value>"
                 "</LogAttribs>\n <Source FileName=\"m\"a.c\" Method=\"operator\"\"_x\" "
                 "Line=\"-1\"/>\n"
                 " <TranslationInfo Type=\"XPG4\" Catalog=\"c\" MsgKey=\"20\" SetId=\"1\">"
                 "<Param><![CDATA[]]>\n]]></Param><Param><![CDATA[]]></Param></TranslationInfo>\n"
                 " <Principal>user1</Principal>\n",
             "a\" Severity=\"b"),
         {"@,level:ERROR,id:a\\ Severity=\\b,text:a]]></LogText> ]]>\\n</Message>\\n]]></LogText>"
          "\\nb,kind:Message,sourceFile:m\\a.c,function:operator\\\\_x,line:-1,component:en\\ngine,"
          "client:user1,server:n<ode>7,serverFormat:IP,catalog:c,messageSet:1,messageKey:20,"
          "attributes:{k:</Value>\\n,l:},parameters:[]]>\\n,]"}},
        {" <Server Format=\"\">node7</Server>\n <Component>c</Component>\n" + bare +
             xml(" <Component>own</Component>\n", "None") +
             "<Trace Level=\"MID\">\n <Time Millis=\"1\"></Time>\n" + xmlText("OVX0034E x") +
             "</Trace>\n",
         {"-5,text:,kind:Trace,component:c,server:node7,serverFormat:",
          "@,level:ERROR,text:,kind:Message,component:own,server:node7,serverFormat:",
          "1,level:DEBUG_MID,id:OVX0034E,text:OVX0034E x,kind:Trace,component:c,server:node7,"
          "serverFormat:"}},
    };
    setenv("TZ", "UTC", 1); // the console's times have no zone
    for (const auto &entry : cases) {
        const Reading reading = readLog(entry.log, entry.options);
        EXPECT_EQ(reading.reports, "") << entry.log;
        EXPECT_EQ(reading.records, entry.records) << entry.log;
    }
    unsetenv("TZ");
}

// Damage

TEST(ViewFormats, GoesOnBehindDamage)
{
    const std::string record = xml(xmlText("whole"));
    const std::string cut = record.substr(0, record.find("le]]>"));
    const std::string line = kStamp + " line\n";
    const auto sizeOf = [](const std::string &text) { return std::to_string(text.size()); };
    const std::string cutReport = ": a record that is cut off before its end (";

    Reading reading = readLog(cut + record + cut + "\n" + line + record + cut);
    EXPECT_THAT(reading.texts, ElementsAre("who", "whole", "who", "line", "whole", "who"));
    EXPECT_EQ(reading.reports, "0" + cutReport + sizeOf(cut) + " bytes)\n" + sizeOf(cut + record) +
                                   cutReport + sizeOf(cut + "\n") + " bytes)\n" +
                                   sizeOf(cut + record + cut + "\n" + line + record) + cutReport +
                                   sizeOf(cut) + " bytes)\n");

    reading = readLog("lost\nlines\n" + line + std::string(100, '\0') + line);
    EXPECT_THAT(reading.texts, ElementsAre("line", "line"));
    EXPECT_EQ(reading.reports, "0: no record that is known (11 bytes)\n" +
                                   sizeOf("lost\nlines\n" + line) +
                                   ": no record that is known (100 bytes)\n");

    const std::string whole = trace("INFO  -  -  -  -  - text");
    reading = readLog(whole.substr(0, whole.size() - 4) + whole + line.substr(0, line.size() - 1));
    EXPECT_THAT(reading.texts, ElementsAre("t", "text", "line"));
    EXPECT_EQ(std::count(reading.reports.begin(), reading.reports.end(), '\n'), 2);

    // What is left of a record is no product information, and does not hide the records behind it.
    reading = readLog(" <Component>x</Component>\n" + xmlText("y") + record +
                      "</Trace>\n <Component>\n" + line);
    EXPECT_THAT(reading.records,
                ElementsAre("@,level:ERROR,id:OVXBC0020E,text:whole,kind:Message", "@,text:line"));
    EXPECT_EQ(std::count(reading.reports.begin(), reading.reports.end(), '\n'), 2);

    for (const char *head :
         {"11/25/26 12:00:01 F@[Vpd     ] ", "11/25/26 12:00:01@F [Vpd     ] "}) {
        std::string bytes = std::string(head) + "main\n";
        std::replace(bytes.begin(), bytes.end(), '@', '\0');
        EXPECT_THAT(readLog(bytes + line).texts, ElementsAre("line")) << head;
    }

    reading = readLog("junk" + record + "junk\n" + whole + "</Message>\n");
    EXPECT_THAT(reading.texts, ElementsAre("whole", "text\n</Message>"));
    EXPECT_EQ(reading.reports, "0: no record that is known (4 bytes)\n" + sizeOf("junk" + record) +
                                   ": no record that is known (5 bytes)\n");
}

TEST(ViewFormats, SaysOnceThatRecordsAreNotUtf8)
{
    const std::string line = kStamp + " caf\xE9\n";
    const Reading reading = readLog(kStamp + " caf\xC3\xA9\n" + line + line);
    EXPECT_EQ(reading.texts.at(2), "caf\xE9");
    EXPECT_EQ(reading.reports, "36: a record that is not in UTF-8\n");
}

// Records that end just before, at and behind the end of a block, and long ones.
TEST(ViewFormats, KeepsRecordsWholeAcrossBlocks)
{
    constexpr std::size_t kBlock = 256 * 1024;
    for (const std::string &record :
         {kStamp + " text\n", xml(xmlText("text")), trace("INFO  -  -  -  -  - text")}) {
        for (std::size_t shift = 0; shift < record.size() + 32; ++shift) {
            const std::string first =
                kStamp + " " + std::string(kBlock - record.size() - kStamp.size() - shift, 'x') +
                "\n";
            const Reading reading = readLog(first + record + record);
            ASSERT_EQ(reading.reports, "") << shift;
            ASSERT_EQ(reading.texts.size(), 3U) << shift;
            ASSERT_EQ(reading.texts[2], "text") << shift;
        }
    }
    EXPECT_EQ(readLog(xml(xmlText(std::string(3 << 20, '\n')))).texts.at(0).size(), 3U << 20);
}

TEST(ViewFormats, BoundsTheSizeOfARecord)
{
    const std::string line = kStamp + " next\n";
    const Reading reading = readLog(kStamp + " " + std::string(20 << 20, 'x') + "\n" + line);
    ASSERT_EQ(reading.texts.size(), 2U);
    EXPECT_EQ(reading.texts[0].size(), kLongestRecord - kStamp.size() - 1);
    EXPECT_EQ(reading.texts[1], "next");
    EXPECT_THAT(reading.reports, HasSubstr("cut off"));
    EXPECT_EQ(readLog(" <Component>" + std::string(20 << 20, 'x') + "\n" + line).texts.size(), 1U);
}

// Cuts bytes into frames as they come in, `step` at most at a time.
std::vector<Frame> recordsIn(const std::string &bytes, std::size_t step)
{
    std::vector<Frame> records;
    std::size_t begin = 0, end = 0;
    for (;;) {
        const bool isLast = end == bytes.size();
        Frame frame = nextFrame(std::string_view(bytes).substr(begin, end - begin), isLast, {});
        EXPECT_LE(frame.length, end - begin);
        EXPECT_EQ(frame.length == 0, frame.kind == FrameKind::kNeedsMore);
        if (isLast && frame.length == 0) break;
        if (frame.length == 0) end = std::min(bytes.size(), end + step);
        begin += frame.length;
        if (frame.kind != FrameKind::kRecord) continue;
        frame.length += begin << 16; // the place too
        records.push_back(frame);
    }
    EXPECT_EQ(begin, bytes.size());
    return records;
}

// Whatever the bytes, each is in one frame, it does not matter in which pieces they are read, and
// no record makes its parser fail.
TEST(ViewFormats, SurvivesAnyBytes)
{
    std::vector<std::string> pieces = partsOf(
        " text OVXBC0020E\n|\n|\0\0\0|</Message>\n|<Message Id=\"|\">|<Trace>\n|\x1e[|"
        " <Time Millis=\"1\">\n|] - INFO |<![CDATA[|\xE9\xFF| <LogText><![CDATA[| - | "
        "<Component>|\"/>\n|"
        "]]></LogText>\n|<Param>|</Component>\n|</Value>|08/04/03 13:05:09 I [Vpd     ] |[7]|"
        "</Trace>\n|</LogAttribs>| <LogAttribs><Key>|</Time>\n| <Source FileName=|p1:t2| <TranslationInfo "sv);
    pieces.insert(pieces.end(), {kStamp, "\x1e[" + kStamp, xml(xmlText("x"))});
    std::mt19937 random(7);
    for (int round = 0; round < 4000; ++round) {
        std::string bytes;
        for (auto count = random() % 30; count > 0; --count)
            bytes += pieces[random() % std::size(pieces)];
        const std::vector<Frame> whole = recordsIn(bytes, bytes.size() + 1);
        const std::vector<Frame> piecewise = recordsIn(bytes, 1 + random() % 20);
        ASSERT_EQ(whole.size(), piecewise.size()) << bytes;
        for (std::size_t i = 0; i < whole.size(); ++i) {
            ASSERT_EQ(whole[i].length, piecewise[i].length) << bytes;
            ASSERT_EQ(whole[i].isCut, piecewise[i].isCut) << bytes;
        }
        readEach(bytes, {}, [&](const Record &record) {
            const auto offset = static_cast<std::size_t>(record.offset);
            ASSERT_EQ(bytes.substr(offset, record.raw.size()), record.raw) << bytes;
        });
    }
}

// Times

TEST(ViewTimes, ReadsIsoFormsWithAndWithoutZone)
{
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    tzset();
    for (const char *text : {"2008-04-01T13:05:09.042+02:00", "2008-04-01 11:05:09.042Z",
                             "2008-04-01T13:05:09,042", "2008-04-01T06:35:09.0429-0430"})
        EXPECT_EQ(readIsoTime(text), kMillis) << text;
    EXPECT_EQ(readIsoTime("2008-04-01"), kMillis - kMillis % 1000 - 47109'000);
    EXPECT_EQ(readIsoTime("2008-01-01T00:00"), 1199142000000);
    EXPECT_EQ(readIsoTime("1969-12-31T23:59:59.999Z"), -1);
    for (const char *text :
         {"", "2008", "2008-13-01", "2008-04-01T", "2008-04-01T13", "2008-04-01T13:05x",
          "2008-04-01T24:00", "2008-04-01T13:05+2", "2008-02-30", "2008-02-31", "2008-04-31",
          "2007-02-29", "1900-02-29", "2008-04-00", "2008-00-01"})
        EXPECT_FALSE(readIsoTime(text)) << text;
    EXPECT_EQ(readIsoTime("2000-02-29T00:00Z"), 951782400000);
    EXPECT_EQ(readIsoTime("0000-02-29T00:00Z"), -62162121600000);
    EXPECT_FALSE(readStamp("2008-02-30 13:05:09.042+02:00"));
    EXPECT_FALSE(readShortStamp("08/02/31 13:05:09"));
    // The record is one, but has no time; where a layout has no year, each day may be.
    const auto timeAs = [](const char *layout, const char *text) {
        return readTimeAs(layout, text).value().millis;
    };
    EXPECT_FALSE(timeAs("%d.%m.%Y", "30.02.2008 x"));
    EXPECT_FALSE(timeAs("%d.%m.%Y", "29.02.2007 x"));
    EXPECT_TRUE(timeAs("%d.%m.%Y", "29.02.2008 x"));
    EXPECT_TRUE(timeAs("%b %d %H:%M:%S", "Feb 29 13:05:09 x"));
    EXPECT_FALSE(timeAs("%b %d %H:%M:%S", "Feb 30 13:05:09 x"));
    EXPECT_EQ(writeStamp(-1), "1969-12-31 23:59:59.999+00:00");
    EXPECT_EQ(writeStamp(INT64_MIN), "-292275055-05-16 16:47:04.192+00:00");
    unsetenv("TZ");
    tzset();
}
