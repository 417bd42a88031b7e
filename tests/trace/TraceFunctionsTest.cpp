// The plain trace functions and the wrapper objects: levels, records, texts.
#include "TraceToolkit.h"

#include <olvex/trace.h>
#include <olvex/trace_c.h>

using namespace olvex::test;

namespace {

using Traced = std::vector<TraceRecord>;

TEST(TraceText, EscapesMethodNames)
{
    EXPECT_EQ(take(createMethodName("Entry ", "a<b>")), "Entry a&lt;b&gt;");
    EXPECT_EQ(take(createMethodName("Exit ", nullptr)), "Exit ");
    EXPECT_EQ(take(escapeXmlString("\"&'<>&amp;")), "&quot;&amp;&apos;&lt;&gt;&amp;amp;");
}

TEST(TraceText, ReplacesWhatIsNotValidInXml)
{
    char text[] = "\001A\037";
    EXPECT_EQ(replaceInvalidXMLChars('?', text), 2);
    EXPECT_STREQ(text, "?A?");
    char valid[] = "\t\n\r \177\200\377";
    EXPECT_EQ(replaceInvalidXMLChars('?', valid), 0);
    char blank[] = "a\007b";
    EXPECT_EQ(replaceInvalidXMLChars(7, blank), 1);
    EXPECT_STREQ(blank, "a b");
    std::string longText(1030, '\002');
    EXPECT_EQ(replaceInvalidXMLChars('.', longText.data()), 1024);
    EXPECT_EQ(longText, std::string(1024, '.') + std::string(6, '\002'));
}

TEST(TraceText, TrimsAndTurnsSlashesInPlace)
{
    char text[] = " \t\n\v\f\r a b\240 \t";
    EXPECT_EQ(trim(text), text);
    EXPECT_STREQ(text, "a b\240");
    char blank[] = " \t ";
    EXPECT_STREQ(trim(blank), "");
    char path[] = "a\\b\\\\c/";
    EXPECT_EQ(convertSlashes(path), path);
    EXPECT_STREQ(path, "a/b//c/");
}

TEST(TraceText, ThatIsMissingGivesNothing)
{
    EXPECT_EQ(createMethodName(nullptr, "m"), nullptr);
    EXPECT_EQ(escapeXmlString(nullptr), nullptr);
    EXPECT_EQ(replaceInvalidXMLChars('?', nullptr), 0);
    EXPECT_EQ(trim(nullptr), nullptr);
    EXPECT_EQ(get_config_directory_path(nullptr), nullptr);
    EXPECT_EQ(isWriteBlocked(nullptr, nullptr), 0);
    EXPECT_EQ(getTrcLevel(nullptr) + istraceActive(nullptr, 0), 0);
}

// Every kind of call once; what a handle does not take leaves no record.
void callAll(OlvLogWrapper *handle)
{
    traceMIN(handle, 1, "f.c", "m", "%s %d", "min", 1);
    traceMID(handle, 2, "f.c", "m", "%s %d", "mid", 2);
    traceMAX(handle, 3, "f.c", "m", "%s %d", "max", 3);
    traceEntry(handle, 4, "f.c", "a<b>", "%s", "in");
    traceExit(handle, 5, "f.c", "m", "%s", "out");
}

class TraceFunctions : public TraceToolkit {};

TEST_F(TraceFunctions, WriteWhatTheLevelOfTheHandleTakes)
{
    start();
    const Traced all{{3000, "f.c", 1, "m", "min 1"},
                     {2000, "f.c", 2, "m", "mid 2"},
                     {1000, "f.c", 3, "m", "max 3"},
                     {1000, "f.c", 4, "Entry a&lt;b&gt;", "in"},
                     {1000, "f.c", 5, "Exit m", "out"}};
    const struct {
        OlvLogWrapper *handle;
        int level;
        std::size_t records;
    } cases[] = {{getOlvLogHw(), 4, 5},
                 {getOlvLogSw(), 2, 2},
                 {getOlvLogCom(), 1, 1},
                 {getOlvLogPlugin(), 0, 0}};
    for (const auto &[handle, level, records] : cases) {
        traced.clear();
        callAll(handle);
        EXPECT_EQ(getTrcLevel(handle), level);
        EXPECT_EQ(traced, Traced(all.begin(), all.begin() + static_cast<long>(records))) << level;
        for (int other = 0; other <= 4; ++other)
            EXPECT_EQ(istraceActive(handle, other), other == level);
    }
    traced.clear(); // the level is fixed when the handle is made
    OvxSetObjProp(getOlvLogHw()->logger, "level", "ERROR");
    callAll(getOlvLogHw());
    EXPECT_EQ(traced, Traced());
    EXPECT_EQ(getTrcLevel(getOlvLogHw()), 4);
}

TEST_F(TraceFunctions, TextIsCutAndIsNoFormat)
{
    start();
    traceMAX(getOlvLogHw(), 1, "f", "m", "%s", std::string(3000, 'x').c_str());
    traceMAX(getOlvLogHw(), 1, nullptr, nullptr, "%s", "100% of %1$s and %s");
    const char *noFormat = nullptr;
    traceMAX(getOlvLogHw(), 1, "f", "m", noFormat, 0);
    EXPECT_EQ(traced, (Traced{{1000, "f", 1, "m", std::string(1023, 'x')},
                              {1000, "(none)", 0, "", "100% of %1$s and %s"},
                              {1000, "f", 1, "m", ""}}));
}

TEST_F(TraceFunctions, TextIsCutAtACharacter)
{
    start();
    // What stands before the cut, and how much of it stays.
    const std::pair<const char *, std::size_t> cases[] = {
        {"\xC3\xA9", 1022},          {"\xE2\x82\xAC", 1022}, {"x\xE2\x82\xAC", 1023},
        {"x\xF0\x9F\x98\x80", 1023}, {"xx\xC3", 1023},       {"\x80\x80\x80\x80\x80", 1023},
    };
    for (const auto &[last, kept] : cases) {
        const std::string text = std::string(1022, 'x') + last + std::string(100, 'y');
        traced.clear();
        traceMAX(getOlvLogHw(), 1, "f", "m", "%s", text.c_str());
        ASSERT_EQ(traced.size(), 1u);
        EXPECT_EQ(traced[0].text, text.substr(0, kept)) << last;
        traceMAX(getOlvLogHw(), 1, "f", "m", "%s", text.substr(0, 1023).c_str()); // nothing cut
        EXPECT_EQ(traced[1].text, text.substr(0, 1023)) << last;
    }
}

TEST_F(TraceFunctions, AHandleWithoutLoggerOrNoHandleDoesNothing)
{
    start();
    testing::internal::CaptureStderr();
    OlvLogWrapper *handle = getOlvLogXse();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("sigeval.loggers.trcLogger"),
              std::string::npos);
    EXPECT_EQ(handle->initialized, 0);
    callAll(handle);
    callAll(nullptr);
    EXPECT_EQ(traced, Traced());
    EXPECT_EQ(createWrapper(-1), nullptr);
    EXPECT_EQ(createWrapper(8), nullptr);
}

TEST_F(TraceFunctions, EachComponentHasItsHandleAndItsWrapperObject)
{
    start();
    OlvLogWrapper *(*const handles[])() = {getOlvLogHw,  getOlvLogSw, getOlvLogCom,
                                           getOlvLogXse, getOlvLogFs, getOlvLogPlugin,
                                           getOlvLogUse, getOlvLogNet};
    OlvexWrapper *(*const objects[])() = {getOlvexHw, getOlvexSw,     getOlvexCom, getOlvexXse,
                                          getOlvexFs, getOlvexPlugin, getOlvexUse, getOlvexNet};
    testing::internal::CaptureStderr(); // not each has a logger
    for (int component = 0; component < 8; ++component) {
        EXPECT_EQ(handles[component](), createWrapper(component));
        EXPECT_EQ(objects[component](), OlvexWrapper::getInstance(OlvexType(component)));
    }
    testing::internal::GetCapturedStderr();
    OlvexWrapper::cleanupInstances();
}

// The names for C act on the same handles.
TEST_F(TraceFunctions, AreThereForC)
{
    start();
    ovx_OlvLogWrapper *(*const handles[])() = {
        ovx_getOlvLogHw, ovx_getOlvLogSw,     ovx_getOlvLogCom, ovx_getOlvLogXse,
        ovx_getOlvLogFs, ovx_getOlvLogPlugin, ovx_getOlvLogUse, ovx_getOlvLogNet};
    testing::internal::CaptureStderr(); // not each has a logger
    for (int component = 0; component < 8; ++component) {
        const void *handle = createWrapper(component);
        EXPECT_EQ(handles[component](), handle);
        EXPECT_EQ(ovx_createWrapper(component), handle);
    }
    testing::internal::GetCapturedStderr();
    ovx_OlvLogWrapper *hardware = ovx_getOlvLogHw();
    ovx_traceMIN(hardware, 1, "f.c", "m", "%s %d", "min", 1);
    ovx_traceMID(hardware, 2, "f.c", "m", "%s %d", "mid", 2);
    ovx_traceMAX(hardware, 3, "f.c", "m", "%s %d", "max", 3);
    ovx_traceEntry(hardware, 4, "f.c", "a<b>", "%s", "in");
    ovx_traceExit(hardware, 5, "f.c", "m", "%s", "out");
    ovx_traceMAX(ovx_getOlvLogSw(), 6, "f.c", "m", "%d", 6);
    ovx_traceMIN(nullptr, 7, "f.c", "m", "%d", 7);
    EXPECT_EQ(traced, (Traced{{3000, "f.c", 1, "m", "min 1"},
                              {2000, "f.c", 2, "m", "mid 2"},
                              {1000, "f.c", 3, "m", "max 3"},
                              {1000, "f.c", 4, "Entry a&lt;b&gt;", "in"},
                              {1000, "f.c", 5, "Exit m", "out"}}));
    EXPECT_EQ(ovx_getTrcLevel(ovx_getOlvLogSw()), 2);
    EXPECT_EQ(ovx_istraceActive(ovx_getOlvLogSw(), 2), 1);
    char text[] = " a\\b\1 ";
    EXPECT_EQ(ovx_replaceInvalidXMLChars('?', text), 1);
    EXPECT_STREQ(ovx_trim(ovx_convertSlashes(text)), "a/b?");
    EXPECT_EQ(take(ovx_createMethodName("Exit ", "<")), "Exit &lt;");
    EXPECT_EQ(take(ovx_escapeXmlString("'")), "&apos;");
    EXPECT_STREQ(ovx_initializeWrapper("x\\y"), "x/y");
    EXPECT_EQ(ovx_isWriteBlocked(nullptr, "/proc/nowhere"),
              isWriteBlocked(nullptr, "/proc/nowhere"));
}

// A dump that is longer than a record ends with a whole line and its mark; one that cannot begin
// any more is left out, one that is complete is left alone.
TEST_F(TraceFunctions, DumpsThatAreCutEndWithTheirMark)
{
    start();
    OlvexTracer tracer(Tracer::COMPONENT_HARDWARE);
    const std::string data(5000, 'd');
    const auto send = [&](std::size_t before, unsigned size, const std::string &behind) {
        traced.clear();
        Trace trace(tracer, "");
        trace << std::string(before, 'b').c_str();
        trace.hex(data.data(), size) << behind.c_str() << Trace::end;
        return traced.empty() ? std::string() : traced[0].text;
    };
    for (std::size_t before = 0; before < 960; ++before) {
        const std::string text = send(before, 5000, "");
        ASSERT_LE(text.size(), 1023u);
        ASSERT_GT(text.size(), 1023u - 80u) << before;
        ASSERT_TRUE(text.ends_with("\n-END DATA-")) << before << text;
        ASSERT_EQ(text.find("-END DATA-", before), text.size() - 10);
    }
    for (const std::size_t before : {990u, 1000u, 1015u, 1022u})
        EXPECT_EQ(send(before, 5000, ""), std::string(before, 'b'));
    EXPECT_EQ(send(1023, 5000, ""), std::string(1023, 'b'));
    const std::string complete = send(0, 16, "");
    EXPECT_EQ(send(0, 16, std::string(2000, 'x')),
              complete + std::string(1023 - complete.size(), 'x'));
}

TEST_F(TraceFunctions, AnUnreadableFileLeavesHandlesInactive)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(getOlvLogHw()->initialized, 0);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    start();
    EXPECT_EQ(getOlvLogHw()->initialized, 0);
    EXPECT_EQ(getOlvLogSw()->initialized, 1);
}

TEST_F(TraceFunctions, WrapperObjectsForwardToTheHandlesUntilCleanUp)
{
    directory_.write("x.properties", traceProperties());
    OlvexWrapper::initialize((directory_ / "x.properties").c_str());
    OlvexWrapper *hardware = getOlvexHw();
    hardware->traceMIN(1, "f", "m", "%d", 1);
    hardware->traceMID(2, "f", "m", "%d", 2);
    hardware->traceMAX(3, "f", "m", "%s", std::string(3000, 'x').c_str());
    hardware->traceMidEntry(4, "f", "m", "%s", "%d");
    hardware->traceMidExit(5, "f", "m", "%s", "");
    getOlvexSw()->traceMidEntry(6, "f", "m", "%d", 6);
    getOlvexSw()->traceMID(7, "f", "m", "%d", 7);
    EXPECT_EQ(traced, (Traced{{3000, "f", 1, "m", "1"},
                              {2000, "f", 2, "m", "2"},
                              {1000, "f", 3, "m", std::string(1023, 'x')},
                              {1000, "f", 4, "Entry m", "%d"},
                              {1000, "f", 5, "Exit m", ""},
                              {2000, "f", 7, "m", "7"}}));
    EXPECT_TRUE(getOlvexSw()->istraceActive(2));
    EXPECT_FALSE(getOlvexSw()->istraceActive(1));
    EXPECT_EQ(getOlvexCom()->getTrcLevel(), 1);
    for (int type : {-1, 8})
        EXPECT_EQ(OlvexWrapper::getInstance(OlvexType(type)), nullptr);
    OlvexWrapper::cleanupInstances();
    traced.clear();
    getOlvexCom()->traceMIN(1, "f", "m", "%s", "again");
    EXPECT_EQ(traced, (Traced{{3000, "f", 1, "m", "again"}}));
    OlvexWrapper::cleanupInstances();
}

} // namespace
