// See Scanner.h. A function for each state; which one is next stands in `state_`.
#include "config/Scanner.h"

#include <olvex/StringBuff.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace tools::config {

namespace {

bool isBlank(unsigned char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f';
}

bool isLineEnd(unsigned char byte)
{
    return byte == '\n' || byte == '\r';
}

bool isMark(unsigned char byte)
{
    return byte == '!' || byte == '#';
}

bool isSeparator(unsigned char byte)
{
    return byte == '=' || byte == ':';
}

int hexValue(unsigned char byte)
{
    if (byte >= '0' && byte <= '9') return byte - '0';
    const int letter = byte | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

std::string encode(std::int32_t codePoint)
{
    CxStringBuff buffer{};
    CxStringBuffAppendUTF32Char(&buffer, codePoint);
    std::string bytes(buffer.str ? buffer.str : "", static_cast<std::size_t>(buffer.length));
    CxStringBuffDiscard(&buffer);
    return bytes;
}

std::string quote(unsigned char byte)
{
    if (isLineEnd(byte)) return "the end of the line";
    if (byte >= 0x20 && byte < 0x7F) return std::string("'") + static_cast<char>(byte) + '\'';
    return "byte " + std::to_string(byte);
}

class Scanner {
  public:
    Scan scan(std::string_view bytes)
    {
        for (const char byte : bytes)
            take(static_cast<unsigned char>(byte));
        finish();
        if (!scan_.hasError) scan_.pairsBeforeError = scan_.pairs.size();
        return std::move(scan_);
    }

  private:
    using State = void (Scanner::*)(unsigned char);

    // A run of line ends counts as one: the library never sees the empty lines.
    void take(unsigned char byte)
    {
        const bool isRepeated = isLineEnd(byte) && isLineEnd(previous_);
        const bool isPairEnd = byte == '\n' && previous_ == '\r';
        if (!isRepeated)
            (this->*state_)(byte);
        else if (!isPairEnd)
            skipEmptyLine();
        if (!isPairEnd) advance(byte);
        previous_ = byte;
    }

    void advance(unsigned char byte)
    {
        if (isLineEnd(byte))
            place_ = {place_.line + 1, 1};
        else
            ++place_.column;
    }

    void skipEmptyLine()
    {
        if (state_ == &Scanner::inContinuation)
            warn("continued-over-empty-line",
                 "the value goes on behind this empty line, since the line before it ends in a "
                 "backslash");
    }

    void finish()
    {
        if (pair_.key.empty()) return;
        if (state_ == &Scanner::inKey || state_ == &Scanner::inAfterKey)
            warn("no-value", "'" + pair_.key + "' has neither separator nor value", pair_.place);
        else if (isInEscape())
            warn("unfinished-escape", "the file ends within an escape");
        store();
    }

    bool isInEscape() const
    {
        return state_ == &Scanner::inKeyEscape || state_ == &Scanner::inValueEscape ||
               state_ == &Scanner::inUnicode;
    }

    void inLineStart(unsigned char byte)
    {
        pair_ = {};
        if (isBlank(byte))
            state_ = &Scanner::inLeadingSpace;
        else if (isMark(byte))
            state_ = &Scanner::inComment;
        else if (!isLineEnd(byte))
            beginKey(byte);
    }

    void inLeadingSpace(unsigned char byte)
    {
        if (isMark(byte))
            state_ = &Scanner::inComment;
        else if (isLineEnd(byte))
            state_ = &Scanner::inLineStart;
        else if (isSeparator(byte))
            failLine(byte);
        else if (!isBlank(byte))
            beginKey(byte);
    }

    void beginKey(unsigned char byte)
    {
        pair_.place = place_;
        pair_.key += static_cast<char>(byte);
        state_ = &Scanner::inKey;
    }

    // What follows in the line means nothing, as in a comment.
    void failLine(unsigned char byte)
    {
        fail("no-key", "there is no key before " + quote(byte));
        state_ = &Scanner::inComment;
    }

    void inComment(unsigned char byte)
    {
        if (isLineEnd(byte)) state_ = &Scanner::inLineStart;
    }

    void inKey(unsigned char byte)
    {
        if (byte == '\\')
            state_ = &Scanner::inKeyEscape;
        else if (isBlank(byte))
            state_ = &Scanner::inAfterKey;
        else if (isSeparator(byte))
            state_ = &Scanner::inAfterSeparator;
        else if (isLineEnd(byte))
            failKey();
        else
            pair_.key += static_cast<char>(byte);
    }

    void failKey()
    {
        fail("no-separator", "there is neither '=' nor a value behind '" + pair_.key + "'",
             pair_.place);
        pair_ = {};
        state_ = &Scanner::inLineStart;
    }

    void inKeyEscape(unsigned char byte)
    {
        state_ = &Scanner::inKey;
        if (byte == '\\' || isBlank(byte) || isSeparator(byte)) {
            pair_.key += static_cast<char>(byte);
            return;
        }
        fail("bad-escape", "a backslash before " + quote(byte) + " has no meaning in a key");
        inKey(byte);
    }

    void inAfterKey(unsigned char byte)
    {
        if (isSeparator(byte))
            state_ = &Scanner::inAfterSeparator;
        else if (isLineEnd(byte))
            failKey();
        else if (!isBlank(byte))
            beginValue(byte);
    }

    void inAfterSeparator(unsigned char byte)
    {
        if (isLineEnd(byte))
            store();
        else if (!isBlank(byte))
            beginValue(byte);
    }

    void inContinuation(unsigned char byte) { inAfterSeparator(byte); }

    void beginValue(unsigned char byte)
    {
        state_ = &Scanner::inValue;
        inValue(byte);
    }

    void inValue(unsigned char byte)
    {
        if (byte == '\\') {
            escape_ = place_;
            state_ = &Scanner::inValueEscape;
        } else if (isLineEnd(byte)) {
            store();
        } else {
            append(static_cast<char>(byte), place_);
            pair_.endsInBlank = isBlank(byte);
        }
    }

    void inValueEscape(unsigned char byte)
    {
        state_ = &Scanner::inValue;
        if (isBlank(byte) || byte == '"' || byte == '\'' || byte == '\\')
            append(static_cast<char>(byte), escape_);
        else if (isLineEnd(byte))
            state_ = &Scanner::inContinuation;
        else if (byte == 'u' || byte == 'U')
            beginUnicode();
        else
            failEscape(byte);
    }

    void failEscape(unsigned char byte)
    {
        fail("bad-escape",
             "a backslash before " + quote(byte) + " has no meaning; write two for one backslash",
             escape_);
        append(static_cast<char>(byte), escape_);
    }

    void beginUnicode()
    {
        codePoint_ = digits_ = 0;
        state_ = &Scanner::inUnicode;
    }

    void inUnicode(unsigned char byte)
    {
        const int digit = hexValue(byte);
        if (digit < 0) return failUnicode(byte);
        codePoint_ = codePoint_ * 16 + digit;
        if (++digits_ < 4) return;
        for (const char encoded : encode(codePoint_))
            append(encoded, escape_);
        state_ = &Scanner::inValue;
    }

    void failUnicode(unsigned char byte)
    {
        fail("bad-escape",
             "\\u is followed by four hexadecimal digits, and " + quote(byte) + " is none",
             escape_);
        state_ = &Scanner::inValue;
        inValue(byte);
    }

    void append(char byte, Place place)
    {
        pair_.value += byte;
        pair_.places.push_back(place);
        pair_.endsInBlank = false;
    }

    void store()
    {
        pair_.places.push_back(place_);
        for (std::string *text : {&pair_.key, &pair_.value})
            text->resize(std::min(text->size(), std::strlen(text->c_str())));
        scan_.pairs.push_back(std::exchange(pair_, {}));
        state_ = &Scanner::inLineStart;
    }

    void warn(const char *code, std::string text) { warn(code, std::move(text), place_); }

    void warn(const char *code, std::string text, Place place)
    {
        scan_.findings.push_back({Severity::Warning, place, code, std::move(text)});
    }

    void fail(const char *code, std::string text) { fail(code, std::move(text), place_); }

    void fail(const char *code, std::string text, Place place)
    {
        if (!scan_.hasError) scan_.pairsBeforeError = scan_.pairs.size();
        scan_.hasError = true;
        scan_.findings.push_back({Severity::Error, place, code, std::move(text)});
        pair_.isBroken = true;
    }

    Scan scan_;
    State state_ = &Scanner::inLineStart;
    Pair pair_;
    Place place_;
    Place escape_;
    unsigned char previous_ = 0;
    std::int32_t codePoint_ = 0;
    int digits_ = 0;
};

} // namespace

Scan scanProperties(std::string_view bytes)
{
    return Scanner().scan(bytes);
}

} // namespace tools::config
