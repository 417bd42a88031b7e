/*
 * The text of the trace stream. With Object and ErrorManager it is the small base layer on which
 * the stream stands; a product that has such classes puts its own in their place.
 */
#ifndef OLVEX_TRACE_BASE_STRING_H
#define OLVEX_TRACE_BASE_STRING_H

#include <olvex/trace/Allocation.h>

inline namespace olvex_trace {

/**
 * A text of bytes that owns its memory; short ones live in the object itself. Wide text becomes
 * UTF-8, what is no character U+FFFD. Null is taken as the empty text. When memory runs out, an
 * operation leaves the text as it was. A String belongs to one thread at a time.
 */
class OVX_API String {
  public:
    OVX_TRACE_ALLOCATION

    /** The empty text. */
    String() noexcept;
    /** A copy of the text. */
    String(const char *text);
    /** A copy of the wide text. */
    String(const wchar_t *text);
    /** A copy of the other String. */
    String(const String &other);
    ~String();

    /** Same as assign(). */
    String &operator=(const char *text) { return assign(text); }
    /** Same as assign(). */
    String &operator=(const wchar_t *text) { return assign(text); }
    /** Same as assign(). */
    String &operator=(const String &other) { return assign(other); } // NOLINT: may be itself

    /** Makes this a copy of the text, which may be a part of this String. */
    String &assign(const char *text);
    /** Makes this a copy of the wide text. */
    String &assign(const wchar_t *text);
    /** Makes this a copy of the other String. */
    String &assign(const String &other);

    /** Appends the text, which may be a part of this String. */
    String &concat(const char *text);
    /** Appends the wide text. */
    String &concat(const wchar_t *text);
    /** Appends the other String. */
    String &concat(const String &other);

    /** The text, borrowed until the next change; never null. */
    operator const char *() const { return data_; }
    /** The length in bytes. */
    std::size_t length() const { return length_; }

  private:
    String &append(const char *bytes, std::size_t count);
    String &replace(const char *bytes, std::size_t count);
    bool growFor(std::size_t count);

    static constexpr std::size_t kInside = 40;

    char *data_;
    std::size_t length_;
    std::size_t capacity_; // bytes at data_, the terminator's included
    char inside_[kInside];
};

} // namespace olvex_trace

#endif
