// The reader of properties files: a state machine over the file's bytes. What each state does with
// each class of byte stands in one table. The pairs go to a list of the host's, or to the log
// manager, which the toolkit has read when it opens; the API mutex is then held.
#include "toolkit/OvxReadProps.h"

#include <olvex/Config.h>
#include <olvex/File.h>

#include <array>

#include "messages/Messages.h"
#include "toolkit/OvxLogManager.h"
#include "util/CxPropList.h"
#include "util/CxResult.h"
#include "util/CxStringBuff.h"
#include "util/Locked.h"
#include "util/Memory.h"

#include <fcntl.h>

using namespace olvex;

namespace {

enum class State : std::uint8_t {
    LineStart,
    LeadingSpace,
    Comment,
    Key,
    KeyEscape,
    AfterKey,
    AfterSeparator,
    Value,
    ValueEscape,
    Continuation,
    Unicode1,
    Unicode2,
    Unicode3,
    Unicode4,
    Failed,
};
constexpr std::size_t kStates = static_cast<std::size_t>(State::Failed);

enum class Input : std::uint8_t {
    Space,     // blank, tab, vertical tab, form feed
    LineEnd,   // line feed, carriage return
    Mark,      // ! #
    Separator, // = :
    Backslash,
    Quote, // " '
    U,     // u U
    Hex,   // 0-9 a-f A-F
    Other,
};
constexpr std::size_t kInputs = static_cast<std::size_t>(Input::Other) + 1;

enum class Action : std::uint8_t { None, ToKey, ToValue, Store, StartCode, ToCode, BadEscape };

struct Step {
    State next = State::Failed;
    Action action = Action::None;
};

using Row = std::array<Step, kInputs>;
using Table = std::array<Row, kStates>;

constexpr Row all(State next, Action action = Action::None)
{
    Row row;
    row.fill({next, action});
    return row;
}

struct TableBuilder {
    Table table{};

    constexpr Row &row(State state) { return table[static_cast<std::size_t>(state)]; }

    constexpr void others(State state, State next, Action action = Action::None)
    {
        row(state) = all(next, action);
    }

    constexpr void on(State state, Input input, State next, Action action = Action::None)
    {
        row(state)[static_cast<std::size_t>(input)] = {next, action};
    }
};

// For each state what most bytes do, then those that differ. What fails is named too: rows left to
// the initial values of Step came out of GCC 12 with zeros in them, which are steps to LineStart.
constexpr Table buildTable()
{
    using enum State;
    using enum Input;
    using enum Action;
    TableBuilder build;

    build.others(LineStart, Key, ToKey);
    build.on(LineStart, Space, LeadingSpace);
    build.on(LineStart, Mark, Comment);
    build.on(LineStart, LineEnd, LineStart);

    build.others(LeadingSpace, Key, ToKey);
    build.on(LeadingSpace, Space, LeadingSpace);
    build.on(LeadingSpace, Mark, Comment);
    build.on(LeadingSpace, LineEnd, LineStart);
    build.on(LeadingSpace, Separator, Failed);

    build.others(Comment, Comment);
    build.on(Comment, LineEnd, LineStart);

    build.others(Key, Key, ToKey);
    build.on(Key, Backslash, KeyEscape);
    build.on(Key, Space, AfterKey);
    build.on(Key, Separator, AfterSeparator);
    build.on(Key, LineEnd, Failed);

    build.others(KeyEscape, Failed);
    build.on(KeyEscape, Backslash, Key, ToKey);
    build.on(KeyEscape, Space, Key, ToKey);
    build.on(KeyEscape, Separator, Key, ToKey);

    build.others(AfterKey, Value, ToValue);
    build.on(AfterKey, Space, AfterKey);
    build.on(AfterKey, Separator, AfterSeparator);
    build.on(AfterKey, Backslash, ValueEscape);
    build.on(AfterKey, LineEnd, Failed);

    build.others(AfterSeparator, Value, ToValue);
    build.on(AfterSeparator, Space, AfterSeparator);
    build.on(AfterSeparator, LineEnd, LineStart, Store);
    build.on(AfterSeparator, Backslash, ValueEscape);

    build.others(Value, Value, ToValue);
    build.on(Value, Backslash, ValueEscape);
    build.on(Value, LineEnd, LineStart, Store);

    build.others(ValueEscape, Failed, BadEscape);
    build.on(ValueEscape, Space, Value, ToValue);
    build.on(ValueEscape, Quote, Value, ToValue);
    build.on(ValueEscape, Backslash, Value, ToValue);
    build.on(ValueEscape, LineEnd, Continuation);
    build.on(ValueEscape, U, Unicode1, StartCode);

    build.others(Continuation, Value, ToValue);
    build.on(Continuation, Backslash, ValueEscape);
    build.on(Continuation, Space, Continuation);
    build.on(Continuation, LineEnd, LineStart, Store);

    for (const State digit : {Unicode1, Unicode2, Unicode3, Unicode4})
        build.others(digit, Failed);
    build.on(Unicode1, Hex, Unicode2, ToCode);
    build.on(Unicode2, Hex, Unicode3, ToCode);
    build.on(Unicode3, Hex, Unicode4, ToCode);
    build.on(Unicode4, Hex, Value, ToCode);
    return build.table;
}

constexpr Table kTable = buildTable();

constexpr Input classify(unsigned char byte)
{
    switch (byte) {
    case ' ':
    case '\t':
    case '\v':
    case '\f': return Input::Space;
    case '\n':
    case '\r': return Input::LineEnd;
    case '!':
    case '#': return Input::Mark;
    case '=':
    case ':': return Input::Separator;
    case '\\': return Input::Backslash;
    case '"':
    case '\'': return Input::Quote;
    case 'u':
    case 'U': return Input::U;
    default: break;
    }
    const bool isHex = (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'f') ||
                       (byte >= 'A' && byte <= 'F');
    return isHex ? Input::Hex : Input::Other;
}

constexpr std::array<Input, 256> classifyAll()
{
    std::array<Input, 256> classes{};
    for (std::size_t byte = 0; byte < classes.size(); ++byte)
        classes[byte] = classify(static_cast<unsigned char>(byte));
    return classes;
}

constexpr std::array<Input, 256> kClasses = classifyAll();

constexpr std::uint32_t hexValue(unsigned char digit)
{
    return digit <= '9' ? digit - '0' : (digit | 0x20u) - 'a' + 10u;
}

// A buffer that goes away with its scope.
struct Buffer : CxStringBuff {
    Buffer() : CxStringBuff() {}
    ~Buffer() { CxStringBuffDiscard(this); }
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;

    const char *text() const { return str ? str : ""; }
};

// Reports need the API mutex, which whoever reads into a list does not hold.
template <class Work>
void withLockHeld(Work &&work)
{
    const bool isTaken = ovxAPIMutexLockUnlessHeld();
    work();
    if (isTaken) ovxAPIMutexUnlock();
}

bool reportFailure(CxResult result)
{
    withLockHeld([&] { OvxReportPlatformErr(result.kind, result.code); });
    return false;
}

bool reportBadEscape(const char *key)
{
    withLockHeld([&] { printToStderr(Message::kBadEscape, key); });
    return false;
}

// Takes the bytes of a file one after the other.
class PropertiesParser {
  public:
    explicit PropertiesParser(CxPropList *list) : list_(list), filler_(list) {}

    // False once the read has failed.
    bool take(unsigned char byte)
    {
        const Input input = kClasses[byte];
        const bool repeatedLineEnd = input == Input::LineEnd && previous_ == Input::LineEnd;
        previous_ = input;
        if (repeatedLineEnd) return true;
        if (state_ == State::LineStart) startLine();
        const Step step = kTable[static_cast<std::size_t>(state_)][static_cast<std::size_t>(input)];
        state_ = act(step.action, byte) ? step.next : State::Failed;
        return state_ != State::Failed;
    }

    // The last line may lack its end.
    bool finish() { return key_.length == 0 || store(); }

  private:
    void startLine()
    {
        CxStringBuffRestart(&key_);
        CxStringBuffRestart(&value_);
    }

    bool act(Action action, unsigned char byte)
    {
        switch (action) {
        case Action::None: return true;
        case Action::ToKey: return CxStringBuffAppendChar(&key_, static_cast<char>(byte));
        case Action::ToValue: return CxStringBuffAppendChar(&value_, static_cast<char>(byte));
        case Action::Store: return storeLine();
        case Action::StartCode: code_ = 0; return true;
        case Action::ToCode: return takeDigit(byte);
        case Action::BadEscape: return reportBadEscape(key_.text());
        }
        return false;
    }

    bool takeDigit(unsigned char digit)
    {
        code_ = code_ * 16 + hexValue(digit);
        if (state_ != State::Unicode4) return true;
        return CxStringBuffAppendUTF32Char(&value_, static_cast<std::int32_t>(code_));
    }

    // A stored line is forgotten, or the end of the file would store it once more.
    bool storeLine()
    {
        const bool stored = store();
        startLine();
        return stored;
    }

    bool store() { return list_ ? filler_.put(key_.text(), value_.text()) : storeInLogManager(); }

    // The configuration's name stands before the last dot, the property's behind it.
    bool storeInLogManager()
    {
        char *dot = BaxStringRChr(key_.text(), '.');
        if (!dot) return false;
        *dot = '\0';
        return ovxLogMgrAddCfgFromFile(key_.text(), dot + 1, value_.text());
    }

    CxPropList *list_; // null for the log manager's configurations
    PropListFiller filler_;
    State state_ = State::LineStart;
    Input previous_ = Input::Other;
    std::uint32_t code_ = 0;
    Buffer key_;
    Buffer value_;
};

bool readAll(CxFile *file, PropertiesParser &parser)
{
    unsigned char block[4096];
    for (;;) {
        std::int64_t count = 0;
        const CxResult result = CxFileRead(file, block, sizeof block, &count);
        if (!ok(result)) return reportFailure(result);
        if (count == 0) return parser.finish();
        for (std::int64_t i = 0; i < count; ++i)
            if (!parser.take(block[i])) return false;
    }
}

} // namespace

bool ovxDoReadProps(const char *path, CxPropList *list)
{
    CxFile file = -1;
    const CxResult opened = CxFileOpen(&file, path, O_RDONLY);
    if (!ok(opened)) return reportFailure(opened);
    PropertiesParser parser(list);
    const bool complete = readAll(&file, parser);
    const CxResult closed = CxFileClose(&file);
    if (!ok(closed)) reportFailure(closed);
    return complete;
}

bool CxPropListRead(const char *path, CxPropList *list)
{
    return list && ovxDoReadProps(path, list);
}

bool OvxLogMgrReadProps(const char *path)
{
    return locked([&] { return ovxDoReadProps(path, nullptr); });
}
