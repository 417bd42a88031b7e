// The message-ID filter: the patterns it selects by, and the holding back of repeats.
#include "logging/OvxMsgIdFilter.h"

#include <olvex/Props.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "logging/OvxEvent.h"
#include "messages/Messages.h"
#include "toolkit/OvxPropertyTable.h"
#include "toolkit/OvxProps.h"
#include "util/Memory.h"
#include "util/Sums.h"
#include "util/collections/OvxStringList.h"
#include "util/collections/OvxStringToStringMap.h"

using namespace olvex;

namespace {

constexpr char kWordDelimiters[] = " \t\n\r";
constexpr char kInitialPatterns[] = "*W *I";

enum Mode : std::int32_t { kBlock = 1, kPassThru = 2 };

// Up to this number identifiers are never removed. There may be any number of them, since they come
// from texts of any origin.
constexpr std::size_t kFewIdentifiers = 4096;

struct MsgIdFilterVars {
    Mode mode = kBlock;
    StringList *patterns = nullptr;
    OvxObject *messageIdFormatter = nullptr;
    std::int64_t repeatTime = 0;             // milliseconds, 0 for no holding back
    StringToStringMap *lastPassed = nullptr; // identifier to the decimal time of its last event
    std::size_t sweepAt = kFewIdentifiers;   // at this size, expired entries are removed next
};

MsgIdFilterVars *varsOf(const OvxObject *filter)
{
    return filter ? static_cast<MsgIdFilterVars *>(filter->variables) : nullptr;
}

constexpr char kWildcard = '*';

const char *endOfPiece(const char *pattern)
{
    while (*pattern && *pattern != kWildcard)
        ++pattern;
    return pattern;
}

// Whether the text has the piece at that place. Pieces and texts are short: looking at the first
// byte here is quicker than any search.
bool hasAt(std::string_view text, std::size_t at, std::string_view piece)
{
    return text[at] == piece[0] && std::memcmp(text.data() + at, piece.data(), piece.size()) == 0;
}

bool endsWith(std::string_view text, std::string_view piece)
{
    return text.size() >= piece.size() && hasAt(text, text.size() - piece.size(), piece);
}

// Removes the text up to the end of the first occurrence of a piece; false when there is none.
bool skipPast(std::string_view &text, std::string_view piece)
{
    for (std::size_t at = 0; at + piece.size() <= text.size(); ++at) {
        if (!hasAt(text, at, piece)) continue;
        text.remove_prefix(at + piece.size());
        return true;
    }
    return false;
}

// Matches what follows a wildcard: the pieces from left to right, the last one at the end.
bool matchesBehindWildcard(const char *pattern, std::string_view text)
{
    for (;;) {
        while (*pattern == kWildcard)
            ++pattern;
        if (!*pattern) return true;
        const char *end = endOfPiece(pattern);
        const std::string_view piece(pattern, static_cast<std::size_t>(end - pattern));
        if (!*end) return endsWith(text, piece);
        if (!skipPast(text, piece)) return false;
        pattern = end;
    }
}

// The path of each event: most patterns differ from the text in their first byte.
bool matches(const char *pattern, std::string_view text)
{
    if (!*pattern) return true;
    std::size_t at = 0;
    for (; *pattern && *pattern != kWildcard; ++pattern, ++at)
        if (at == text.size() || text[at] != *pattern) return false;
    if (!*pattern) return at == text.size();
    text.remove_prefix(at);
    return matchesBehindWildcard(pattern, text);
}

template <schema::Name>
void apply(OvxObject *filter, const char *value, MsgIdFilterVars &vars) = delete;

template <>
void apply<"mode">(OvxObject *filter, const char *value, MsgIdFilterVars &vars)
{
    if (!value) return;
    const bool passes = BaxStringICmp(value, "PASSTHRU") == 0;
    vars.mode = passes ? kPassThru : kBlock;
    if (!passes && BaxStringICmp(value, "BLOCK") != 0)
        report(OVX_LEVEL_WARN, Message::kBadFilterMode, ovxIntlGetObjectName(filter), value);
}

template <>
void apply<"msgIds">(OvxObject *, const char *value, MsgIdFilterVars &vars)
{
    if (!value) return;
    ovxIntlFreeStringList(std::exchange(vars.patterns, OvxMsgIdFilterGetStringList(value)));
}

template <>
void apply<"msgIdRepeatTime">(OvxObject *, const char *value, MsgIdFilterVars &vars)
{
    bool converts = false;
    const std::int64_t time = ovxPropStrToInt64(value, &converts);
    if (converts) vars.repeatTime = time;
}

constexpr auto kProperties =
    rowsOf<schema::kIdFilter>([]<schema::Name name>(schema::Tag<name>) { return &apply<name>; });

bool isHeldBack(const MsgIdFilterVars &vars, const StringToStringMapNode *last, std::int64_t time)
{
    return time < saturatedSum(ovxPropStrToInt64(last->value(), nullptr), vars.repeatTime);
}

// Removes identifiers whose repeat time is over, each time that their number has doubled.
[[gnu::cold]] void sweep(MsgIdFilterVars &vars, std::int64_t time)
{
    StringToStringMap &passed = *vars.lastPassed;
    for (StringToStringMapNode *node = passed.first(); node;) {
        StringToStringMapNode *next = node->next();
        if (!isHeldBack(vars, node, time)) passed.remove(node);
        node = next;
    }
    vars.sweepAt = std::max(passed.size() * 2, kFewIdentifiers);
}

// Whether an event of that identifier passed a short time ago; if not, this one is noted.
bool isRepeat(MsgIdFilterVars &vars, const char *id, std::int64_t time)
{
    if (vars.repeatTime <= 0 || !*id) return false;
    const StringToStringMapNode *last = vars.lastPassed ? vars.lastPassed->find(id) : nullptr;
    if (last && isHeldBack(vars, last, time)) return true;
    if (vars.lastPassed && vars.lastPassed->size() >= vars.sweepAt) sweep(vars, time);
    OvxSetMapPropLong(vars.lastPassed, id, time);
    return false;
}

} // namespace

bool OvxPatternMatch(const char *pattern, const char *text)
{
    return pattern && text && matches(pattern, text);
}

StringList *OvxMsgIdFilterGetStringList(const char *text)
{
    StringList *list = ovxIntlAllocStringList();
    for (OvxStrTokIter at = OvxStrTokIterator(text, kWordDelimiters); OvxStrTokIterHasNext(at);
         at = OvxStrTokIterNext(at)) {
        const Text word(OvxStrTokIterGet(at));
        if (ovxIntlStringListAppend(list, word.get())) continue;
        ovxIntlFreeStringList(list);
        return nullptr;
    }
    return list;
}

bool OvxMsgIdFilterMatchMsgId(const StringList *patterns, const char *id)
{
    if (!patterns || !id) return false;
    const std::string_view text(id);
    for (const StringListNode *node = patterns->first(); node; node = node->next())
        if (matches(node->element(), text)) return true;
    return false;
}

void *OvxMsgIdFilterFAllocVars()
{
    auto *vars = Memory().make<MsgIdFilterVars>();
    if (!vars) return nullptr;
    vars->patterns = OvxMsgIdFilterGetStringList(kInitialPatterns);
    vars->messageIdFormatter = ovxIntlGetObject("msgFormatter", "ovx_xmlformatter");
    vars->lastPassed = ovxIntlAllocStringToStringMap();
    return vars;
}

void OvxMsgIdFilterFFreeVars(void *variables)
{
    auto *vars = static_cast<MsgIdFilterVars *>(variables);
    if (!vars) return;
    ovxIntlFreeStringList(vars->patterns);
    ovxIntlReleaseObject(vars->messageIdFormatter);
    ovxIntlFreeStringToStringMap(vars->lastPassed);
    Memory().destroy(vars);
}

void OvxMsgIdFilterFCfgChange(OvxObject *filter, const char *name)
{
    MsgIdFilterVars *vars = varsOf(filter);
    if (!vars || !name) return;
    if (!applyProperty(kProperties, filter, name, *vars)) OvxBasicObjectFCfgChange(filter, name);
}

bool OvxMsgIdFilterFIsLoggable(OvxObject *filter, OvxEvent *event)
{
    MsgIdFilterVars *vars = varsOf(filter);
    if (!vars || !event) return false;
    ovxPDXMLFormatterCacheMessageID(vars->messageIdFormatter, event);
    const char *id = event->messageId;
    const bool isMatch = OvxMsgIdFilterMatchMsgId(vars->patterns, id);
    const bool passes = (vars->mode == kPassThru) == isMatch;
    return passes && !(id && isRepeat(*vars, id, event->time));
}

constinit const ClassSlots olvex::slots::ovx_msgidfilter = {
    .allocVars = OvxMsgIdFilterFAllocVars,
    .freeVars = OvxMsgIdFilterFFreeVars,
    .cfgChange = OvxMsgIdFilterFCfgChange,
    .log = OvxBasicObjectFLog,
    .process = OvxBasicFilterFProcess,
    .isLoggable = OvxMsgIdFilterFIsLoggable,
};
