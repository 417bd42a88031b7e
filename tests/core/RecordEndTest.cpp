// What ends a record reaches the output whatever bytes its text holds.
#include "LogDirectory.h"

#include "Paths.h"

using namespace olvex::test;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace {

// Each of these takes what stands behind it for its rest.
const Strings kTexts = {"caf\xE9", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xFF"};
constexpr char kRaw[] = "caf\xE9\n\xC3\n\xE2\x82\n\xF0\x9F\x98\n\xFF\n";
constexpr char kWhole[] = "caf?\n?\n?\n?\n?\n";

class RecordEnd : public LogWithHandler, public testing::WithParamInterface<const char *> {
  protected:
    void SetUp() override
    {
        start(GetParam(), "app.log");
        ucv_set_dir(OLVEX_TABLES);
    }
    void logAll()
    {
        for (const std::string &text : kTexts)
            log(text);
    }
};

TEST_P(RecordEnd, SurvivesInFilesOfAnyCodeSet)
{
    logAll();
    EXPECT_EQ(directory_.read("app.log"), kRaw); // UTF-8 as it is
    for (const char *encoding : {"UTF-8", "ISO8859-1", "GB18030", "EUC-JP"}) {
        const std::string name = std::string(encoding) + "x.log"; // no digit before the dot
        set("fileEncoding", encoding);
        set("fileName", directory_ / name);
        logAll();
        EXPECT_EQ(directory_.read(name), kWhole) << encoding;
    }
}

TEST_P(RecordEnd, IsThatOfAnXmlRecord)
{
    set("fileEncoding", "ISO8859-1");
    useFormatter("ovx_xmlformatter");
    OvxLogWarn(logger_, nullptr, 0, 0, "%1$s", OVX_PARM_STRING, "caf\xE9", 0);
    const std::string plain = [&] {
        const std::string record = directory_.read("app.log");
        set("fileName", directory_ / "other.log");
        OvxLogWarn(logger_, nullptr, 0, 0, "%1$s", OVX_PARM_STRING, "caf?", 0);
        return record;
    }();
    const auto closing = [](const std::string &record) {
        return record.substr(std::min(record.find("caf?"), record.size()));
    };
    EXPECT_EQ(closing(plain), closing(directory_.read("other.log")));
    EXPECT_GT(closing(plain).size(), 10u);
}

INSTANTIATE_TEST_SUITE_P(, RecordEnd,
                         testing::Values("ovx_filehandler", "ovx_multiproc_filehandler"),
                         [](const auto &test) { return std::string(test.param); });

class ConsoleRecordEnd : public LogWithHandler {};

TEST_F(ConsoleRecordEnd, Survives)
{
    start("ovx_consolehandler", "unused");
    ucv_set_def_cs(ucv_cs_new("UTF8"));
    CaptureStdout();
    for (const std::string &text : kTexts)
        log(text);
    EXPECT_EQ(GetCapturedStdout(), kWhole);
    ucv_set_def_cs(nullptr);
}

} // namespace
