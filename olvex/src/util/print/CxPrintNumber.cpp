// See CxPrintNumber.h. The size is known before anything is written, so a number needs one look at
// the buffer's room and no memory of its own.
#include "util/print/CxPrintNumber.h"

#include <algorithm>

#include "util/CxStringBuff.h"

#include <climits>
#include <clocale>

namespace olvex {

namespace {

// A locale's grouping string read from its beginning: the sizes of the groups from the right.
class GroupSizes {
  public:
    explicit GroupSizes(const char *sizes) : at_(sizes) {}

    // The size of the next group, `left` digits when they all belong to it.
    std::int64_t next(std::int64_t left)
    {
        const auto size = static_cast<signed char>(*at_); // whether or not plain char has a sign
        if (size <= 0 || size == SCHAR_MAX) return left;
        if (at_[1] != '\0') ++at_;
        return std::min<std::int64_t>(size, left);
    }

  private:
    const char *at_;
};

// Puts pieces where there is room for them.
class Writer {
  public:
    explicit Writer(char *at) : at_(at) {}

    void put(std::string_view text)
    {
        if (!text.empty()) std::memcpy(at_, text.data(), text.size());
        at_ += text.size();
    }

    void fill(char byte, std::int64_t count)
    {
        if (count <= 0) return;
        std::memset(at_, byte, static_cast<std::size_t>(count));
        at_ += count;
    }

    // Leaves a gap and returns where it ends.
    char *skip(std::int64_t count) { return at_ += count; }

  private:
    char *at_;
};

std::int64_t sizeOf(std::string_view text)
{
    return static_cast<std::int64_t>(text.size());
}

// The digits before the decimal point, with the locale's separators when the directive wants them.
class IntegerPart {
  public:
    explicit IntegerPart(const Number &number)
        : digits_(number.integer), zeros_(number.integerZeros)
    {
        if (number.groups) readLocale();
        size_ = count() + separators() * sizeOf(separator_);
    }

    std::int64_t size() const { return size_; }

    void write(Writer &writer) const
    {
        if (!separator_.empty()) return writeGroups(writer.skip(size_));
        writer.put(digits_);
        writer.fill('0', zeros_);
    }

  private:
    void readLocale()
    {
        const lconv *locale = localeconv();
        if (!locale->thousands_sep || !locale->grouping || !*locale->grouping) return;
        separator_ = locale->thousands_sep;
        sizes_ = locale->grouping;
    }

    std::int64_t count() const { return sizeOf(digits_) + zeros_; }

    std::int64_t separators() const
    {
        if (separator_.empty()) return 0;
        GroupSizes sizes(sizes_);
        std::int64_t found = 0;
        std::int64_t left = count();
        for (left -= sizes.next(left); left > 0; left -= sizes.next(left))
            ++found;
        return found;
    }

    char digitAt(std::int64_t index) const
    {
        return index < sizeOf(digits_) ? digits_[static_cast<std::size_t>(index)] : '0';
    }

    // Groups are counted from the right, so this writes backwards.
    void writeGroups(char *end) const
    {
        GroupSizes sizes(sizes_);
        std::int64_t left = count();
        while (left > 0) {
            for (std::int64_t size = sizes.next(left); size > 0; --size)
                *--end = digitAt(--left);
            if (left == 0) return;
            end -= separator_.size();
            std::memcpy(end, separator_.data(), separator_.size());
        }
    }

    std::string_view digits_;
    std::int64_t zeros_;
    std::string_view separator_ = {}; // empty without grouping
    const char *sizes_ = "";
    std::int64_t size_;
};

// A number with what the locale and the directive's width add to it.
class Layout {
  public:
    Layout(const Directive &directive, const Number &number)
        : number_(number),
          integer_(number),
          point_(number.hasPoint ? localeconv()->decimal_point : "")
    {
        const std::int64_t size = sizeOf(number.lead) + number.leadingZeros + integer_.size() +
                                  sizeOf(point_) + number.fractionZeros + sizeOf(number.fraction) +
                                  number.trailingZeros + sizeOf(number.exponent);
        const std::int64_t padding = std::max<std::int64_t>(directive.width - size, 0);
        size_ = size + padding;
        if (directive.has(kFlagLeft))
            blanksAfter_ = padding;
        else if (number.zeroPads && directive.has(kFlagZero))
            zeros_ = padding;
        else
            blanksBefore_ = padding;
    }

    std::size_t size() const { return static_cast<std::size_t>(size_); }

    void write(Writer writer) const
    {
        writer.fill(' ', blanksBefore_);
        writer.put(number_.lead);
        writer.fill('0', zeros_ + number_.leadingZeros);
        integer_.write(writer);
        writer.put(point_);
        writer.fill('0', number_.fractionZeros);
        writer.put(number_.fraction);
        writer.fill('0', number_.trailingZeros);
        writer.put(number_.exponent);
        writer.fill(' ', blanksAfter_);
    }

  private:
    const Number &number_;
    IntegerPart integer_;
    std::string_view point_;
    std::int64_t size_ = 0;
    std::int64_t blanksBefore_ = 0;
    std::int64_t zeros_ = 0;
    std::int64_t blanksAfter_ = 0;
};

} // namespace

bool appendNumber(const Directive &directive, const Number &number, CxStringBuff *buffer)
{
    const Layout layout(directive, number);
    if (!cxStringBuffHasCapacity(buffer, layout.size())) return false;
    layout.write(Writer(buffer->str + buffer->length));
    extend(buffer, layout.size());
    return true;
}

} // namespace olvex
