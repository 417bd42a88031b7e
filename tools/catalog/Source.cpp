// See Source.h. Reading goes character by character, so that every mistake has its line and column;
// after a mistake it goes on with the next line.
#include "catalog/Source.h"

#include "Visible.h"
#include "catalog/Bytes.h"
#include "view/Utf8.h"

#include <cstdio>
#include <cstring>
#include <string_view>

namespace tools::catalog {

namespace {

using std::string_view;

constexpr std::uint32_t kHighestNumber = INT32_MAX;

// Letters behind a backslash, and what they mean.
constexpr string_view kEscapeLetters = "ntvbrf";
constexpr string_view kEscapeValues = "\n\t\v\b\r\f";

bool isBlank(string_view c)
{
    return c == " " || c == "\t";
}
bool isDigit(string_view c)
{
    return c.size() == 1 && c[0] >= '0' && c[0] <= '9';
}
bool isOctal(string_view c)
{
    return isDigit(c) && c[0] < '8';
}

// What ends the reading of a line.
struct Mistake {
    Place place;
    std::string text;
};

class Reader {
  public:
    Reader(const std::string &file, string_view text, const CodeSet &codeSet)
        : rest_(text), codeSet_(codeSet)
    {
        source_.file = file;
        if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
    }

    Source read()
    {
        while (!rest_.empty()) {
            try {
                readLine();
            } catch (const Mistake &mistake) {
                source_.problems.push_back(problemAt(source_.file, mistake.place, mistake.text));
                skipLine();
            }
        }
        return std::move(source_);
    }

  private:
    // Characters

    // The next character, a line end as "\n"; empty at the end of the source.
    string_view peek() const
    {
        if (rest_.empty()) return {};
        if (rest_.starts_with("\r\n")) return "\n";
        const std::size_t length = utf8Length(rest_);
        if (length == 0) throw Mistake{place_, "this is not UTF-8"};
        return rest_.substr(0, length);
    }

    string_view next()
    {
        const string_view c = peek();
        if (c == string_view("\0", 1)) throw Mistake{place_, "a source cannot hold a NUL byte"};
        rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : c.size());
        if (c == "\n")
            place_ = {place_.line + 1, 1};
        else
            ++place_.column;
        return c;
    }

    bool isAtLineEnd() const { return rest_.empty() || peek() == "\n"; }

    void skipLine()
    {
        const std::size_t end = rest_.find('\n');
        rest_.remove_prefix(end == string_view::npos ? rest_.size() : end + 1);
        place_ = {place_.line + 1, 1};
    }

    void skipBlanks()
    {
        while (isBlank(peek()))
            next();
    }

    // Lines

    void readLine()
    {
        const Place start = place_;
        const string_view first = peek();
        if (first == "$") return readDirective();
        if (isDigit(first)) return readMessage();
        skipBlanks();
        if (!isAtLineEnd()) throw Mistake{start, "a line begins with a number or with '$'"};
        next();
    }

    void readDirective()
    {
        const Place start = place_;
        next();
        std::string word;
        while (!isAtLineEnd() && !isBlank(peek()))
            word += next();
        skipBlanks();
        if (word == "set") {
            set_ = readNumber("a set's number");
        } else if (word == "delset") {
            const std::uint32_t set = readNumber("a set's number");
            std::erase_if(source_.messages,
                          [&](const auto &each) { return each.first.first == set; });
        } else if (word == "quote") {
            quote_ = isAtLineEnd() ? "" : std::string(next());
        } else if (!word.empty()) {
            throw Mistake{start, "there is no directive '$" + word + "'"};
        }
        skipLine(); // the rest is a comment
    }

    std::uint32_t readNumber(const char *what)
    {
        const Place start = place_;
        std::uint64_t number = 0;
        while (isDigit(peek()) && number <= kHighestNumber)
            number = number * 10 + static_cast<std::uint64_t>(next()[0] - '0');
        if (number < 1 || number > kHighestNumber)
            throw Mistake{start, std::string(what) + " is from 1 to 2147483647"};
        if (!isAtLineEnd() && !isBlank(peek()))
            throw Mistake{place_, std::string(what) + " ends with a blank"};
        return static_cast<std::uint32_t>(number);
    }

    // A number alone takes the message away.
    void readMessage()
    {
        const Place start = place_;
        const Key key = {set_, readNumber("a message's number")};
        if (isAtLineEnd()) {
            source_.messages.erase(key);
            next();
            return;
        }
        next(); // one blank; others belong to the text
        const std::string text = readText();
        const auto [known, isNew] = source_.messages.insert({key, {text, start}});
        if (isNew) return;
        source_.problems.push_back(problemAt(
            source_.file, start,
            "message " + std::to_string(key.second) + " of set " + std::to_string(key.first) +
                " is in line " + std::to_string(known->second.place.line) + " already"));
    }

    // Texts

    std::string readText()
    {
        std::string text;
        const Place start = place_;
        const bool isQuoted = !quote_.empty() && peek() == quote_;
        if (isQuoted) next();
        while (!isAtLineEnd() && !(isQuoted && peek() == quote_))
            readCharacter(text);
        if (isQuoted) endQuoted(start);
        next();
        return text;
    }

    void endQuoted(Place start)
    {
        if (isAtLineEnd()) throw Mistake{start, "the closing quote is missing"};
        next();
        skipBlanks();
        if (!isAtLineEnd()) throw Mistake{place_, "there is text behind the closing quote"};
    }

    void readCharacter(std::string &text)
    {
        if (peek() != "\\") {
            text += next();
            return;
        }
        next();
        if (isOctal(peek())) return readOctals(text);
        const string_view c = next();
        if (c == "\n") return; // the line goes on in the next
        const std::size_t letter = c.size() == 1 ? kEscapeLetters.find(c[0]) : string_view::npos;
        text += letter == string_view::npos ? c : kEscapeValues.substr(letter, 1);
    }

    // Bytes in octal are in the source's code set; several can be one character.
    void readOctals(std::string &text)
    {
        const Place start = place_;
        std::string bytes(1, readOctal());
        while (rest_.size() > 1 && rest_[0] == '\\' && isOctal(rest_.substr(1, 1))) {
            next();
            bytes += readOctal();
        }
        const std::string utf8 = codeSet_.toUtf8(bytes);
        for (string_view left = utf8; !left.empty(); left.remove_prefix(utf8Length(left)))
            if (utf8Length(left) == 0) throw Mistake{start, "these bytes are no characters"};
        text += utf8;
    }

    char readOctal()
    {
        const Place start = place_;
        int value = 0;
        for (int digits = 0; digits < 3 && isOctal(peek()); ++digits)
            value = value * 8 + (next()[0] - '0');
        if (value == 0 || value > 0xFF) throw Mistake{start, "a byte in octal is from 001 to 377"};
        return static_cast<char>(value);
    }

    string_view rest_;
    const CodeSet &codeSet_;
    Place place_;
    Source source_;
    std::uint32_t set_ = 1;
    std::string quote_;
};

// Writing

void writeOctals(std::string &source, string_view bytes)
{
    for (const char byte : bytes) {
        char octal[8];
        std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned char>(byte));
        source += octal;
    }
}

void writeCharacter(std::string &source, string_view c, bool isForTerminal)
{
    const std::size_t value = kEscapeValues.find(c[0]);
    if (value != string_view::npos) {
        source += {'\\', kEscapeLetters[value]};
    } else if (c == "\\" || c == "\"") {
        source += '\\';
        source += c;
    } else if (static_cast<unsigned char>(c[0]) < 0x20 || c[0] == 0x7F ||
               (isForTerminal && !isVisible(view::decode(c)))) {
        writeOctals(source, c);
    } else {
        source += c;
    }
}

} // namespace

std::string problemAt(const std::string &file, Place place, const std::string &text)
{
    return file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " +
           text;
}

Source parseSource(const std::string &file, const std::string &text)
{
    return Reader(file, text, CodeSet("")).read();
}

Source readSource(const std::string &file, const std::string &codeSet)
{
    const CodeSet itsCodeSet(codeSet);
    return Reader(file, itsCodeSet.toUtf8(readFile(file)), itsCodeSet).read();
}

std::string writeSource(const Messages &messages, bool isForTerminal)
{
    std::string source = "$quote \"\n";
    std::uint32_t set = 0;
    for (const auto &[key, message] : messages) {
        if (key.first != set) source += "$set " + std::to_string(set = key.first) + "\n";
        source += std::to_string(key.second) + " \"";
        for (string_view rest = message.text; !rest.empty();) {
            const std::size_t length = utf8Length(rest);
            writeCharacter(source, rest.substr(0, length), isForTerminal);
            rest.remove_prefix(length);
        }
        source += "\"\n";
    }
    return source;
}

} // namespace tools::catalog
