// See OvxFormatPlan.h. The plain "%s" and "%d" of most messages are appended as they are found;
// everything else goes through the formatted-output engine's table of arguments.
#include "OvxFormatPlan.h"

#include "util/CxPrintUtil.h"
#include "util/CxStringBuff.h"
#include "util/OvxParmList.h"

#include <charconv>

namespace olvex {

// Finds parameters by their place, quickly when they are asked for in order.
class ParmCursor {
  public:
    explicit ParmCursor(const ParmList *list) : list_(list), node_(list ? list->first() : nullptr)
    {}

    // There must be as many.
    // NOLINTBEGIN(clang-analyzer-core.CallAndMessage): so there is a list
    const OvxParm &at(std::int32_t index)
    {
        if (index < index_) {
            node_ = list_->first();
            index_ = 0;
        }
        for (; index_ < index; ++index_)
            node_ = node_->next();
        return *node_->element();
    }
    // NOLINTEND(clang-analyzer-core.CallAndMessage)

  private:
    const ParmList *list_;
    const ParmListNode *node_;
    std::int32_t index_ = 0;
};

namespace {

// Longer formats are parsed each time.
constexpr std::size_t kLongestKept = 2000;

// Puts a parameter's value into an argument slot; an unknown type leaves the slot as it is.
void fillSlot(CxPrintfArg &slot, const OvxParm &parm)
{
    switch (parm.type) {
    case OVX_PARM_BOOL: return setInt(slot, kInt, parm.value.boolean);
    case OVX_PARM_INT: return setInt(slot, kInt, parm.value.integer);
    case OVX_PARM_LONG: return setInt(slot, kLong, parm.value.longInteger);
    case OVX_PARM_FLOAT: return setDouble(slot, static_cast<long double>(parm.value.floating));
    case OVX_PARM_DOUBLE:
        return setDouble(slot, static_cast<long double>(parm.value.doubleFloating));
    case OVX_PARM_CHAR: return setInt(slot, kUnsignedChar, parm.value.character);
    case OVX_PARM_STRING: return setString(slot, parm.value.string);
    default: return;
    }
}

// "%s" or "%d" without anything else but a position and, for "%d", a length.
bool isPlain(const CxPrintfFmt &item)
{
    if (item.flags != 0 || item.width >= 0 || item.precision >= 0 || item.widthArg >= 0 ||
        item.precisionArg >= 0)
        return false;
    return item.conversion == 'd' || (item.conversion == 's' && item.lengthMod != kModLong);
}

bool appendPlainInteger(CxStringBuff *buffer, std::int64_t value)
{
    char digits[24];
    const char *end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return appendBytes(buffer, digits, static_cast<std::size_t>(end - digits));
}

// False for a parameter that cannot serve the conversion.
bool appendPlain(CxStringBuff *buffer, char conversion, const OvxParm &parm)
{
    if (conversion == 's')
        return parm.type == OVX_PARM_STRING && CxStringBuffAppendStr(buffer, parm.value.string);
    switch (parm.type) {
    case OVX_PARM_INT: return appendPlainInteger(buffer, parm.value.integer);
    case OVX_PARM_LONG: return appendPlainInteger(buffer, parm.value.longInteger);
    case OVX_PARM_BOOL: return appendPlainInteger(buffer, parm.value.boolean);
    case OVX_PARM_CHAR: return appendPlainInteger(buffer, parm.value.character);
    default: return false;
    }
}

} // namespace

bool FormatPlan::parse(const char *format)
{
    cxPrintfReset(&formats_, &arguments_);
    valid_ = CxPrintfProcessFmts(format, &formats_, &arguments_) == 0;
    return valid_;
}

void FormatPlan::print(CxStringBuff *buffer, const ParmList *parms)
{
    const std::size_t given = parms ? parms->size() : 0;
    if (!valid_ || static_cast<std::size_t>(arguments_.count) > given) return;
    filled_ = false;
    ParmCursor cursor(parms);
    for (std::int32_t i = 0; i < formats_.count; ++i)
        if (!printItem(buffer, formats_.items[i], cursor)) return;
}

bool FormatPlan::printItem(CxStringBuff *buffer, const CxPrintfFmt &item, ParmCursor &parms)
{
    if (item.kind == 0 && isPlain(item))
        return appendPlain(buffer, item.conversion, parms.at(item.from.argIndex));
    if (item.kind == 0 && !filled_) fillSlots(parms);
    return cxPrintfEmit(nullptr, buffer, item, arguments_);
}

void FormatPlan::fillSlots(ParmCursor &parms)
{
    for (std::int32_t i = 0; i < arguments_.count; ++i)
        fillSlot(arguments_.items[i], parms.at(i));
    filled_ = true;
}

void FormatPlan::discard()
{
    cxPrintfDiscard(&formats_, &arguments_);
    valid_ = false;
}

FormatPlan &FormatCache::planOf(const char *format)
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
