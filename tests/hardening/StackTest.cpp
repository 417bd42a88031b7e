// How much stack the library needs of a host's thread.
#include "core/LogDirectory.h"

#include <olvex/Ucv.h>

#include <algorithm>
#include <functional>
#include <pthread.h>

using namespace olvex::test;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
constexpr std::size_t kPromised = 64 * 1024; // frames are larger
#else
constexpr std::size_t kPromised = 8 * 1024; // bytes; the page on promises says so
#endif

// The bytes of stack that `work` takes, in a thread whose stack was painted before.
class PaintedStack {
  public:
    static std::size_t usedBy(const std::function<void()> &work)
    {
        PaintedStack stack(work);
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstack(&attributes, stack.bytes_.data(), stack.bytes_.size());
        pthread_t thread;
        if (pthread_create(&thread, &attributes, run, &stack) != 0) return 0;
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        return stack.used_;
    }

  private:
    static constexpr char kPaint = 0x5A;

    explicit PaintedStack(const std::function<void()> &work) : work_(work) {}

    static void *run(void *self)
    {
        static_cast<PaintedStack *>(self)->measure();
        return nullptr;
    }

    // What lies below this frame is painted; the first byte that is not any more was reached.
    [[gnu::noinline]] void measure()
    {
        char *const here = static_cast<char *>(__builtin_frame_address(0));
        char *const start = bytes_.data();
        std::fill(start, here - kMargin, kPaint);
        work_();
        char *const deepest = std::find_if(start, here, [](char byte) { return byte != kPaint; });
        used_ = static_cast<std::size_t>(here - deepest);
    }

    static constexpr std::ptrdiff_t kMargin = 512; // for this frame and the painting's own
    const std::function<void()> &work_;
    std::vector<char> bytes_ = std::vector<char>(1 << 20);
    std::size_t used_ = 0;
};

class Stack : public OpenToolkit {
  protected:
    void SetUp() override
    {
        OpenToolkit::SetUp();
        logger_ = get("log", "ovx_basiclogger");
    }

    void log(const char *catalog = nullptr)
    {
        OvxLogError(logger_, catalog, 1, 1, "%1$d %2$s %3$f", 502, 1, 507, "text", 505, 1.5e300, 0);
    }

    LogDirectory directory_;
    OvxObject *logger_ = nullptr;
};

TEST_F(Stack, HandlersNeedLittle)
{
    for (const char *name : {"ovx_consolehandler", "ovx_filehandler", "ovx_multiproc_filehandler",
                             "ovx_ffdc_filecopy_handler"}) {
        OvxObject *handler = get(name, name);
        OvxAddListener(logger_, handler);
        OvxSetObjProp(handler, "fileName", (directory_ / (std::string(name) + ".log")).c_str());
        OvxSetObjProp(handler, "maxFileBytes", "100"); // a rollover at every other record
        OvxSetObjProp(handler, "baseDir", (directory_ / "base").c_str());
        OvxSetObjProp(handler, "triggerFilter", "trigger");
        OvxSetObjProp(handler, "filesToCopy", "/proc/self/status");
        const Held trigger("trigger", "ovx_levelfilter");
        for (int i = 0; i < 6; ++i)
            EXPECT_LT(PaintedStack::usedBy([&] { log(); }), kPromised) << name;
        OvxRemListener(logger_, handler);
    }
    EXPECT_TRUE(std::filesystem::exists(directory_ / "ovx_multiproc_filehandler2.log"));
    EXPECT_TRUE(std::filesystem::exists(directory_ / "base"));
}

TEST_F(Stack, ProblemRecordsNeedLittle)
{
    OvxObject *handler = get("recorder", "ovx_stderrhandler");
    const Held formatter("formatter", "ovx_xmlformatter");
    OvxHandlerSetFormatter(handler, formatter);
    logger_ = get("problems", "ovx_pdlogger");
    OvxAddListener(logger_, handler);
    testing::internal::CaptureStderr();
    EXPECT_LT(PaintedStack::usedBy([&] { log(); }), kPromised);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Stack, LookingUpFilesNeedsLittle)
{
    OvxAddListener(logger_, get("recorder", "test_recorder"));
    const std::string path = std::string(4000, '/') + "nowhere/%L/%N:" + (directory_ / "%l/%N.cat");
    setenv("NLSPATH", path.c_str(), 1);
    EXPECT_LT(PaintedStack::usedBy([&] { log("somecatalog"); }), kPromised);
    unsetenv("NLSPATH");
    EXPECT_LT(PaintedStack::usedBy([] { ucv_cs_free(ucv_cs_new("IBM037")); }), kPromised);
}

// Each filter has a recorder before and one behind the next filter, and the last one the first.
TEST_F(Stack, DeepChainsKeepTheOrderAndEndCircles)
{
    constexpr int kFilters = 30;
    Strings expected, names;
    OvxObject *above = logger_;
    for (int i = 0; i < kFilters; ++i) {
        const std::string number = std::to_string(i);
        OvxObject *filter = get(("f" + number).c_str(), "ovx_levelfilter");
        OvxAddListener(above, get(("before" + number).c_str(), "test_recorder"));
        OvxAddListener(above, filter);
        OvxAddListener(above, get(("behind" + number).c_str(), "test_recorder"));
        expected.push_back("before" + number);
        above = filter;
    }
    for (int i = kFilters; i-- > 0;)
        expected.push_back("behind" + std::to_string(i));
    OvxAddListener(above, get("f0"));
    for (int i = 0; i < 2; ++i) {
        records.clear();
        log();
        names.clear();
        for (const Record &entry : records)
            names.push_back(entry.handler);
        EXPECT_EQ(names, expected);
    }
}

int filtersEnded = 0;

void *allocNothing()
{
    return BaxMemoryMalloc(1);
}

void countEnd(void *variables)
{
    BaxMemoryFree(variables);
    ++filtersEnded;
}

TEST_F(Stack, ChainsOfAnyLengthNeedNoMore)
{
    constexpr int kLinks = 10000, kHandlers = 100;
    OvxAddFilterClass("test_filter", nullptr, allocNothing, countEnd, nullptr, nullptr, nullptr,
                      nullptr);
    OvxObject *head = OvxGetObject("link", "test_filter");
    OvxObject *above = OvxAcquireObject(head);
    for (int i = 1; i < kLinks; ++i) {
        const char *kind = i % (kLinks / kHandlers) == 1 ? "ovx_stderrhandler" : "test_filter";
        OvxObject *next = OvxGetObject(("link" + std::to_string(i)).c_str(), kind);
        OvxAddListener(above, next);
        OvxReleaseObject(above);
        above = next;
    }
    OvxAddListener(above, get("recorder", "test_recorder"));
    OvxReleaseObject(above);
    OvxAddListener(logger_, head);
    testing::internal::CaptureStderr();
    EXPECT_LT(PaintedStack::usedBy([&] { log(); }), kPromised);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), kHandlers);
    EXPECT_EQ(recordedBy("recorder").size(), 1u);
    OvxRemListener(logger_, head);
    filtersEnded = 0;
    EXPECT_LT(PaintedStack::usedBy([&] { OvxReleaseObject(head); }), kPromised);
    EXPECT_EQ(filtersEnded, kLinks - kHandlers);
}

} // namespace
