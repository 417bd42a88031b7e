// Formats as they are printed with typed parameters: parsed once, printed often. Used with the API
// mutex held, or by one caller alone.
#pragma once

#include <olvex/Parm.h>
#include <olvex/Printf.h>
#include <olvex/StringBuff.h>

#include <cstddef>

namespace olvex {

// A parsed format. Points into the text that it was parsed from.
class FormatPlan {
  public:
    // False when the format cannot be parsed or memory runs out; such a plan prints nothing.
    bool parse(const char *format);
    bool isValid() const { return valid_; }

    // Appends the format printed over `parms`; nothing when it uses more parameters than there are.
    // An item that cannot be printed ends the text.
    void print(CxStringBuff *buffer, const ParmList *parms);

    void discard();

  private:
    bool printItem(CxStringBuff *buffer, const CxPrintfFmt &item, class ParmCursor &parms);
    void fillSlots(class ParmCursor &parms);

    CxPrintfFmts formats_ = {};
    CxPrintfArgs arguments_ = {};
    bool filled_ = false;
    bool valid_ = false;
};

// The plans of the formats used last. Their memory is kept until discard().
class FormatCache {
  public:
    // The plan of a format; there until the next call. One that could not be parsed is tried again
    // each time: it may have been memory that was lacking.
    FormatPlan &planOf(const char *format);

    void discard();

  private:
    static constexpr std::size_t kSlots = 128;

    // A format found here is compared byte by byte: its address only says where to look.
    struct Slot {
        CxStringBuff text = {};
        FormatPlan plan;
    };

    FormatPlan &parseInto(Slot &slot, const char *format);

    Slot slots_[kSlots];
    FormatPlan passing_; // of a format that is not kept
};

} // namespace olvex
