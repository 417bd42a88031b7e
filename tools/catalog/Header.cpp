// See Header.h. A message is named by the identifier that its text begins with, such as "APP0042E",
// when no other text begins with the same one; otherwise by its set and number.
#include "catalog/Header.h"

#include "catalog/Check.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>

namespace tools::catalog {

namespace {

using std::string;
using std::string_view;
using std::to_string;

// The level and the place of a call are entries of its list of 62 too.
constexpr std::size_t kMostParameters = 58;

// What a parameter is, by the conversion that prints it.
struct Type {
    string_view conversions;
    string_view lengths; // those of "l" and so on that it goes with; "" for any
    const char *declared;
    const char *marker;
    const char *converter;
};

constexpr string_view kWide = "lqjzt";

constexpr Type kTypes[] = {
    {"di", kWide, "long ", "OVX_PARM_LONG", "OVX_AS_LONG"},
    {"di*", "", "int ", "OVX_PARM_INT", "OVX_AS_INT"},
    {"ouxX", "", "long ", "OVX_PARM_LONG", "OVX_AS_WORD"},
    {"eEfFgGaA", "", "double ", "OVX_PARM_DOUBLE", "OVX_AS_DOUBLE"},
    {"c", "", "int ", "OVX_PARM_CHAR", "OVX_AS_CHAR"},
    {"s", "", "const char *", "OVX_PARM_STRING", "OVX_AS_TEXT"},
    {"p", "", "long ", "OVX_PARM_LONG", "OVX_AS_POINTER"},
};

// Text in 16-bit units, which no parameter is.
bool isWideText(string_view conversion)
{
    const char last = conversion.back();
    return last == 'S' || last == 'C' || ((last == 's' || last == 'c') && conversion[0] == 'l');
}

const Type *typeOf(string_view conversion)
{
    if (isWideText(conversion)) return nullptr;
    for (const Type &type : kTypes)
        if (type.conversions.find(conversion.back()) != string_view::npos &&
            (type.lengths.empty() ||
             conversion.find_first_of(type.lengths) < conversion.size() - 1))
            return &type;
    return nullptr;
}

struct Call {
    Key key;
    string name; // of the macro
    string text;
    std::vector<const Type *> parameters;
};

// The parameters of a text; what is wrong with them when that is not empty.
string readParameters(const string &text, std::vector<const Type *> &parameters)
{
    const Placeholders found = readPlaceholders(text);
    if (!found.problem.empty()) return found.problem;
    if (found.arguments.size() > kMostParameters)
        return "has more than " + to_string(kMostParameters) + " parameters";
    for (const auto &[position, conversion] : found.arguments) {
        if (position != static_cast<int>(parameters.size()) + 1)
            return "does not use argument " + to_string(parameters.size() + 1);
        const Type *type = typeOf(conversion);
        if (!type) return "prints wide text with %" + conversion + ", which no parameter is";
        parameters.push_back(type);
    }
    return "";
}

bool isUpperOrDigit(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// The identifier that a text begins with: capitals, digits and a severity; "" when there is none.
string idOf(const string &text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isUpperOrDigit);
    const string id(text.begin(), end);
    const bool isId = id.size() >= 5 && (end == text.end() || *end == ' ' || *end == ':') &&
                      std::isalpha(static_cast<unsigned char>(id.front())) &&
                      std::isdigit(static_cast<unsigned char>(id[id.size() - 2])) &&
                      std::isalpha(static_cast<unsigned char>(id.back()));
    return isId ? id : "";
}

// What a message is called: its identifier behind the prefix, unless it begins with that itself.
string nameOf(const string &prefix, const Key &key, const string &id,
              const std::map<string, int> &uses)
{
    if (id.empty() || uses.at(id) > 1)
        return prefix + "_" + to_string(key.first) + "_" + to_string(key.second);
    return id.starts_with(prefix) ? id : prefix + "_" + id;
}

// A text as a literal of C; no "??" may become a trigraph.
string literal(const string &text)
{
    string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\' || c == '?') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            const char octal[] = {'\\', '0', static_cast<char>('0' + (byte >> 3 & 7)),
                                  static_cast<char>('0' + (byte & 7)), '\0'};
            quoted += byte == 0x7f ? "\\177" : octal;
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

// "FORMAT" for each parameter, with its number for every "#".
string eachParameter(const Call &call, string (*format)(const Type &type, const string &number))
{
    string list;
    for (std::size_t i = 0; i < call.parameters.size(); ++i)
        list += ", " + format(*call.parameters[i], to_string(i + 1));
    return list;
}

string declaration(const Type &type, const string &number)
{
    return type.declared + ("p" + number);
}
string markerAndValue(const Type &type, const string &number)
{
    return type.marker + (", p" + number);
}
string converted(const Type &type, const string &number)
{
    return type.converter + ("(p" + number + ")");
}
string name(const Type &, const string &number)
{
    return "p" + number;
}

// Puts values in the place of "@NAME@" and the like.
string fill(string text, std::initializer_list<std::pair<string_view, string>> values)
{
    for (const auto &[name, value] : values)
        for (std::size_t at = 0; (at = text.find(name, at)) != string::npos; at += value.size())
            text.replace(at, name.size(), value);
    return text;
}

constexpr const char *kCall = R"(/* Message @KEY@ of set @SET@. */
#define @NAME@_SET @SET@
#define @NAME@_KEY @KEY@
#define @NAME@_TEXT @TEXT@
static inline void @NAME@_at(OvxObject *logger, int level, const char *file, int line,
    const char *function@DECLARATIONS@)
{
    OvxLogMsg(logger, @PREFIX@_CATALOG, @NAME@_SET, @NAME@_KEY, @NAME@_TEXT@VALUES@,
        OVX_CATALOG_END(level, file, line, function));
}
#define @NAME@(logger, level@NAMES@) \
    OVX_CATALOG_CALL(logger, level, @NAME@_at, __FILE__, __LINE__, __func__@CONVERTED@)

)";

// The text comes last: what it says is nobody's to fill in.
string writeCall(const Call &call, const string &prefix)
{
    return fill(kCall, {{"@NAME@", call.name},
                        {"@PREFIX@", prefix},
                        {"@SET@", to_string(call.key.first)},
                        {"@KEY@", to_string(call.key.second)},
                        {"@DECLARATIONS@", eachParameter(call, declaration)},
                        {"@VALUES@", eachParameter(call, markerAndValue)},
                        {"@NAMES@", eachParameter(call, name)},
                        {"@CONVERTED@", eachParameter(call, converted)},
                        {"@TEXT@", literal(call.text)}});
}

constexpr const char *kBeginning = R"(/*
 * Messages of @SOURCE@, made by `olvex catalog header`: change that source instead.
 *
 * NAME(logger, level, parameters...) logs a message; `level` is one of OVX_LEVEL_DEBUG_MAX to
 * OVX_LEVEL_FATAL. Nothing else is evaluated when the logger does not take the level. A wrong number
 * or type of parameters does not compile. NAME_SET, NAME_KEY and NAME_TEXT say which message it is.
 */
#ifndef @PREFIX@_MESSAGES_H
#define @PREFIX@_MESSAGES_H

#include <olvex/front/CatalogCalls.h>

#define @PREFIX@_CATALOG @CATALOG@

)";

string writeHeader(const string &file, const string &prefix, const std::vector<Call> &calls)
{
    string text = fill(kBeginning, {{"@PREFIX@", prefix},
                                    {"@SOURCE@", std::filesystem::path(file).filename().string()},
                                    {"@CATALOG@", literal(catalogNameOf(file))}});
    for (const Call &call : calls)
        text += writeCall(call, prefix);
    return text + "#endif\n";
}

} // namespace

string catalogNameOf(const string &sourceFile)
{
    const string name = std::filesystem::path(sourceFile).filename().string();
    return name.substr(0, name.find('.', 1));
}

string prefixOf(const string &catalogName)
{
    string prefix;
    for (const char c : catalogName) {
        const auto byte = static_cast<unsigned char>(c);
        prefix += byte < 0x80 && std::isalnum(byte) ? static_cast<char>(std::toupper(byte)) : '_';
    }
    if (prefix.empty() || std::isdigit(static_cast<unsigned char>(prefix.front())))
        prefix.insert(0, "M");
    return prefix;
}

Header makeHeader(const Source &source, const string &prefix)
{
    std::map<string, int> uses;
    for (const auto &[key, message] : source.messages)
        ++uses[idOf(message.text)];
    Header header;
    std::vector<Call> calls;
    for (const auto &[key, message] : source.messages) {
        Call call{key, nameOf(prefix, key, idOf(message.text), uses), message.text, {}};
        const string problem = readParameters(message.text, call.parameters);
        if (!problem.empty())
            header.problems.push_back(problemAt(source.file, message.place,
                                                "message " + to_string(key.second) + " of set " +
                                                    to_string(key.first) + " " + problem));
        calls.push_back(std::move(call));
    }
    header.text = writeHeader(source.file, prefix, calls);
    return header;
}

} // namespace tools::catalog
