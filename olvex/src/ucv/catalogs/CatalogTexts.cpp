// See CatalogTexts.h. Texts are taken in the order of their places, so that all with the same end
// are converted in one go: the conversion of the first holds those of the others, but where one
// begins inside a character or behind a shift. Those have room of their own, as far as it goes.
#include "ucv/catalogs/CatalogTexts.h"

#include <olvex/Memory.h>
#include <olvex/UcvWide.h>

#include <algorithm>

#include "ucv/Encoder.h"
#include "util/Memory.h"

namespace olvex::ucv {

namespace {

// The room for texts that are converted by themselves, and for those in further code sets, as so
// many times what all texts take.
constexpr std::uint64_t kAloneFactor = 2;
constexpr std::uint64_t kOthersFactor = 4;

// What the texts in further code sets may take in any case.
constexpr std::uint64_t kOthersAtLeast = 64 * 1024; // bytes

// Twice each text, and its terminator: texts that do not overlap take no more.
std::uint64_t sizeOfTexts(std::uint32_t textLength)
{
    return 2 * std::uint64_t{textLength} + 1;
}

std::size_t lengthOf(const char *text, const char *end)
{
    return static_cast<std::size_t>(end - text);
}

// The messages that have a text, by its place.
class Order {
  public:
    Order(const CatalogMessage *messages, std::uint32_t count)
        : indexes_(static_cast<std::uint32_t *>(
              BaxMemoryMalloc((std::size_t{count} + 1) * sizeof(std::uint32_t))))
    {
        if (!indexes_) return;
        end_ = indexes_.get();
        for (std::uint32_t index = 0; index < count; ++index)
            if (messages[index].utf8) *end_++ = index;
        std::sort(indexes_.get(), end_, [messages](std::uint32_t one, std::uint32_t other) {
            const std::uint32_t place = messages[one].offset;
            const std::uint32_t otherPlace = messages[other].offset;
            return place != otherPlace ? place < otherPlace : one < other;
        });
    }

    explicit operator bool() const { return indexes_ != nullptr; }
    const std::uint32_t *begin() const { return indexes_.get(); }
    const std::uint32_t *end() const { return end_; }

  private:
    Owned<std::uint32_t> indexes_;
    std::uint32_t *end_ = nullptr;
};

class TextConverter {
  public:
    TextConverter(CatalogMessage *messages, const Order &order, std::uint32_t textLength,
                  char *area)
        : messages_(messages),
          next_(order.begin()),
          end_(order.end()),
          handle_(*orDefault(nullptr)),
          shared_(area),
          alone_(area + sizeOfTexts(textLength)),
          aloneEnd_(alone_ + kAloneFactor * sizeOfTexts(textLength))
    {}

    void run()
    {
        while (next_ != end_)
            convertThoseWithOneEnd();
    }

  private:
    const char *nextText() const { return next_ != end_ ? messages_[*next_].utf8 : nullptr; }

    void convertThoseWithOneEnd()
    {
        const char *at = nextText();
        const char *end = at + std::strlen(at);
        Encoder encoder(handle_, shared_, 2 * lengthOf(at, end));
        for (const char *text; (text = nextText()) && text <= end;) {
            at = encoder.convert(at, text);
            const bool isContained = at == text && !encoder.isShifted();
            give(text, isContained ? encoder.place() : convertAlone(text, end));
        }
        encoder.convert(at, end);
        char *written = encoder.finish();
        *written = '\0';
        shared_ = written + 1;
    }

    // Gives a text to all messages that have it. The first of them has it in other code sets too.
    void give(const char *text, char *converted)
    {
        const std::uint32_t first = *next_;
        for (; nextText() == text; ++next_) {
            messages_[*next_].local = converted;
            messages_[*next_].back = *next_ - first;
        }
    }

    // Null when there is no room left.
    char *convertAlone(const char *text, const char *end)
    {
        const std::size_t room = 2 * lengthOf(text, end);
        if (room >= lengthOf(alone_, aloneEnd_)) return nullptr;
        char *converted = alone_;
        const bool shifted = handle_.outShift; // of the conversion that is under way
        Encoder encoder(handle_, converted, room);
        encoder.convert(text, end);
        alone_ = encoder.finish();
        *alone_++ = '\0';
        handle_.outShift = shifted;
        return converted;
    }

    CatalogMessage *messages_;
    const std::uint32_t *next_;
    const std::uint32_t *end_;
    uc_ch_t &handle_;
    char *shared_;
    char *alone_;
    char *aloneEnd_;
};

} // namespace

std::uint64_t conversionSize(std::uint32_t textLength)
{
    return (1 + kAloneFactor) * sizeOfTexts(textLength);
}

bool convertTexts(CatalogMessage *messages, std::uint32_t count, std::uint32_t textLength,
                  char *area)
{
    const Order order(messages, count);
    if (!order) return false;
    TextConverter(messages, order, textLength, area).run();
    return true;
}

const char *textInCodeSet(CatalogSet &set, CatalogMessage &message, uc_ch_t *codeSet)
{
    if (!message.utf8) return nullptr;
    char *&other = (&message - message.back)->other;
    if (other) return ucv_u2s(codeSet, message.utf8, &other);
    const std::uint64_t size = 2 * std::uint64_t{std::strlen(message.utf8)} + 1;
    const std::uint64_t most =
        std::max(kOthersFactor * sizeOfTexts(set.record.textLength), kOthersAtLeast);
    if (size > most - set.othersSize || !ucv_u2s(codeSet, message.utf8, &other)) return nullptr;
    set.othersSize += size;
    return other;
}

void freeOtherTexts(CatalogSet &set)
{
    for (std::uint32_t index = 0; set.messages && index < set.record.numMsgs; ++index)
        BaxMemoryFree(set.messages[index].other);
}

} // namespace olvex::ucv
