// Reading logs back: bytes are cut into records in the same way whether they come at once or, from
// a log that is being written, a piece at a time; each record is taken apart and written.
#include <cstdlib>

#include "Input.h"
#include "view/Framing.h"
#include "view/Writers.h"

namespace {

using namespace tools::view;

// How many pieces are tried for each frame; more would only be slower.
constexpr std::size_t kPieces = 4;

void check(bool holds)
{
    if (!holds) __builtin_trap();
}

LogOptions optionsFrom(unsigned byte)
{
    LogOptions options;
    for (std::size_t i = 0; i < kFormatCount; ++i)
        options.formats[i] = (byte >> i & 1) == 0;
    if (byte & 0x10) options.timeLayout = "%H:%M:%S";
    if (byte & 0x20) options.separator = "|";
    options.knowsFields = (byte & 0x40) != 0;
    if (options.knowsFields) options.fields = {Field::kFunction, Field::kLine};
    return options;
}

// What is said of the first bytes alone holds when the others have come; but damage may grow.
void compareEarly(std::string_view bytes, std::size_t count, const Frame &frame,
                  const LogOptions &options)
{
    const Frame early = nextFrame(bytes.substr(0, count), false, options);
    if (early.kind == FrameKind::kNeedsMore) return;
    check(early.kind == frame.kind && early.length > 0);
    if (early.kind == FrameKind::kDamage) return check(early.length <= frame.length);
    check(early.length == frame.length && early.format == frame.format &&
          early.isCut == frame.isCut);
}

void takeApart(std::string_view raw, const Frame &frame, const LogOptions &options)
{
    static const std::string name = "fuzz.log";
    static FILE *const nowhere = std::fopen("/dev/null", "w");
    static const auto writers = {makeJsonWriter(nowhere), makeTextWriter(nowhere, true),
                                 makeSummary(nowhere, false)};
    Record record;
    record.raw = raw.ends_with('\n') ? raw.substr(0, raw.size() - 1) : raw;
    record.file = &name;
    record.format = frame.format;
    record.isCut = frame.isCut;
    switch (frame.format) {
    case Format::kText: parseText(record, options); break;
    case Format::kXml: parseXml(record, Depth::kAll); break;
    case Format::kTrace: parseTrace(record); break;
    case Format::kConsole: parseConsole(record); break;
    }
    for (const auto &writer : writers)
        writer->write(record);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    const LogOptions options = optionsFrom(input.takeByte());
    const std::size_t step = input.takeByte() + 1;
    const std::string log(input.rest());
    for (std::string_view bytes = log; !bytes.empty();) {
        const Frame frame = nextFrame(bytes, true, options);
        check(frame.kind != FrameKind::kNeedsMore && frame.length > 0 &&
              frame.length <= bytes.size());
        for (std::size_t i = 1; i <= kPieces && i * step <= bytes.size(); ++i)
            compareEarly(bytes, i * step, frame, options);
        if (frame.kind == FrameKind::kRecord)
            takeApart(bytes.substr(0, frame.length), frame, options);
        bytes.remove_prefix(frame.length);
    }
    return 0;
}
