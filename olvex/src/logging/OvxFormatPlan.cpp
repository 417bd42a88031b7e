// See OvxFormatPlan.h. The plain "%s" and "%d" of most messages are appended as they are found;
// everything else goes through the formatted-output engine's table of arguments.
#include "logging/OvxFormatPlan.h"

#include "logging/OvxParmList.h"
#include "util/CxStringBuff.h"
#include "util/HotPath.h"
#include "util/print/CxPrintUtil.h"

#include <new>
#include <string_view>
#include <utility>

namespace olvex {

Parms::Parms(const ParmList *list)
    : size_(list ? list->size() : 0), list_(list), node_(list ? list->first() : nullptr)
{}

// NOLINTBEGIN(clang-analyzer-core.CallAndMessage): there are as many parameters, so there is a list
const OvxParm &Parms::inList(std::size_t index)
{
    if (index < nodeIndex_) {
        node_ = list_->first();
        nodeIndex_ = 0;
    }
    for (; nodeIndex_ < index; ++nodeIndex_)
        node_ = node_->next();
    return *node_->element();
}
// NOLINTEND(clang-analyzer-core.CallAndMessage)

namespace {

// Longer formats are parsed each time.
constexpr std::size_t kLongestKept = 2000;

// Puts a parameter's value into an argument slot; false for one of an unknown type.
bool fillSlot(CxPrintfArg &slot, const OvxParm &parm)
{
    switch (parm.type) {
    case OVX_PARM_BOOL: setInt(slot, kInt, parm.value.boolean); return true;
    case OVX_PARM_INT: setInt(slot, kInt, parm.value.integer); return true;
    case OVX_PARM_LONG: setInt(slot, kLong, parm.value.longInteger); return true;
    case OVX_PARM_FLOAT:
        setDouble(slot, static_cast<long double>(parm.value.floating));
        return true;
    case OVX_PARM_DOUBLE:
        setDouble(slot, static_cast<long double>(parm.value.doubleFloating));
        return true;
    case OVX_PARM_CHAR: setInt(slot, kUnsignedChar, parm.value.character); return true;
    case OVX_PARM_STRING: setString(slot, parm.value.string); return true;
    default: return false;
    }
}

// An argument slot as the parser makes it: a type of the last item that names it, and no value.
[[gnu::cold]] CxPrintfArg parsedSlot(const CxPrintfFmts &formats, std::int32_t index)
{
    CxPrintfArg slot = {};
    for (std::int32_t i = 0; i < formats.count; ++i) {
        const CxPrintfFmt &item = formats.items[i];
        if (item.kind != 0) continue;
        if (item.from.argIndex == index) slot.type = item.to.argType;
        if (item.widthArg == index || item.precisionArg == index) slot.type = kInt;
    }
    return slot;
}

// "%s" or "%d" without anything else but a position and, for "%d", a length.
bool isPlain(const CxPrintfFmt &item)
{
    if (item.flags != 0 || item.width >= 0 || item.precision >= 0 || item.widthArg >= 0 ||
        item.precisionArg >= 0)
        return false;
    return item.conversion == 'd' || (item.conversion == 's' && item.lengthMod != kModLong);
}

// The integer of a parameter that "%d" can print; false for another one.
bool readInteger(const OvxParm &parm, std::int64_t &value)
{
    switch (parm.type) {
    case OVX_PARM_INT: value = parm.value.integer; return true;
    case OVX_PARM_LONG: value = parm.value.longInteger; return true;
    case OVX_PARM_BOOL: value = parm.value.boolean; return true;
    case OVX_PARM_CHAR: value = static_cast<int>(parm.value.character); return true;
    default: return false;
    }
}

} // namespace

// A literal text; a parameter that is appended as it is found; or work for the engine.
struct FormatPlan::Step {
    enum Kind : std::uint8_t { kText, kString, kInteger, kEngine };

    explicit Step(const CxPrintfFmt &item)
    {
        if (item.kind != 0) {
            text = {item.from.textStart, item.to.textEnd + 1};
            return;
        }
        parm = static_cast<std::uint32_t>(item.from.argIndex);
        kind = !isPlain(item) ? kEngine : item.conversion == 's' ? kString : kInteger;
    }

    // False for a parameter that cannot be appended as it is found.
    bool putInto(Appender &line, Parms &parms) const
    {
        if (kind == kText) return line.put(text);
        const OvxParm &value = parms.at(parm);
        if (kind == kString) return value.type == OVX_PARM_STRING && line.put(value.value.string);
        std::int64_t integer = 0;
        return readInteger(value, integer) && line.putInteger(integer);
    }

    Kind kind = kText;
    std::uint32_t parm = 0;
    std::string_view text = {};
};

bool FormatPlan::parse(const char *format)
{
    BaxMemoryFree(std::exchange(steps_, nullptr));
    cxPrintfReset(&formats_, &arguments_);
    return CxPrintfProcessFmts(format, &formats_, &arguments_) == 0 && makeSteps();
}

bool FormatPlan::makeSteps()
{
    const auto count = static_cast<std::size_t>(formats_.count);
    auto *steps = static_cast<Step *>(BaxMemoryMalloc((count + 1) * sizeof(Step)));
    usesEngine_ = false;
    for (std::size_t i = 0; steps && i < count; ++i) {
        new (steps + i) Step(formats_.items[i]);
        usesEngine_ = usesEngine_ || steps[i].kind == Step::kEngine;
    }
    steps_ = steps;
    return steps_ != nullptr;
}

OVX_HOT void FormatPlan::print(CxStringBuff *buffer, Parms parms)
{
    if (!steps_ || static_cast<std::size_t>(arguments_.count) > parms.size()) return;
    filled_ = false;
    budget_ = {};
    Appender text(buffer);
    for (const Step *step = steps_; step != steps_ + formats_.count; ++step) {
        if (step->kind != Step::kEngine && step->putInto(text, parms)) continue;
        text.suspend();
        const bool printed = printWithEngine(buffer, *step, parms);
        text.resume();
        if (!printed) return;
    }
}

bool FormatPlan::printWithEngine(CxStringBuff *buffer, const Step &step, Parms &parms)
{
    if (!filled_) fillSlots(parms);
    return cxPrintfEmit(nullptr, buffer, formats_.items[&step - steps_], arguments_, budget_);
}

void FormatPlan::fillSlots(Parms &parms)
{
    for (std::int32_t i = 0; i < arguments_.count; ++i) {
        CxPrintfArg &slot = arguments_.items[i];
        if (!fillSlot(slot, parms.at(static_cast<std::size_t>(i)))) slot = parsedSlot(formats_, i);
    }
    filled_ = true;
}

void FormatPlan::discard()
{
    BaxMemoryFree(std::exchange(steps_, nullptr));
    cxPrintfDiscard(&formats_, &arguments_);
}

OVX_HOT FormatPlan &FormatCache::planOf(const char *format)
{
    const auto address = reinterpret_cast<std::uintptr_t>(format);
    Slot &slot = slots_[(address ^ address >> 7) % kSlots];
    if (slot.plan.isValid() && slot.text.str && std::strcmp(slot.text.str, format) == 0)
        return slot.plan;
    return parseInto(slot, format);
}

FormatPlan &FormatCache::parseInto(Slot &slot, const char *format)
{
    const std::size_t size = std::strlen(format);
    CxStringBuffRestart(&slot.text);
    if (size <= kLongestKept && appendBytes(&slot.text, format, size)) {
        slot.plan.parse(slot.text.str);
        return slot.plan;
    }
    slot.plan.discard();
    CxStringBuffDiscard(&slot.text);
    passing_.parse(format);
    return passing_;
}

void FormatCache::discard()
{
    for (Slot &slot : slots_) {
        CxStringBuffDiscard(&slot.text);
        slot.plan.discard();
    }
    passing_.discard();
}

} // namespace olvex
