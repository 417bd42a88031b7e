// What is read from records of each format, and what is made of bytes that are none.
#include "ViewLog.h"

#include <gmock/gmock.h>

#include <random>

#include "view/Times.h"

using namespace tools_test;
using namespace tools::view;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::literals;

namespace {

const std::string kStamp = "2008-04-01 13:05:09.042+02:00";
constexpr std::int64_t kMillis = 1207047909042;

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

Seen only(const Reading &reading)
{
    EXPECT_EQ(reading.reports, "");
    EXPECT_EQ(reading.records.size(), 1U);
    return reading.records.at(0);
}

LogOptions withFields(std::vector<Field> fields)
{
    LogOptions options;
    options.knowsFields = true;
    options.fields = std::move(fields);
    return options;
}

} // namespace

TEST(ViewFormats, ReadsTextLines)
{
    const Seen plain = only(readLog(kStamp + " OVXBC0020E Out of memory.\n"));
    EXPECT_EQ(plain.record.millis, kMillis);
    EXPECT_EQ(plain.id, "OVXBC0020E");
    EXPECT_EQ(plain.record.level, Level::kError);
    EXPECT_EQ(plain.text, "OVXBC0020E Out of memory.");

    const Seen placed = only(readLog(kStamp + " main.c doWork 117 node7 OVX0034W: b\n c\n\nd\n"));
    EXPECT_EQ(placed[Field::kSourceFile], "main.c");
    EXPECT_EQ(placed[Field::kFunction], "doWork");
    EXPECT_EQ(placed[Field::kLine], "117");
    EXPECT_EQ(placed[Field::kPrefix], "main.c doWork 117 node7");
    EXPECT_EQ(placed.text, "OVX0034W: b\n c\n\nd");

    const Seen barred = only(readLog(kStamp + "|engine|node 7|Text ABC1234W\n",
                                     withFields({Field::kComponent, Field::kServer})));
    EXPECT_EQ(barred[Field::kComponent], "engine");
    EXPECT_EQ(barred[Field::kServer], "node 7");
    EXPECT_EQ(barred.text, "Text ABC1234W");
    EXPECT_EQ(barred.record.level, Level::kNone);

    EXPECT_EQ(only(readLog(kStamp + " \n")).text, "");
    EXPECT_EQ(only(readLog(kStamp + " ABC1234Wx DEF1234 gHI123I.\n")).id, "ABC1234W");
    EXPECT_EQ(only(readLog(kStamp + " see ABC1234Wx\n")).id, "");
}

TEST(ViewFormats, ReadsTextLinesWithAnotherTime)
{
    LogOptions options;
    options.timeLayout = "%d.%m.%Y %H:%M:%S %z";
    const Reading reading = readLog(
        "01.04.2008 13:05:09 +0200 one\n 02 two\n01.04.2008 13:05:10 +0000 three\n", options);
    EXPECT_THAT(reading.texts(), ElementsAre("one\n 02 two", "three"));
    EXPECT_EQ(reading.records.at(0).record.millis, 1207047909000);
    EXPECT_EQ(reading.records.at(1).record.millis, 1207055110000);
}

TEST(ViewFormats, ReadsTraceLines)
{
    const Seen whole = only(readLog(trace("INFO  - node7 - p1234:t5 - a.cpp:ns::work(117) - "
                                          "OVXBC0020E - OVXBC0020E Out - of - memory.")));
    EXPECT_EQ(whole.record.millis, kMillis);
    EXPECT_EQ(whole.record.level, Level::kInfo);
    EXPECT_EQ(whole[Field::kServer], "node7");
    EXPECT_EQ(whole[Field::kProcess], "1234");
    EXPECT_EQ(whole[Field::kThread], "5");
    EXPECT_EQ(whole[Field::kSourceFile], "a.cpp");
    EXPECT_EQ(whole[Field::kFunction], "ns::work");
    EXPECT_EQ(whole[Field::kLine], "117");
    EXPECT_EQ(whole.text, "OVXBC0020E Out - of - memory.");

    const Seen empty = only(readLog(trace("OTHER -  -  -  -  - ")));
    EXPECT_EQ(empty.record.level, Level::kOther);
    for (std::size_t i = 0; i < kFieldCount; ++i)
        EXPECT_EQ(empty.fields[i], "");

    const Seen sparse = only(readLog(trace(" MIN  -  - t7 - a.cpp:operator - (3) -  - a - b")));
    EXPECT_EQ(sparse.record.level, Level::kDebugMin);
    EXPECT_EQ(sparse[Field::kThread], "7");
    EXPECT_EQ(sparse[Field::kFunction], "operator - ");
    EXPECT_EQ(sparse.text, "a - b");
}

TEST(ViewFormats, ReadsConsoleTracerLines)
{
    const std::string method = "doWork                        ";
    const Reading reading = readLog("08/04/02 13:05:09 E [Vpd     ] " + method +
                                    " [0007] --> ENTRY\n"
                                    "08/04/02 13:05:10 I [FileScan] " +
                                    method +
                                    " [12345]     in\n"
                                    "deed\n"
                                    "08/04/02 13:05:10 F [XSE     ] " +
                                    method + " [0007] <---- EXIT\n");
    EXPECT_THAT(reading.texts(), ElementsAre("ENTRY", "in\ndeed", "EXIT"));
    const Seen &first = reading.records.at(0);
    EXPECT_EQ(first.record.level, Level::kError);
    EXPECT_EQ(first[Field::kComponent], "Vpd");
    EXPECT_EQ(first[Field::kFunction], "doWork");
    EXPECT_EQ(first[Field::kThread], "0007");
    EXPECT_EQ(reading.records.at(1).record.millis - first.record.millis, 1000);
    EXPECT_EQ(reading.records.at(2).record.level, Level::kFatal);
}

TEST(ViewFormats, ReadsXmlValuesThatAreNotEscaped)
{
    const std::string text = "a]]></LogText> ]]>\n</Message>\n]]></LogText>\nb";
    const Seen seen = only(readLog(xml(
        " <Server Format=\"IP\">n<ode>7</Server>\n <Component>en\ngine</Component>\n" +
            xmlText(text) +
            " <LogAttribs><Key>k</Key><Value></Value>\n</Value><Key>l</Key><Value></Value>"
            "</LogAttribs>\n <Source FileName=\"m\"a.c\" Method=\"operator\"\"_x\" Line=\"-1\"/>\n"
            " <TranslationInfo Type=\"XPG4\" Catalog=\"c\" MsgKey=\"20\" SetId=\"1\">"
            "<Param><![CDATA[]]>\n]]></Param><Param><![CDATA[]]></Param></TranslationInfo>\n"
            " <Principal>user1</Principal>\n",
        "a\" Severity=\"b")));
    EXPECT_EQ(seen.id, "a\" Severity=\"b");
    EXPECT_EQ(seen.text, text);
    EXPECT_EQ(seen[Field::kServer], "n<ode>7");
    EXPECT_EQ(seen[Field::kComponent], "en\ngine");
    EXPECT_EQ(seen[Field::kSourceFile], "m\"a.c");
    EXPECT_EQ(seen[Field::kFunction], "operator\"\"_x");
    EXPECT_EQ(seen[Field::kLine], "-1");
    EXPECT_EQ(seen[Field::kMessageKey], "20");
    EXPECT_EQ(seen[Field::kMessageSet], "1");
    EXPECT_EQ(seen[Field::kClient], "user1");
    EXPECT_EQ(seen.record.attributes.size(), 2U);
    EXPECT_EQ(seen.record.parameters.size(), 2U);
}

TEST(ViewFormats, ReadsXmlTracesAndProductInformation)
{
    const std::string bare = "<Trace>\n <Time Millis=\"-5\"></Time>\n" + xmlText("") +
                             " <Source FileName=\"None\" Method=\"None\"/>\n</Trace>\n";
    const Reading reading =
        readLog(" <Server Format=\"\">node7</Server>\n <Component>c</Component>\n" + bare +
                xml(" <Component>own</Component>\n", "None") +
                "<Trace Level=\"MID\">\n <Time Millis=\"1\"></Time>\n" + xmlText("OVX0034E x") +
                "</Trace>\n");
    EXPECT_EQ(reading.reports, "");
    ASSERT_EQ(reading.records.size(), 3U);
    EXPECT_EQ(reading.records[2].id, "OVX0034E");
    EXPECT_EQ(reading.records[2].record.level, Level::kDebugMid);
    const Seen &first = reading.records[0];
    EXPECT_EQ(first.record.millis, -5);
    EXPECT_EQ(first.record.level, Level::kNone);
    EXPECT_EQ(first[Field::kSourceFile], "");
    EXPECT_EQ(first[Field::kComponent], "c");
    EXPECT_EQ(reading.records[1][Field::kServer], "node7");
    EXPECT_EQ(reading.records[1][Field::kComponent], "own");
    EXPECT_EQ(reading.records[1].id, "");

    // What is left of a record is no product information, and does not hide the records behind it.
    const Reading rest = readLog(" <Component>x</Component>\n" + xmlText("y") + bare +
                                 "</Trace>\n <Component>\n" + kStamp + " line\n");
    EXPECT_EQ(rest.records.size(), 2U);
    EXPECT_EQ(rest.records.at(0)[Field::kComponent], "");
    EXPECT_EQ(std::count(rest.reports.begin(), rest.reports.end(), '\n'), 2);
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
    EXPECT_THAT(reading.texts(), ElementsAre("who", "whole", "who", "line", "whole", "who"));
    EXPECT_EQ(reading.reports, "0" + cutReport + sizeOf(cut) + " bytes)\n" + sizeOf(cut + record) +
                                   cutReport + sizeOf(cut + "\n") + " bytes)\n" +
                                   sizeOf(cut + record + cut + "\n" + line + record) + cutReport +
                                   sizeOf(cut) + " bytes)\n");

    reading = readLog("lost\nlines\n" + line + std::string(100, '\0') + line);
    EXPECT_THAT(reading.texts(), ElementsAre("line", "line"));
    EXPECT_EQ(reading.reports, "0: no record that is known (11 bytes)\n" +
                                   sizeOf("lost\nlines\n" + line) +
                                   ": no record that is known (100 bytes)\n");

    const std::string whole = trace("INFO  -  -  -  -  - text");
    reading = readLog(whole.substr(0, whole.size() - 4) + whole + line.substr(0, line.size() - 1));
    EXPECT_THAT(reading.texts(), ElementsAre("t", "text", "line"));
    EXPECT_EQ(std::count(reading.reports.begin(), reading.reports.end(), '\n'), 2);

    reading = readLog("junk" + record + "junk\n" + whole + "</Message>\n");
    EXPECT_THAT(reading.texts(), ElementsAre("whole", "text\n</Message>"));
    EXPECT_EQ(reading.reports, "0: no record that is known (4 bytes)\n" + sizeOf("junk" + record) +
                                   ": no record that is known (5 bytes)\n");
}

TEST(ViewFormats, SaysOnceThatRecordsAreNotUtf8)
{
    const std::string line = kStamp + " caf\xE9\n";
    const Reading reading = readLog(kStamp + " caf\xC3\xA9\n" + line + line);
    EXPECT_EQ(reading.records.at(2).text, "caf\xE9");
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
            ASSERT_EQ(reading.records.size(), 3U) << shift;
            ASSERT_EQ(reading.records[2].text, "text") << shift;
        }
    }
    EXPECT_EQ(only(readLog(xml(xmlText(std::string(3 << 20, '\n'))))).text.size(), 3U << 20);
}

TEST(ViewFormats, BoundsTheSizeOfARecord)
{
    const std::string line = kStamp + " next\n";
    const Reading reading = readLog(kStamp + " " + std::string(20 << 20, 'x') + "\n" + line);
    ASSERT_EQ(reading.records.size(), 2U);
    EXPECT_EQ(reading.records[0].raw.size(), kLongestRecord);
    EXPECT_EQ(reading.records[1].text, "next");
    EXPECT_THAT(reading.reports, HasSubstr("cut off"));
    EXPECT_EQ(readLog(" <Component>" + std::string(20 << 20, 'x') + "\n" + line).records.size(),
              1U);
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
        for (const Seen &seen : readLog(bytes).records)
            ASSERT_EQ(bytes.compare(static_cast<std::size_t>(seen.record.offset), seen.raw.size(),
                                    seen.raw),
                      0)
                << bytes;
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
    for (const char *text : {"", "2008", "2008-13-01", "2008-04-01T", "2008-04-01T13",
                             "2008-04-01T13:05x", "2008-04-01T24:00", "2008-04-01T13:05+2"})
        EXPECT_FALSE(readIsoTime(text)) << text;
    EXPECT_EQ(writeStamp(-1), "1969-12-31 23:59:59.999+00:00");
    EXPECT_EQ(writeStamp(INT64_MIN), "-292275055-05-16 16:47:04.192+00:00");
    unsetenv("TZ");
    tzset();
}
