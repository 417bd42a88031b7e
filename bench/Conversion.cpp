// Conversion of texts, each beside the platform's iconv in the same run: how many times as fast.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iconv.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <olvex/olvex.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kTextSize = 16384;
constexpr int kRounds = 10;

// Texts in UTF-8, of whose words longer ones are made.
constexpr const char kAscii[] =
    "2024-05-01 13:05:09.042 Disk /var is 93 percent full; nothing lost. ";
constexpr const char kMixed[] =
    "Fünf Größen, déjà vu: 東京の天気 и погода в Москве, 20 °C → warm. ";
constexpr const char kLatin[] =
    "Das Protokoll ist voll; es nimmt keine Ereignisse mehr auf, bis wieder Platz verfügbar ist. "
    "Bitte prüfen Sie die Größe der Datei, dann öffnet sie sich. ";
constexpr const char kCyrillic[] = "Журнал переполнен: запись событий остановлена, диск занят. ";
constexpr const char kJapanese[] =
    "ログファイルを 開くことが できません。 ディスクの 空き容量を 確認する。 abc ";
constexpr const char kChinese[] =
    "日志文件 无法打开， 请检查 磁盘空间 是否足够， 然后重试 该操作。 abc ";
constexpr const char kKorean[] = "로그 파일을 열 수 없습니다. 디스크 공간을 확인하십시오. abc ";

// Words of a text in an order of which nothing can be foretold, as in real ones.
std::string shuffled(const char *text)
{
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        words.push_back(word + ' ');
    std::minstd_rand random;
    std::string result;
    while (result.size() < kTextSize)
        result += words[random() % words.size()];
    return result;
}

struct Case {
    const char *codeSet; // as both sides know it
    const char *text;
    bool toCodeSet;
    bool ucs2; // the other side; otherwise UTF-8
};

// One text and both ways to convert it.
class Contest {
  public:
    explicit Contest(const Case &contest)
        : case_(contest), handle_(ucv_cs_new(contest.codeSet)), target_(kTextSize * 8)
    {
        const char *unicode = contest.ucs2 ? "UCS-2LE" : "UTF-8";
        iconv_ = contest.toCodeSet ? iconv_open(contest.codeSet, unicode)
                                   : iconv_open(unicode, contest.codeSet);
        const std::string utf8 = shuffled(contest.text);
        if (!contest.toCodeSet)
            source_ = inCodeSet(utf8);
        else
            source_ = contest.ucs2 ? inUcs2(utf8) : utf8;
    }
    ~Contest()
    {
        iconv_close(iconv_);
        ucv_cs_free(handle_);
    }
    Contest(const Contest &) = delete;
    Contest &operator=(const Contest &) = delete;

    bool isReady() const { return handle_ && iconv_ != iconv_t(-1) && !source_.empty(); }
    std::size_t size() const { return source_.size(); }

    int runOurs()
    {
        const int size = static_cast<int>(source_.size());
        const int room = static_cast<int>(target_.size());
        auto *units = reinterpret_cast<char16_t *>(target_.data());
        if (!case_.ucs2)
            return (case_.toCodeSet ? ucv_from_utf8 : ucv_to_utf8)(handle_, source_.data(), size,
                                                                   target_.data(), room);
        if (!case_.toCodeSet)
            return 2 * ucv_to_ucs2(handle_, source_.data(), size, units, room / 2);
        return ucv_from_ucs2(handle_, reinterpret_cast<const char16_t *>(source_.data()), size / 2,
                             target_.data(), room);
    }

    int runPlatforms()
    {
        char *in = source_.data(), *out = target_.data();
        std::size_t size = source_.size(), room = target_.size();
        iconv(iconv_, nullptr, nullptr, nullptr, nullptr);
        iconv(iconv_, &in, &size, &out, &room);
        iconv(iconv_, nullptr, nullptr, &out, &room);
        return static_cast<int>(target_.size() - room);
    }

  private:
    std::string inCodeSet(const std::string &utf8) const
    {
        std::string result(utf8.size() * 2 + 1, '\0');
        result.resize(static_cast<std::size_t>(
            ucv_from_utf8(handle_, utf8.data(), static_cast<int>(utf8.size()), result.data(),
                          static_cast<int>(result.size()))));
        return result;
    }

    static std::string inUcs2(const std::string &utf8)
    {
        std::string result(utf8.size() * 2, '\0');
        const int units =
            ucv_to_ucs2(ucv_cs_new("UTF8"), utf8.data(), static_cast<int>(utf8.size()),
                        reinterpret_cast<char16_t *>(result.data()), static_cast<int>(utf8.size()));
        result.resize(static_cast<std::size_t>(units) * 2);
        return result;
    }

    Case case_;
    uc_ch_t *handle_;
    iconv_t iconv_;
    std::string source_;
    std::vector<char> target_;
};

template <class Work>
double seconds(Work work)
{
    const auto start = Clock::now();
    for (int round = 0; round < kRounds; ++round)
        benchmark::DoNotOptimize(work());
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void convertBoth(benchmark::State &state, const Case &contest)
{
    Contest both(contest);
    if (!both.isReady() || both.runOurs() != both.runPlatforms())
        return state.SkipWithError("the two do not convert the same");
    double ours = HUGE_VAL, platforms = HUGE_VAL; // the best rounds, whatever else the machine does
    for (auto _ : state) {
        const double time = seconds([&] { return both.runOurs(); });
        platforms = std::min(platforms, seconds([&] { return both.runPlatforms(); }));
        ours = std::min(ours, time);
        state.SetIterationTime(time);
    }
    state.counters["MB/s"] = static_cast<double>(both.size()) * kRounds / ours / 1e6;
    state.counters["times_iconv"] = platforms / ours;
}

std::string nameOf(const Case &contest, const char *kind)
{
    const std::string unicode = contest.ucs2 ? "UCS-2" : "UTF-8";
    const std::string codeSet = contest.codeSet;
    return "conversion/" + (contest.toCodeSet ? unicode + "-" + codeSet : codeSet + "-" + unicode) +
           "/" + kind;
}

void add(const char *codeSet, const char *text, const char *kind)
{
    for (const bool ucs2 : {true, false})
        for (const bool toCodeSet : {false, true}) {
            const Case contest{codeSet, text, toCodeSet, ucs2};
            if (!ucs2 && std::string(codeSet) == "UTF-8") continue; // no conversion
            benchmark::RegisterBenchmark(nameOf(contest, kind).c_str(), convertBoth, contest)
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
}

const bool added = [] {
    setenv("UCVDIR", OLVEX_TABLES, 0);
    add("UTF-8", kAscii, "ascii");
    add("UTF-8", kMixed, "mixed");
    add("KOI8-R", kAscii, "ascii");
    add("KOI8-R", kCyrillic, "text");
    add("ISO-8859-1", kLatin, "text");
    add("EUC-KR", kKorean, "text");
    add("CP932", kJapanese, "text");
    add("EUC-JP", kJapanese, "text");
    add("IBM1047", kAscii, "text");
    add("IBM939", kJapanese, "text");
    add("GB18030", kChinese, "text");
    return true;
}();

} // namespace
